#include "xml/sax/writer/XmlWriter.h"

#include "runtime/ThrowGuardInternal.h"
#include "xml/IllegalArgumentException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/Attributes.h"
#include "xml/sax/AttributesReadingInternal.h"
#include "xml/sax/LocatorImpl.h"
#include "xml/sax/SaxException.h"
#include "xml/sax/writer/EscapingInternal.h"
#include "xml/sax/writer/EventOutputInternal.h"

#include <cstring>
#include <iostream>
#include <new>
#include <utility>

namespace Quillon::Xml::Sax {

namespace {

constexpr char kUtf8[] = "UTF-8";
constexpr char kUsAscii[] = "US-ASCII";
constexpr char kIso88591[] = "ISO-8859-1";
constexpr std::uint16_t kBeyondUsAscii = 0xFF80;
constexpr std::uint16_t kBeyondIso88591 = 0xFF00;

constexpr Utf16Literal kEndOfLine(u"\n");
constexpr Utf16Literal kCanonicalEndOfLine(u"\n");

constexpr Utf16Literal kNoXmlName(u"no XML name");
constexpr Utf16Literal kUnknownContext(u"unknown escape context");
constexpr Utf16Literal kNoCharacters(u"characters expected at a null pointer");

template <std::size_t N>
XmlString viewOn(const Utf16Literal<N>& literal) {
    return XmlString(Immutable | Borrowed, literal.units, N - 1);
}

/// The narrow throw declaration of the events.
template <class Body>
void asEvent(Body&& body) {
    Runtime::letEscapeOnly<SaxException>(std::forward<Body>(body));
}

/// The same for an event that writes.
template <class Body>
void asEvent(const XmlWriter& writer, Body&& body) {
    asEvent([&] { writing(writer, body); });
}

LocatorImpl* makeEmptyLocator(void* place) {
    auto* locator = ::new (place) LocatorImpl;
    const XmlString empty(Immutable | Borrowed, kEndOfLine.units + 1, 0);
    locator->setPublicId(empty); // gives the blocks of the owned empty strings back
    locator->setSystemId(empty);
    return locator;
}

/// The locator of all writers that were given none. Nothing is ever stored in it. It lies in static storage without
/// being destroyed and holds no block, so it can outlive everything without being a leak.
LocatorImpl& ownLocator() {
    alignas(LocatorImpl) static unsigned char storage[sizeof(LocatorImpl)];
    static LocatorImpl* const locator = makeEmptyLocator(storage);
    return *locator;
}

/// The `length` units from `ch` + `start`. An array may be missing only where nothing is to be read.
Units unitsAt(const unsigned short* ch, unsigned int start, unsigned int length) {
    static constexpr unsigned short kNone = 0;
    if (ch != nullptr)
        return Units(ch + start, length);
    if (length != 0)
        throw SaxException(viewOn(kNoCharacters));
    return Units(&kNone, 0);
}

void putEscaped(EventOutput& out, const unsigned short* ch, unsigned int start, unsigned int length,
                XmlWriter::EscapeContext context) {
    if (length != 0)
        putEscaped(out, unitsAt(ch, start, length), context);
}

void putXmlDeclaration(EventOutput& out, const char* encoding) {
    out.put("<?xml version=\"1.0\" encoding=\"");
    if (EventOutput::knows(encoding))
        out.put(std::string_view(encoding));
    else
        out.put(makeString(encoding));
    out.put('"');
    out.put("?>");
    out.put('\n');
}

/// Puts `>` and a line end.
void endDeclaration(EventOutput& out) {
    out.put('>');
    out.put('\n');
}

/// Puts `identifier` and the quotation mark behind it.
void putIdentifierQuote(EventOutput& out, const XmlString& identifier) {
    out.put(identifier);
    out.put('"');
}

void putIdentifier(EventOutput& out, const XmlString& identifier) {
    out.put('"');
    putIdentifierQuote(out, identifier);
}

/// Puts a name, setting the `%` of a parameter entity apart.
void putEntityName(EventOutput& out, const XmlString& name) {
    const Units units = unitsOf(name);
    if (units.empty() || units.front() != u'%')
        return out.put(name);
    out.put('%');
    out.put(' ');
    out.put(units.subspan(1));
}

/// Puts the external identifier of a DOCTYPE and a space, or nothing when there is none.
void putExternalId(EventOutput& out, const XmlString& publicId, const XmlString& systemId) {
    if (!publicId.isNull()) {
        out.put("PUBLIC \"");
        putIdentifierQuote(out, publicId);
        out.put(' ');
        putIdentifier(out, systemId);
        out.put(' ');
    } else if (!systemId.isNull()) {
        out.put("SYSTEM \"");
        putIdentifierQuote(out, systemId);
        out.put(' ');
    }
}

/// Puts `PUBLIC "p"`, or `SYSTEM ` when there is no public identifier.
void putPublicIdOrSystem(EventOutput& out, const XmlString& publicId) {
    if (publicId.isNull())
        return out.put("SYSTEM ");
    out.put("PUBLIC \"");
    putIdentifierQuote(out, publicId);
}

/// Puts a name with what stands before and behind it; without a name for a null string.
void putName(EventOutput& out, std::string_view before, const XmlString& name, std::string_view after) {
    if (!XmlStringReading::isNull(name))
        return out.put(before, unitsOf(name), after);
    out.put(before);
    for (const char c : after)
        out.put(c);
}

/// Puts a space, the name of an attribute and what stands behind it.
void putAttributeName(EventOutput& out, Units name, std::string_view after) {
    if (name.empty())
        IllegalArgumentException::doThrow(viewOn(kNoXmlName));
    out.put(" ", name, after);
}

void putAttributes(EventOutput& out, const AttributeUnits& list) {
    AttributeUnits::Entry attribute;
    for (unsigned int i = 0; i < list.length(); ++i) {
        list.read(i, attribute);
        putAttributeName(out, attribute.qName, "=\"");
        putQuotedRest(out, attribute.value, XmlWriter::AttributeValue);
    }
}

/// What a list of somebody else's says. It may look at the stream, write to it, and change the writer.
template <class Question>
auto asked(EventOutput& out, Question question) {
    out.flush();
    auto answer = question();
    out.reread();
    return answer;
}

void putAttributes(EventOutput& out, const Attributes& list) {
    for (unsigned int i = 0; i < asked(
                                 out, [&] { return list.getLength(); });
         ++i) {
        const XmlString name = asked(out, [&] { return list.getQName(i); });
        putAttributeName(out, unitsOf(name), "=");
        const XmlString value = asked(out, [&] { return list.getValue(i); });
        putQuoted(out, unitsOf(value), XmlWriter::AttributeValue);
    }
}

void putStartTag(EventOutput& out, const XmlString& qName, const Attributes& attributes) {
    putName(out, "<", qName, "");
    const AttributesReading reading(attributes);
    if (reading.units() != nullptr)
        putAttributes(out, *reading.units());
    else
        putAttributes(out, attributes);
    out.put('>');
}

} // namespace

XmlWriter::XmlWriter() : XmlWriter(std::cout) {}

XmlWriter::XmlWriter(std::ostream& out) : encoding_(kUtf8), out_(&out) {
    ownLocator(); // makes it now, so that no event has to
}

XmlWriter::~XmlWriter() = default;

void XmlWriter::setEncoding(const char* name) {
    encoding_ = name;
    if (name == nullptr)
        return;
    if (std::strcmp(name, kUtf8) == 0)
        unwritableMask_ = 0;
    else if (std::strcmp(name, kUsAscii) == 0)
        unwritableMask_ = kBeyondUsAscii;
    else if (std::strcmp(name, kIso88591) == 0)
        unwritableMask_ = kBeyondIso88591;
}

const char* XmlWriter::getEncoding() const {
    return encoding_;
}

void XmlWriter::setCanonical(bool on) {
    canonical_ = on;
    if (on)
        expandingEntities(true);
}

bool XmlWriter::isCanonical() const {
    return canonical_;
}

void XmlWriter::setErrorHandler(ErrorHandler* handler) {
    errorHandler_ = handler;
}

bool XmlWriter::inCDATA() const {
    return inCDATA_;
}
void XmlWriter::inCDATA(bool on) {
    inCDATA_ = on;
}
bool XmlWriter::inEpilogue() const {
    return inEpilogue_;
}
void XmlWriter::inEpilogue(bool on) {
    inEpilogue_ = on;
}
bool XmlWriter::inDoctype() const {
    return inDoctype_;
}
void XmlWriter::inDoctype(bool on) {
    inDoctype_ = on;
}
bool XmlWriter::startedDoctype() const {
    return startedDoctype_;
}
void XmlWriter::startedDoctype(bool on) {
    startedDoctype_ = on;
}
bool XmlWriter::expandingEntities() const {
    return expandingEntities_;
}
void XmlWriter::expandingEntities(bool on) {
    expandingEntities_ = on;
}

void XmlWriter::rawWrite(const unsigned short* ch, unsigned int start, unsigned int length) {
    writing(*this, [&](EventOutput& out) { out.put(unitsAt(ch, start, length)); });
}

void XmlWriter::rawWrite(const XmlString& s) {
    writing(*this, [&](EventOutput& out) { out.put(s); });
}

void XmlWriter::rawWrite(unsigned short c) {
    rawWrite(&c, 0, 1);
}

XmlString XmlWriter::eol() const {
    return canonical_ ? viewOn(kCanonicalEndOfLine) : viewOn(kEndOfLine);
}

void XmlWriter::newLine() {
    rawWrite(eol());
}

void XmlWriter::escapeChars(const unsigned short* ch, unsigned int start, unsigned int length,
                            EscapeContext context) {
    if (length == 0)
        return;
    if (context < EntityValue || context > UnescapedText)
        IllegalArgumentException::doThrow(viewOn(kUnknownContext));
    writing(*this, [&](EventOutput& out) { putEscaped(out, ch, start, length, context); });
}

void XmlWriter::writeQuotedValue(const XmlString& value, EscapeContext context) {
    writing(*this, [&](EventOutput& out) {
        if (context < EntityValue || context > UnescapedText) {
            out.put('"');
            if (!unitsOf(value).empty())
                IllegalArgumentException::doThrow(viewOn(kUnknownContext));
            return out.put('"');
        }
        putQuoted(out, unitsOf(value), context);
    });
}

void XmlWriter::writeStartTag(const XmlString& qName, const Attributes& attributes) {
    writing(*this, [&](EventOutput& out) { putStartTag(out, qName, attributes); });
}

void XmlWriter::ensureLocator() {
    if (locator_ == nullptr)
        locator_ = &ownLocator();
}

bool XmlWriter::writesDeclarations() const {
    return startedDoctype_ && entityDepth_ == 0;
}

void XmlWriter::setDocumentLocator(Locator* locator) {
    locator_ = locator;
}

void XmlWriter::startDocument() {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        if (!canonical_ && unwritableMask_ != kBeyondUsAscii && encoding_ != nullptr)
            putXmlDeclaration(out, encoding_);
        entityDepth_ = 0;
    });
}

