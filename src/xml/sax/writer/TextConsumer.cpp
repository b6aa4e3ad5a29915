#include "xml/sax/writer/TextConsumer.h"

#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/writer/SaxMessageInternal.h"

namespace Quillon::Xml::Sax {

namespace {

constexpr Utf16Literal kProperty(u"Property: ");

} // namespace

TextConsumer::TextConsumer(std::ostream& out) : XmlWriter(out) {}

TextConsumer::~TextConsumer() = default;

ContentHandler* TextConsumer::getContentHandler() const {
    return const_cast<TextConsumer*>(this);
}

DTDHandler* TextConsumer::getDTDHandler() const {
    return const_cast<TextConsumer*>(this);
}

// The part first, then void*: who casts the void* back to that part's type must get an address that is right.
void* TextConsumer::getProperty(const XmlString& name) const {
    auto* self = const_cast<TextConsumer*>(this);
    if (name.compare(SC_Properties_LexicalHandler()) == 0)
        return static_cast<LexicalHandler*>(self);
    if (name.compare(SC_Properties_DeclarationHandler()) == 0)
        return static_cast<DeclHandler*>(self);
    throw SaxNotRecognizedException(prefixed(kProperty.units, name));
}

void TextConsumer::setErrorHandler(ErrorHandler* handler) {
    XmlWriter::setErrorHandler(handler);
}

} // namespace Quillon::Xml::Sax
