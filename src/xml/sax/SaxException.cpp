#include "xml/sax/SaxException.h"

#include "xml/sax/StringSlotInternal.h"

namespace Quillon::Xml::Sax {

SaxException::SaxException() : message_(emptyString()) {}

SaxException::SaxException(const XmlString& message) : message_(message) {}

SaxException::SaxException(const SaxException& other) = default;

SaxException& SaxException::operator=(const SaxException& other) noexcept {
    if (this != &other)
        replaceSlot(message_, other.message_);
    return *this;
}

SaxException::~SaxException() = default;

XmlString SaxException::getMessage() const {
    return message_;
}

} // namespace Quillon::Xml::Sax
