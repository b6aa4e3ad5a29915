#include "ContentEvents.h"

#include "ParseContext.h"
#include "Text.h"
#include "runtime/TextScan.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/LexicalHandler.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

bool isHighSurrogate(XML_Char unit) {
    return (unit & 0xFC00) == 0xD800;
}

bool isDeclaration(const Name& name) {
    return name.form == NameForm::DefaultDeclaration || name.form == NameForm::PrefixDeclaration;
}

bool isWhiteSpace(UnitSpan units) {
    return std::all_of(units.begin(), units.end(), [](XML_Char unit) {
        return unit == u' ' || unit == u'\n' || unit == u'\t' || unit == u'\r';
    });
}

/// How much of what follows a piece of text Expat will tell as text: up to the next markup, or at least to the end of a
/// line.
std::uint32_t textAtBegin(UnitSpan units) {
    std::uint32_t count = 0;
    while (count != units.size && (units.data[count] == u' ' || units.data[count] == u'\t'))
        ++count;
    if (count != units.size && units.data[count] == u'<')
        return count; // the indentation of a tag, or nothing: mostly it is one of these
    count += static_cast<std::uint32_t>(Runtime::lengthOfPlainText(units.data + count, units.size - count));
    const bool endsAtMarkup = count != units.size && (units.data[count] == u'<' || units.data[count] == u'&');
    while (!endsAtMarkup && count != 0 && units.data[count - 1] != u'\n')
        --count; // Expat may go on with the line
    return count;
}

} // namespace

ContentEvents::ContentEvents(ParseContext& context)
    : context_(context), xml_(context.names.prefix(UnitSpan(context.words.xml))),
      xmlns_(context.names.prefix(UnitSpan(context.words.xmlns))), attributes_(context.words) {
    xml_.uri = &context.names.uri(UnitSpan(context.words.xmlUri));
    context.names.prefix(UnitSpan(context.words.empty)).uri =
        &context.names.uri(UnitSpan(context.words.empty));
}

/// Whether the tag that begins here ends like <b/>: only then does the event of its end have to know where it began.
bool ContentEvents::looksLikeEmptyTag() const {
    const XML_Parser parser = context_.entity->parser();
    int offset = 0, size = 0;
    const char* buffer = XML_GetInputContext(parser, &offset, &size);
    const int length = XML_GetCurrentByteCount(parser);
    if (!buffer || length < 4 || length > size - offset)
        return true;
    const char* end =
        buffer + offset + length; // of a tag in UTF-16 or in an encoding with one byte for the />
    return end[-2] == '/' || end[-3] == '/' || end[-4] == '/';
}

void ContentEvents::startElement(const XML_Char* qName, const XML_Char** attributes) {
    endText();
    const bool mayBeEmptyTag = looksLikeEmptyTag();
    if (mayBeEmptyTag)
        emptyTagStart_ = context_.location();
    if (elements_.size() >= context_.settings.maximumDepth)
        context_.fatal("the elements are nested deeper than the limit maximumDepth, which is "
                       + std::to_string(context_.settings.maximumDepth));
    const Name& name = context_.elementName(qName);
    const ElementDeclaration* declaration = name.element.get();
    isContentOfElements_ = declaration && declaration->hasElementContent;
    elements_.push_back({&name, nullptr, bindings_.size(), isContentOfElements_, mayBeEmptyTag});
    attributes_.begin(declaration);
    collect(attributes);
    const bool isQualified = context_.settings.features.namespaces;
    if (isQualified) {
        if (hasDeclarations_)
            declarePrefixes();
        elements_.back().uri = &resolve(name);
        resolveAttributes();
    }
    if (context_.handlers.content) {
        const XmlString& uri = isQualified ? elements_.back().uri->text : context_.words.empty;
        context_.handlers.content->startElement(uri, isQualified ? name.localName : context_.words.empty,
                                                name.text, attributes_);
    }
    attributes_.clear();
}

void ContentEvents::collect(const XML_Char** attributes) {
    hasDeclarations_ = false;
    if (!attributes[0])
        return;
    const int specified = XML_GetSpecifiedAttributeCount(context_.entity->parser());
    for (int i = 0; attributes[i]; i += 2) {
        const Name& name = context_.attributeName(attributes[i]);
        hasDeclarations_ = hasDeclarations_ || isDeclaration(name);
        attributes_.add(name, attributes[i + 1], i < specified);
    }
}

void ContentEvents::declarePrefixes() {
    std::vector<ElementAttributes::Slot>& slots = attributes_.slots();
    for (const ElementAttributes::Slot& slot : slots)
        if (isDeclaration(*slot.name))
            bind(*slot.name, slot.value);
    if (!context_.settings.features.namespacePrefixes)
        std::erase_if(slots, [](const ElementAttributes::Slot& slot) { return isDeclaration(*slot.name); });
}