void XmlWriter::endDocument() {
    asEvent(*this, [&](EventOutput& out) {
        if (canonical_)
            return;
        out.put('\n');
        out.put('\n');
    });
}

void XmlWriter::startPrefixMapping(const XmlString&, const XmlString&) {}

void XmlWriter::endPrefixMapping(const XmlString&) {}

void XmlWriter::startElement(const XmlString&, const XmlString&, const XmlString& qName,
                             const Attributes& attributes) {
    asEvent(*this, [&](EventOutput& out) {
        startedDoctype_ = false;
        ensureLocator();
        putStartTag(out, qName, attributes);
    });
}

void XmlWriter::endElement(const XmlString&, const XmlString&, const XmlString& qName) {
    asEvent(*this, [&](EventOutput& out) { putName(out, "</", qName, ">"); });
}

void XmlWriter::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        putEscaped(out, ch, start, length, inCDATA_ ? UnescapedText : CharacterData);
    });
}

void XmlWriter::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        putEscaped(out, ch, start, length, CharacterData);
    });
}

void XmlWriter::processingInstruction(const XmlString& target, const XmlString& data) {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        if (canonical_ && inEpilogue_)
            out.put('\n');
        out.put("<?");
        out.put(target);
        out.put(' ');
        putEscaped(out, unitsOf(data), UnescapedText);
        out.put("?>");
    });
}

