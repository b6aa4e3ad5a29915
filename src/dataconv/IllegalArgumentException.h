#ifndef ZUTARNEX_DATACONV_ILLEGALARGUMENTEXCEPTION_H
#define ZUTARNEX_DATACONV_ILLEGALARGUMENTEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// An argument that a conversion cannot take: a null text, a boolean other than 0 and 1. What is thrown is also a System::InternalException.
class ZUTARNEX_API IllegalArgumentException {
public:
    [[noreturn]] static void doThrow();

    IllegalArgumentException() noexcept;
    IllegalArgumentException(const IllegalArgumentException& other) noexcept;
    virtual ~IllegalArgumentException() = 0;
};

} // namespace Quillon::DataConv

#endif
