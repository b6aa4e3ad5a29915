#ifndef ZUTARNEX_DATACONV_ILLEGALCONVERSIONEXCEPTION_H
#define ZUTARNEX_DATACONV_ILLEGALCONVERSIONEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// The conversion that is bound for a pair does not fit the types asked for. What is thrown is also a System::InternalException.
class ZUTARNEX_API IllegalConversionException {
public:
    [[noreturn]] static void doThrow();

    IllegalConversionException() noexcept;
    IllegalConversionException(const IllegalConversionException& other) noexcept;
    virtual ~IllegalConversionException() = 0;
};

} // namespace Quillon::DataConv

#endif
