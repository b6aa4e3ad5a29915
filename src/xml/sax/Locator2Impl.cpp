#include "xml/sax/Locator2Impl.h"

#include "xml/sax/StringSlotInternal.h"

namespace Quillon::Xml::Sax {

Locator2Impl::Locator2Impl() = default;

Locator2Impl::Locator2Impl(const Locator& locator) : LocatorImpl(locator) {
    if (const auto* locator2 = dynamic_cast<const Locator2*>(&locator)) {
        setXMLVersion(locator2->getXMLVersion());
        setEncoding(locator2->getEncoding());
    }
}

Locator2Impl::Locator2Impl(const Locator2Impl& other) = default;

Locator2Impl& Locator2Impl::operator=(const Locator2Impl& other) noexcept {
    if (this != &other) {
        LocatorImpl::operator=(other);
        replaceSlot(encoding_, other.encoding_);
        replaceSlot(xmlVersion_, other.xmlVersion_);
    }
    return *this;
}

Locator2Impl::~Locator2Impl() = default;

XmlString Locator2Impl::getPublicId() const {
    return LocatorImpl::getPublicId();
}

XmlString Locator2Impl::getSystemId() const {
    return LocatorImpl::getSystemId();
}

long long Locator2Impl::getLineNumber() const {
    return LocatorImpl::getLineNumber();
}

long long Locator2Impl::getColumnNumber() const {
    return LocatorImpl::getColumnNumber();
}

XmlString Locator2Impl::getXMLVersion() const {
    return xmlVersion_;
}

XmlString Locator2Impl::getEncoding() const {
    return encoding_;
}

void Locator2Impl::setXMLVersion(const XmlString& xmlVersion) {
    xmlVersion_ = xmlVersion;
}

void Locator2Impl::setEncoding(const XmlString& encoding) {
    encoding_ = encoding;
}

} // namespace Quillon::Xml::Sax
