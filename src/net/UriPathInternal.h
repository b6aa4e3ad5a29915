#ifndef ZUTARNEX_NET_URIPATHINTERNAL_H
#define ZUTARNEX_NET_URIPATHINTERNAL_H

#include "net/UriTextInternal.h"

namespace Quillon::Net {

/// RFC 3986, section 5.2.4, in place: what has been put out never reaches what is still to be read. `path` is
/// terminated again behind the result.
void removeDotSegments(unsigned char* path) noexcept;

/// RFC 3986, section 5.2.3. Throws: System::OutOfMemoryException.
OwnedText mergePaths(TextRange basePath, bool baseHasAuthority, TextRange reference);

/// The way from one path to another. Throws: System::OutOfMemoryException.
OwnedText relativePath(TextRange base, TextRange target);

} // namespace Quillon::Net

#endif
