#ifndef ZUTARNEX_XML_SAX_LOCATOR2IMPL_H
#define ZUTARNEX_XML_SAX_LOCATOR2IMPL_H

#include "xml/sax/Locator2.h"
#include "xml/sax/LocatorImpl.h"

namespace Quillon::Xml::Sax {

/// A LocatorImpl that also holds the encoding and the XML version.
///
/// It has two Locator parts: convert to `LocatorImpl*` or `Locator2*` first.
///
/// Layout: LocatorImpl, Locator2; encoding, xmlVersion (tests/abi/SaxAbiTest.cpp).
/// Throws: as LocatorImpl.
class ZUTARNEX_API Locator2Impl : public LocatorImpl, public Locator2 {
public:
    Locator2Impl(); ///< as LocatorImpl; null encoding, null version
    /// What `locator` says now; encoding and version stay null when it is no Locator2.
    Locator2Impl(const Locator& locator);
    Locator2Impl(const Locator2Impl& other);
    Locator2Impl&
    operator=(const Locator2Impl& other) noexcept; ///< takes over all values, whatever the old ones were
    ~Locator2Impl() override;

    XmlString getPublicId() const override;
    XmlString getSystemId() const override;
    long long getLineNumber() const override;
    long long getColumnNumber() const override;
    XmlString getXMLVersion() const override;
    XmlString getEncoding() const override;

    void setXMLVersion(const XmlString& xmlVersion);
    void setEncoding(const XmlString& encoding);

private:
    XmlString encoding_;
    XmlString xmlVersion_;
};

} // namespace Quillon::Xml::Sax

#endif
