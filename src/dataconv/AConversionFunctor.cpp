#include "dataconv/AConversionFunctor.h"

namespace Quillon::DataConv {

AConversionFunctor::~AConversionFunctor() = default;

} // namespace Quillon::DataConv
