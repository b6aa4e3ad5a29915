#include "xml/sax/writer/StrictWriter.h"

#include "xml/sax/Attributes.h"
#include "xml/sax/writer/StrictDocumentInternal.h"
#include "xml/sax/writer/StrictGrammarInternal.h"
#include "xml/sax/writer/StrictTextInternal.h"

#include <algorithm>
#include <iterator>

namespace Quillon::Xml::Sax {

namespace {

using After = StrictDocument::After;
using Context = StrictText::Context;
using EntityKind = StrictDoctype::EntityKind;
using Place = StrictDocument::Place;

constexpr char kExternalSubset[] = "[dtd]";

bool isParameterEntity(Units name) noexcept {
    return !name.empty() && name.front() == '%';
}

/// The name without the mark of a parameter entity.
Units bareName(Units name) noexcept {
    return isParameterEntity(name) ? name.subspan(1) : name;
}

/// A parser has these without a declaration and does not report one.
bool isPredefined(Units name) noexcept {
    constexpr const char* kNames[] = {"amp", "apos", "gt", "lt", "quot"};
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [&](const char* known) { return equals(name, known); });
}

bool isSpaceOnly(Units units) noexcept {
    return std::all_of(units.begin(), units.end(), [](unsigned short unit) { return isXmlSpace(unit); });
}

Units textOf(const Refusal& refusal, const unsigned short* ch, unsigned int start, unsigned int length) {
    if (length != 0 && !ch)
        refusal.because("no text, but a length");
    return length == 0 ? Units() : Units(ch + start, length);
}

void checkIdentifiers(const Refusal& refusal, const XmlString& publicId, const XmlString& systemId) {
    if (!publicId.isNull())
        refusal.unlessPublicLiteral(unitsOf(publicId));
    if (!systemId.isNull())
        refusal.unlessSystemLiteral(unitsOf(systemId));
}

void checkEntityIdentifiers(const Refusal& refusal, const XmlString& publicId, const XmlString& systemId) {
    checkIdentifiers(refusal, publicId, systemId);
    const Units units = unitsOf(systemId);
    if (systemId.isNull())
        refusal.because("an external entity without a system identifier");
    if (std::find(units.begin(), units.end(), '#') != units.end())
        refusal.character('#', "the system identifier of an entity");
}

/// REQUIRED and IMPLIED come without a value, FIXED and none with one.
void checkMode(const Refusal& refusal, const XmlString& mode, const XmlString& value) {
    const bool wantsNone = equals(unitsOf(mode), "#REQUIRED") || equals(unitsOf(mode), "#IMPLIED");
    const bool wantsOne = mode.isNull() || equals(unitsOf(mode), "#FIXED");
    if (!wantsNone && !wantsOne)
        refusal.because("no mode of an attribute:", unitsOf(mode));
    if (wantsOne == value.isNull())
        refusal.because("the value does not go with the mode");
}

/// Runs `body` with a StrictText, all of which is in the stream afterwards.
template <class Body>
[[gnu::always_inline]] inline void writeText(const XmlWriter& writer, const StrictDocument& document,
                                             Body&& body) {
    writing(writer, [&](EventOutput& out) { body(StrictText(out, document.lastCharacter)); });
}

/// What comes with every declaration of an entity.
void declareEntity(const Refusal& refusal, StrictDocument& document, Units name, EntityKind kind) {
    refusal.unlessNameWithoutColon(bareName(name), "an entity's name");
    if (isPredefined(name))
        refusal.because("a parser does not report the declaration of", name);
    if (!document.doctype.declareEntity(name, kind) && !document.isSuppressed())
        refusal.because("twice the entity", name);
}

void startEntityDeclaration(const StrictText& text, Units name) {
    text.ascii(isParameterEntity(name) ? "<!ENTITY % " : "<!ENTITY ");
    text.verbatim(bareName(name));
}

void putText(const StrictText& text, StrictDocument& document, Units units, bool isCanonical) {
    if (document.inSection && !isCanonical)
        text.section(units, document.brackets);
    else
        text.escaped<Context::Content>(units);
}

/// Outside a section a parser would report white space in it, or some beside it, as ignorable.
void putTextInElementContent(const Refusal& refusal, const StrictText& text, StrictDocument& document,
                             Units units) {
    if (std::find(units.begin(), units.end(), '\r') != units.end())
        refusal.character('\r', "the text of an element that holds elements only");
    if (document.inSection || units.empty()) {
        putText(text, document, units, false);
        return;
    }
    unsigned int brackets = 0;
    text.ascii("<![CDATA[");
    text.section(units, brackets);
    text.ascii("]]>");
}

/// Text that is refused, in a section, in element content, or not written at all. Kept apart, so that other text need not
/// make room for what this one does.
[[gnu::noinline]] void putUnusualText(const XmlWriter& writer, StrictDocument& document,
                                      const unsigned short* ch, unsigned int start, unsigned int length) {
    const Refusal refusal = document.enter("characters", After::Layout);
    const Units units = textOf(refusal, ch, start, length);
    refusal.unlessText(units, "text");
    const bool isInside = document.place == Place::Root;
    const bool isLayout = document.spaceIsLayout && document.place != Place::Doctype && isSpaceOnly(units);
    if (!isLayout)
        document.enter("characters");
    if (!isInside && !isLayout && !units.empty())
        refusal.character(units.front(), "text outside the root");
    if (document.isSuppressed())
        return;
    writeText(writer, document, [&](const StrictText& text) {
        if (writer.isCanonical() || isLayout || !document.isInElementContent())
            putText(text, document, units, writer.isCanonical());
        else
            putTextInElementContent(refusal, text, document, units);
    });
}

} // namespace

