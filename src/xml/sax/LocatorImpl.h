#ifndef ZUTARNEX_XML_SAX_LOCATORIMPL_H
#define ZUTARNEX_XML_SAX_LOCATORIMPL_H

#include "xml/sax/Locator.h"

#include <cstdint>

namespace Quillon::Xml::Sax {

/// A locator that holds what it was told: what an application makes to keep a position.
///
/// Layout: publicId, systemId, lineNumber, columnNumber (tests/abi/SaxAbiTest.cpp).
/// Throws: System::OutOfMemoryException from the constructors; ImmutableObjectWriteError from a setter when the
///         identifier was set to a literal before.
class ZUTARNEX_API LocatorImpl : public Locator {
public:
    LocatorImpl(); ///< empty identifiers, line 0, column 0
    /// What `locator` says now.
    LocatorImpl(const Locator& locator);
    LocatorImpl(const LocatorImpl& other);
    LocatorImpl&
    operator=(const LocatorImpl& other) noexcept; ///< takes over all values, whatever the old ones were
    ~LocatorImpl() override;

    XmlString getPublicId() const override;
    XmlString getSystemId() const override;
    long long getLineNumber() const override;
    long long getColumnNumber() const override;

    void setPublicId(const XmlString& publicId);
    void setSystemId(const XmlString& systemId);
    void setLineNumber(long long lineNumber) noexcept;
    void setColumnNumber(long long columnNumber) noexcept;

private:
    XmlString publicId_;
    XmlString systemId_;
    std::int64_t lineNumber_ = 0;
    std::int64_t columnNumber_ = 0;
};

} // namespace Quillon::Xml::Sax

#endif
