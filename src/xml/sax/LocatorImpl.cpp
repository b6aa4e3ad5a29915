#include "xml/sax/LocatorImpl.h"

#include "xml/sax/StringSlotInternal.h"

namespace Quillon::Xml::Sax {

LocatorImpl::LocatorImpl() : publicId_(emptyString()), systemId_(emptyString()) {}

LocatorImpl::LocatorImpl(const Locator& locator) : LocatorImpl() {
    setPublicId(locator.getPublicId());
    setSystemId(locator.getSystemId());
    setLineNumber(locator.getLineNumber());
    setColumnNumber(locator.getColumnNumber());
}

LocatorImpl::LocatorImpl(const LocatorImpl& other) = default;

LocatorImpl& LocatorImpl::operator=(const LocatorImpl& other) noexcept {
    if (this != &other) {
        replaceSlot(publicId_, other.publicId_);
        replaceSlot(systemId_, other.systemId_);
        lineNumber_ = other.lineNumber_;
        columnNumber_ = other.columnNumber_;
    }
    return *this;
}

LocatorImpl::~LocatorImpl() = default;

XmlString LocatorImpl::getPublicId() const {
    return publicId_;
}

XmlString LocatorImpl::getSystemId() const {
    return systemId_;
}

long long LocatorImpl::getLineNumber() const {
    return lineNumber_;
}

long long LocatorImpl::getColumnNumber() const {
    return columnNumber_;
}

void LocatorImpl::setPublicId(const XmlString& publicId) {
    publicId_ = publicId;
}

void LocatorImpl::setSystemId(const XmlString& systemId) {
    systemId_ = systemId;
}

void LocatorImpl::setLineNumber(long long lineNumber) noexcept {
    lineNumber_ = lineNumber;
}

void LocatorImpl::setColumnNumber(long long columnNumber) noexcept {
    columnNumber_ = columnNumber;
}

} // namespace Quillon::Xml::Sax
