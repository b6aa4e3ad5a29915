#ifndef ZUTARNEX_SAXENGINE_SYSTEMIDENTIFIER_H
#define ZUTARNEX_SAXENGINE_SYSTEMIDENTIFIER_H

#include <string>

namespace Quillon::SaxEngine {

// System identifiers are texts in UTF-8 here. Those that the application gives are paths or URIs; those that a
// declaration gives are references relative to the URI of the resource that holds it.

/// The URI of an identifier from the application: a path, relative ones to the current folder, becomes a file: URI;
/// what has a scheme is left as it is.
std::string absoluteUri(const std::string& systemId);

/// The URI that `reference` means in a resource at the URI `base` (RFC 3986, section 5.2). An empty base stands for the
/// current folder.
std::string resolvedUri(const std::string& base, const std::string& reference);

/// The path, in bytes, of the file that an identifier names: itself, or that of a file: URI with an empty authority or
/// `localhost`.
///
/// Throws: SaxException for every other URI, naming it.
std::string pathOf(const std::string& systemId);

} // namespace Quillon::SaxEngine

#endif
