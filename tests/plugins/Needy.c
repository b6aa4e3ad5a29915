/* Needs a symbol that no library it is linked to has: it can be opened only when another module shows it. */
#include "plugins/PluginState.h"

int providedByAnotherModule(void);
ZT_EXPORT int askTheOtherModule(void);

int askTheOtherModule(void) {
    return providedByAnotherModule();
}
