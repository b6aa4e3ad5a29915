#ifndef ZUTARNEX_SYSTEM_SHAREDLIBRARYLOADER_H
#define ZUTARNEX_SYSTEM_SHAREDLIBRARYLOADER_H

#include "system/SharedLibrary.h"
#include "zutarnex/export.h"

#include <boost/shared_ptr.hpp>

namespace Quillon::System {

/// Opens shared objects by path and shares those that are open already.
///
/// Layout:  no data; slots: destructor, doLoadSharedLibrary (tests/abi/).
/// Threads: nothing is locked but the creation of the process's loader; load from one thread at a time.
class ZUTARNEX_API SharedLibraryLoader {
public:
    /// The process's loader, made by the first call. The process lets go of it at its exit, and a call after that
    /// returns an empty pointer; whoever holds it still keeps it alive.
    ///
    /// Throws: std::bad_alloc from the first call.
    static boost::shared_ptr<SharedLibraryLoader> createSharedLibraryLoader();

    SharedLibraryLoader() noexcept = default;
    SharedLibraryLoader(const SharedLibraryLoader& other) noexcept = default;
    virtual ~SharedLibraryLoader();

    /// The object at `path`, opened unless somebody holds it. The path is used exactly as it is passed: one object
    /// under two spellings is two entries. `keepLoaded`: it stays open until the loader is destroyed, even when
    /// nobody holds it.
    ///
    /// Deliberate: an exception of any other kind than the one below, a failed allocation included, ends the process
    /// through the host's `unexpected` (tests/system/SharedLibraryLoaderTest.cpp,
    /// FailedAllocationEndsTheProcess).
    /// Throws: SharedLibraryNotFoundException when the object cannot be opened (file missing, wrong format, symbol
    ///         unresolved, null `path`); the next call tries again.
    boost::shared_ptr<SharedLibrary> loadSharedLibrary(const char* path, bool keepLoaded);

private:
    virtual boost::shared_ptr<SharedLibrary> doLoadSharedLibrary(const char* path, bool keepLoaded) = 0;
};

} // namespace Quillon::System

#endif
