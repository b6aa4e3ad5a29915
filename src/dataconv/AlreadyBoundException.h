#ifndef ZUTARNEX_DATACONV_ALREADYBOUNDEXCEPTION_H
#define ZUTARNEX_DATACONV_ALREADYBOUNDEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// A pair of types has a conversion already. What is thrown is also a System::InternalException.
class ZUTARNEX_API AlreadyBoundException {
public:
    [[noreturn]] static void doThrow();

    AlreadyBoundException() noexcept;
    AlreadyBoundException(const AlreadyBoundException& other) noexcept;
    virtual ~AlreadyBoundException() = 0;
};

} // namespace Quillon::DataConv

#endif
