#ifndef ZUTARNEX_DATACONV_RUNTIMEEXCEPTION_H
#define ZUTARNEX_DATACONV_RUNTIMEEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// A text does not start with a number where one is needed. What is thrown is also a System::InternalException.
class ZUTARNEX_API RuntimeException {
public:
    [[noreturn]] static void doThrow();

    RuntimeException() noexcept;
    RuntimeException(const RuntimeException& other) noexcept;
    virtual ~RuntimeException() = 0;
};

} // namespace Quillon::DataConv

#endif
