#ifndef ZUTARNEX_SAXENGINE_EVENTLOCATOR_H
#define ZUTARNEX_SAXENGINE_EVENTLOCATOR_H

#include "Location.h"
#include "xml/sax/Locator2.h"

namespace Quillon::SaxEngine {

struct ParseContext;

/// The locator that handlers get: it asks the entity that is being read when it is asked.
class EventLocator final : public Xml::Sax::Locator2 {
public:
    explicit EventLocator(const ParseContext& context);
    ~EventLocator() override;

    Xml::XmlString getPublicId() const override;
    Xml::XmlString getSystemId() const override;
    long long getLineNumber() const override;
    long long getColumnNumber() const override;
    Xml::XmlString getXMLVersion() const override;
    Xml::XmlString getEncoding() const override;

private:
    const ParseContext& context_;
};

} // namespace Quillon::SaxEngine

#endif