StrictWriter::StrictWriter(std::ostream& out)
    : TextConsumer(out), document_(std::make_unique<StrictDocument>()) {}

StrictWriter::~StrictWriter() = default;

bool StrictWriter::spaceIsLayout() const noexcept {
    return document_->spaceIsLayout;
}

void StrictWriter::spaceIsLayout(bool on) noexcept {
    document_->spaceIsLayout = on;
}

void StrictWriter::setDocumentLocator(Locator* locator) {
    TextConsumer::setDocumentLocator(locator);
    document_->nextLocator = locator;
}

void StrictWriter::startDocument() {
    document_->begin(getEncoding());
    const bool hasDeclaration = !isCanonical() && document_->encoding && document_->lastCharacter != 0x7F;
    if (!hasDeclaration)
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii("<?xml version=\"1.0\" encoding=\"");
        text.ascii(document_->encoding);
        text.ascii("\"?>");
    });
    newLine();
}

void StrictWriter::endDocument() {
    const Refusal refusal = document_->enterMarkup("endDocument");
    if (document_->place != Place::Epilog)
        refusal.because("the root element is missing or still open");
    document_->place = Place::Outside;
    document_->forgetLocator();
    if (isCanonical())
        return;
    newLine();
    newLine();
}

void StrictWriter::startPrefixMapping(const XmlString& prefix, const XmlString& uri) {
    const Refusal refusal = document_->enterMarkup("startPrefixMapping", After::Mapping);
    document_->announceMapping(refusal, unitsOf(prefix), unitsOf(uri));
}

void StrictWriter::endPrefixMapping(const XmlString& prefix) {
    const Refusal refusal = document_->enterMarkup("endPrefixMapping", After::EndOfElement);
    document_->endMapping(refusal, unitsOf(prefix));
}

void StrictWriter::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                const Attributes& attributes) {
    const Refusal refusal = document_->enterMarkup("startElement", After::Mapping);
    const StrictAttributes fetched(document_->attributeRoom, attributes);
    const StrictAttributeList list = fetched.list();
    const auto added =
        document_->open(refusal, {unitsOf(uri), unitsOf(localName), unitsOf(qName)}, list, !isCanonical());
    if (document_->isSuppressed())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        text.name("<", unitsOf(qName), "");
        for (const auto& binding : added) {
            text.ascii(binding.prefix.empty() ? " xmlns" : " xmlns:");
            text.verbatim(binding.prefix);
            text.ascii("=");
            text.quoted<Context::AttributeValue>(binding.uri);
        }
        for (const auto& attribute : list) {
            text.name(" ", attribute.qName, "=\"");
            text.quotedRest<Context::AttributeValue>(attribute.value);
        }
        text.ascii(">");
    });
}

