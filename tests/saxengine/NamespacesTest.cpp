// Names and namespaces: what handlers get with which features, and what Namespaces in XML 1.0 forbids.
#include "saxengine/ReadingFixture.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class NamespacesTest : public ReadingFixture {
protected:
    /// The events of the elements and prefixes only.
    std::vector<std::string> elementEvents(std::string_view document) {
        std::vector<std::string> all = events(document), wanted;
        for (const std::string& line : all)
            if (line.find("Element(") != std::string::npos
                || line.find("PrefixMapping(") != std::string::npos)
                wanted.push_back(line);
        return wanted;
    }
};

TEST_F(NamespacesTest, NamesAreTakenApart) {
    EXPECT_THAT(elementEvents("<p:a xmlns:p='urn:p' p:b='1' c='2'/>"),
                ElementsAre(R"(startPrefixMapping("p", "urn:p"))",
                            R"(startElement("urn:p", "a", "p:a", [("urn:p", "b", "p:b", "CDATA", "1"), )"
                            R"(("", "c", "c", "CDATA", "2")]))",
                            R"(endElement("urn:p", "a", "p:a"))", R"(endPrefixMapping("p"))"));
}

TEST_F(NamespacesTest, DefaultNamespaceIsForElementsOnly) {
    EXPECT_THAT(elementEvents("<a xmlns='urn:d' b='1'><c xmlns=''/></a>"),
                ElementsAre(R"(startPrefixMapping("", "urn:d"))",
                            R"(startElement("urn:d", "a", "a", [("", "b", "b", "CDATA", "1")]))",
                            R"(startPrefixMapping("", ""))", R"(startElement("", "c", "c", []))",
                            R"(endElement("", "c", "c"))", R"(endPrefixMapping(""))",
                            R"(endElement("urn:d", "a", "a"))", R"(endPrefixMapping(""))"));
}

TEST_F(NamespacesTest, BindingsEndWithTheirElement) {
    EXPECT_THAT(elementEvents("<a xmlns:p='1'><p:b xmlns:p='2' xmlns:q='3'/><p:c/></a>"),
                ElementsAre(R"(startPrefixMapping("p", "1"))", R"(startElement("", "a", "a", []))",
                            R"(startPrefixMapping("p", "2"))", R"(startPrefixMapping("q", "3"))",
                            R"(startElement("2", "b", "p:b", []))", R"(endElement("2", "b", "p:b"))",
                            R"(endPrefixMapping("q"))", R"(endPrefixMapping("p"))",
                            R"(startElement("1", "c", "p:c", []))", R"(endElement("1", "c", "p:c"))",
                            R"(endElement("", "a", "a"))", R"(endPrefixMapping("p"))"));
}

TEST_F(NamespacesTest, PrefixMayBeDeclaredBehindItsUse) {
    EXPECT_THAT(events("<p:a p:b='1' xmlns:p='urn:p'/>", "startElement"),
                ElementsAre(R"(startElement("urn:p", "a", "p:a", [("urn:p", "b", "p:b", "CDATA", "1")]))"));
}

TEST_F(NamespacesTest, PrefixXmlIsBoundWithoutAnEvent) {
    EXPECT_THAT(elementEvents("<a xml:lang='de' xmlns:xml='http://www.w3.org/XML/1998/namespace'/>"),
                ElementsAre(R"(startElement("", "a", "a", [("http://www.w3.org/XML/1998/namespace", "lang", )"
                            R"("xml:lang", "CDATA", "de")]))",
                            R"(endElement("", "a", "a"))"));
}

TEST_F(NamespacesTest, DeclarationsAreAttributesWhenAskedFor) {
    set(SC_Features_NamespacePrefixes, true);
    EXPECT_THAT(events("<p:a xmlns='d' x='1' xmlns:p='urn:p'/>", "startElement"),
                ElementsAre(R"(startElement("urn:p", "a", "p:a", [("", "", "xmlns", "CDATA", "d"), )"
                            R"(("", "x", "x", "CDATA", "1"), ("", "", "xmlns:p", "CDATA", "urn:p")]))"));
}