void ContentEvents::bind(const Name& name, const XML_Char* uriText) {
    Prefix& prefix = *name.prefix;
    Uri& uri = context_.names.uri(UnitSpan(uriText));
    checkBinding(prefix, uri);
    if (&prefix == &xml_)
        return; // bound for good: no event tells of it
    bindings_.push_back({&prefix, prefix.uri});
    prefix.uri = &uri;
    if (context_.handlers.content)
        context_.handlers.content->startPrefixMapping(prefix.text, uri.text);
}

/// Namespaces in XML 1.0, the constraints "Reserved Prefixes and Namespace Names" and "No Prefix Undeclaring".
void ContentEvents::checkBinding(const Prefix& prefix, const Uri& uri) {
    const bool isXmlUri = &uri == xml_.uri;
    if (&prefix == &xml_ && !isXmlUri)
        context_.fatal("the prefix xml must not be bound to another namespace");
    if (&prefix == &xmlns_)
        context_.fatal("the prefix xmlns must not be declared");
    if (&prefix != &xml_ && isXmlUri)
        context_.fatal("the namespace of the prefix xml must not be bound to another prefix");
    if (UnitSpan(uri.text) == UnitSpan(context_.words.xmlnsUri))
        context_.fatal("the namespace of the prefix xmlns must not be bound");
    if (uri.text.size() == 0 && prefix.text.size() != 0)
        context_.fatal("the prefix " + toUtf8(prefix.text) + " must not be bound to an empty namespace name");
}

Uri& ContentEvents::resolve(const Name& name) {
    if (name.form == NameForm::NotQualified)
        context_.fatal("the name " + toUtf8(name.text) + " is not a qualified name");
    if (name.form == NameForm::PrefixDeclaration)
        context_.fatal("the prefix xmlns must not be used for elements");
    if (!name.prefix->uri)
        context_.fatal("the prefix " + toUtf8(name.prefix->text) + " is not bound");
    return *name.prefix->uri;
}

/// Two attributes can only have one name when a namespace has two prefixes here: Expat has compared the whole names.
void ContentEvents::resolveAttributes() {
    prefixed_.clear();
    ++elementNumber_;
    bool mayHaveDuplicates = false;
    for (ElementAttributes::Slot& slot : attributes_.slots()) {
        if (hasDeclarations_ && isDeclaration(*slot.name)) {
            showDeclarationAttribute(slot);
            continue;
        }
        Uri& uri = resolve(*slot.name);
        slot.localName = &slot.name->localName;
        if (slot.name->form != NameForm::Prefixed)
            continue;
        slot.uri = &uri.text;
        prefixed_.push_back(&slot);
        if (uri.usedIn != elementNumber_)
            uri.usedBy = slot.name->prefix;
        uri.usedIn = elementNumber_;
        mayHaveDuplicates = mayHaveDuplicates || uri.usedBy != slot.name->prefix;
    }
    if (mayHaveDuplicates)
        checkUnique();
}

/// Without the feature `xmlns-uris`, such an attribute is in no namespace and has no local name.
void ContentEvents::showDeclarationAttribute(ElementAttributes::Slot& slot) const {
    if (!context_.settings.features.xmlnsUris)
        return;
    slot.uri = &context_.words.xmlnsUri;
    slot.localName = &slot.name->localName;
}

/// Namespaces in XML 1.0, "Attributes Unique". Sorting keeps an element with very many attributes from costing the
/// square of their number.
void ContentEvents::checkUnique() {
    const auto isLess = [](const ElementAttributes::Slot* a, const ElementAttributes::Slot* b) {
        if (a->uri != b->uri)
            return std::less<>()(a->uri, b->uri);
        return a->localName->compare(*b->localName) < 0;
    };
    std::sort(prefixed_.begin(), prefixed_.end(), isLess);
    for (std::size_t i = 1; i < prefixed_.size(); ++i)
        if (!isLess(prefixed_[i - 1], prefixed_[i]))
            failDuplicate(*prefixed_[i]);
}

void ContentEvents::failDuplicate(const ElementAttributes::Slot& slot) {
    context_.fatal("two attributes have the name " + toUtf8(*slot.localName) + " in the namespace "
                   + toUtf8(*slot.uri));
}

void ContentEvents::endElement() {
    endText();
    // Of <b/>, Expat puts the end behind the tag, where an event without any text stands.
    const bool isEmptyTag =
        elements_.back().mayBeEmptyTag && XML_GetCurrentByteCount(context_.entity->parser()) == 0;
    if (!isEmptyTag)
        return closeElement();
    const EventPlace place(context_, emptyTagStart_);
    closeElement();
}

void ContentEvents::closeElement() {
    const OpenElement element = elements_.back();
    elements_.pop_back();
    isContentOfElements_ = !elements_.empty() && elements_.back().hasElementContent;
    const bool isQualified = context_.settings.features.namespaces;
    if (context_.handlers.content)
        context_.handlers.content->endElement(isQualified ? element.uri->text : context_.words.empty,
                                              isQualified ? element.name->localName : context_.words.empty,
                                              element.name->text);
    while (bindings_.size() > element.bindings) {
        const Binding binding = bindings_.back();
        bindings_.pop_back();
        binding.prefix->uri = binding.outer;
        if (context_.handlers.content)
            context_.handlers.content->endPrefixMapping(binding.prefix->text);
    }
}

