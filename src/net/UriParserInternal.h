#ifndef ZUTARNEX_NET_URIPARSERINTERNAL_H
#define ZUTARNEX_NET_URIPARSERINTERNAL_H

#include "net/UriTextInternal.h"

namespace Quillon::Net {

/// Where the components of a text lie.
struct UriParts {
    TextRange scheme, authority, path, query, fragment, userInfo, host;
    int port = -1; ///< clamped to what an int holds; an escape ends the number
};

/// How the parser says that there is no memory.
[[noreturn]] void throwOutOfMemory();

/// Takes `text` apart, allocating nothing. Throws: URISyntaxException; throwOutOfMemory() for a text of 4 GiB - 1 or more,
/// whatever stands in it.
UriParts parseUri(const unsigned char* text);

} // namespace Quillon::Net

#endif
