#ifndef ZUTARNEX_DATACONV_ACONVERSIONFUNCTOR_H
#define ZUTARNEX_DATACONV_ACONVERSIONFUNCTOR_H

#include "zutarnex/export.h"

namespace Quillon::DataConv {

/// What the nodes of the registry hold: some conversion between two types. It carries no data.
class ZUTARNEX_API AConversionFunctor {
public:
    virtual ~AConversionFunctor() = 0;
};

} // namespace Quillon::DataConv

#endif
