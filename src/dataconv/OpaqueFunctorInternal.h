#ifndef ZUTARNEX_DATACONV_OPAQUEFUNCTORINTERNAL_H
#define ZUTARNEX_DATACONV_OPAQUEFUNCTORINTERNAL_H

#include "dataconv/AConversionFunctor.h"

namespace Quillon::DataConv {

/// The pointer as which a functor travels through the registry's operations, and back.
inline int* opaque(AConversionFunctor* functor) noexcept {
    return reinterpret_cast<int*>(functor);
}
inline AConversionFunctor* functorOf(int* opaque) noexcept {
    return reinterpret_cast<AConversionFunctor*>(opaque);
}

} // namespace Quillon::DataConv

#endif
