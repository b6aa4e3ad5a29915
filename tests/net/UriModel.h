#ifndef ZUTARNEX_TESTS_NET_URIMODEL_H
#define ZUTARNEX_TESTS_NET_URIMODEL_H

#include <cstddef>
#include <optional>
#include <string>

namespace Quillon::Testing {

// What the library's URIs are held against: slow, and written rule by rule on standard strings.

struct ModelUri {
    std::optional<std::string> scheme{}, authority{}, path{}, query{}, fragment{}, userInfo{}, host{};
    int port = -1;
};

struct ModelFault {
    std::string reason;
    std::size_t index;
};

struct ModelParse {
    ModelUri uri; ///< with the port that was read; empty when there is a fault
    std::optional<ModelFault> fault;
};

ModelParse modelParse(const std::string& text);

/// A copy as all operations make it: without the port.
ModelUri modelCopy(const ModelUri& uri);

std::string modelWithoutDotSegments(const std::string& path);
std::string modelMerge(const ModelUri& base, const std::string& reference);
std::string modelRelativePath(const std::string& base, const std::string& target);

std::string modelRecompose(const ModelUri& uri);
ModelUri modelResolve(const ModelUri& reference, const ModelUri& base, bool strict);
ModelUri modelRelativize(const ModelUri& target, const ModelUri& base);
ModelUri modelNormalize(const ModelUri& uri);
bool modelEqual(const ModelUri& a, const ModelUri& b);

} // namespace Quillon::Testing

#endif
