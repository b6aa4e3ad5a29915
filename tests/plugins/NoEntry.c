/* A module that is no plug-in: it exports something else. A symbol whose value is null counts as missing, too. */
#include "plugins/PluginState.h"

ZT_EXPORT extern const int notAnEntry;
const int notAnEntry = 42;

__asm__(".globl nullSymbol\n.type nullSymbol, @object\n.set nullSymbol, 0");
