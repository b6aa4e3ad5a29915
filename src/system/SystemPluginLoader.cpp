// The root of the chain of plug-in loaders: it opens modules, asks them for a record and checks its version.
#include "system/SystemPluginLoaderInternal.h"

#include "runtime/CStringInternal.h"
#include "system/MessageCatalogInternal.h"
#include "system/PinningCacheInternal.h"
#include "system/PluginNotFoundException.h"
#include "system/SharedLibraryLoader.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"
#include "system/SystemErrorInternal.h"

#include <boost/make_shared.hpp>

namespace Quillon::System {

namespace {

constexpr char kEntryName[] = "QVPI_CreatePlugin";
constexpr std::size_t kFileNameCapacity = 4096;
constexpr std::int32_t kMajorVersion = 1;

using PluginPointer = boost::shared_ptr<QVPI_Plugin_>;
using PluginCache = PinningCache<QVPI_Plugin_>;

class SystemPluginLoader final : public QVPI_PluginLoader, private PluginCache {
public:
    SystemPluginLoader()
        : QVPI_PluginLoader(boost::shared_ptr<QVPI_PluginLoader>()),
          libraries_(SharedLibraryLoader::createSharedLibraryLoader()) {}

protected:
    PluginPointer initPlugin(const char* name, void* args, bool keep) override;
    PluginPointer findPlugin(const char* name) const override { return find(name); }

private:
    using Library = boost::shared_ptr<SharedLibrary>;

    /// Lives in the control block of the plug-in's pointer, which the cache's weak pointer keeps: so the module stays
    /// open when its record is gone, until the loader goes.
    class PluginDeleter {
    public:
        explicit PluginDeleter(const Library& module) noexcept : module_(module) {}
        void operator()(QVPI_Plugin_* plugin) const { plugin->functions->destroy(plugin); }

    private:
        Library module_;
    };

    Library openModule(const char* name) const;
    QVPI_Plugin_* createRecord(SharedLibrary& module, const char* name, void* args);

    boost::shared_ptr<SharedLibraryLoader> libraries_;
};

SystemPluginLoader::Library SystemPluginLoader::openModule(const char* name) const {
    char fileName[kFileNameCapacity];
    if (!libraries_ // made after the process had let go of its shared-library loader
        || !Runtime::printBounded(fileName, sizeof fileName, "%s%s%s", "lib", name, ".so"))
        PluginNotFoundException::doThrow(name);
    try {
        return libraries_->loadSharedLibrary(fileName, false);
    } catch (const SharedLibraryNotFoundException&) {
        PluginNotFoundException::doThrow(name);
    }
}

QVPI_CreatePluginFunction entryOf(SharedLibrary& module, const char* name) {
    try {
        return reinterpret_cast<QVPI_CreatePluginFunction>(module.getSymbol(kEntryName));
    } catch (const SymbolNotFoundException&) {
        raiseSystemError(QVPI_PLUGIN_ENTRY_NOT_FOUND, name, static_cast<const char*>(kEntryName));
    }
}

/// A record that leaves no functions cannot be used either.
bool isUsable(const QVPI_Plugin_* record) {
    return record && record->functions;
}

QVPI_Plugin_* SystemPluginLoader::createRecord(SharedLibrary& module, const char* name, void* args) {
    const QVPI_CreatePluginFunction entry = entryOf(module, name);
    QVPI_Plugin_* record = nullptr;
    if (entry(&record, args, static_cast<QVPI_PluginLoader*>(this)) != 0 || !isUsable(record))
        raiseSystemError(QVPI_PLUGIN_FAILED_TO_RETURN_PLUGIN_INTERFACE, name);
    return record;
}

/// Deliberate: a record of another version is not destroyed, and one of the right version is asked twice
/// (tests/system/PluginLoaderTest.cpp, RecordOfWrongVersionIsNotDestroyed, VersionIsAskedTwice).
void checkVersion(QVPI_Plugin_* record, const char* name) {
    if (record->functions->version(record) >> 16 != kMajorVersion)
        raiseSystemError(QVPI_PLUGIN_VERSION_INCOMPATIBLE, name);
    record->functions->version(record);
}

PluginPointer SystemPluginLoader::initPlugin(const char* name, void* args, bool keep) {
    const Library module = openModule(name);
    QVPI_Plugin_* const record = createRecord(*module, name, args);
    checkVersion(record, name);
    const PluginPointer plugin(record, PluginDeleter(module)); // destroys the record should memory run out
    insert(name, plugin, keep);
    return plugin;
}

} // namespace

boost::shared_ptr<QVPI_PluginLoader> makeSystemPluginLoader() {
    return boost::make_shared<SystemPluginLoader>();
}

} // namespace Quillon::System
