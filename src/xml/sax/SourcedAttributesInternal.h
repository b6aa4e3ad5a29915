#ifndef ZUTARNEX_XML_SAX_SOURCEDATTRIBUTESINTERNAL_H
#define ZUTARNEX_XML_SAX_SOURCEDATTRIBUTESINTERNAL_H

#include "xml/sax/AttributeSourceInternal.h"

namespace Quillon::Xml::Sax {

/// The list that attributesFrom() makes. It answers as Attributes2Impl does, in the same words.
class SourcedAttributes final : public Attributes2 {
public:
    explicit SourcedAttributes(const AttributeSource& source) : source_(source) {}
    ~SourcedAttributes() override;

    const AttributeUnits& units() const noexcept { return source_; }

    unsigned int getLength() const override;
    XmlString getURI(unsigned int index) const override;
    XmlString getLocalName(unsigned int index) const override;
    XmlString getQName(unsigned int index) const override;
    XmlString getType(unsigned int index) const override;
    XmlString getValue(unsigned int index) const override;
    int getIndex(const XmlString& uri, const XmlString& localName) const override;
    int getIndex(const XmlString& qName) const override;
    XmlString getType(const XmlString& uri, const XmlString& localName) const override;
    XmlString getType(const XmlString& qName) const override;
    XmlString getValue(const XmlString& uri, const XmlString& localName) const override;
    XmlString getValue(const XmlString& qName) const override;
    bool isDeclared(unsigned int index) const override;
    bool isDeclared(const XmlString& qName) const override;
    bool isDeclared(const XmlString& uri, const XmlString& localName) const override;
    bool isSpecified(unsigned int index) const override;
    bool isSpecified(const XmlString& qName) const override;
    bool isSpecified(const XmlString& uri, const XmlString& localName) const override;

private:
    using Field = AttributeSource::Field;

    XmlString string(unsigned int index, Field field) const {
        const XmlString* const found = source_.string(index, field);
        return found != nullptr ? *found : XmlString();
    }
    bool has(unsigned int index, Field field, const XmlString& text) const {
        return source_.string(index, field)->compare(text) == 0;
    }
    void check(unsigned int index) const;

    const AttributeSource& source_;
};

} // namespace Quillon::Xml::Sax

#endif
