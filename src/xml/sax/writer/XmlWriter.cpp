#include "xml/sax/writer/XmlWriter.h"

#include "runtime/CStringInternal.h"
#include "runtime/HostServices.h"
#include "runtime/ThrowGuardInternal.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/XmlFragments.h"
#include "xml/sax/Attributes.h"
#include "xml/sax/IllegalCharacterException.h"
#include "xml/sax/LocatorImpl.h"
#include "xml/sax/SaxException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/writer/SaxMessageInternal.h"

#include <cstring>
#include <iostream>
#include <memory>
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

constexpr Utf16Literal kQuot(u"quot");
constexpr Utf16Literal kAmp(u"amp");
constexpr Utf16Literal kApos(u"apos");
constexpr Utf16Literal kLt(u"lt");
constexpr Utf16Literal kGt(u"gt");

constexpr Utf16Literal kStartDoctype(u"<!DOCTYPE ");
constexpr Utf16Literal kEndDoctype(u"]>");
constexpr Utf16Literal kStartElementDecl(u"<!ELEMENT ");
constexpr Utf16Literal kStartAttlist(u"<!ATTLIST ");
constexpr Utf16Literal kStartNotation(u"<!NOTATION ");
constexpr Utf16Literal kPublicQuote(u"PUBLIC \"");
constexpr Utf16Literal kSystemQuote(u"SYSTEM \"");
constexpr Utf16Literal kSystem(u"SYSTEM ");
constexpr Utf16Literal kSpaceSystem(u" SYSTEM ");
constexpr Utf16Literal kNdata(u" NDATA ");
constexpr Utf16Literal kStartComment(u"<!--");
constexpr Utf16Literal kEndComment(u"-->");
constexpr Utf16Literal kStartCData(u"<![CDATA[");
constexpr Utf16Literal kEndCData(u"]]>");

constexpr Utf16Literal kNoXmlName(u"no XML name");
constexpr Utf16Literal kUnknownContext(u"unknown escape context");
constexpr Utf16Literal kNoCharacters(u"characters expected at a null pointer");
constexpr Utf16Literal kEncoding(u"Encoding: ");

struct HostRelease {
    void operator()(char* text) const noexcept { Runtime::release(text); }
};
using HostText = std::unique_ptr<char[], HostRelease>;

template <std::size_t N>
XmlString viewOn(const Utf16Literal<N>& literal) {
    return XmlString(Immutable | Borrowed, literal.units, N - 1);
}

template <std::size_t N>
void put(XmlWriter& writer, const Utf16Literal<N>& literal) {
    writer.rawWrite(literal.units, 0, N - 1);
}

void put(XmlWriter& writer, const unsigned short* fragment) {
    writer.rawWrite(XmlString(Immutable | Borrowed, fragment));
}

/// The narrow throw declaration of the events.
template <class Body>
void asEvent(Body&& body) {
    Runtime::letEscapeOnly<SaxException>(std::forward<Body>(body));
}

