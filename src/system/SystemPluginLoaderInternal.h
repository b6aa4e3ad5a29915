#ifndef ZUTARNEX_SYSTEM_SYSTEMPLUGINLOADERINTERNAL_H
#define ZUTARNEX_SYSTEM_SYSTEMPLUGINLOADERINTERNAL_H

#include "system/QVPI_PluginLoader.h"

namespace Quillon::System {

/// A new loader without a parent and with empty caches: the one that opens modules.
boost::shared_ptr<QVPI_PluginLoader> makeSystemPluginLoader();

} // namespace Quillon::System

#endif
