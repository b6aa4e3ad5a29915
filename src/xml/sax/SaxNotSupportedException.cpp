#include "xml/sax/SaxNotSupportedException.h"

namespace Quillon::Xml::Sax {

SaxNotSupportedException::SaxNotSupportedException() = default;

SaxNotSupportedException::SaxNotSupportedException(const XmlString& message) : SaxException(message) {}

SaxNotSupportedException::SaxNotSupportedException(const SaxNotSupportedException& other) = default;

SaxNotSupportedException&
SaxNotSupportedException::operator=(const SaxNotSupportedException& other) noexcept = default;

SaxNotSupportedException::~SaxNotSupportedException() = default;

} // namespace Quillon::Xml::Sax
