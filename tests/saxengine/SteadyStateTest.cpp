// What a long document costs: no memory per event, and time that grows with its length only.
#include "saxengine/ReadingFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <utility>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

/// Asks for everything that an element has and keeps nothing of it.
class Asker : public DefaultHandler2 {
public:
    std::size_t units = 0;
    void startElement(const XmlString&, const XmlString&, const XmlString&,
                      const Attributes& attributes) override {
        for (unsigned int i = 0; i < attributes.getLength(); ++i)
            units += attributes.getURI(i).size() + attributes.getLocalName(i).size()
                     + attributes.getQName(i).size() + attributes.getType(i).size()
                     + attributes.getValue(i).size();
    }
};

class SteadyStateTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        listenQuietly(asker);
    }
    void listenQuietly(DefaultHandler2& handler) {
        reader().setContentHandler(&handler);
        reader().setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&handler));
        reader().setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&handler));
    }
    /// How often memory is asked for in one parse.
    std::size_t requests(const std::string& document) {
        MemoryByteChannel channel(document.data(), document.size());
        InputSource source(&channel);
        const std::size_t before = hostMemory().requests() + newMemory().requests();
        reader().parse(source);
        return hostMemory().requests() + newMemory().requests() - before;
    }
    Asker asker;
};

/// Elements with and without prefixes, attributes whose values have all lengths up to 200, texts, CDATA and comments.
std::string records(int count) {
    std::string document = "<!DOCTYPE r [<!ELEMENT r (b)*><!ATTLIST b t NMTOKEN 'default'>]>"
                           "<r xmlns='urn:d' xmlns:p='urn:p'>\n";
    for (int i = 0; i < count; ++i) {
        const auto length = static_cast<std::size_t>(i) * 37 % 200;
        document += "<b c='" + std::string(length, 'v') + "' p:d='" + std::string(200 - length, 'w')
                    + "'><e xmlns:q='urn:q' q:f=''/>text &amp; text<![CDATA[data]]></b><!--note-->\n";
    }
    return document + "</r>";
}

TEST_F(SteadyStateTest, TwiceAsManyRecordsTakeNoMoreAllocations) {
    const std::string once = records(5000), twice = records(10000);
    const std::size_t needed = requests(once);
    const std::size_t units = std::exchange(asker.units, 0);
    EXPECT_EQ(needed, requests(twice));
    EXPECT_GT(asker.units, units / 5 * 9); // it has read all of them
}

/// Keeps the value of the attribute `keep` of each element, when it has one.
class ValueKeeper : public DefaultHandler2 {
public:
    std::vector<XmlString> kept;
    void startElement(const XmlString&, const XmlString&, const XmlString&,
                      const Attributes& attributes) override {
        for (unsigned int i = 0; i < attributes.getLength(); ++i)
            if (const XmlString value = attributes.getValue(i); show(attributes.getQName(i)) == "keep")
                kept.push_back(value);
    }
};

TEST_F(SteadyStateTest, ValuesThatAreKeptDoNotChange) {
    std::string document = "<r>";
    for (int i = 0; i < 1000; ++i)
        document += "<a " + std::string(i % 3 ? "keep" : "drop") + "='value " + std::to_string(i) + "'/>";
    ValueKeeper keeper;
    listenQuietly(keeper);
    EXPECT_FALSE(read(document + "</r>").threw);
    listenQuietly(asker);
    EXPECT_FALSE(read(document + "</r>").threw);
    ASSERT_EQ(666u, keeper.kept.size());
    for (std::size_t i = 0; i < keeper.kept.size(); ++i)
        EXPECT_EQ("value " + std::to_string(i / 2 * 3 + i % 2 + 1), show(keeper.kept[i]));
}

/// What the values are, and that a value asked for twice is one string.
class ValueChecker : public DefaultHandler2 {
public:
    std::vector<std::string> values;
    void startElement(const XmlString&, const XmlString&, const XmlString&,
                      const Attributes& attributes) override {
        for (unsigned int i = 0; i < attributes.getLength(); ++i) {
            const XmlString value = attributes.getValue(i);
            EXPECT_EQ(value.data(), attributes.getValue(i).data());
            EXPECT_EQ(0, value.data()[value.size()]);
            values.push_back(show(value));
        }
    }
};