/// A string whose storage was dropped keeps its size but has no units.
unsigned int unitCountOf(const XmlString& s) {
    return s.data() == nullptr ? 0 : s.size();
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

/// The first of the `length` units from `ch` + `start`. An array may be missing only where nothing is to be read.
const unsigned short* firstUnit(const unsigned short* ch, unsigned int start, unsigned int length) {
    static constexpr unsigned short kNone = 0;
    if (ch != nullptr)
        return ch + start;
    if (length != 0)
        throw SaxException(viewOn(kNoCharacters));
    return &kNone;
}

[[noreturn]] void throwConversionFailed(const char* encoding) {
    if (!Runtime::isKnownEncoding(encoding))
        throw SaxNotSupportedException(prefixed(kEncoding.units, makeString(encoding)));
    System::OutOfMemoryException::doThrow();
}

/// What becomes of a unit.
enum class Decision : unsigned char { Keep, EndLine, Quot, Amp, Apos, Lt, Gt, Drop, Refuse };

struct EscapeRules {
    XmlWriter::EscapeContext context;
    std::uint16_t unwritableMask;
    bool canonical;

    bool escapesQuotes() const {
        return context == XmlWriter::EntityValue || context == XmlWriter::AttributeValue;
    }
    bool escapesMarkup() const {
        return context == XmlWriter::AttributeValue || context == XmlWriter::CharacterData;
    }
};

bool isIllegal(unsigned short c) {
    return c > 0xFFFD || (c < 0x20 && c != u'\t' && c != u'\r' && c != u'\n');
}

Decision decide(unsigned short c, const EscapeRules& rules) {
    switch (c) {
    case u'\n':
        return Decision::EndLine;
    case u'"':
        return rules.escapesQuotes() ? Decision::Quot : Decision::Keep;
    case u'&':
        return rules.escapesMarkup() ? Decision::Amp : Decision::Keep;
    case u'\'':
        return rules.escapesQuotes() && !rules.canonical ? Decision::Apos : Decision::Keep;
    case u'<':
        return rules.escapesMarkup() ? Decision::Lt : Decision::Keep;
    case u'>':
        return rules.escapesMarkup() ? Decision::Gt : Decision::Keep;
    default:
        if (isIllegal(c))
            return Decision::Refuse;
        if ((c & rules.unwritableMask) != 0)
            return rules.context == XmlWriter::UnescapedText ? Decision::Refuse : Decision::Drop;
        return Decision::Keep;
    }
}

struct Stop {
    unsigned int at;
    Decision decision; ///< Keep at the end of the run
};

/// The first unit from index `from` that cannot stay as it is.
Stop nextStop(const unsigned short* units, unsigned int from, unsigned int length, const EscapeRules& rules) {
    for (unsigned int i = from; i < length; ++i) {
        const Decision decision = decide(units[i], rules);
        if (decision != Decision::Keep)
            return {i, decision};
    }
    return {length, Decision::Keep};
}

/// "&", the name, ";".
template <std::size_t N>
void putEntity(XmlWriter& writer, const Utf16Literal<N>& name) {
    writer.rawWrite(u'&');
    put(writer, name);
    writer.rawWrite(u';');
}

/// Writes what stands for a unit that could not stay.
void putReplacement(XmlWriter& writer, Decision decision) {
    switch (decision) {
    case Decision::EndLine:
        return writer.newLine();
    case Decision::Quot:
        return putEntity(writer, kQuot);
    case Decision::Amp:
        return putEntity(writer, kAmp);
    case Decision::Apos:
        return putEntity(writer, kApos);
    case Decision::Lt:
        return putEntity(writer, kLt);
    case Decision::Gt:
        return putEntity(writer, kGt);
    case Decision::Drop:
        writer.rawWrite(u'&');
        return writer.rawWrite(u';');
    case Decision::Keep:
    case Decision::Refuse:
        return;
    }
}

void putXmlDeclaration(XmlWriter& writer) {
    put(writer, uniXMLDeclStringV1Encoding());
    writer.rawWrite(makeString(writer.getEncoding()));
    writer.rawWrite(u'"');
    put(writer, uniEndPI());
    writer.newLine();
}

/// Writes `>` and a line end.
void endDeclaration(XmlWriter& writer) {
    writer.rawWrite(u'>');
    writer.newLine();
}

/// Writes `identifier` and the quotation mark behind it.
void putIdentifierQuote(XmlWriter& writer, const XmlString& identifier) {
    writer.rawWrite(identifier);
    writer.rawWrite(u'"');
}

void putQuoted(XmlWriter& writer, const XmlString& identifier) {
    writer.rawWrite(u'"');
    putIdentifierQuote(writer, identifier);
}

/// Writes a name, setting the `%` of a parameter entity apart.
void putEntityName(XmlWriter& writer, const XmlString& name) {
    if (unitCountOf(name) == 0 || name.data()[0] != u'%')
        return writer.rawWrite(name);
    writer.rawWrite(u'%');
    writer.rawWrite(u' ');
    writer.rawWrite(name.data(), 1, name.size() - 1);
}

/// Writes the external identifier of a DOCTYPE and a space, or nothing when there is none.
void putExternalId(XmlWriter& writer, const XmlString& publicId, const XmlString& systemId) {
    if (!publicId.isNull()) {
        put(writer, kPublicQuote);
        putIdentifierQuote(writer, publicId);
        writer.rawWrite(u' ');
        putQuoted(writer, systemId);
        writer.rawWrite(u' ');
    } else if (!systemId.isNull()) {
        put(writer, kSystemQuote);
        putIdentifierQuote(writer, systemId);
        writer.rawWrite(u' ');
    }
}

/// Writes `PUBLIC "p"`, or `SYSTEM ` when there is no public identifier.
void putPublicIdOrSystem(XmlWriter& writer, const XmlString& publicId) {
    if (publicId.isNull())
        return put(writer, kSystem);
    put(writer, kPublicQuote);
    putIdentifierQuote(writer, publicId);
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
    const HostText bytes(Runtime::utf16ToEncoding(encoding_, firstUnit(ch, start, length), length));
    if (!bytes)
        throwConversionFailed(encoding_);
    *out_ << bytes.get();
}

void XmlWriter::rawWrite(const XmlString& s) {
    if (s.data() != nullptr)
        rawWrite(s.data(), 0, s.size());
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
    const EscapeRules rules{context, unwritableMask_, canonical_};
    const unsigned short* const units = firstUnit(ch, start, length);
    for (unsigned int run = 0; run < length;) {
        const Stop stop = nextStop(units, run, length, rules);
        if (stop.decision == Decision::Refuse)
            IllegalCharacterException::doThrow(units[stop.at]);
        if (stop.at != run)
            rawWrite(units, run, stop.at - run);
        if (stop.at == length)
            return;
        putReplacement(*this, stop.decision);
        run = stop.at + 1;
    }
}

void XmlWriter::writeQuotedValue(const XmlString& value, EscapeContext context) {
    rawWrite(u'"');
    escapeChars(value.data(), 0, unitCountOf(value), context);
    rawWrite(u'"');
}

void XmlWriter::writeStartTag(const XmlString& qName, const Attributes& attributes) {
    rawWrite(u'<');
    rawWrite(qName);
    for (unsigned int i = 0; i < attributes.getLength(); ++i) {
        const XmlString name = attributes.getQName(i);
        if (unitCountOf(name) == 0)
            IllegalArgumentException::doThrow(viewOn(kNoXmlName));
        rawWrite(u' ');
        rawWrite(name);
        rawWrite(u'=');
        writeQuotedValue(attributes.getValue(i), AttributeValue);
    }
    rawWrite(u'>');
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
    asEvent([&] {
        ensureLocator();
        if (!canonical_ && unwritableMask_ != kBeyondUsAscii && encoding_ != nullptr)
            putXmlDeclaration(*this);
        entityDepth_ = 0;
    });
}

void XmlWriter::endDocument() {
    asEvent([&] {
        if (canonical_)
            return;
        newLine();
        newLine();
    });
}

void XmlWriter::startPrefixMapping(const XmlString&, const XmlString&) {}

void XmlWriter::endPrefixMapping(const XmlString&) {}

void XmlWriter::startElement(const XmlString&, const XmlString&, const XmlString& qName,
                             const Attributes& attributes) {
    asEvent([&] {
        startedDoctype_ = false;
        ensureLocator();
        writeStartTag(qName, attributes);
    });
}

void XmlWriter::endElement(const XmlString&, const XmlString&, const XmlString& qName) {
    asEvent([&] {
        put(*this, uniEndElement());
        rawWrite(qName);
        rawWrite(u'>');
    });
}

void XmlWriter::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    asEvent([&] {
        ensureLocator();
        escapeChars(ch, start, length, inCDATA_ ? UnescapedText : CharacterData);
    });
}

