#include "MappingKeeper.h"

#include <algorithm>

namespace Quillon::Tool {

using Xml::XmlString;
using Xml::Sax::XmlFilterImpl;

MappingKeeper::MappingKeeper(Xml::Sax::XmlReader* parent) : XmlFilterImpl(parent) {}

MappingKeeper::~MappingKeeper() = default;

void MappingKeeper::startDocument() {
    mappings_.clear();
    depth_ = 0;
    XmlFilterImpl::startDocument();
}

void MappingKeeper::startPrefixMapping(const XmlString& prefix, const XmlString& uri) {
    mappings_.push_back({prefix, uri, 0, false});
}

void MappingKeeper::endPrefixMapping(const XmlString& prefix) {
    const auto last = std::find_if(mappings_.rbegin(), mappings_.rend(), [&](const Mapping& mapping) {
        return mapping.prefix.compare(prefix) == 0;
    });
    if (last != mappings_.rend())
        mappings_.erase(std::next(last).base());
}

void MappingKeeper::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                 const Xml::Sax::Attributes& attributes) {
    ++depth_;
    for (std::size_t i = 0; i < mappings_.size(); ++i) {
        Mapping& mapping = mappings_[i];
        if (mapping.depth != 0)
            continue;
        const bool isHidden =
            std::any_of(mappings_.begin() + static_cast<std::ptrdiff_t>(i) + 1, mappings_.end(),
                        [&](const Mapping& later) { return later.prefix.compare(mapping.prefix) == 0; });
        mapping.depth = depth_;
        mapping.isAnnounced = !isHidden;
        if (!isHidden)
            XmlFilterImpl::startPrefixMapping(mapping.prefix, mapping.uri);
    }
    XmlFilterImpl::startElement(uri, localName, qName, attributes);
}

void MappingKeeper::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    XmlFilterImpl::endElement(uri, localName, qName);
    for (auto mapping = mappings_.rbegin(); mapping != mappings_.rend() && mapping->depth == depth_;
         ++mapping) {
        if (mapping->isAnnounced)
            XmlFilterImpl::endPrefixMapping(mapping->prefix);
        mapping->depth = 0;
    }
    --depth_;
}

} // namespace Quillon::Tool
