#include "support/UriLoad.h"

namespace Quillon::Bench {

namespace {

std::vector<std::string> numbered(const std::string& before, const std::string& behind) {
    std::vector<std::string> texts;
    for (int i = 10; i < 74; ++i)
        texts.push_back(before + std::to_string(i) + behind);
    return texts;
}

} // namespace

const std::vector<std::string>& uris() {
    static const std::vector<std::string> texts =
        numbered("http://www.example.com:8080/shapes/folder/item-", ".xml?view=1#place");
    return texts;
}

const std::vector<std::string>& relativeReferences() {
    static const std::vector<std::string> texts = numbered("../../styles/./sheet-", ".css?media=print");
    return texts;
}

const std::string& baseUri() {
    static const std::string text = "http://www.example.com:8080/shapes/folder/deeper/item.xml?view=1";
    return text;
}

const std::vector<std::string>& looseUris() {
    static const std::vector<std::string> texts =
        numbered("HTTP://www.Example.COM/shapes/./folder/../item-", ".xml?view=1#place");
    return texts;
}

} // namespace Quillon::Bench
