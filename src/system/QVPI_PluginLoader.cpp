#include "system/QVPI_PluginLoader.h"

#include "runtime/ThrowGuardInternal.h"
#include "system/IllegalStateException.h"
#include "system/PluginNotFoundException.h"
#include "system/SystemPluginLoaderInternal.h"

#include <utility>

namespace Quillon::System {

namespace {

using LoaderPointer = boost::shared_ptr<QVPI_PluginLoader>;

/// While it lives, the system loader is being made: `loader` then points at nothing that could be used, but is not
/// null either, so that a recursive call sees it. Pointing at it allocates nothing and owns nothing.
class Installation {
public:
    Installation(LoaderPointer& loader, bool& isSet) noexcept : loader_(loader), isSet_(isSet) {
        alignas(QVPI_PluginLoader) static unsigned char neverALoader[sizeof(QVPI_PluginLoader)];
        loader_ = LoaderPointer(LoaderPointer(), reinterpret_cast<QVPI_PluginLoader*>(neverALoader));
    }
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;
    ~Installation() {
        if (!isSet_) // it failed; the next call tries again
            loader_.reset();
    }

    void complete(LoaderPointer loader) noexcept {
        loader_ = std::move(loader);
        isSet_ = true;
    }

private:
    LoaderPointer& loader_;
    bool& isSet_;
};

boost::shared_ptr<QVPI_Plugin_> loadFrom(const LoaderPointer& ancestor, const char* name, void* args,
                                         bool keep) {
    if (!ancestor)
        PluginNotFoundException::doThrow(name);
    return ancestor->loadPlugin(name, args, keep);
}

} // namespace

constinit boost::shared_ptr<QVPI_PluginLoader> QVPI_PluginLoader::spl;
constinit bool QVPI_PluginLoader::splSet = false;

/// Empties `spl` before the loader goes, so that a plug-in that asks for the loader while it is being destroyed gets
/// none instead of the dying one.
struct QVPI_PluginLoader::Unload {
    ~Unload() { spl.reset(); }
};
constinit QVPI_PluginLoader::Unload QVPI_PluginLoader::unload;

boost::shared_ptr<QVPI_PluginLoader> QVPI_PluginLoader::getSystemPluginLoader() {
    initSystemPluginLoader();
    return spl;
}

void QVPI_PluginLoader::initSystemPluginLoader() {
    if (splSet)
        return;
    if (spl)
        IllegalStateException::doThrow("recursive invocation");
    Installation installation(spl, splSet);
    installation.complete(makeSystemPluginLoader());
}

QVPI_PluginLoader::QVPI_PluginLoader() : parent_(getSystemPluginLoader()) {}

QVPI_PluginLoader::QVPI_PluginLoader(boost::shared_ptr<QVPI_PluginLoader> parent)
    : parent_(std::move(parent)) {}

QVPI_PluginLoader::~QVPI_PluginLoader() = default;

boost::shared_ptr<QVPI_PluginLoader> QVPI_PluginLoader::getParent() const {
    return parent_;
}

boost::shared_ptr<QVPI_Plugin_> QVPI_PluginLoader::loadPlugin(const char* name, void* args, bool keep) {
    if (!name)
        PluginNotFoundException::doThrow(name);
    if (boost::shared_ptr<QVPI_Plugin_> cached = findPlugin(name))
        return cached;
    try {
        return loadFrom(parent_, name, args, keep);
    } catch (const PluginNotFoundException&) {
        // No ancestor can supply it: this loader has to make it.
    }
    return initPlugin(name, args, keep);
}

boost::shared_ptr<QVPI_Plugin_> QVPI_PluginLoader::initPlugin(const char* name, void*, bool) {
    return Runtime::letEscapeOnly<PluginNotFoundException>(
        [&]() -> boost::shared_ptr<QVPI_Plugin_> { PluginNotFoundException::doThrow(name); });
}

boost::shared_ptr<QVPI_Plugin_> QVPI_PluginLoader::findPlugin(const char*) const {
    return boost::shared_ptr<QVPI_Plugin_>();
}

} // namespace Quillon::System
