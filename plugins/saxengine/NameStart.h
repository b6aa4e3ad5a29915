#ifndef ZUTARNEX_SAXENGINE_NAMESTART_H
#define ZUTARNEX_SAXENGINE_NAMESTART_H

namespace Quillon::SaxEngine {

/// Whether a name without a colon may begin with this unit: `_` or a Letter, by the first four editions of XML 1.0
/// (production 84), which Expat follows. No character beyond U+FFFF is a Letter there.
bool isNameStart(unsigned short unit);

} // namespace Quillon::SaxEngine

#endif
