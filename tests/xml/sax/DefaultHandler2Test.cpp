#include "xml/sax/DefaultHandler2.h"

#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "xml/sax/EventTables.h"
#include "xml/sax/InputSource.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Quillon::Xml::Sax {
namespace {

using Testing::quoted;
using Testing::text;

using DefaultHandler2Test = Testing::HostFixture;

TEST_F(DefaultHandler2Test, EveryEventDoesNothing) {
    DefaultHandler2 handler;
    for (const auto& event : kContentEvents)
        EXPECT_NO_THROW(event.play(handler)) << event.name;
    for (const auto& event : kDtdEvents)
        EXPECT_NO_THROW(event.play(handler)) << event.name;
    for (const auto& event : kLexicalEvents)
        EXPECT_NO_THROW(event.play(handler)) << event.name;
    for (const auto& event : kDeclEvents)
        EXPECT_NO_THROW(event.play(handler)) << event.name;
}

TEST_F(DefaultHandler2Test, NoExternalSubsetIsSupplied) {
    DefaultHandler2 handler;
    EXPECT_EQ(nullptr, handler.getExternalSubset(text(u"root"), text(u"file:///doc.xml")));
    EXPECT_EQ(nullptr, handler.getExternalSubset(XmlString(), XmlString()));
}

TEST_F(DefaultHandler2Test, EntitiesAreLeftToTheCaller) {
    DefaultHandler2 handler;
    EXPECT_EQ(nullptr, handler.resolveEntity(text(u"pub"), text(u"sys")));
    EXPECT_EQ(nullptr, handler.resolveEntity(text(u"n"), text(u"pub"), text(u"base"), text(u"sys")));
}

TEST_F(DefaultHandler2Test, ErrorsAreTreatedAsByDefaultHandler) {
    DefaultHandler2 handler;
    EXPECT_NO_THROW(handler.warning(sampleError()));
    EXPECT_NO_THROW(handler.error(sampleError()));
    EXPECT_THROW(handler.fatalError(sampleError()), SaxParseException);
}

/// Overrides only the resolution with four arguments.
class Resolver : public DefaultHandler2 {
public:
    using DefaultHandler2::resolveEntity;
    InputSource* resolveEntity(const XmlString& name, const XmlString& publicId, const XmlString& baseURI,
                               const XmlString& systemId) override {
        arguments = quoted(name) + ' ' + quoted(publicId) + ' ' + quoted(baseURI) + ' ' + quoted(systemId);
        if (throws)
            throw SaxException(text(u"not this one"));
        return answer;
    }

    std::string arguments;
    InputSource* answer = nullptr;
    bool throws = false;
};

TEST_F(DefaultHandler2Test, TwoArgumentsReachTheOverrideWithFour) {
    Resolver resolver;
    InputSource source;
    resolver.answer = &source;
    EXPECT_EQ(&source, resolver.resolveEntity(text(u"pub"), text(u"sys")));
    EXPECT_EQ("null \"pub\" null \"sys\"", resolver.arguments);
}

TEST_F(DefaultHandler2Test, BothResolverPartsReachTheOverride) {
    Resolver resolver;
    InputSource source;
    resolver.answer = &source;
    EntityResolver& first = static_cast<DefaultHandler&>(resolver);
    EntityResolver& second = static_cast<EntityResolver2&>(resolver);
    EXPECT_EQ(&source, first.resolveEntity(XmlString(), text(u"one")));
    EXPECT_EQ("null null null \"one\"", resolver.arguments);
    EXPECT_EQ(&source, second.resolveEntity(XmlString(), text(u"two")));
    EXPECT_EQ("null null null \"two\"", resolver.arguments);
}

TEST_F(DefaultHandler2Test, ExceptionOfTheOverridePasses) {
    Resolver resolver;
    resolver.throws = true;
    EXPECT_THROW(resolver.resolveEntity(text(u"pub"), text(u"sys")), SaxException);
}

TEST_F(DefaultHandler2Test, ResolutionAllocatesNothing) {
    DefaultHandler2 handler;
    const XmlString id = text(u"id");
    const std::size_t requests = Testing::hostMemory().requests();
    handler.resolveEntity(id, id);
    EXPECT_EQ(requests, Testing::hostMemory().requests());
}

} // namespace
} // namespace Quillon::Xml::Sax
