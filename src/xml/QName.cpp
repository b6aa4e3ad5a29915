#include "xml/QName.h"

#include "xml/XmlConstants.h"

namespace Quillon::Xml {

namespace {

/// Replaces `field`, also an immutable one or a view on somebody's buffer: create() looks at no flag.
void replace(XmlString& field, const XmlString& value) {
    field.create(0, nullptr, 0);
    field = value;
}

} // namespace

QName::QName(XmlString localPart) {
    init(XmlConstants::SC_Null_Ns_Uri(), localPart, XmlConstants::SC_Default_Ns_Prefix());
}

QName::QName(XmlString namespaceURI, XmlString localPart) {
    init(namespaceURI, localPart, XmlConstants::SC_Default_Ns_Prefix());
}

QName::QName(XmlString namespaceURI, XmlString localPart, XmlString prefix) {
    init(namespaceURI, localPart, prefix);
}

QName::QName(const QName& other) = default;

QName::~QName() = default;

QName& QName::operator=(const QName& other) {
    if (this != &other) {
        replace(namespaceURI_, other.namespaceURI_);
        replace(localPart_, other.localPart_);
        replace(prefix_, other.prefix_);
    }
    return *this;
}

void QName::init(const XmlString& namespaceURI, const XmlString& localPart, const XmlString& prefix) {
    namespaceURI_ = namespaceURI.isNull() ? XmlConstants::SC_Null_Ns_Uri() : namespaceURI;
    localPart_ = localPart;
    prefix_ = prefix;
}

XmlString QName::getNamespaceURI() const {
    return namespaceURI_;
}
XmlString QName::getLocalPart() const {
    return localPart_;
}
XmlString QName::getPrefix() const {
    return prefix_;
}

bool QName::operator==(const QName& other) const noexcept {
    return namespaceURI_.compare(other.namespaceURI_) == 0 && localPart_.compare(other.localPart_) == 0;
}

bool QName::operator!=(const QName& other) const noexcept {
    return !(*this == other);
}

} // namespace Quillon::Xml
