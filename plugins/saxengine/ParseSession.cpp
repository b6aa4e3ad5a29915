#include "ParseSession.h"

#include "ErrorTexts.h"
#include "ExpatCallbacks.h"
#include "Text.h"
#include "system/OutOfMemoryException.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/InputSource.h"

#include <utility>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

/// While it lives, `entity` is the one that is being read.
class ReadingOf {
public:
    ReadingOf(ParseContext& context, OpenEntity& entity) : context_(context) {
        entity.outer = context_.entity;
        context_.entity = &entity;
    }
    ReadingOf(const ReadingOf&) = delete;
    ReadingOf& operator=(const ReadingOf&) = delete;
    ~ReadingOf() { context_.entity = context_.entity->outer; }

private:
    ParseContext& context_;
};

} // namespace

ParseSession::ParseSession(const ReaderSettings& settings, const Vocabulary& words)
    : context(settings, words), content(context), entities(context, *this), dtd(context, entities) {
    context.documentVersion = words.version10;
}

void ParseSession::run(const Xml::Sax::InputSource& input) {
    EntitySource source(input, std::string());
    OpenEntity document(createParser(), std::move(source), OpenEntity::Kind::Document);
    document.version = context.documentVersion;
    const ReadingOf reading(context, document);
    if (context.handlers.content)
        context.handlers.content->setDocumentLocator(&context.locator);
    if (context.handlers.content)
        context.handlers.content->startDocument();
    begin(document);
    if (context.handlers.content)
        context.handlers.content->endDocument();
}

void ParseSession::read(OpenEntity& entity) {
    entity.version = context.documentVersion;
    const ReadingOf reading(context, entity);
    begin(entity);
}

/// Internal parameter entities are expanded whatever the features are, so Expat is told to read all of them; what must
/// not be read is passed over in ExternalEntities.
ParserPointer ParseSession::createParser() {
    ParserPointer parser(XML_ParserCreate_MM(nullptr, context.settings.memory, nullptr));
    if (!parser)
        System::OutOfMemoryException::doThrow();
    XML_SetParamEntityParsing(parser.get(), XML_PARAM_ENTITY_PARSING_ALWAYS);
    if (context.settings.features.externalParameterEntities)
        XML_UseForeignDTD(parser.get(), XML_TRUE);
    return parser;
}

/// For all entities: the parser of the document counts for those of the others.
void ParseSession::limitAmplification(const OpenEntity& document) {
    const bool isWidened = document.input().encoding().isWidened;
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(
        document.parser(), isWidened ? kMaximumAmplificationOfWidened : kMaximumAmplification);
    XML_SetBillionLaughsAttackProtectionActivationThreshold(document.parser(), kAmplificationThreshold);
}

void ParseSession::begin(OpenEntity& entity) {
    const XML_Parser parser = entity.parser();
    setCallbacks(parser, *this);
    if (!entity.source().uri.empty()) {
        const XmlString uri = fromUtf8(entity.source().uri);
        if (XML_SetBase(parser, uri.data()) != XML_STATUS_OK)
            System::OutOfMemoryException::doThrow();
    }
    entity.input().detect(entity.source().encoding, entity.kind() == OpenEntity::Kind::Content);
    entity.encoding = fromUtf8(entity.input().encoding().name);
    failOnFault(entity);
    if (XML_SetEncoding(parser, entity.input().encoding().expatName) != XML_STATUS_OK)
        System::OutOfMemoryException::doThrow();
    if (entity.kind() == OpenEntity::Kind::Document)
        limitAmplification(entity);
    for (bool isLast = false; !isLast;) {
        void* buffer = XML_GetBuffer(parser, EntityInput::kChunkSize);
        if (!buffer)
            System::OutOfMemoryException::doThrow();
        const EntityInput::Chunk chunk = entity.input().fill(static_cast<char*>(buffer));
        entity.showChunk(buffer, chunk.byteCount);
        parseChunk(entity, chunk);
        failOnFault(entity);
        isLast = chunk.isLast;
    }
}

void ParseSession::parseChunk(OpenEntity& entity, EntityInput::Chunk chunk) {
    const XML_Status status = XML_ParseBuffer(entity.parser(), chunk.byteCount, chunk.isLast);
    if (failure_) // whatever the status is: Expat does not notice everywhere that it was stopped
        std::rethrow_exception(failure_);
    if (status == XML_STATUS_OK) {
        entity.location();
        return;
    }
    if (XML_GetErrorCode(entity.parser()) == XML_ERROR_NO_MEMORY)
        System::OutOfMemoryException::doThrow();
    context.fatal(errorText(entity));
}

void ParseSession::failOnFault(OpenEntity& entity) {
    const EntityInput::Fault& fault = entity.input().fault();
    if (fault.message.empty())
        return;
    const EventPlace place(context, fault.location);
    context.fatal(fault.message);
}

void ParseSession::keepFailure() noexcept {
    failure_ = std::current_exception();
    XML_StopParser(context.entity->parser(), XML_FALSE);
}

void ParseSession::declaration(const XML_Char* version, const XML_Char* encoding, int standalone) {
    if (encoding)
        checkEncoding(encoding);
    if (version)
        checkVersion(version);
    if (context.entity->kind() == OpenEntity::Kind::Document)
        context.isStandalone = standalone == 1;
}

/// Expat follows the encoding that the reader told it; so the declaration must be the one that led there.
void ParseSession::checkEncoding(const XML_Char* encoding) {
    const std::string declared = toUtf8(UnitSpan(encoding));
    const bool isOverridden = !context.entity->source().encoding.empty();
    if (!isOverridden && declared != context.entity->input().encoding().declared)
        context.fatal("the encoding \"" + declared + "\" is not known, or its declaration is too long");
}

/// A document of a later version is read as one of version 1.0, with a warning, as the later editions of XML 1.0 want
/// it. An entity must not be of a later version than its document.
void ParseSession::checkVersion(const XML_Char* text) {
    const std::string version = toUtf8(UnitSpan(text));
    OpenEntity& entity = *context.entity;
    const bool isKnown = version == "1.0" || version == "1.1";
    if (!isKnown)
        context.fatal("the XML version \"" + version + "\" is not known");
    entity.version = ownedString(text);
    if (entity.kind() == OpenEntity::Kind::Document) {
        context.documentVersion = entity.version;
        if (version != "1.0")
            context.warn("the document is declared as XML " + version + " and read as XML 1.0");
    } else if (version > toUtf8(context.documentVersion)) {
        context.fatal("a document of XML 1.0 refers to an entity of XML " + version);
    }
}

void ParseSession::showDefault(UnitSpan token) {
    context.entity->declarations.shown(token, [this] { return context.location(); });
}

} // namespace Quillon::SaxEngine
