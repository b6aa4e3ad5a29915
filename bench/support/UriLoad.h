#ifndef ZUTARNEX_BENCH_SUPPORT_URILOAD_H
#define ZUTARNEX_BENCH_SUPPORT_URILOAD_H

#include <string>
#include <vector>

namespace Quillon::Bench {

/// 64 URIs of 65 bytes with every component but user information.
const std::vector<std::string>& uris();
/// 64 relative references with dot segments.
const std::vector<std::string>& relativeReferences();
const std::string& baseUri();
/// 64 URIs with capital letters in scheme and host and dot segments in the path.
const std::vector<std::string>& looseUris();

} // namespace Quillon::Bench

#endif