void StrictWriter::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    document_->close(document_->enterMarkup("endElement"),
                     {unitsOf(uri), unitsOf(localName), unitsOf(qName)});
    if (document_->isSuppressed())
        return;
    writeText(*this, *document_, [&](const StrictText& text) { text.name("</", unitsOf(qName), ">"); });
}

void StrictWriter::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    const bool isContent = document_->takesContent() && ch != nullptr;
    if (!isContent)
        return putUnusualText(*this, *document_, ch, start, length);
    const Units units(ch + start, length);
    writeText(*this, *document_, [&](const StrictText& text) {
        text.checkedContent(units, [&] { return document_->enter("characters"); });
    });
}

void StrictWriter::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    const Refusal refusal = document_->enterMarkup("ignorableWhitespace");
    const Units units = textOf(refusal, ch, start, length);
    const auto other =
        std::find_if_not(units.begin(), units.end(), [](unsigned short u) { return isXmlSpace(u); });
    if (other != units.end())
        refusal.character(*other, "white space");
    if (document_->place != Place::Root)
        refusal.because("outside the root element");
    const bool isText = !document_->isInElementContent() && !document_->spaceIsLayout && !isCanonical();
    if (document_->isSuppressed())
        return;
    if (isText)
        refusal.because("the element is not declared to hold elements only");
    writeText(*this, *document_,
              [&](const StrictText& text) { putText(text, *document_, units, isCanonical()); });
}

void StrictWriter::processingInstruction(const XmlString& target, const XmlString& data) {
    const Refusal refusal = document_->enterMarkup("processingInstruction");
    const Units name = unitsOf(target), text = unitsOf(data);
    refusal.unlessNameWithoutColon(name, "the target of an instruction");
    const auto isLetter = [&](std::size_t i, char letter) { return (name[i] | 0x20) == letter; };
    if (name.size() == 3 && isLetter(0, 'x') && isLetter(1, 'm') && isLetter(2, 'l'))
        refusal.because("reserved is the target", name);
    refusal.unlessVerbatim(text, "an instruction");
    if (!text.empty() && isXmlSpace(text.front()))
        refusal.character(text.front(), "the first place of an instruction");
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        if (text[i] == '?' && text[i + 1] == '>')
            refusal.character('>', "an instruction behind a U+003F");
    if (document_->isSuppressed())
        return;
    if (isCanonical() && inEpilogue())
        newLine();
    writeText(*this, *document_, [&](const StrictText& out) {
        out.ascii("<?");
        out.verbatim(name);
        out.ascii(" ");
        out.verbatim(text);
        out.ascii("?>");
    });
}

void StrictWriter::skippedEntity(const XmlString& name) {
    const Refusal refusal = document_->enterMarkup("skippedEntity");
    const Units units = unitsOf(name);
    if (document_->place != Place::Root)
        refusal.because("outside the root element");
    refusal.unlessNameWithoutColon(units, "an entity's name");
    if (document_->isSuppressed())
        return;
    const EntityKind kind = document_->doctype.entity(units);
    const bool mayBeElsewhere = kind == EntityKind::Undeclared && document_->doctype.hasExternalSubset;
    const bool isSkippedAgain = !isCanonical() && (kind == EntityKind::External || mayBeElsewhere);
    if (!isSkippedAgain)
        refusal.because("no declaration would make a parser skip the entity", units);
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii("&");
        text.verbatim(units);
        text.ascii(";");
    });
}

void StrictWriter::startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    const Refusal refusal = document_->enterMarkup("startDTD");
    if (document_->place != Place::Prolog)
        refusal.because("behind another one, or behind the start of the root element");
    refusal.unlessQualifiedName(unitsOf(name), "the name of a document type");
    checkIdentifiers(refusal, publicId, systemId);
    if (!publicId.isNull() && systemId.isNull())
        refusal.because("a public identifier without a system identifier");
    document_->place = Place::Doctype;
    document_->doctype.hasExternalSubset = !systemId.isNull() && !expandingEntities();
    inDoctype(true);
    startedDoctype(true);
    if (isCanonical())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii("<!DOCTYPE ");
        text.verbatim(unitsOf(name));
        if (!expandingEntities())
            text.identifiers(publicId, systemId);
        text.ascii(" [");
    });
    newLine();
}

