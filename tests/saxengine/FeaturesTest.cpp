// Features and properties of the reader: which there are, what they are at first, and what cannot be had.
#include "saxengine/ReadingFixture.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxNotSupportedException.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

class FeaturesTest : public ReadingFixture {
protected:
    bool get(XmlString (*feature)()) { return reader().getFeature(feature()); }
};

struct FeatureCase {
    const char* name;
    XmlString (*feature)();
    bool initially;
    bool canBeOff, canBeOn;
};

const FeatureCase kFeatureCases[] = {
    {"Namespaces", SC_Features_Namespaces, true, true, true},
    {"NamespacePrefixes", SC_Features_NamespacePrefixes, false, true, true},
    {"XmlNsUris", SC_Features_XmlNsUris, false, true, true},
    {"ExternalGeneralEntities", SC_Features_ExternalGeneralEntities, false, true, true},
    {"ExternalParameterEntities", SC_Features_ExternalParameterEntities, false, true, true},
    {"ParameterEntityEvents", SC_Features_LexicalHandler_ParameterEntities, true, true, true},
    {"ResolveDtdUris", SC_Features_ResolveDtdUris, true, true, true},
    {"UseEntityResolver2", SC_Features_UseEntityResolver2, true, true, true},
    {"UseAttributes2", SC_Features_UseAttributes2, true, false, true},
    {"UseLocator2", SC_Features_UseLocator2, true, false, true},
    {"StringInterning", SC_Features_StringInterning, true, false, true},
    {"Validation", SC_Features_Validation, false, true, false},
    {"UnicodeNormalizationChecking", SC_Features_UnicodeNormalizationChecking, false, true, false},
    {"Xml11", SC_Features_Xml1_1, false, true, false},
};

class FeatureTableTest : public FeaturesTest, public ::testing::WithParamInterface<FeatureCase> {};

