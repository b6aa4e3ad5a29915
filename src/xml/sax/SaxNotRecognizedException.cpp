#include "xml/sax/SaxNotRecognizedException.h"

namespace Quillon::Xml::Sax {

SaxNotRecognizedException::SaxNotRecognizedException() = default;

SaxNotRecognizedException::SaxNotRecognizedException(const XmlString& message) : SaxException(message) {}

SaxNotRecognizedException::SaxNotRecognizedException(const SaxNotRecognizedException& other) = default;

SaxNotRecognizedException&
SaxNotRecognizedException::operator=(const SaxNotRecognizedException& other) noexcept = default;

SaxNotRecognizedException::~SaxNotRecognizedException() = default;

} // namespace Quillon::Xml::Sax
