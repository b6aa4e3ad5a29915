#ifndef ZUTARNEX_NET_URIPARSERINTERNAL_H
#define ZUTARNEX_NET_URIPARSERINTERNAL_H

#include "net/UriTextInternal.h"

namespace Quillon::Net {

/// Where the components of a text lie.
struct UriParts {
    TextRange scheme, authority, path, query, fragment, userInfo, host;
    int port = -1; ///< clamped to what an int holds; an escape ends the number
};

/// Takes `text` apart, allocating nothing. Throws: URISyntaxException. REQUIRES: fewer than 2^32 bytes.
UriParts parseUri(const unsigned char* text);

} // namespace Quillon::Net

#endif
