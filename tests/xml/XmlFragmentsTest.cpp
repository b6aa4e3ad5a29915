#include "xml/XmlFragments.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace Quillon::Xml {
namespace {

struct FragmentCase {
    const char* name;
    const unsigned short* (*fragment)() noexcept;
    const char16_t* text;
};

const FragmentCase kFragments[] = {
    {"StartEntity", uniStartEntity, u"<!ENTITY "},
    {"StartPI", uniStartPI, u"<?"},
    {"EndPI", uniEndPI, u"?>"},
    {"XMLDeclStringV1", uniXMLDeclStringV1, u"<?xml version=\"1.0\"?>"},
    {"XMLDeclStringV1Encoding", uniXMLDeclStringV1Encoding, u"<?xml version=\"1.0\" encoding=\""},
    {"XMLDecl2", uniXMLDecl2, u"\"?>\n"},
    {"EndElement", uniEndElement, u"</"},
    {"True", uniTrue, u"true"},
    {"False", uniFalse, u"false"},
    {"ZeroString", uniZeroString, u"0"},
    {"OneString", uniOneString, u"1"},
};

class XmlFragmentsTest : public Testing::HostFixture, public ::testing::WithParamInterface<FragmentCase> {};

TEST_P(XmlFragmentsTest, IsAConstantArray) {
    const unsigned short* units = GetParam().fragment();
    std::u16string found;
    for (const unsigned short* unit = units; *unit != 0; ++unit)
        found += static_cast<char16_t>(*unit);
    EXPECT_EQ(GetParam().text, found);
    EXPECT_EQ(units, GetParam().fragment());
}

INSTANTIATE_TEST_SUITE_P(All, XmlFragmentsTest, ::testing::ValuesIn(kFragments),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace Quillon::Xml