void XmlWriter::skippedEntity(const XmlString& name) {
    asEvent(*this, [&](EventOutput& out) {
        out.put('&');
        out.put(name);
        out.put(';');
    });
}

void XmlWriter::startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        inDoctype_ = true;
        startedDoctype_ = true;
        if (canonical_)
            return;
        out.put("<!DOCTYPE ");
        out.put(name);
        out.put(' ');
        if (!expandingEntities_)
            putExternalId(out, publicId, systemId);
        out.put('[');
        out.put('\n');
    });
}

void XmlWriter::endDTD() {
    asEvent(*this, [&](EventOutput& out) {
        inDoctype_ = false;
        if (canonical_)
            return;
        out.put("]>");
        out.put('\n');
    });
}

void XmlWriter::startEntity(const XmlString&) {}

void XmlWriter::endEntity(const XmlString&) {
    if (!expandingEntities_) // wraps around like the 32-bit counter that it is
        entityDepth_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(entityDepth_) - 1U);
}

void XmlWriter::startCDATA() {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        if (canonical_)
            return;
        inCDATA_ = true;
        if (entityDepth_ == 0)
            out.put("<![CDATA[");
    });
}

void XmlWriter::endCDATA() {
    asEvent(*this, [&](EventOutput& out) {
        if (canonical_)
            return;
        inCDATA_ = false;
        if (entityDepth_ == 0)
            out.put("]]>");
    });
}