TEST_F(NamespacesTest, DeclarationsAreInANamespaceWhenAskedFor) {
    set(SC_Features_NamespacePrefixes, true);
    set(SC_Features_XmlNsUris, true);
    EXPECT_THAT(
        events("<p:a xmlns='d' xmlns:p='urn:p'/>", "startElement"),
        ElementsAre(
            R"(startElement("urn:p", "a", "p:a", [("http://www.w3.org/2000/xmlns/", "xmlns", "xmlns", )"
            R"("CDATA", "d"), ("http://www.w3.org/2000/xmlns/", "p", "xmlns:p", "CDATA", "urn:p")]))"));
}

TEST_F(NamespacesTest, WithoutNamespacesNamesAreWhole) {
    set(SC_Features_Namespaces, false);
    EXPECT_THAT(elementEvents("<p:a xmlns='d' q:x='1' xmlns:r='' a:b:c='2'><:/></p:a>"),
                ElementsAre(R"(startElement("", "", "p:a", [("", "", "xmlns", "CDATA", "d"), )"
                            R"(("", "", "q:x", "CDATA", "1"), ("", "", "xmlns:r", "CDATA", ""), )"
                            R"(("", "", "a:b:c", "CDATA", "2")]))",
                            R"(startElement("", "", ":", []))", R"(endElement("", "", ":"))",
                            R"(endElement("", "", "p:a"))"));
}

TEST_F(NamespacesTest, DefaultedDeclarationBindsToo) {
    EXPECT_THAT(
        elementEvents("<!DOCTYPE p:a [<!ATTLIST p:a xmlns:p CDATA #FIXED 'urn:p' p:b CDATA 'c'>]><p:a/>"),
        ElementsAre(R"(startPrefixMapping("p", "urn:p"))",
                    R"(startElement("urn:p", "a", "p:a", [("urn:p", "b", "p:b", "CDATA", "c")]))",
                    R"(endElement("urn:p", "a", "p:a"))", R"(endPrefixMapping("p"))"));
}

TEST_F(NamespacesTest, NamesBeyondAsciiAreTakenApart) {
    EXPECT_THAT(events("<\xC3\xA4:\xE6\x9C\x88 xmlns:\xC3\xA4='u'/>", "startElement"),
                ElementsAre("startElement(\"u\", \"\xE6\x9C\x88\", \"\xC3\xA4:\xE6\x9C\x88\", [])"));
}

/// Expat takes three characters for letters that are none, but not in UTF-8.
TEST_F(NamespacesTest, NamesAreTheSameInEveryEncoding) {
    for (const char* name : {"\xC2\xAA", "\xC2\xB5", "a\xC2\xBA", "p:\xC2\xB5"}) {
        const std::string as8 = name;
        for (const std::string& document :
             {"<" + as8 + "/>", "<a " + as8 + "=''/>", "<a><?" + as8 + "?></a>",
              "<!DOCTYPE a [<!ENTITY " + as8 + " ''>]><a/>", "<!DOCTYPE a [<!ELEMENT " + as8 + " ANY>]><a/>",
              "<!DOCTYPE a [<!NOTATION " + as8 + " SYSTEM ''>]><a/>"}) {
            for (const bool namespaces : {true, false}) {
                set(SC_Features_Namespaces, namespaces);
                EXPECT_TRUE(read(document).isParseException) << document;
                const XmlString units = makeString(reinterpret_cast<const unsigned char*>(document.c_str()));
                EXPECT_TRUE(read(utf16(u"\uFEFF" + unitsOf(units), true)).isParseException) << document;
            }
        }
    }
}

TEST_F(NamespacesTest, LongNamesAreWhole) {
    const std::string prefix(3000, 'p'), local(5000, 'n'), name = prefix + ":" + local;
    EXPECT_THAT(
        events("<" + name + " xmlns:" + prefix + "='u' " + prefix + ":" + local + "='v'/>", "endElement"),
        ElementsAre("endElement(\"u\", \"" + local + "\", \"" + name + "\")"));
}

struct FaultCase {
    const char* name;
    const char* document;
    const char* message;
};

const FaultCase kFaultCases[] = {
    {"UnboundElementPrefix", "<p:a/>", "the prefix p is not bound"},
    {"UnboundAttributePrefix", "<a p:b=''/>", "the prefix p is not bound"},
    {"PrefixOutOfScope", "<a><b xmlns:p='u'/><p:c/></a>", "the prefix p is not bound"},
    {"TwoColons", "<a:b:c xmlns:a='u'/>", "the name a:b:c is not a qualified name"},
    {"LeadingColon", "<:a/>", "the name :a is not a qualified name"},
    {"TrailingColon", "<a: xmlns:a='u'/>", "the name a: is not a qualified name"},
    {"ColonOnly", "<:/>", "the name : is not a qualified name"},
    {"AttributeWithTwoColons", "<a b:c:d=''/>", "the name b:c:d is not a qualified name"},
    {"LocalPartBeginsWithDigit", "<p:1 xmlns:p='u'/>", "the name p:1 is not a qualified name"},
    {"LocalPartBeginsWithHyphen", "<a xmlns:p='u' p:-b=''/>", "the name p:-b is not a qualified name"},
    {"DeclaredPrefixBeginsWithDigit", "<a xmlns:1='u'/>", "the name xmlns:1 is not a qualified name"},
    {"EmptyDeclaredPrefix", "<a xmlns:='u'/>", "the name xmlns: is not a qualified name"},
    {"PrefixUndeclared", "<a xmlns:p='u'><b xmlns:p=''/></a>",
     "the prefix p must not be bound to an empty namespace name"},
    {"XmlBoundElsewhere", "<a xmlns:xml='u'/>", "the prefix xml must not be bound to another namespace"},
    {"XmlUndeclared", "<a xmlns:xml=''/>", "the prefix xml must not be bound to another namespace"},
    {"XmlNamespaceWithAnotherPrefix", "<a xmlns:p='http://www.w3.org/XML/1998/namespace'/>",
     "the namespace of the prefix xml must not be bound to another prefix"},
    {"XmlNamespaceAsDefault", "<a xmlns='http://www.w3.org/XML/1998/namespace'/>",
     "the namespace of the prefix xml must not be bound to another prefix"},
    {"XmlnsDeclared", "<a xmlns:xmlns='http://www.w3.org/2000/xmlns/'/>",
     "the prefix xmlns must not be declared"},
    {"XmlnsNamespaceBound", "<a xmlns:p='http://www.w3.org/2000/xmlns/'/>",
     "the namespace of the prefix xmlns must not be bound"},
    {"XmlnsNamespaceAsDefault", "<a xmlns='http://www.w3.org/2000/xmlns/'/>",
     "the namespace of the prefix xmlns must not be bound"},
    {"ElementWithPrefixXmlns", "<xmlns:a/>", "the prefix xmlns must not be used for elements"},
    {"DuplicateExpandedName", "<a xmlns:p='u' xmlns:q='u' p:b='' q:b=''/>",
     "two attributes have the name b in the namespace u"},
    {"ColonInTarget", "<a><?p:q r?></a>",
     "the name p:q of the target of a processing instruction has a colon"},
    {"ColonInEntityName", "<!DOCTYPE a [<!ENTITY p:q 'r'>]><a/>", "the name p:q of an entity has a colon"},
    {"ColonInParameterEntityName", "<!DOCTYPE a [<!ENTITY % p:q 'r'>]><a/>",
     "the name p:q of an entity has a colon"},
    {"ColonInExternalEntityName", "<!DOCTYPE a [<!ENTITY p:q SYSTEM 'r'>]><a/>",
     "the name p:q of an entity has a colon"},
    {"ColonInUnparsedEntityName",
     "<!DOCTYPE a [<!NOTATION n SYSTEM 's'><!ENTITY p:q SYSTEM 'r' NDATA n>]><a/>",
     "the name p:q of an entity has a colon"},
    {"ColonInNotationName", "<!DOCTYPE a [<!NOTATION p:q SYSTEM 's'>]><a/>",
     "the name p:q of a notation has a colon"},
    {"DeclaredElementNotQualified", "<!DOCTYPE a [<!ELEMENT a:b:c ANY>]><a/>",
     "the name a:b:c is not a qualified name"},
    {"DeclaredAttributeNotQualified", "<!DOCTYPE a [<!ATTLIST a b:c:d CDATA #IMPLIED>]><a/>",
     "the name b:c:d is not a qualified name"},
    {"DoctypeNotQualified", "<!DOCTYPE a:b:c><a/>", "the name a:b:c is not a qualified name"},
};

class NamespaceFaultTest : public NamespacesTest, public ::testing::WithParamInterface<FaultCase> {};

TEST_P(NamespaceFaultTest, IsAFatalErrorOnlyWithNamespaces) {
    const Outcome outcome = refused(GetParam().document);
    EXPECT_EQ(GetParam().message, outcome.message);
    EXPECT_EQ(1u, handler().linesOf("fatalError").size());
    set(SC_Features_Namespaces, false);
    EXPECT_FALSE(read(GetParam().document).threw);
}

INSTANTIATE_TEST_SUITE_P(All, NamespaceFaultTest, ::testing::ValuesIn(kFaultCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(NamespacesTest, SameLocalNameInDifferentNamespacesIsNoDuplicate) {
    EXPECT_THAT(
        events("<a xmlns='u' xmlns:p='u' xmlns:q='v' b='1' p:b='2' q:b='3'/>", "startElement"),
        ElementsAre(
            R"(startElement("u", "a", "a", [("", "b", "b", "CDATA", "1"), ("u", "b", "p:b", "CDATA", "2"), )"
            R"(("v", "b", "q:b", "CDATA", "3")]))"));
}

TEST_F(NamespacesTest, ManyPrefixedAttributesAreComparedQuickly) {
    std::string document = "<a xmlns:p='u' xmlns:q='v'";
    for (int i = 0; i < 20000; ++i)
        document += " " + std::string(i % 2 ? "p" : "q") + ":n" + std::to_string(i) + "=''";
    EXPECT_EQ(1u, events(document + "/>", "endElement").size());
    EXPECT_THAT(refused(document + " xmlns:r='u' r:n1=''/>").message,
                HasSubstr("two attributes have the name n1"));
}

/// Keeps what it was given, as applications do.
class Keeper : public DefaultHandler2 {
public:
    std::vector<XmlString> kept;
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override {
        kept = {uri, localName, qName};
        for (unsigned int i = 0; i < attributes.getLength(); ++i) {
            kept.push_back(attributes.getQName(i));
            kept.push_back(attributes.getType(i));
            kept.push_back(attributes.getValue(i));
        }
    }
};

TEST_F(NamespacesTest, KeptStringsOutliveTheReaderAndCanBeAssignedTo) {
    Keeper keeper;
    {
        SaxEngineReader shortLived;
        shortLived.setContentHandler(&keeper);
        const std::string document = "<p:a xmlns:p='u' b='c'/>";
        MemoryByteChannel channel(document.data(), document.size());
        InputSource source(&channel);
        shortLived.parse(source);
    }
    std::vector<std::string> shown;
    for (XmlString& string : keeper.kept) {
        shown.push_back(show(string));
        string += text(u"!"); // nothing that is handed out is immutable
        string = text(u"x");
    }
    EXPECT_THAT(shown, ElementsAre("u", "a", "p:a", "b", "CDATA", "c"));
}

/// Counts the requests for memory from one element to the next.
class Meter : public DefaultHandler2 {
public:
    std::size_t requests = 0;
    int elements = 0;
    void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
        const std::size_t now = hostMemory().requests() + newMemory().requests();
        if (++elements > 1000)
            requests += now - before_;
        before_ = now;
    }

private:
    std::size_t before_ = 0;
};

TEST_F(NamespacesTest, NamesReachHandlersWithoutAnAllocation) {
    std::string document = "<a xmlns='urn:d' xmlns:p='urn:p'>";
    for (int i = 0; i < 5000; ++i)
        document += "<p:b c='1' p:d='2'><e xmlns:q='urn:q' q:f=''/>text</p:b>\n";
    document += "</a>";
    Meter meter;
    reader().setContentHandler(&meter);
    EXPECT_FALSE(read(document).threw);
    EXPECT_EQ(10001, meter.elements);
    EXPECT_EQ(0u, meter.requests);
}

} // namespace
} // namespace Quillon::Xml::Sax
