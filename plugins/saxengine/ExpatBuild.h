#ifndef ZUTARNEX_SAXENGINE_EXPATBUILD_H
#define ZUTARNEX_SAXENGINE_EXPATBUILD_H

#include <expat.h>

namespace Quillon::SaxEngine {

/// Whether a list of XML_GetFeatureList is that of an Expat with characters of 16 bits, which also counts places as its
/// header says. Expat's builds share their function names: the wrong one would link, and read garbage.
bool isUsableBuild(const XML_Feature* features);

} // namespace Quillon::SaxEngine

#endif
