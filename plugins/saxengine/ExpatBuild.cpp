#include "ExpatBuild.h"

namespace Quillon::SaxEngine {

bool isUsableBuild(const XML_Feature* features) {
    bool hasWideCharacters = false, hasLargeSizes = false, hasDtd = false;
    for (const XML_Feature* f = features; f->feature != XML_FEATURE_END; ++f) {
        if (f->feature == XML_FEATURE_SIZEOF_XML_CHAR)
            hasWideCharacters = f->value == static_cast<long>(sizeof(unsigned short));
        else if (f->feature == XML_FEATURE_LARGE_SIZE)
            hasLargeSizes = true;
        else if (f->feature == XML_FEATURE_DTD)
            hasDtd = true;
    }
#ifdef XML_LARGE_SIZE
    constexpr bool kLargeSizes = true;
#else
    constexpr bool kLargeSizes = false;
#endif
    return hasWideCharacters && hasDtd && hasLargeSizes == kLargeSizes;
}

} // namespace Quillon::SaxEngine
