#include "system/ServiceProvisioning.h"

#include "runtime/HostServices.h"
#include "runtime/ThrowGuardInternal.h"
#include "system/PluginNotFoundException.h"
#include "system/QVPI_PluginLoader.h"

#include <cstdarg>
#include <cstddef>
#include <iterator>

namespace Quillon::System {

namespace {

void exitProcess(int status) {
    Runtime::hostServices().panic(status);
}

void abortProcess() {
    Runtime::hostServices().fatalError(1, "Plug-in called abort");
}

/// For the case that the host's function returns, although it must not.
[[noreturn]] void endProcess(const char* text) {
    Runtime::hostServices().fatalError(3, text);
    Runtime::unexpectedException();
}

template <class Function>
QVPI_PluginOption option(const char* name, Function* function) {
    return {name, reinterpret_cast<void*>(function)};
}

} // namespace

boost::shared_ptr<QVPI_Plugin_> ServiceProvisioning::doCreate(const char* name) {
    const Runtime::HostServices& host = Runtime::hostServices();
    const QVPI_PluginOption options[] = {
        option("exit", exitProcess),           option("abort", abortProcess),
        option("malloc", host.allocate),       option("realloc", host.resize),
        option("calloc", host.allocateZeroed), option("free", host.release),
        option("vprintf", host.print),
    };
    QVPI_PluginInitArgs initArgs = {0x00010000, std::size(options), options, 1};
    const boost::shared_ptr<QVPI_PluginLoader> loader = QVPI_PluginLoader::getSystemPluginLoader();
    if (!loader) // the library is being unloaded
        PluginNotFoundException::doThrow(name);
    return loader->loadPlugin(name, &initArgs, false);
}

void* ServiceProvisioning::doAttach(boost::shared_ptr<QVPI_Plugin_> plugin) {
    void* context = nullptr;
    if (!plugin || plugin->functions->attachThread(plugin.get(), &context) < 0)
        endProcess("Failed to attach current thread to plugin");
    return context;
}

void ServiceProvisioning::doDetach(QVPI_Plugin_* plugin) {
    if (!plugin || plugin->functions->detachThread(plugin) != 0)
        endProcess("Failed to detach current thread from plug-in");
}

} // namespace Quillon::System
