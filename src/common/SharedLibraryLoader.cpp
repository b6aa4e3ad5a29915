#include "system/SharedLibraryLoader.h"

#include "runtime/ThrowGuardInternal.h"
#include "system/PinningCacheInternal.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"

#include <boost/make_shared.hpp>

#include <dlfcn.h>
#include <new>

namespace Quillon::System {

namespace {

class DlSharedLibrary final : public SharedLibrary {
public:
    /// Every undefined symbol is resolved at once, and the object's symbols serve those that are loaded later.
    explicit DlSharedLibrary(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_GLOBAL)) {
        if (!handle_)
            SharedLibraryNotFoundException::doThrow();
    }
    DlSharedLibrary(const DlSharedLibrary&) = delete;
    DlSharedLibrary& operator=(const DlSharedLibrary&) = delete;
    ~DlSharedLibrary() override { dlclose(handle_); }

    void* getSymbol(const char* name) override {
        return Runtime::letEscapeOnly<SymbolNotFoundException>([&] {
            void* const address = name ? dlsym(handle_, name) : nullptr;
            if (!address)
                SymbolNotFoundException::doThrow();
            return address;
        });
    }

private:
    void* handle_;
};

using SharedLibraryCache = PinningCache<SharedLibrary>;

class DlSharedLibraryLoader final : public SharedLibraryLoader, private SharedLibraryCache {
private:
    boost::shared_ptr<SharedLibrary> doLoadSharedLibrary(const char* path, bool keepLoaded) override {
        if (!path) // dlopen would hand out the program itself
            SharedLibraryNotFoundException::doThrow();
        const std::string key = path;
        boost::shared_ptr<SharedLibrary> library = find(key);
        if (!library) {
            library = boost::make_shared<DlSharedLibrary>(path);
            insert(key, library, keepLoaded);
        } else if (keepLoaded) {
            pin(key, library);
        }
        return library;
    }
};

using LoaderPointer = boost::shared_ptr<SharedLibraryLoader>;

/// Empties the process's pointer at its exit, where static objects are destroyed.
class ReleaseAtExit {
public:
    explicit ReleaseAtExit(LoaderPointer& loader) noexcept : loader_(loader) {}
    ReleaseAtExit(const ReleaseAtExit&) = delete;
    ReleaseAtExit& operator=(const ReleaseAtExit&) = delete;
    ~ReleaseAtExit() { loader_.reset(); }

private:
    LoaderPointer& loader_;
};

} // namespace

SharedLibrary::~SharedLibrary() = default;
SharedLibraryLoader::~SharedLibraryLoader() = default;

boost::shared_ptr<SharedLibraryLoader> SharedLibraryLoader::createSharedLibraryLoader() {
    // The pointer itself is never destroyed, so that a destructor that asks for the loader after the exit handler
    // has run finds it empty, not dangling.
    alignas(LoaderPointer) static unsigned char storage[sizeof(LoaderPointer)];
    static LoaderPointer& loader = *new (storage) LoaderPointer(new DlSharedLibraryLoader);
    static const ReleaseAtExit release(loader);
    return loader;
}

boost::shared_ptr<SharedLibrary> SharedLibraryLoader::loadSharedLibrary(const char* path, bool keepLoaded) {
    return Runtime::letEscapeOnly<SharedLibraryNotFoundException>(
        [&] { return doLoadSharedLibrary(path, keepLoaded); });
}

} // namespace Quillon::System
