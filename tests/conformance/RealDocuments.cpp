#include "conformance/RealDocuments.h"

#include "support/SharedData.h"
#include "support/Text.h"
#include "xml/XmlString.h"
#include "xml/sax/InputSource.h"

#include <algorithm>
#include <filesystem>

namespace Quillon::Testing {

using Xml::XmlString;
using Xml::Sax::InputSource;

namespace {

/// A source with nothing in it.
InputSource* emptySource() {
    return new InputSource(Xml::makeString("/dev/null"));
}

} // namespace

std::vector<std::string> realDocuments() {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sharedDataPath("real"))) {
        const std::filesystem::path& path = entry.path();
        const bool isForDtds =
            path.extension() == ".dtd" || path.extension() == ".ent" || path.extension() == ".md";
        if (entry.is_regular_file() && !isForDtds)
            paths.push_back(path.string());
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

RealDocumentResolver::~RealDocumentResolver() = default;

InputSource* RealDocumentResolver::resolveEntity(const XmlString&, const XmlString& systemId) {
    const std::string uri = show(systemId);
    const std::string copy = sharedDataPath("real/xhtml-dtd/") + uri.substr(uri.rfind('/') + 1);
    if (std::filesystem::exists(copy))
        return new InputSource(Xml::makeString(copy.c_str()));
    const bool isHere = uri.starts_with("file://") && std::filesystem::exists(uri.substr(7));
    return isHere ? nullptr : emptySource();
}

} // namespace Quillon::Testing