TEST_P(FeatureTableTest, IsKnownWithItsDefaultAndItsValues) {
    const FeatureCase& c = GetParam();
    EXPECT_EQ(c.initially, get(c.feature));
    for (const bool value : {false, true}) {
        if (value ? c.canBeOn : c.canBeOff) {
            set(c.feature, value);
            EXPECT_EQ(value, get(c.feature));
        } else {
            EXPECT_THROW(set(c.feature, value), SaxNotSupportedException);
            EXPECT_EQ(!value, get(c.feature));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, FeatureTableTest, ::testing::ValuesIn(kFeatureCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(FeaturesTest, UnknownFeatureIsNotRecognized) {
    for (const char16_t* name :
         {u"", u"http://xml.org/sax/features/", u"http://xml.org/sax/features/namespaces2"}) {
        try {
            reader().setFeature(text(name), true);
            FAIL() << show(text(name));
        } catch (const SaxNotRecognizedException& e) {
            EXPECT_EQ("Feature: " + show(text(name)), show(e.getMessage()));
        }
        EXPECT_THROW(reader().getFeature(text(name)), SaxNotRecognizedException);
    }
    EXPECT_THROW(reader().getFeature(XmlString()), SaxNotRecognizedException);
    EXPECT_THROW(reader().setFeature(XmlString(), false), SaxNotRecognizedException);
}

TEST_F(FeaturesTest, UnsupportedFeatureIsNamed) {
    try {
        set(SC_Features_Validation, true);
        FAIL();
    } catch (const SaxNotSupportedException& e) {
        EXPECT_THAT(show(e.getMessage()),
                    ::testing::StartsWith("Feature: http://xml.org/sax/features/validation"));
    }
}

/// Looks at the reader from inside a parse.
class Inspector : public DefaultHandler2 {
public:
    std::function<void()> atStart = [] {}, atElement = [] {};
    void startDocument() override { atStart(); }
    void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
        atElement();
    }
};

TEST_F(FeaturesTest, IsStandaloneIsKnownDuringAParseOnly) {
    EXPECT_THROW(get(SC_Features_IsStandalone), SaxNotSupportedException);
    EXPECT_THROW(set(SC_Features_IsStandalone, true), SaxNotSupportedException);
    EXPECT_THROW(set(SC_Features_IsStandalone, false), SaxNotSupportedException);
    Inspector inspector;
    reader().setContentHandler(&inspector);
    bool seen = false;
    inspector.atElement = [&] { seen = get(SC_Features_IsStandalone); };
    read("<?xml version='1.0' standalone='yes'?><a/>");
    EXPECT_TRUE(seen);
    read("<?xml version='1.0' standalone='no'?><a/>");
    EXPECT_FALSE(seen);
    seen = true;
    read("<a/>");
    EXPECT_FALSE(seen);
    EXPECT_THROW(get(SC_Features_IsStandalone), SaxNotSupportedException);
}

TEST_F(FeaturesTest, NoFeatureIsSetInMidParse) {
    Inspector inspector;
    reader().setContentHandler(&inspector);
    int refusals = 0;
    inspector.atElement = [&] {
        for (const FeatureCase& c : kFeatureCases) {
            EXPECT_THROW(set(c.feature, c.initially), SaxNotSupportedException) << c.name;
            EXPECT_EQ(c.initially, get(c.feature)) << c.name;
            ++refusals;
        }
        EXPECT_THROW(set(SC_Features_IsStandalone, true), SaxNotSupportedException);
        EXPECT_THROW(reader().setFeature(text(u"x"), true), SaxNotRecognizedException);
    };
    EXPECT_FALSE(read("<a/>").threw);
    EXPECT_EQ(14, refusals);
    set(SC_Features_Namespaces, false); // and afterwards again
}

TEST_F(FeaturesTest, HandlersAreProperties) {
    EXPECT_EQ(static_cast<LexicalHandler*>(&handler()), reader().getProperty(SC_Properties_LexicalHandler()));
    EXPECT_EQ(static_cast<DeclHandler*>(&handler()),
              reader().getProperty(SC_Properties_DeclarationHandler()));
    reader().setProperty(SC_Properties_LexicalHandler(), nullptr);
    reader().setProperty(SC_Properties_DeclarationHandler(), nullptr);
    EXPECT_EQ(nullptr, reader().getProperty(SC_Properties_LexicalHandler()));
    EXPECT_EQ(nullptr, reader().getProperty(SC_Properties_DeclarationHandler()));
}

TEST_F(FeaturesTest, DocumentXmlVersionIsKnownDuringAParseOnly) {
    const auto version = [&] {
        return show(*static_cast<const XmlString*>(reader().getProperty(SC_Properties_DocumentXmlVersion())));
    };
    EXPECT_THROW(reader().getProperty(SC_Properties_DocumentXmlVersion()), SaxNotSupportedException);
    EXPECT_THROW(reader().setProperty(SC_Properties_DocumentXmlVersion(), nullptr), SaxNotSupportedException);
    Inspector inspector;
    reader().setContentHandler(&inspector);
    std::vector<std::string> seen;
    inspector.atStart = inspector.atElement = [&] { seen.push_back(version()); };
    read("<?xml version='1.0'?><a/>");
    read("<?xml version='1.1'?><a/>");
    read("<a/>");
    EXPECT_THAT(seen, ElementsAre("1.0", "1.0", "1.0", "1.1", "1.0", "1.0"));
    EXPECT_THROW(reader().getProperty(SC_Properties_DocumentXmlVersion()), SaxNotSupportedException);
    std::vector<std::string>().swap(seen);
}

TEST_F(FeaturesTest, NodeAndStringAreKnownButNotSupported) {
    for (auto property : {SC_Properties_DomNode, SC_Properties_XmlString}) {
        EXPECT_THROW(reader().getProperty(property()), SaxNotSupportedException);
        EXPECT_THROW(reader().setProperty(property(), nullptr), SaxNotSupportedException);
    }
}

TEST_F(FeaturesTest, UnknownPropertyIsNotRecognized) {
    try {
        reader().getProperty(text(u"http://xml.org/sax/properties/x"));
        FAIL();
    } catch (const SaxNotRecognizedException& e) {
        EXPECT_EQ("Property: http://xml.org/sax/properties/x", show(e.getMessage()));
    }
    EXPECT_THROW(reader().setProperty(text(u"x"), nullptr), SaxNotRecognizedException);
    EXPECT_THROW(reader().getProperty(XmlString()), SaxNotRecognizedException);
    EXPECT_THROW(reader().getProperty(SC_Features_Namespaces()), SaxNotRecognizedException);
    EXPECT_THROW(reader().getFeature(SC_Properties_LexicalHandler()), SaxNotRecognizedException);
}

TEST_F(FeaturesTest, HandlersAreHandedBack) {
    EXPECT_EQ(&handler(), reader().getContentHandler());
    EXPECT_EQ(&handler(), reader().getDTDHandler());
    EXPECT_EQ(&handler(), reader().getErrorHandler());
    EXPECT_EQ(&handler(), reader().getEntityResolver());
    reader().setContentHandler(nullptr);
    reader().setDTDHandler(nullptr);
    reader().setErrorHandler(nullptr);
    reader().setEntityResolver(nullptr);
    EXPECT_EQ(nullptr, reader().getContentHandler());
    EXPECT_EQ(nullptr, reader().getDTDHandler());
    EXPECT_EQ(nullptr, reader().getErrorHandler());
    EXPECT_EQ(nullptr, reader().getEntityResolver());
}

TEST_F(FeaturesTest, DocumentIsReadWithoutAnyHandler) {
    SaxEngineReader bare;
    const std::string document =
        "<!DOCTYPE a [<!NOTATION n SYSTEM 's'><!ENTITY u SYSTEM 'u' NDATA n><!ENTITY e 'x'>"
        "<!ATTLIST a b CDATA 'c'><!ELEMENT a ANY>]><a xmlns='n'>&e;<?p d?><!--c--><![CDATA[d]]></a>";
    MemoryByteChannel channel(document.data(), document.size());
    InputSource source(&channel);
    bare.parse(source);
}

/// Passes the parse on to another handler at the first element.
class Successor : public RecordingHandler {
public:
    std::function<void()> atElement;
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override {
        RecordingHandler::startElement(uri, localName, qName, attributes);
        atElement();
    }
};

TEST_F(FeaturesTest, HandlersChangeAtOnceAndTheLocatorGoesToTheFirstOnly) {
    Successor first;
    listen(reader(), first);
    first.atElement = [&] { listen(reader(), handler()); };
    read("<a b='c'><d/><!--e--></a>");
    EXPECT_THAT(first.lines(), ElementsAre("setDocumentLocator(locator)", "startDocument()",
                                           R"(startElement("", "a", "a", [("", "b", "b", "CDATA", "c")]))"));
    EXPECT_THAT(handler().lines(),
                ElementsAre(R"(startElement("", "d", "d", []))", R"(endElement("", "d", "d"))",
                            R"(comment("e"))", R"(endElement("", "a", "a"))", "endDocument()"));
}

} // namespace
} // namespace Quillon::Xml::Sax