inline void ContentEvents::deliver(UnitSpan units) {
    Xml::Sax::ContentHandler* const content = context_.handlers.content;
    if (!content)
        return;
    const bool isIgnorable = isContentOfElements_ && !inCdata_ && isWhiteSpace(units);
    if (isIgnorable)
        content->ignorableWhitespace(units.data, 0, units.size);
    else
        content->characters(units.data, 0, units.size);
}

void ContentEvents::text(UnitSpan units) {
    if (units.size <= deliveredAhead_) {
        deliveredAhead_ -= units.size;
        return;
    }
    units = units.from(std::exchange(deliveredAhead_, 0));
    if (heldSurrogate_ == 0 && !isHighSurrogate(units.data[units.size - 1]))
        deliver(withLinesBehind(units));
    else
        textWithHalfPair(units);
}

/// Expat tells of text line by line, and of each line end alone. What follows in its buffer goes to the handler together
/// with the first of it. Where lines have to be told apart, or where the text is not in the buffer, it stays at what
/// Expat tells.
UnitSpan ContentEvents::withLinesBehind(UnitSpan units) {
    const UnitSpan chunk = context_.entity->chunk();
    const XML_Char* const begin = isContentOfElements_ ? nullptr : placeIn(chunk, units);
    if (!begin)
        return units;
    const UnitSpan behind = chunk.from(static_cast<std::uint32_t>(begin - chunk.begin()) + units.size);
    deliveredAhead_ = textAtBegin(behind);
    return {begin, units.size + deliveredAhead_};
}

/// Where the text stands in the chunk that Expat has got; null where it does not, as that of an entity.
const XML_Char* ContentEvents::placeIn(UnitSpan chunk, UnitSpan units) const {
    const auto isInChunk = [&](const XML_Char* place) {
        return std::less_equal<>()(chunk.begin(), place) && std::less<>()(place, chunk.end());
    };
    if (isInChunk(units.data))
        return units.data;
    if (units.size != 1 || units.data[0] != u'\n')
        return nullptr;
    int offset = 0, size = 0; // a line end, of which Expat shows a copy
    const char* const buffer = XML_GetInputContext(context_.entity->parser(), &offset, &size);
    const auto* const place = reinterpret_cast<const XML_Char*>(buffer + offset);
    return buffer && isInChunk(place) && *place == u'\n' ? place : nullptr;
}

/// Text that begins or ends inside a pair of surrogates: Expat cuts where its buffer ends.
void ContentEvents::textWithHalfPair(UnitSpan units) {
    if (heldSurrogate_ != 0)
        joinPair(units);
    if (units.size != 0 && isHighSurrogate(units.data[units.size - 1])) {
        heldSurrogate_ = units.data[units.size - 1];
        heldPlace_ = context_.location();
        units.size -= 1;
    }
    if (units.size != 0)
        deliver(units);
}

void ContentEvents::joinPair(UnitSpan& units) {
    const XML_Char pair[2] = {heldSurrogate_, units.data[0]};
    if ((pair[1] & 0xFC00) != 0xDC00)
        endText();
    heldSurrogate_ = 0;
    units = units.from(1);
    const EventPlace place(context_, heldPlace_);
    deliver(UnitSpan(pair, 2));
}

void ContentEvents::endText() {
    if (heldSurrogate_ != 0)
        failHeldSurrogate();
}

void ContentEvents::failHeldSurrogate() {
    context_.fatal("an unpaired surrogate: a high one without a low one behind it");
}

void ContentEvents::startCdata() {
    endText();
    inCdata_ = true;
    if (context_.handlers.lexical)
        context_.handlers.lexical->startCDATA();
}

void ContentEvents::endCdata() {
    endText();
    inCdata_ = false;
    if (context_.handlers.lexical)
        context_.handlers.lexical->endCDATA();
}

void ContentEvents::comment(const XML_Char* text) {
    endText();
    const UnitSpan units(text);
    if (context_.handlers.lexical)
        context_.handlers.lexical->comment(units.data, 0, units.size);
}

void ContentEvents::processingInstruction(const XML_Char* target, const XML_Char* data) {
    endText();
    const UnitSpan name(target);
    context_.checkPlainName(name, "the target of a processing instruction");
    if (context_.handlers.content)
        context_.handlers.content->processingInstruction(ownedString(name), ownedString(data));
}

void ContentEvents::skippedEntity(const XML_Char* name) {
    endText();
    if (context_.handlers.content)
        context_.handlers.content->skippedEntity(ownedString(name));
}

} // namespace Quillon::SaxEngine
