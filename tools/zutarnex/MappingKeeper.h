#ifndef ZUTARNEX_TOOLS_MAPPINGKEEPER_H
#define ZUTARNEX_TOOLS_MAPPINGKEEPER_H

#include "xml/sax/XmlFilterImpl.h"

#include <vector>

namespace Quillon::Tool {

/// Puts prefix mappings back in front of elements. Where a filter takes away an element and leaves its content, the
/// mappings that the element brought stand in front of nothing; the elements inside still need them. Each of those
/// gets them announced before it starts and ended behind it.
class MappingKeeper : public Xml::Sax::XmlFilterImpl {
public:
    explicit MappingKeeper(Xml::Sax::XmlReader* parent);
    ~MappingKeeper() override;

    void startDocument() override;
    void startPrefixMapping(const Xml::XmlString& prefix, const Xml::XmlString& uri) override;
    void endPrefixMapping(const Xml::XmlString& prefix) override;
    void startElement(const Xml::XmlString& uri, const Xml::XmlString& localName, const Xml::XmlString& qName,
                      const Xml::Sax::Attributes& attributes) override;
    void endElement(const Xml::XmlString& uri, const Xml::XmlString& localName,
                    const Xml::XmlString& qName) override;

private:
    struct Mapping {
        Xml::XmlString prefix, uri;
        std::size_t depth; ///< of the element in front of which it stands now; 0: of none
        bool isAnnounced;  ///< false also where another mapping of the prefix hides it
    };

    std::vector<Mapping> mappings_; ///< in the order of their events
    std::size_t depth_ = 0;
};

} // namespace Quillon::Tool

#endif
