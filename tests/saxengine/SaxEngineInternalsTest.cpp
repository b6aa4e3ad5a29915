// The parts of the plug-in that its module hides.
#include "ContentModelText.h"
#include "EncodingDetection.h"
#include "ExpatBuild.h"
#include "InternTable.h"
#include "NameStart.h"
#include "SystemIdentifier.h"
#include "Text.h"
#include "TextPosition.h"
#include "WidePlace.h"
#include "support/HostFixture.h"
#include "support/SharedData.h"
#include "support/Text.h"

#include <gmock/gmock.h>
#include <unistd.h>

namespace Quillon::SaxEngine {
namespace {

using namespace Testing;

class SaxEngineInternalsTest : public HostFixture {};

/// Whether Expat takes `<X/>` in UTF-8.
bool expatTakesName(unsigned int unit) {
    const std::string document = "<" + show(text(std::u16string(1, static_cast<char16_t>(unit)))) + "/>";
    const XML_Parser parser = XML_ParserCreate(nullptr);
    const bool taken =
        XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK;
    XML_ParserFree(parser);
    return taken;
}

TEST_F(SaxEngineInternalsTest, NamesBeginAsExpatsDoButForTheColon) {
    for (unsigned int unit = 1; unit < 0xFFFE; ++unit) {
        const bool isSurrogate = unit >= 0xD800 && unit < 0xE000;
        if (unit == u':' || unit == u'/' || isSurrogate)
            EXPECT_FALSE(isNameStart(static_cast<unsigned short>(unit))) << unit;
        else
            ASSERT_EQ(expatTakesName(unit), isNameStart(static_cast<unsigned short>(unit))) << unit;
    }
}

TEST_F(SaxEngineInternalsTest, ExpatInUseIsUsable) {
    EXPECT_TRUE(isUsableBuild(XML_GetFeatureList()));
}

TEST_F(SaxEngineInternalsTest, ExpatOfAnotherBuildIsNotUsable) {
#ifdef XML_LARGE_SIZE
    const XML_Feature size = {XML_FEATURE_LARGE_SIZE, "", 0}, otherSize = {XML_FEATURE_NS, "", 0};
#else
    const XML_Feature size = {XML_FEATURE_NS, "", 0}, otherSize = {XML_FEATURE_LARGE_SIZE, "", 0};
#endif
    const XML_Feature dtd = {XML_FEATURE_DTD, "", 0}, end = {XML_FEATURE_END, nullptr, 0};
    const auto width = [](long bytes) { return XML_Feature{XML_FEATURE_SIZEOF_XML_CHAR, "", bytes}; };
    const XML_Feature right[] = {width(2), dtd, size, end};
    EXPECT_TRUE(isUsableBuild(right));
    const XML_Feature narrow[] = {width(1), dtd, size, end};
    EXPECT_FALSE(isUsableBuild(narrow));
    const XML_Feature wide[] = {width(4), dtd, size, end};
    EXPECT_FALSE(isUsableBuild(wide));
    const XML_Feature silent[] = {dtd, size, end};
    EXPECT_FALSE(isUsableBuild(silent));
    const XML_Feature withoutDtd[] = {width(2), size, end};
    EXPECT_FALSE(isUsableBuild(withoutDtd));
    const XML_Feature otherPlaces[] = {width(2), dtd, otherSize, end};
    EXPECT_FALSE(isUsableBuild(otherPlaces));
}

TEST_F(SaxEngineInternalsTest, PlacesGoOnWhereTheCounterWraps) {
    WidePlace<std::uint32_t> place;
    EXPECT_EQ(1, place.advance(1, 0).column);
    EXPECT_EQ(0xFFFFFFFFll, place.advance(0xFFFFFFFF, 7).line);
    EXPECT_EQ(0x100000001ll, place.advance(1, 9).line);
    EXPECT_EQ(10, place.advance(1, 9).column);
    EXPECT_EQ(0x180000001ll, place.advance(0x80000001, 0).line);
    EXPECT_EQ(0xFFFFFFF1ll, place.advance(0x80000001, 0xFFFFFFF0).column);
    EXPECT_EQ(0x100000011ll, place.advance(0x80000001, 0x10).column);
    EXPECT_EQ(0x180000001ll, place.advance(0x80000001, 0x10).line);
    EXPECT_EQ(4, place.advance(0x80000002, 3).column) << "a new line begins";
}

TEST_F(SaxEngineInternalsTest, TextPositionCountsLinesAndCharacters) {
    TextPosition position;
    const auto expect = [&](std::string_view text, long long line, long long column) {
        position.advanceUtf8(text.data(), text.size());
        EXPECT_EQ(line, position.location().line) << text;
        EXPECT_EQ(column, position.location().column) << text;
    };
    expect("", 1, 1);
    expect("ab", 1, 3);
    expect("\xE2\x82", 1, 4);
    expect("\xAC\r", 2, 1);
    expect("\n", 2, 1);
    expect("\n\r\r\nx", 5, 2);
    TextPosition wide;
    const char units[] = {'\0', 'a', '\xD8', '\x3D', '\xDE', '\0', '\0', '\n'};
    wide.advanceUtf16(units, 6, true);
    EXPECT_EQ(3, wide.location().column);
    wide.advanceUtf16(units + 6, 2, true);
    EXPECT_EQ(2, wide.location().line);
}

// RFC 3986, section 5.4, but for what only URIs with queries and other schemes need: the whole table is read where the
// data is there.
TEST_F(SaxEngineInternalsTest, ReferencesAreResolvedAsRfc3986Says) {
    const std::string base = "http://a/b/c/d;p?q";
    EXPECT_EQ("http://a/b/c/g", resolvedUri(base, "g"));
    EXPECT_EQ("http://a/b/c/g/", resolvedUri(base, "g/"));
    EXPECT_EQ("http://a/g", resolvedUri(base, "/g"));
    EXPECT_EQ("http://g", resolvedUri(base, "//g"));
    EXPECT_EQ("http://a/b/c/d;p?y", resolvedUri(base, "?y"));
    EXPECT_EQ("http://a/b/c/d;p?q#s", resolvedUri(base, "#s"));
    EXPECT_EQ("http://a/b/c/d;p?q", resolvedUri(base, ""));
    EXPECT_EQ("http://a/g", resolvedUri(base, "../../../g"));
    EXPECT_EQ("g:h", resolvedUri(base, "g:h"));
    EXPECT_EQ("file:///x/y", resolvedUri("file:///x/z", "y"));
    EXPECT_EQ("http://h/y", resolvedUri("http://h", "y"));
    EXPECT_EQ("urn:y", resolvedUri("urn:x", "y"));
    if (!hasSharedData("the examples of RFC 3986"))
        return;
    int rows = 0;
    for (const std::vector<std::string>& row : tableRows(sharedData("uri/rfc3986-5.4.tsv"))) {
        if (row.at(1) == "lax")
            continue;
        EXPECT_EQ(row.at(4), resolvedUri(row.at(2), row.at(3))) << row.at(3);
        ++rows;
    }
    EXPECT_GT(rows, 40);
}

TEST_F(SaxEngineInternalsTest, PathsBecomeUris) {
    EXPECT_EQ("file:///x/y%20z%25%23%3F%5B.xml", absoluteUri("/x/y z%#?[.xml"));
    EXPECT_EQ("file:///x/%C3%A4", absoluteUri("/x/\xC3\xA4"));
    EXPECT_EQ("file:///y", absoluteUri("/x/.././y"));
    EXPECT_EQ("http://x/../y", absoluteUri("http://x/../y")) << "what is a URI already is left alone";
    char folder[4096];
    ASSERT_NE(nullptr, ::getcwd(folder, sizeof folder));
    EXPECT_EQ(absoluteUri(folder) + "/a:b", absoluteUri("./a:b"));
    EXPECT_EQ(absoluteUri(folder) + "/c", resolvedUri("", "c"));
    EXPECT_EQ("/x/y z%#?[.xml", pathOf(absoluteUri("/x/y z%#?[.xml")));
}

TEST_F(SaxEngineInternalsTest, TableKeepsOneEntryPerText) {
    struct Entry {
        Xml::XmlString text;
        int number;
    };
    InternTable<Entry> table;
    std::vector<Entry*> entries;
    const auto intern = [&](const std::u16string& key, int number) {
        const Xml::XmlString string = text(key);
        return &table.intern(UnitSpan(string), [&] {
            auto entry = std::make_unique<Entry>();
            entry->text = string;
            entry->number = number;
            return entry;
        });
    };
    EXPECT_EQ(nullptr, table.find(UnitSpan(text(u"x"))));
    for (int i = 0; i < 5000; ++i)
        entries.push_back(intern(
            std::u16string(static_cast<std::size_t>(i % 7), u'x') + static_cast<char16_t>(0x100 + i), i));
    for (int i = 0; i < 5000; ++i) {
        const std::u16string key =
            std::u16string(static_cast<std::size_t>(i % 7), u'x') + static_cast<char16_t>(0x100 + i);
        EXPECT_EQ(entries[static_cast<std::size_t>(i)], intern(key, -1));
        EXPECT_EQ(i, entries[static_cast<std::size_t>(i)]->number);
    }
}

} // namespace
} // namespace Quillon::SaxEngine