void XmlWriter::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    asEvent(*this, [&](EventOutput& out) {
        ensureLocator();
        if (canonical_ && inDoctype_)
            return;
        if (canonical_ && inEpilogue_)
            out.put('\n');
        out.put("<!--");
        putEscaped(out, ch, start, length, UnescapedText);
        out.put("-->");
    });
}

void XmlWriter::notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    asEvent(*this, [&](EventOutput& out) {
        if (!writesDeclarations())
            return;
        out.put("<!NOTATION ");
        out.put(name);
        out.put(' ');
        putPublicIdOrSystem(out, publicId);
        if (!systemId.isNull())
            putIdentifier(out, systemId);
        endDeclaration(out);
    });
}

void XmlWriter::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                   const XmlString& systemId, const XmlString& notationName) {
    asEvent(*this, [&](EventOutput& out) {
        if (!writesDeclarations())
            return;
        out.put("<!ENTITY ");
        out.put(name);
        out.put(' ');
        putPublicIdOrSystem(out, publicId);
        putIdentifier(out, systemId);
        out.put(" NDATA ");
        out.put(notationName);
        endDeclaration(out);
    });
}

void XmlWriter::elementDecl(const XmlString& name, const XmlString& model) {
    asEvent(*this, [&](EventOutput& out) {
        if (!writesDeclarations())
            return;
        out.put("<!ELEMENT ");
        out.put(name);
        out.put(' ');
        out.put(model);
        endDeclaration(out);
    });
}

void XmlWriter::attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                              const XmlString& mode, const XmlString& value) {
    asEvent(*this, [&](EventOutput& out) {
        if (!writesDeclarations())
            return;
        out.put("<!ATTLIST ");
        out.put(eName);
        out.put(' ');
        out.put(aName);
        out.put(' ');
        out.put(type);
        out.put(' ');
        if (!mode.isNull()) {
            out.put(mode);
            out.put(' ');
        }
        if (!value.isNull())
            putQuoted(out, unitsOf(value), AttributeValue);
        endDeclaration(out);
    });
}

void XmlWriter::internalEntityDecl(const XmlString& name, const XmlString& value) {
    asEvent(*this, [&](EventOutput& out) {
        if (!writesDeclarations())
            return;
        out.put("<!ENTITY ");
        putEntityName(out, name);
        out.put(' ');
        putQuoted(out, unitsOf(value), EntityValue);
        endDeclaration(out);
    });
}

void XmlWriter::externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                   const XmlString& systemId) {
    asEvent(*this, [&](EventOutput& out) {
        if (!writesDeclarations())
            return;
        out.put("<!ENTITY ");
        putEntityName(out, name);
        if (publicId.isNull()) {
            out.put(" SYSTEM ");
        } else {
            out.put("PUBLIC \"");
            putIdentifierQuote(out, publicId);
        }
        putIdentifier(out, systemId);
        endDeclaration(out);
    });
}

} // namespace Quillon::Xml::Sax
