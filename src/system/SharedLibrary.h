#ifndef ZUTARNEX_SYSTEM_SHAREDLIBRARY_H
#define ZUTARNEX_SYSTEM_SHAREDLIBRARY_H

#include "zutarnex/export.h"

namespace Quillon::System {

/// One opened shared object. Always held by a boost::shared_ptr, whose last owner closes it.
///
/// Layout:  no data; slots: destructor, getSymbol (tests/abi/).
/// Threads: symbols may be looked up from several at once.
class ZUTARNEX_API SharedLibrary {
public:
    SharedLibrary() noexcept = default;
    SharedLibrary(const SharedLibrary& other) noexcept = default;
    virtual ~SharedLibrary() = 0;

    /// The address of `name` in the object, good as long as the object is open. A symbol whose value is null counts
    /// as missing, and so does a null `name`.
    ///
    /// Throws: SymbolNotFoundException and nothing else.
    virtual void* getSymbol(const char* name) = 0;
};

} // namespace Quillon::System

#endif
