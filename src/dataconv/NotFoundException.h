#ifndef ZUTARNEX_DATACONV_NOTFOUNDEXCEPTION_H
#define ZUTARNEX_DATACONV_NOTFOUNDEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// A name is not known. What is thrown is also a System::InternalException.
class ZUTARNEX_API NotFoundException {
public:
    [[noreturn]] static void doThrow();

    NotFoundException() noexcept;
    NotFoundException(const NotFoundException& other) noexcept;
    virtual ~NotFoundException() = 0;
};

} // namespace Quillon::DataConv

#endif
