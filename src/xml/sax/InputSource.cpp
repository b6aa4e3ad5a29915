#include "xml/sax/InputSource.h"

#include "xml/sax/StringSlotInternal.h"

namespace Quillon::Xml::Sax {

InputSource::InputSource() : InputSource(static_cast<ReadableByteChannel*>(nullptr)) {}

InputSource::InputSource(ReadableByteChannel* byteChannel)
    : publicId_(emptyString()), systemId_(emptyString()), encoding_(emptyString()),
      byteChannel_(byteChannel) {}

InputSource::InputSource(XmlString systemId) : InputSource() {
    setSystemId(systemId);
}

InputSource::InputSource(const InputSource& other) = default;

InputSource& InputSource::operator=(const InputSource& other) noexcept {
    if (this != &other) {
        replaceSlot(publicId_, other.publicId_);
        replaceSlot(systemId_, other.systemId_);
        replaceSlot(encoding_, other.encoding_);
        byteChannel_ = other.byteChannel_;
    }
    return *this;
}

InputSource::~InputSource() = default;

XmlString InputSource::getPublicId() const {
    return publicId_;
}

XmlString InputSource::getSystemId() const {
    return systemId_;
}

XmlString InputSource::getEncoding() const {
    return encoding_;
}

ReadableByteChannel* InputSource::getByteChannel() const noexcept {
    return byteChannel_;
}

void InputSource::setPublicId(XmlString publicId) {
    publicId_ = publicId;
}

void InputSource::setSystemId(XmlString systemId) {
    systemId_ = systemId;
}

void InputSource::setEncoding(XmlString encoding) {
    encoding_ = encoding;
}

void InputSource::setByteChannel(ReadableByteChannel* byteChannel) noexcept {
    byteChannel_ = byteChannel;
}

} // namespace Quillon::Xml::Sax