void XmlWriter::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    asEvent([&] {
        ensureLocator();
        escapeChars(ch, start, length, CharacterData);
    });
}

void XmlWriter::processingInstruction(const XmlString& target, const XmlString& data) {
    asEvent([&] {
        ensureLocator();
        if (canonical_ && inEpilogue_)
            newLine();
        put(*this, uniStartPI());
        rawWrite(target);
        rawWrite(u' ');
        escapeChars(data.data(), 0, unitCountOf(data), UnescapedText);
        put(*this, uniEndPI());
    });
}

void XmlWriter::skippedEntity(const XmlString& name) {
    asEvent([&] {
        rawWrite(u'&');
        rawWrite(name);
        rawWrite(u';');
    });
}

void XmlWriter::startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    asEvent([&] {
        ensureLocator();
        inDoctype_ = true;
        startedDoctype_ = true;
        if (canonical_)
            return;
        put(*this, kStartDoctype);
        rawWrite(name);
        rawWrite(u' ');
        if (!expandingEntities_)
            putExternalId(*this, publicId, systemId);
        rawWrite(u'[');
        newLine();
    });
}

void XmlWriter::endDTD() {
    asEvent([&] {
        inDoctype_ = false;
        if (canonical_)
            return;
        put(*this, kEndDoctype);
        newLine();
    });
}