void StrictWriter::endDTD() {
    const Refusal refusal = document_->enterMarkup("endDTD");
    if (document_->place != Place::Doctype)
        refusal.because("no document type is open");
    if (document_->isInsideEntity())
        refusal.because("an entity has not been ended");
    document_->place = Place::AfterDoctype;
    inDoctype(false);
    if (isCanonical())
        return;
    writeText(*this, *document_, [](const StrictText& text) { text.ascii("]>"); });
    newLine();
}

void StrictWriter::startEntity(const XmlString& name) {
    const Refusal refusal = document_->enterMarkup("startEntity");
    const Units units = unitsOf(name);
    const bool isSubset = equals(units, kExternalSubset);
    const Place wanted = isSubset || isParameterEntity(units) ? Place::Doctype : Place::Root;
    if (document_->place != wanted)
        refusal.because("not the place for the entity", units);
    const bool isReferenced = !isCanonical() && !expandingEntities();
    if (!isReferenced || document_->isSuppressed()) {
        document_->openEntity(units, false);
        return;
    }
    const bool isDeclared = isSubset ? document_->doctype.hasExternalSubset
                                     : document_->doctype.entity(units) == EntityKind::External;
    if (!isDeclared)
        refusal.because("not declared as an external entity:", units);
    document_->openEntity(units, true);
    if (isSubset)
        return; // the document type names it
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii(isParameterEntity(units) ? "%" : "&");
        text.verbatim(bareName(units));
        text.ascii(";");
    });
}

void StrictWriter::endEntity(const XmlString& name) {
    const Refusal refusal = document_->enterMarkup("endEntity");
    document_->closeEntity(refusal, unitsOf(name));
    if (document_->place == Place::Doctype && !document_->isSuppressed() && !isCanonical())
        newLine();
}

void StrictWriter::startCDATA() {
    const Refusal refusal = document_->enterMarkup("startCDATA");
    if (document_->place != Place::Root)
        refusal.because("outside the root element");
    document_->inSection = true;
    document_->brackets = 0;
    if (isCanonical())
        return;
    inCDATA(true);
    if (!document_->isSuppressed())
        writeText(*this, *document_, [](const StrictText& text) { text.ascii("<![CDATA["); });
}

void StrictWriter::endCDATA() {
    const Refusal refusal = document_->enter("endCDATA");
    if (!document_->inSection)
        refusal.because("no CDATA section is open");
    document_->inSection = false;
    if (isCanonical())
        return;
    inCDATA(false);
    if (!document_->isSuppressed())
        writeText(*this, *document_, [](const StrictText& text) { text.ascii("]]>"); });
}

void StrictWriter::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    const Refusal refusal = document_->enterMarkup("comment");
    const Units text = textOf(refusal, ch, start, length);
    refusal.unlessVerbatim(text, "a comment");
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] == '-' && (i + 1 == text.size() || text[i + 1] == '-'))
            refusal.character('-', "a comment before a hyphen or at its end");
    if (document_->isSuppressed() || (isCanonical() && inDoctype()))
        return;
    if (isCanonical() && inEpilogue())
        newLine();
    writeText(*this, *document_, [&](const StrictText& out) {
        out.ascii("<!--");
        out.verbatim(text);
        out.ascii("-->");
    });
}

void StrictWriter::notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    const Refusal refusal = enterDeclaration("notationDecl");
    refusal.unlessNameWithoutColon(unitsOf(name), "the name of a notation");
    checkIdentifiers(refusal, publicId, systemId);
    if (publicId.isNull() && systemId.isNull())
        refusal.because("no identifier for", unitsOf(name));
    if (!writesDeclarations())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii("<!NOTATION ");
        text.verbatim(unitsOf(name));
        text.identifiers(publicId, systemId);
    });
    endDeclaration();
}

void StrictWriter::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                      const XmlString& systemId, const XmlString& notationName) {
    const Refusal refusal = enterDeclaration("unparsedEntityDecl");
    checkEntityIdentifiers(refusal, publicId, systemId);
    refusal.unlessNameWithoutColon(unitsOf(notationName), "the name of a notation");
    if (isParameterEntity(unitsOf(name)))
        refusal.character('%', "the name of an unparsed entity");
    declareEntity(refusal, *document_, unitsOf(name), EntityKind::Unparsed);
    if (!writesDeclarations())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        startEntityDeclaration(text, unitsOf(name));
        text.identifiers(publicId, systemId);
        text.ascii(" NDATA ");
        text.verbatim(unitsOf(notationName));
    });
    endDeclaration();
}

