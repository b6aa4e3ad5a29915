// Sizes, offsets, bases and virtual slots of the SAX classes that programs built against earlier builds rely on.
#include "abi/VirtualSlot.h"
#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "xml/ReadableByteChannel.h"
#include "xml/StringFields.h"
#include "xml/sax/Attributes2Impl.h"
#include "xml/sax/DefaultHandler2.h"
#include "xml/sax/EventFilter.h"
#include "xml/sax/FieldAt.h"
#include "xml/sax/IllegalCharacterException.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/Locator2Impl.h"
#include "xml/sax/RemoveNamespaceFilter.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/SaxParseException.h"
#include "xml/sax/XmlFilterFormat.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

namespace Quillon::Xml::Sax {
namespace {

using Testing::fieldAt;
using Testing::fieldsOf;
using Testing::kWord;
using Testing::offsetOfPart;
using Testing::text;
using Testing::virtualSlotOf;

class SaxAbiTest : public Testing::HostFixture {};

constexpr std::size_t kString = sizeof(XmlString);
constexpr bool k32 = kWord == 4;

const XmlString& stringAt(const void* object, std::size_t offset) {
    return *reinterpret_cast<const XmlString*>(static_cast<const char*>(object) + offset);
}

// Virtual slots: the destructor takes the first two

template <class Class>
struct Probe : Class {
    virtual void behindTheLast() {}
};

/// The entries of a class's virtual table: where the next new operation would go.
template <class Class>
std::size_t slotCountOf() {
    return virtualSlotOf(&Probe<Class>::behindTheLast);
}

/// The operations stand one behind another, from `first` on, and those of `Class` end there.
template <class Class, class... Members>
void expectSlots(std::size_t first, Members... members) {
    std::size_t expected = first;
    for (const std::size_t slot : {virtualSlotOf(members)...})
        EXPECT_EQ(expected++, slot);
    EXPECT_EQ(expected, slotCountOf<Class>());
}

template <class Class>
constexpr bool
    isInterface = std::is_abstract_v<Class>&& std::has_virtual_destructor_v<Class> && sizeof(Class) == kWord;

static_assert(isInterface<EntityResolver> && isInterface<EntityResolver2> && isInterface<DTDHandler>);
static_assert(isInterface<ContentHandler> && isInterface<ErrorHandler> && isInterface<LexicalHandler>);
static_assert(isInterface<DeclHandler> && isInterface<EventConsumer> && isInterface<Attributes>);
static_assert(
    isInterface<Locator> && isInterface<Locator2> && isInterface<XmlReader> && isInterface<XmlFilter>);
static_assert(isInterface<IllegalCharacterException> && isInterface<Attributes2>);
static_assert(std::is_base_of_v<EntityResolver, EntityResolver2> && std::is_base_of_v<Locator, Locator2>);
static_assert(std::is_base_of_v<XmlReader, XmlFilter> && std::is_base_of_v<Attributes, Attributes2>);

using Resolve2 = InputSource* (EntityResolver::*)(const XmlString&, const XmlString&);

TEST_F(SaxAbiTest, EntityResolverSlots) {
    expectSlots<EntityResolver>(2, &EntityResolver::resolveEntity);
}

TEST_F(SaxAbiTest, EntityResolver2Slots) {
    EXPECT_EQ(2u, virtualSlotOf(static_cast<Resolve2>(&EntityResolver2::resolveEntity)));
    using Resolve4 = InputSource* (EntityResolver2::*)(const XmlString&, const XmlString&, const XmlString&,
                                                       const XmlString&);
    expectSlots<EntityResolver2>(3, &EntityResolver2::getExternalSubset,
                                 static_cast<Resolve4>(&EntityResolver2::resolveEntity));
}

TEST_F(SaxAbiTest, DTDHandlerSlots) {
    expectSlots<DTDHandler>(2, &DTDHandler::notationDecl, &DTDHandler::unparsedEntityDecl);
}

TEST_F(SaxAbiTest, ContentHandlerSlots) {
    expectSlots<ContentHandler>(
        2, &ContentHandler::setDocumentLocator, &ContentHandler::startDocument, &ContentHandler::endDocument,
        &ContentHandler::startPrefixMapping, &ContentHandler::endPrefixMapping, &ContentHandler::startElement,
        &ContentHandler::endElement, &ContentHandler::characters, &ContentHandler::ignorableWhitespace,
        &ContentHandler::processingInstruction, &ContentHandler::skippedEntity);
}

TEST_F(SaxAbiTest, ErrorHandlerSlots) {
    expectSlots<ErrorHandler>(2, &ErrorHandler::warning, &ErrorHandler::error, &ErrorHandler::fatalError);
}

TEST_F(SaxAbiTest, LexicalHandlerSlots) {
    expectSlots<LexicalHandler>(2, &LexicalHandler::startDTD, &LexicalHandler::endDTD,
                                &LexicalHandler::startEntity, &LexicalHandler::endEntity,
                                &LexicalHandler::startCDATA, &LexicalHandler::endCDATA,
                                &LexicalHandler::comment);
}

TEST_F(SaxAbiTest, DeclHandlerSlots) {
    expectSlots<DeclHandler>(2, &DeclHandler::elementDecl, &DeclHandler::attributeDecl,
                             &DeclHandler::internalEntityDecl, &DeclHandler::externalEntityDecl);
}

TEST_F(SaxAbiTest, EventConsumerSlots) {
    expectSlots<EventConsumer>(2, &EventConsumer::getContentHandler, &EventConsumer::getDTDHandler,
                               &EventConsumer::getProperty, &EventConsumer::setErrorHandler);
}

TEST_F(SaxAbiTest, DefaultHandlerSlots) {
    expectSlots<DefaultHandler>(
        2, &DefaultHandler::resolveEntity, &DefaultHandler::notationDecl, &DefaultHandler::unparsedEntityDecl,
        &DefaultHandler::setDocumentLocator, &DefaultHandler::startDocument, &DefaultHandler::endDocument,
        &DefaultHandler::startPrefixMapping, &DefaultHandler::endPrefixMapping, &DefaultHandler::startElement,
        &DefaultHandler::endElement, &DefaultHandler::characters, &DefaultHandler::ignorableWhitespace,
        &DefaultHandler::processingInstruction, &DefaultHandler::skippedEntity, &DefaultHandler::warning,
        &DefaultHandler::error, &DefaultHandler::fatalError);
}

TEST_F(SaxAbiTest, DefaultHandler2Slots) {
    using Two = InputSource* (DefaultHandler2::*)(const XmlString&, const XmlString&);
    using Four = InputSource* (DefaultHandler2::*)(const XmlString&, const XmlString&, const XmlString&,
                                                   const XmlString&);
    EXPECT_EQ(2u, virtualSlotOf(static_cast<Two>(&DefaultHandler2::resolveEntity)));
    expectSlots<DefaultHandler2>(
        slotCountOf<DefaultHandler>(), &DefaultHandler2::startCDATA, &DefaultHandler2::endCDATA,
        &DefaultHandler2::startDTD, &DefaultHandler2::endDTD, &DefaultHandler2::startEntity,
        &DefaultHandler2::endEntity, &DefaultHandler2::comment, &DefaultHandler2::attributeDecl,
        &DefaultHandler2::elementDecl, &DefaultHandler2::externalEntityDecl,
        &DefaultHandler2::internalEntityDecl, &DefaultHandler2::getExternalSubset,
        static_cast<Four>(&DefaultHandler2::resolveEntity));
}

TEST_F(SaxAbiTest, AttributesSlots) {
    using ByIndex = XmlString (Attributes::*)(unsigned int) const;
    using ByUri = XmlString (Attributes::*)(const XmlString&, const XmlString&) const;
    using ByQName = XmlString (Attributes::*)(const XmlString&) const;
    using IndexByUri = int (Attributes::*)(const XmlString&, const XmlString&) const;
    using IndexByQName = int (Attributes::*)(const XmlString&) const;
    expectSlots<Attributes>(
        2, &Attributes::getLength, &Attributes::getURI, &Attributes::getLocalName, &Attributes::getQName,
        static_cast<ByIndex>(&Attributes::getType), static_cast<ByIndex>(&Attributes::getValue),
        static_cast<IndexByUri>(&Attributes::getIndex), static_cast<IndexByQName>(&Attributes::getIndex),
        static_cast<ByUri>(&Attributes::getType), static_cast<ByQName>(&Attributes::getType),
        static_cast<ByUri>(&Attributes::getValue), static_cast<ByQName>(&Attributes::getValue));
}

TEST_F(SaxAbiTest, Attributes2Slots) {
    using ByIndex = bool (Attributes2::*)(unsigned int) const;
    using ByQName = bool (Attributes2::*)(const XmlString&) const;
    using ByUri = bool (Attributes2::*)(const XmlString&, const XmlString&) const;
    expectSlots<Attributes2>(
        slotCountOf<Attributes>(), static_cast<ByIndex>(&Attributes2::isDeclared),
        static_cast<ByQName>(&Attributes2::isDeclared), static_cast<ByUri>(&Attributes2::isDeclared),
        static_cast<ByIndex>(&Attributes2::isSpecified), static_cast<ByQName>(&Attributes2::isSpecified),
        static_cast<ByUri>(&Attributes2::isSpecified));
}

TEST_F(SaxAbiTest, ListsAddNoSlots) {
    EXPECT_EQ(slotCountOf<Attributes>(), slotCountOf<AttributesImpl>());
    EXPECT_EQ(slotCountOf<Attributes2>(), slotCountOf<Attributes2Impl>());
}

TEST_F(SaxAbiTest, LocatorSlots) {
    expectSlots<Locator>(2, &Locator::getPublicId, &Locator::getSystemId, &Locator::getLineNumber,
                         &Locator::getColumnNumber);
    expectSlots<Locator2>(slotCountOf<Locator>(), &Locator2::getXMLVersion, &Locator2::getEncoding);
    EXPECT_EQ(slotCountOf<Locator>(), slotCountOf<LocatorImpl>());
    EXPECT_EQ(slotCountOf<Locator2>(), slotCountOf<Locator2Impl>());
}

using ParseSource = void (XmlReader::*)(InputSource&);
using ParseSystemId = void (XmlReader::*)(const XmlString&);

TEST_F(SaxAbiTest, XmlReaderSlots) {
    expectSlots<XmlReader>(
        2, &XmlReader::setFeature, &XmlReader::getFeature, &XmlReader::setProperty, &XmlReader::getProperty,
        &XmlReader::setEntityResolver, &XmlReader::getEntityResolver, &XmlReader::setDTDHandler,
        &XmlReader::getDTDHandler, &XmlReader::setContentHandler, &XmlReader::getContentHandler,
        &XmlReader::setErrorHandler, &XmlReader::getErrorHandler, static_cast<ParseSource>(&XmlReader::parse),
        static_cast<ParseSystemId>(&XmlReader::parse));
}

TEST_F(SaxAbiTest, XmlFilterSlots) {
    expectSlots<XmlFilter>(slotCountOf<XmlReader>(), &XmlFilter::setParent, &XmlFilter::getParent);
}

TEST_F(SaxAbiTest, XmlFilterImplSlots) {
    expectSlots<XmlFilterImpl>(
        slotCountOf<XmlFilter>(), &XmlFilterImpl::resolveEntity, &XmlFilterImpl::notationDecl,
        &XmlFilterImpl::unparsedEntityDecl, &XmlFilterImpl::setDocumentLocator, &XmlFilterImpl::startDocument,
        &XmlFilterImpl::endDocument, &XmlFilterImpl::startPrefixMapping, &XmlFilterImpl::endPrefixMapping,
        &XmlFilterImpl::startElement, &XmlFilterImpl::endElement, &XmlFilterImpl::characters,
        &XmlFilterImpl::ignorableWhitespace, &XmlFilterImpl::processingInstruction,
        &XmlFilterImpl::skippedEntity, &XmlFilterImpl::warning, &XmlFilterImpl::error,
        &XmlFilterImpl::fatalError);
    EXPECT_EQ(2u, virtualSlotOf(&XmlFilterImpl::setFeature));
    EXPECT_EQ(16u, virtualSlotOf(&XmlFilterImpl::setParent));
}

/// Gives the other filters a default constructor, as the probe needs one.
struct Removing : RemoveNamespaceFilter {
    Removing() : RemoveNamespaceFilter(nullptr, XmlString()) {}
};
struct Formatting : XmlFilterFormat {
    Formatting() : XmlFilterFormat(nullptr, AlignNone, TabTabs, 0) {}
};

TEST_F(SaxAbiTest, OtherFiltersAddNoSlots) {
    EXPECT_EQ(slotCountOf<XmlFilterImpl>(), slotCountOf<Removing>());
    EXPECT_EQ(slotCountOf<XmlFilterImpl>(), slotCountOf<Formatting>());
}

TEST_F(SaxAbiTest, EventFilterSlots) {
    EXPECT_EQ(2u, slotCountOf<EventProducer>());
    expectSlots<EventFilter>(
        2, &EventFilter::setErrorHandler, &EventFilter::getContentHandler, &EventFilter::getDTDHandler,
        &EventFilter::getProperty, &EventFilter::setDocumentLocator, &EventFilter::startDocument,
        &EventFilter::skippedEntity, &EventFilter::processingInstruction, &EventFilter::characters,
        &EventFilter::ignorableWhitespace, &EventFilter::startPrefixMapping, &EventFilter::startElement,
        &EventFilter::endElement, &EventFilter::endPrefixMapping, &EventFilter::endDocument,
        &EventFilter::unparsedEntityDecl, &EventFilter::notationDecl, &EventFilter::startDTD,
        &EventFilter::endDTD, &EventFilter::comment, &EventFilter::startCDATA, &EventFilter::endCDATA,
        &EventFilter::startEntity, &EventFilter::endEntity, &EventFilter::elementDecl,
        &EventFilter::attributeDecl, &EventFilter::externalEntityDecl, &EventFilter::internalEntityDecl);
}

TEST_F(SaxAbiTest, ValuesHaveADestructorAndNoOtherSlot) {
    EXPECT_EQ(2u, slotCountOf<InputSource>());
    EXPECT_EQ(2u, slotCountOf<SaxException>());
    EXPECT_EQ(2u, slotCountOf<SaxNotRecognizedException>());
    EXPECT_EQ(2u, slotCountOf<SaxNotSupportedException>());
    struct Fault : SaxParseException {
        Fault() : SaxParseException(XmlString(), XmlString(), XmlString(), 0, 0) {}
    };
    EXPECT_EQ(2u, slotCountOf<Fault>());
    EXPECT_EQ(2u, slotCountOf<IllegalCharacterException>());
}

// Default handlers: bases in order, no data

static_assert(sizeof(DefaultHandler) == 4 * kWord);
static_assert(sizeof(DefaultHandler2) == 7 * kWord);

TEST_F(SaxAbiTest, DefaultHandlerBases) {
    const DefaultHandler handler;
    EXPECT_EQ(0u, offsetOfPart<EntityResolver>(handler));
    EXPECT_EQ(kWord, offsetOfPart<DTDHandler>(handler));
    EXPECT_EQ(2 * kWord, offsetOfPart<ContentHandler>(handler));
    EXPECT_EQ(3 * kWord, offsetOfPart<ErrorHandler>(handler));
}

TEST_F(SaxAbiTest, DefaultHandler2Bases) {
    const DefaultHandler2 handler;
    EXPECT_EQ(0u, offsetOfPart<DefaultHandler>(handler));
    EXPECT_EQ(4 * kWord, offsetOfPart<LexicalHandler>(handler));
    EXPECT_EQ(5 * kWord, offsetOfPart<DeclHandler>(handler));
    EXPECT_EQ(6 * kWord, offsetOfPart<EntityResolver2>(handler));
}

// Attribute lists

static_assert(sizeof(AttributesImpl) == (k32 ? 20 : 32));
static_assert(sizeof(Attributes2Impl) == (k32 ? 40 : 64));

template <class Derived, class = void>
constexpr bool convertsDownStatically = false;
template <class Derived>
constexpr bool convertsDownStatically<
    Derived, std::void_t<decltype(static_cast<Derived*>(std::declval<Attributes*>()))>> = true;

// A pointer to a virtual base cannot be converted down without looking at the object.
static_assert(!convertsDownStatically<Attributes2> && !convertsDownStatically<AttributesImpl>);

void addNumbered(AttributesImpl& list) {
    list.addAttribute(text(u"u"), text(u"l"), text(u"q"), text(u"t"), text(u"v"));
}

TEST_F(SaxAbiTest, AttributesImplFields) {
    AttributesImpl list;
    EXPECT_EQ(0u, offsetOfPart<Attributes>(list));
    for (int i = 0; i < 7; ++i)
        addNumbered(list);
    EXPECT_EQ(50u, fieldAt<std::uint32_t>(list, kWord));    // capacity, in strings
    EXPECT_EQ(7u, fieldAt<std::uint32_t>(list, kWord + 4)); // length, in attributes
    const auto* data = fieldAt<const XmlString*>(list, kWord + 8);
    const XmlString expected[] = {list.getURI(6), list.getLocalName(6), list.getQName(6), list.getType(6),
                                  list.getValue(6)};
    for (int field = 0; field < 5; ++field)
        EXPECT_EQ(fieldsOf(expected[field]), fieldsOf(data[30 + field]));
}

TEST_F(SaxAbiTest, OneMoreWordKnowsTheSizeOfTheArray) {
    AttributesImpl list;
    addNumbered(list);
    addNumbered(list);
    EXPECT_EQ(25u, fieldAt<std::uint32_t>(list, 2 * kWord + 8));
    list.removeAttribute(0);
    EXPECT_EQ(5u, fieldAt<std::uint32_t>(list, 2 * kWord + 8));
    EXPECT_EQ(25u, fieldAt<std::uint32_t>(list, kWord));
}

TEST_F(SaxAbiTest, Attributes2ImplFields) {
    Attributes2Impl list;
    constexpr std::size_t second = k32 ? 20 : 32;
    constexpr std::size_t declared = second + kWord;
    EXPECT_EQ(0u, offsetOfPart<AttributesImpl>(list));
    EXPECT_EQ(0u, offsetOfPart<Attributes>(list));
    EXPECT_EQ(second, offsetOfPart<Attributes2>(list));
    for (const char16_t* type : {u"CDATA", u"ID", u"CDATA"})
        list.addAttribute(text(u""), text(u"a"), text(u"a"), text(type), text(u""));
    list.setSpecified(1, false);
    const auto* declaredFlags = fieldAt<const std::uint8_t*>(list, declared);
    const auto* specifiedFlags = fieldAt<const std::uint8_t*>(list, declared + kWord);
    for (unsigned int i = 0; i < 3; ++i) {
        EXPECT_EQ(list.isDeclared(i), declaredFlags[i] == 1);
        EXPECT_EQ(list.isSpecified(i), specifiedFlags[i] == 1);
    }
    EXPECT_EQ(0, declaredFlags[2]);
    EXPECT_EQ(0, specifiedFlags[1]);
    EXPECT_EQ(2u, fieldAt<std::uint32_t>(list, declared + 2 * kWord));     // flagCount
    EXPECT_EQ(3u, fieldAt<std::uint32_t>(list, declared + 2 * kWord + 4)); // flagCapacity
}

// Locators, sources, exceptions

constexpr std::size_t kLine = kWord + 2 * kString;
constexpr std::size_t kLocatorSize = kLine + 16;

static_assert(sizeof(LocatorImpl) == kLocatorSize);
static_assert(sizeof(Locator2Impl) == kLocatorSize + kWord + 2 * kString);

TEST_F(SaxAbiTest, LocatorImplFields) {
    LocatorImpl locator;
    const XmlString publicId = text(u"pub"), systemId = text(u"sys");
    locator.setPublicId(publicId);
    locator.setSystemId(systemId);
    locator.setLineNumber(0x1122334455667788);
    locator.setColumnNumber(-5);
    EXPECT_EQ(fieldsOf(publicId), fieldsOf(stringAt(&locator, kWord)));
    EXPECT_EQ(fieldsOf(systemId), fieldsOf(stringAt(&locator, kWord + kString)));
    EXPECT_EQ(0x1122334455667788, fieldAt<std::int64_t>(locator, kLine));
    EXPECT_EQ(-5, fieldAt<std::int64_t>(locator, kLine + 8));
}

TEST_F(SaxAbiTest, Locator2ImplFields) {
    Locator2Impl locator;
    const XmlString encoding = text(u"enc"), version = text(u"ver");
    locator.setEncoding(encoding);
    locator.setXMLVersion(version);
    EXPECT_EQ(0u, offsetOfPart<LocatorImpl>(locator));
    EXPECT_EQ(kLocatorSize, offsetOfPart<Locator2>(locator));
    EXPECT_EQ(fieldsOf(encoding), fieldsOf(stringAt(&locator, kLocatorSize + kWord)));
    EXPECT_EQ(fieldsOf(version), fieldsOf(stringAt(&locator, kLocatorSize + kWord + kString)));
}

static_assert(sizeof(InputSource) == 2 * kWord + 3 * kString);

TEST_F(SaxAbiTest, InputSourceFields) {
    InputSource source;
    const XmlString publicId = text(u"pub"), systemId = text(u"sys"), encoding = text(u"enc");
    source.setPublicId(publicId);
    source.setSystemId(systemId);
    source.setEncoding(encoding);
    auto* channel = reinterpret_cast<ReadableByteChannel*>(&source); // never used as one
    source.setByteChannel(channel);
    EXPECT_EQ(fieldsOf(publicId), fieldsOf(stringAt(&source, kWord)));
    EXPECT_EQ(fieldsOf(systemId), fieldsOf(stringAt(&source, kWord + kString)));
    EXPECT_EQ(fieldsOf(encoding), fieldsOf(stringAt(&source, kWord + 2 * kString)));
    EXPECT_EQ(channel, fieldAt<ReadableByteChannel*>(source, kWord + 3 * kString));
}

static_assert(sizeof(SaxException) == kWord + kString);
static_assert(sizeof(SaxNotRecognizedException) == sizeof(SaxException));
static_assert(sizeof(SaxNotSupportedException) == sizeof(SaxException));
static_assert(sizeof(SaxParseException) == sizeof(SaxException) + 2 * kString + 16);

TEST_F(SaxAbiTest, ExceptionFields) {
    const XmlString message = text(u"msg"), publicId = text(u"pub"), systemId = text(u"sys");
    const SaxParseException exception(message, publicId, systemId, 0x1122334455667788, -5);
    constexpr std::size_t first = sizeof(SaxException);
    EXPECT_EQ(fieldsOf(message), fieldsOf(stringAt(&exception, kWord)));
    EXPECT_EQ(fieldsOf(publicId), fieldsOf(stringAt(&exception, first)));
    EXPECT_EQ(fieldsOf(systemId), fieldsOf(stringAt(&exception, first + kString)));
    EXPECT_EQ(0x1122334455667788, fieldAt<std::int64_t>(exception, first + 2 * kString));
    EXPECT_EQ(-5, fieldAt<std::int64_t>(exception, first + 2 * kString + 8));
}

// Filters

constexpr std::size_t kFilterFields = 5 * kWord;
constexpr std::size_t kFilterSize = 11 * kWord;

static_assert(sizeof(XmlFilterImpl) == kFilterSize);
static_assert(sizeof(RemoveNamespaceFilter) == kFilterSize + kString);
static_assert(sizeof(XmlFilterFormat) == (k32 ? 68 : 120));

TEST_F(SaxAbiTest, XmlFilterImplFields) {
    XmlFilterImpl parent;
    XmlFilterImpl filter(&parent);
    EXPECT_EQ(0u, offsetOfPart<XmlFilter>(filter));
    EXPECT_EQ(kWord, offsetOfPart<EntityResolver>(filter));
    EXPECT_EQ(2 * kWord, offsetOfPart<DTDHandler>(filter));
    EXPECT_EQ(3 * kWord, offsetOfPart<ContentHandler>(filter));
    EXPECT_EQ(4 * kWord, offsetOfPart<ErrorHandler>(filter));
    LocatorImpl locator;
    Testing::RecordingHandler handler;
    filter.setDocumentLocator(&locator);
    filter.setEntityResolver(&handler);
    filter.setDTDHandler(&handler);
    filter.setContentHandler(&handler);
    filter.setErrorHandler(&handler);
    EXPECT_EQ(&parent, fieldAt<XmlReader*>(filter, kFilterFields));
    EXPECT_EQ(&locator, fieldAt<Locator*>(filter, kFilterFields + kWord));
    EXPECT_EQ(&handler, fieldAt<EntityResolver*>(filter, kFilterFields + 2 * kWord));
    EXPECT_EQ(&handler, fieldAt<DTDHandler*>(filter, kFilterFields + 3 * kWord));
    EXPECT_EQ(&handler, fieldAt<ContentHandler*>(filter, kFilterFields + 4 * kWord));
    EXPECT_EQ(&handler, fieldAt<ErrorHandler*>(filter, kFilterFields + 5 * kWord));
}

TEST_F(SaxAbiTest, RemoveNamespaceFilterFields) {
    const XmlString uri = text(u"urn:n");
    const RemoveNamespaceFilter filter(nullptr, uri);
    EXPECT_EQ(0u, offsetOfPart<XmlFilterImpl>(filter));
    EXPECT_EQ(fieldsOf(uri), fieldsOf(stringAt(&filter, kFilterSize)));
}

TEST_F(SaxAbiTest, XmlFilterFormatFields) {
    static_assert(std::is_same_v<std::underlying_type_t<XmlFilterFormat::AlignmentStyle>, int>);
    static_assert(std::is_same_v<std::underlying_type_t<XmlFilterFormat::TabMode>, int>);
    constexpr std::size_t buffer = k32 ? kFilterSize + 12 : kFilterSize + 16;
    XmlFilterFormat filter(nullptr, XmlFilterFormat::AlignIndent, XmlFilterFormat::TabSpaces, 3);
    const XmlString name = text(u"e");
    for (int i = 0; i < 5; ++i)
        filter.startElement(name, name, name, AttributesImpl());
    EXPECT_EQ(0u, offsetOfPart<XmlFilterImpl>(filter));
    EXPECT_EQ(2, fieldAt<std::int32_t>(filter, kFilterSize));       // alignment
    EXPECT_EQ(1, fieldAt<std::int32_t>(filter, kFilterSize + 4));   // tabMode
    EXPECT_EQ(3u, fieldAt<std::uint32_t>(filter, kFilterSize + 8)); // indentWidth
    EXPECT_EQ('\n', fieldAt<const unsigned short*>(filter, buffer)[0]);
    EXPECT_EQ(16u, fieldAt<std::uint32_t>(filter, buffer + kWord));    // wsBufSize
    EXPECT_EQ(5u, fieldAt<std::uint32_t>(filter, buffer + kWord + 4)); // depth
}

static_assert(sizeof(EventProducer) == 2 * kWord);
static_assert(sizeof(EventFilter) == 17 * kWord);

TEST_F(SaxAbiTest, EventFilterBases) {
    const EventFilter filter;
    EXPECT_EQ(0u, offsetOfPart<EventProducer>(filter));
    EXPECT_EQ(2 * kWord, offsetOfPart<EventConsumer>(filter));
    EXPECT_EQ(3 * kWord, offsetOfPart<ContentHandler>(filter));
    EXPECT_EQ(4 * kWord, offsetOfPart<DTDHandler>(filter));
    EXPECT_EQ(5 * kWord, offsetOfPart<LexicalHandler>(filter));
    EXPECT_EQ(6 * kWord, offsetOfPart<DeclHandler>(filter));
}

/// Hands out the parts of a handler.
class Target : public EventConsumer {
public:
    explicit Target(Testing::RecordingHandler& handler) : handler_(handler) {}
    ContentHandler* getContentHandler() const override { return &handler_; }
    DTDHandler* getDTDHandler() const override { return &handler_; }
    void* getProperty(const XmlString& name) const override {
        return name.compare(SC_Properties_LexicalHandler()) == 0
                   ? static_cast<void*>(static_cast<LexicalHandler*>(&handler_))
                   : static_cast<DeclHandler*>(&handler_);
    }
    void setErrorHandler(ErrorHandler*) override {}

private:
    Testing::RecordingHandler& handler_;
};

TEST_F(SaxAbiTest, EventFilterFields) {
    Testing::RecordingHandler target, handedOut;
    Target consumer(target);
    EventFilter filter(&consumer);
    LocatorImpl locator;
    filter.setDocumentLocator(&locator);
    filter.setErrorHandler(&handedOut);
    filter.setContentHandler(&handedOut);
    filter.setDTDHandler(&handedOut);
    filter.setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&handedOut));
    filter.setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&handedOut));
    const auto field = [&](std::size_t index) { return fieldAt<const void*>(filter, index * kWord); };
    EXPECT_EQ(static_cast<EventConsumer*>(&consumer), field(1));
    EXPECT_EQ(static_cast<ContentHandler*>(&handedOut), field(7));
    EXPECT_EQ(static_cast<ContentHandler*>(&target), field(8));
    EXPECT_EQ(static_cast<DeclHandler*>(&handedOut), field(9));
    EXPECT_EQ(static_cast<DeclHandler*>(&target), field(10));
    EXPECT_EQ(static_cast<DTDHandler*>(&handedOut), field(11));
    EXPECT_EQ(static_cast<DTDHandler*>(&target), field(12));
    EXPECT_EQ(static_cast<LexicalHandler*>(&handedOut), field(13));
    EXPECT_EQ(static_cast<LexicalHandler*>(&target), field(14));
    EXPECT_EQ(static_cast<ErrorHandler*>(&handedOut), field(15));
    EXPECT_EQ(static_cast<Locator*>(&locator), field(16));
}

} // namespace
} // namespace Quillon::Xml::Sax
