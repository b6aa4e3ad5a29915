#include "xml/XmlConstants.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/StringFields.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace Quillon::Xml {
namespace {

struct ConstantCase {
    const char* name;
    XmlString (*constant)();
    const char16_t* text;
};

const ConstantCase kConstants[] = {
    {"NullNsUri", XmlConstants::SC_Null_Ns_Uri, u""},
    {"DefaultNsPrefix", XmlConstants::SC_Default_Ns_Prefix, u""},
    {"XmlNsPrefix", XmlConstants::SC_Xml_Ns_Prefix, u"xml"},
    {"XmlNsAttribute", XmlConstants::SC_XmlNs_Attribute, u"xmlns"},
    {"XmlNsUri", XmlConstants::SC_Xml_Ns_Uri, u"http://www.w3.org/XML/1998/namespace"},
    {"XmlNsAttributeNsUri", XmlConstants::SC_XmlNs_Attribute_Ns_Uri, u"http://www.w3.org/2000/xmlns/"},
    {"SchemaNsUri", XmlConstants::SC_W3C_Xml_Schema_Ns_Uri, u"http://www.w3.org/2001/XMLSchema"},
    {"SchemaInstanceNsUri", XmlConstants::SC_W3C_Xml_Schema_Instance_Ns_Uri,
     u"http://www.w3.org/2001/XMLSchema-instance"},
    {"XPathDatatypeNsUri", XmlConstants::SC_W3C_XPath_Datatype_Ns_Uri,
     u"http://www.w3.org/2003/11/xpath-datatypes"},
    {"XmlDtdNsUri", XmlConstants::SC_Xml_Dtd_Ns_Uri, u"http://www.w3.org/TR/REC-xml"},
};

class XmlConstantsTest : public Testing::HostFixture, public ::testing::WithParamInterface<ConstantCase> {};

TEST_P(XmlConstantsTest, IsSpelledAsItsStandardDoes) {
    EXPECT_EQ(GetParam().text, Testing::unitsOf(GetParam().constant()));
    EXPECT_FALSE(GetParam().constant().isNull());
}

TEST_P(XmlConstantsTest, IsAnImmutableViewMadeOnceWithoutAllocation) {
    const std::size_t host = Testing::hostMemory().requests(), objects = Testing::newMemory().requests();
    const XmlString first = GetParam().constant(), second = GetParam().constant();
    EXPECT_EQ(host, Testing::hostMemory().requests());
    EXPECT_EQ(objects, Testing::newMemory().requests());
    EXPECT_EQ(unsigned{Immutable | Borrowed | Valid}, Testing::flagsOf(first));
    EXPECT_EQ(Testing::fieldsOf(first), Testing::fieldsOf(second));
}

TEST_P(XmlConstantsTest, MakesWhatItIsAssignedToImmutable) {
    XmlString target;
    target = GetParam().constant();
    EXPECT_THROW(target += target, ImmutableObjectWriteError);
}

TEST_P(XmlConstantsTest, IsTheSameOnEveryThread) {
    constexpr std::size_t kThreads = 4;
    std::vector<XmlString> found(kThreads);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < kThreads; ++i)
        threads.emplace_back([&, i] { found[i] = GetParam().constant(); });
    for (std::thread& thread : threads)
        thread.join();
    for (const XmlString& string : found)
        EXPECT_EQ(Testing::fieldsOf(GetParam().constant()), Testing::fieldsOf(string));
}

INSTANTIATE_TEST_SUITE_P(All, XmlConstantsTest, ::testing::ValuesIn(kConstants),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace Quillon::Xml