void StrictWriter::elementDecl(const XmlString& name, const XmlString& model) {
    const Refusal refusal = enterDeclaration("elementDecl");
    refusal.unlessQualifiedName(unitsOf(name), "an element's name");
    refusal.unlessVerbatim(unitsOf(model), "a content model");
    if (!isContentModel(unitsOf(model)))
        refusal.because("no content model:", unitsOf(model));
    document_->doctype.declareElement(unitsOf(name), holdsElementsOnly(unitsOf(model)));
    if (!writesDeclarations())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii("<!ELEMENT ");
        text.verbatim(unitsOf(name));
        text.ascii(" ");
        text.verbatim(unitsOf(model));
    });
    endDeclaration();
}

void StrictWriter::attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                                 const XmlString& mode, const XmlString& value) {
    const Refusal refusal = enterDeclaration("attributeDecl");
    refusal.unlessQualifiedName(unitsOf(eName), "an element's name");
    refusal.unlessQualifiedName(unitsOf(aName), "an attribute's name");
    refusal.unlessVerbatim(unitsOf(type), "the type of an attribute");
    if (!isAttributeType(unitsOf(type)))
        refusal.because("no type of an attribute:", unitsOf(type));
    checkMode(refusal, mode, value);
    refusal.unlessText(unitsOf(value), "the default of an attribute");
    if (!equals(unitsOf(type), "CDATA") && !isTokenList(unitsOf(value)))
        refusal.because("spaces that would be taken away, in the default of", unitsOf(aName));
    const bool isNew =
        document_->doctype.declareAttribute(unitsOf(eName), unitsOf(aName), unitsOf(type), !value.isNull());
    if (!isNew && !document_->isSuppressed())
        refusal.because("twice the attribute", unitsOf(aName));
    if (!writesDeclarations())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        text.ascii("<!ATTLIST ");
        for (const XmlString* word : {&eName, &aName, &type}) {
            text.verbatim(unitsOf(*word));
            text.ascii(" ");
        }
        text.verbatim(unitsOf(mode));
        if (!value.isNull()) {
            text.ascii(mode.isNull() ? "" : " ");
            text.quoted<Context::AttributeValue>(unitsOf(value));
        }
    });
    endDeclaration();
}

void StrictWriter::internalEntityDecl(const XmlString& name, const XmlString& value) {
    const Refusal refusal = enterDeclaration("internalEntityDecl");
    if (value.isNull())
        refusal.because("no value for", unitsOf(name));
    refusal.unlessText(unitsOf(value), "the value of an entity");
    declareEntity(refusal, *document_, unitsOf(name), EntityKind::Internal);
    if (!writesDeclarations())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        startEntityDeclaration(text, unitsOf(name));
        text.ascii(" ");
        text.quoted<Context::EntityValue>(unitsOf(value));
    });
    endDeclaration();
}

void StrictWriter::externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                      const XmlString& systemId) {
    const Refusal refusal = enterDeclaration("externalEntityDecl");
    checkEntityIdentifiers(refusal, publicId, systemId);
    declareEntity(refusal, *document_, unitsOf(name), EntityKind::External);
    if (!writesDeclarations())
        return;
    writeText(*this, *document_, [&](const StrictText& text) {
        startEntityDeclaration(text, unitsOf(name));
        text.identifiers(publicId, systemId);
    });
    endDeclaration();
}

Refusal StrictWriter::enterDeclaration(const char* event) const {
    const Refusal refusal = document_->enterMarkup(event);
    if (document_->place != Place::Doctype)
        refusal.because("outside the document type");
    return refusal;
}

bool StrictWriter::writesDeclarations() const noexcept {
    return !isCanonical() && !document_->isSuppressed();
}

void StrictWriter::endDeclaration() {
    writeText(*this, *document_, [](const StrictText& text) { text.ascii(">"); });
    newLine();
}

} // namespace Quillon::Xml::Sax
