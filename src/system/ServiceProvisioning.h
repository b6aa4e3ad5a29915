#ifndef ZUTARNEX_SYSTEM_SERVICEPROVISIONING_H
#define ZUTARNEX_SYSTEM_SERVICEPROVISIONING_H

#include "system/QVPI_Plugin.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::System {

/// The host's side of a service plug-in: it creates the plug-in with this library's services and attaches threads.
class ZUTARNEX_API ServiceProvisioning {
public:
    /// Loads the plug-in `name` through the system plug-in loader. A plug-in that is not loaded yet is given these
    /// options, in this order; they live only as long as its creation:
    ///
    ///     "exit"                                  ends the process through the host's `panic` with the status
    ///     "abort"                                 ends the process: fatal error 1, "Plug-in called abort"
    ///     "malloc", "realloc", "calloc", "free"   the host's allocator
    ///     "vprintf"                               the host's `print`
    ///
    /// Threads: one at a time.
    /// Throws:  what QVPI_PluginLoader::loadPlugin throws.
    static boost::shared_ptr<QVPI_Plugin_> doCreate(const char* name);

    /// Attaches the calling thread, which does so before its first call into the service. Returned: the word that
    /// the plug-in keeps for the thread, null unless it set one.
    ///
    /// Deliberate: only a negative status is a failure, which ends the process (fatal error 3, "Failed to attach
    /// current thread to plugin"; an empty pointer does so, too), whereas doDetach() takes any status but 0 for one
    /// and spells plug-in differently (tests/system/ServiceProvisioningTest.cpp, AttachAcceptsPositiveStatus,
    /// DetachEndsTheProcessOnPositiveStatus).
    static void* doAttach(boost::shared_ptr<QVPI_Plugin_> plugin);

    /// Detaches the calling thread, which does so after its last call into the service. A status other than 0 ends
    /// the process (fatal error 3, "Failed to detach current thread from plug-in"); a null `plugin` does so, too.
    static void doDetach(QVPI_Plugin_* plugin);
};

} // namespace Quillon::System

#endif
