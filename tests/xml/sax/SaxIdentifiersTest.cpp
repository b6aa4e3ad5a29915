#include "xml/sax/SaxIdentifiers.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/ImmutableObjectWriteError.h"

#include <gtest/gtest.h>

#include <string>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

struct IdentifierCase {
    const char* name;
    XmlString (*function)();
    const char* value;
};

class SaxIdentifiersTest : public Testing::HostFixture, public testing::WithParamInterface<IdentifierCase> {};

TEST_P(SaxIdentifiersTest, HasItsStandardName) {
    EXPECT_EQ(GetParam().value, show(GetParam().function()));
}

TEST_P(SaxIdentifiersTest, IsOneImmutableViewForEver) {
    const std::size_t requests = Testing::hostMemory().requests();
    const unsigned short* first = GetParam().function().data();
    XmlString copy = GetParam().function();
    EXPECT_EQ(first, copy.data());
    EXPECT_EQ(requests, Testing::hostMemory().requests());
    EXPECT_THROW(copy = XmlString(), ImmutableObjectWriteError);
    EXPECT_THROW(copy += text(u"x"), ImmutableObjectWriteError);
    EXPECT_EQ(GetParam().value, show(GetParam().function()));
}

const IdentifierCase kCases[] = {
    {"ExternalGeneralEntities", SC_Features_ExternalGeneralEntities,
     "http://xml.org/sax/features/external-general-entities"},
    {"ExternalParameterEntities", SC_Features_ExternalParameterEntities,
     "http://xml.org/sax/features/external-parameter-entities"},
    {"IsStandalone", SC_Features_IsStandalone, "http://xml.org/sax/features/is-standalone"},
    {"LexicalHandler_ParameterEntities", SC_Features_LexicalHandler_ParameterEntities,
     "http://xml.org/sax/features/lexical-handler/parameter-entities"},
    {"NamespacePrefixes", SC_Features_NamespacePrefixes, "http://xml.org/sax/features/namespace-prefixes"},
    {"Namespaces", SC_Features_Namespaces, "http://xml.org/sax/features/namespaces"},
    {"ResolveDtdUris", SC_Features_ResolveDtdUris, "http://xml.org/sax/features/resolve-dtd-uris"},
    {"StringInterning", SC_Features_StringInterning, "http://xml.org/sax/features/string-interning"},
    {"UnicodeNormalizationChecking", SC_Features_UnicodeNormalizationChecking,
     "http://xml.org/sax/features/unicode-normalization-checking"},
    {"UseAttributes2", SC_Features_UseAttributes2, "http://xml.org/sax/features/use-attributes2"},
    {"UseEntityResolver2", SC_Features_UseEntityResolver2,
     "http://xml.org/sax/features/use-entity-resolver2"},
    {"UseLocator2", SC_Features_UseLocator2, "http://xml.org/sax/features/use-locator2"},
    {"Validation", SC_Features_Validation, "http://xml.org/sax/features/validation"},
    {"Xml1_1", SC_Features_Xml1_1, "http://xml.org/sax/features/xml-1.1"},
    {"XmlNsUris", SC_Features_XmlNsUris, "http://xml.org/sax/features/xmlns-uris"},
    {"DeclarationHandler", SC_Properties_DeclarationHandler,
     "http://xml.org/sax/properties/declaration-handler"},
    {"DocumentXmlVersion", SC_Properties_DocumentXmlVersion,
     "http://xml.org/sax/properties/document-xml-version"},
    {"DomNode", SC_Properties_DomNode, "http://xml.org/sax/properties/dom-node"},
    {"LexicalHandler", SC_Properties_LexicalHandler, "http://xml.org/sax/properties/lexical-handler"},
    {"XmlString", SC_Properties_XmlString, "http://xml.org/sax/properties/xml-string"},
};

INSTANTIATE_TEST_SUITE_P(Table, SaxIdentifiersTest, testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace Quillon::Xml::Sax
