#include "xml/sax/SaxParseException.h"

#include "xml/sax/Locator.h"
#include "xml/sax/StringSlotInternal.h"

namespace Quillon::Xml::Sax {

SaxParseException::SaxParseException(const XmlString& message, const XmlString& publicId,
                                     const XmlString& systemId, long long lineNumber, long long columnNumber)
    : SaxException(message), publicId_(publicId), systemId_(systemId), lineNumber_(lineNumber),
      columnNumber_(columnNumber) {}

// Members are initialised in the order of their declaration, so the locator is asked in that order, too.
SaxParseException::SaxParseException(const XmlString& message, const Locator& locator)
    : SaxException(message), publicId_(locator.getPublicId()), systemId_(locator.getSystemId()),
      lineNumber_(locator.getLineNumber()), columnNumber_(locator.getColumnNumber()) {}

SaxParseException::SaxParseException(const SaxParseException& other) = default;

SaxParseException& SaxParseException::operator=(const SaxParseException& other) noexcept {
    if (this != &other) {
        SaxException::operator=(other);
        replaceSlot(publicId_, other.publicId_);
        replaceSlot(systemId_, other.systemId_);
        lineNumber_ = other.lineNumber_;
        columnNumber_ = other.columnNumber_;
    }
    return *this;
}

SaxParseException::~SaxParseException() = default;

XmlString SaxParseException::getPublicId() const {
    return publicId_;
}

XmlString SaxParseException::getSystemId() const {
    return systemId_;
}

long long SaxParseException::getLineNumber() const noexcept {
    return lineNumber_;
}

long long SaxParseException::getColumnNumber() const noexcept {
    return columnNumber_;
}

} // namespace Quillon::Xml::Sax
