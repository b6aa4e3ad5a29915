#ifndef ZUTARNEX_SYSTEM_SYMBOLNOTFOUNDEXCEPTION_H
#define ZUTARNEX_SYSTEM_SYMBOLNOTFOUNDEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::System {

/// A shared object does not export a symbol. What is thrown is an InternalException, too; it carries no name.
class ZUTARNEX_API SymbolNotFoundException {
public:
    [[noreturn]] static void doThrow();

    SymbolNotFoundException() noexcept = default;
    SymbolNotFoundException(const SymbolNotFoundException& other) noexcept = default;
    virtual ~SymbolNotFoundException() = 0;
};

} // namespace Quillon::System

#endif
