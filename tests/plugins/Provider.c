/* Has a symbol that another module needs. */
#include "plugins/PluginState.h"

ZT_EXPORT int providedByAnotherModule(void);

int providedByAnotherModule(void) {
    return 42;
}
