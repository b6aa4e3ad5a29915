#ifndef ZUTARNEX_DATACONV_NOTBOUNDEXCEPTION_H
#define ZUTARNEX_DATACONV_NOTBOUNDEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// No conversion is bound for a pair of types. What is thrown is also a System::InternalException.
class ZUTARNEX_API NotBoundException {
public:
    [[noreturn]] static void doThrow();

    NotBoundException() noexcept;
    NotBoundException(const NotBoundException& other) noexcept;
    virtual ~NotBoundException() = 0;
};

} // namespace Quillon::DataConv

#endif
