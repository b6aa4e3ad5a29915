#ifndef ZUTARNEX_SAXENGINE_NAMESTART_H
#define ZUTARNEX_SAXENGINE_NAMESTART_H

namespace Quillon::SaxEngine {

/// Whether a name without a colon may begin with this unit: `_` or a Letter, by the first four editions of XML 1.0
/// (production 84), which Expat follows. No character beyond U+FFFF is a Letter there.
bool isNameStart(unsigned short unit);

/// Whether Expat wrongly takes this unit for part of a name: U+00AA, U+00B5 or U+00BA, which are no Letters. It does so in
/// UTF-16 and ISO-8859-1, but not in UTF-8.
bool isForeignToNames(unsigned short unit);

} // namespace Quillon::SaxEngine

#endif