TEST_F(SteadyStateTest, ValuesOfAllLengthsFollowEachOther) {
    std::string document = "<r>";
    std::vector<std::string> expected;
    for (const std::size_t length :
         {0u, 1u, 15u, 16u, 14u, 254u, 255u, 256u, 3u, 70000u, 255u, 0u, 257u, 31u})
        expected.emplace_back(length, static_cast<char>('a' + expected.size()));
    for (const std::string& value : expected)
        document += "<a v='" + value + "'/>";
    ValueChecker checker;
    listenQuietly(checker);
    EXPECT_FALSE(read(document + "</r>").threw);
    EXPECT_EQ(expected, checker.values);
}

TEST_F(SteadyStateTest, NamesThatBeginAlikeStayApart) {
    std::string document = "<r>";
    std::vector<std::string> expected = {"r"};
    for (int i = 0; i < 300; ++i) {
        expected.emplace_back(static_cast<std::size_t>(i * 7 % 5 + 1), 'n');
        document +=
            "<" + expected.back() + " " + std::string(static_cast<std::size_t>(i % 4 + 1), 'm') + "=''/>";
    }
    listen(reader(), handler());
    std::vector<std::string> names;
    for (const std::string& event : events(document + "</r>", "startElement")) {
        const std::size_t begin = event.find(", \"") + 3;
        names.push_back(event.substr(begin, event.find('"', begin) - begin));
    }
    EXPECT_EQ(expected, names);
}

TEST_F(SteadyStateTest, AHundredThousandAttributesKeepNamesAndValues) {
    std::string document = "<r";
    for (int i = 0; i < 100000; ++i)
        document += " n" + std::to_string(i) + "='" + std::to_string(i) + "'";
    ValueChecker checker;
    listenQuietly(checker);
    EXPECT_FALSE(read(document + "><a b='c'/></r>").threw);
    ASSERT_EQ(100001u, checker.values.size());
    EXPECT_EQ("99999", checker.values[99999]);
    EXPECT_EQ("c", checker.values.back());
}

struct Shape {
    const char* name;
    std::string (*document)(int size);
};

std::string manyTimes(const std::string& begin, int times, const std::string& piece, const std::string& end) {
    std::string document = begin;
    for (int i = 0; i < times; ++i)
        document += piece;
    return document + end;
}
std::string prefixedAttributes(int size) {
    std::string document = "<r xmlns:p='u' xmlns:q='u'";
    for (int i = 0; i < size; ++i)
        document += (i % 2 ? " p:n" : " q:n") + std::to_string(i) + "=''";
    return document + "/>";
}
std::string attributes(int size) {
    std::string document = "<r";
    for (int i = 0; i < size; ++i)
        document += " n" + std::to_string(i) + "=''";
    return document + "/>";
}
std::string names(int size) {
    std::string document = "<r>";
    for (int i = 0; i < size; ++i)
        document += "<n" + std::to_string(i) + "/>";
    return document + "</r>";
}
std::string depth(int size) {
    return manyTimes("", size, "<a>", manyTimes("", size, "</a>", ""));
}
std::string entities(int size) {
    return manyTimes("<!DOCTYPE r [<!ENTITY e 'text<a/>'>]><r>", size, "&e;", "</r>");
}
std::string longLine(int size) {
    return manyTimes("<r>", size, "<a/>", "</r>");
}
std::string bindings(int size) {
    return manyTimes("<r>", size, "<a xmlns:p='u' xmlns='v'><p:b/></a>", "</r>");
}

const Shape kShapes[] = {
    {"Attributes", attributes}, {"PrefixedAttributes", prefixedAttributes},
    {"Names", names},           {"Depth", depth},
    {"Entities", entities},     {"LongLine", longLine},
    {"Bindings", bindings},
};

class GrowthTest : public SteadyStateTest, public ::testing::WithParamInterface<Shape> {
protected:
    /// The shortest of a few parses, in processor time.
    double seconds(const std::string& document) {
        std::clock_t shortest = std::numeric_limits<std::clock_t>::max();
        for (int i = 0; i < 3; ++i) {
            const std::clock_t before = std::clock();
            requests(document);
            shortest = std::min(shortest, std::clock() - before);
        }
        return static_cast<double>(shortest) / CLOCKS_PER_SEC;
    }
};

/// Eight times the input: a quadratic cost would be 64 times as high.
TEST_P(GrowthTest, TimeGrowsWithTheLength) {
    const int size = 20000;
    reader().setMaximumDepth(8 * size);
    const double small = seconds(GetParam().document(size));
    const double large = seconds(GetParam().document(8 * size));
    EXPECT_LT(large, 24 * small + 0.05);
}

INSTANTIATE_TEST_SUITE_P(All, GrowthTest, ::testing::ValuesIn(kShapes),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace Quillon::Xml::Sax