void XmlWriter::startEntity(const XmlString&) {}

void XmlWriter::endEntity(const XmlString&) {
    if (!expandingEntities_) // wraps around like the 32-bit counter that it is
        entityDepth_ = static_cast<std::int32_t>(static_cast<std::uint32_t>(entityDepth_) - 1U);
}

void XmlWriter::startCDATA() {
    asEvent([&] {
        ensureLocator();
        if (canonical_)
            return;
        inCDATA_ = true;
        if (entityDepth_ == 0)
            put(*this, kStartCData);
    });
}

void XmlWriter::endCDATA() {
    asEvent([&] {
        if (canonical_)
            return;
        inCDATA_ = false;
        if (entityDepth_ == 0)
            put(*this, kEndCData);
    });
}

void XmlWriter::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    asEvent([&] {
        ensureLocator();
        if (canonical_ && inDoctype_)
            return;
        if (canonical_ && inEpilogue_)
            newLine();
        put(*this, kStartComment);
        escapeChars(ch, start, length, UnescapedText);
        put(*this, kEndComment);
    });
}

void XmlWriter::notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    asEvent([&] {
        if (!writesDeclarations())
            return;
        put(*this, kStartNotation);
        rawWrite(name);
        rawWrite(u' ');
        putPublicIdOrSystem(*this, publicId);
        if (!systemId.isNull())
            putQuoted(*this, systemId);
        endDeclaration(*this);
    });
}

void XmlWriter::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                   const XmlString& systemId, const XmlString& notationName) {
    asEvent([&] {
        if (!writesDeclarations())
            return;
        put(*this, uniStartEntity());
        rawWrite(name);
        rawWrite(u' ');
        putPublicIdOrSystem(*this, publicId);
        putQuoted(*this, systemId);
        put(*this, kNdata);
        rawWrite(notationName);
        endDeclaration(*this);
    });
}

void XmlWriter::elementDecl(const XmlString& name, const XmlString& model) {
    asEvent([&] {
        if (!writesDeclarations())
            return;
        put(*this, kStartElementDecl);
        rawWrite(name);
        rawWrite(u' ');
        rawWrite(model);
        endDeclaration(*this);
    });
}

void XmlWriter::attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                              const XmlString& mode, const XmlString& value) {
    asEvent([&] {
        if (!writesDeclarations())
            return;
        put(*this, kStartAttlist);
        rawWrite(eName);
        rawWrite(u' ');
        rawWrite(aName);
        rawWrite(u' ');
        rawWrite(type);
        rawWrite(u' ');
        if (!mode.isNull()) {
            rawWrite(mode);
            rawWrite(u' ');
        }
        if (!value.isNull())
            writeQuotedValue(value, AttributeValue);
        endDeclaration(*this);
    });
}

void XmlWriter::internalEntityDecl(const XmlString& name, const XmlString& value) {
    asEvent([&] {
        if (!writesDeclarations())
            return;
        put(*this, uniStartEntity());
        putEntityName(*this, name);
        rawWrite(u' ');
        writeQuotedValue(value, EntityValue);
        endDeclaration(*this);
    });
}

void XmlWriter::externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                   const XmlString& systemId) {
    asEvent([&] {
        if (!writesDeclarations())
            return;
        put(*this, uniStartEntity());
        putEntityName(*this, name);
        if (publicId.isNull()) {
            put(*this, kSpaceSystem);
        } else {
            put(*this, kPublicQuote);
            putIdentifierQuote(*this, publicId);
        }
        putQuoted(*this, systemId);
        endDeclaration(*this);
    });
}

} // namespace Quillon::Xml::Sax
