// URI::operator==.
#include "net/URI.h"

#include "net/UriFixture.h"

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriCompareTest : public UriFixture {
protected:
    static bool equal(const ModelUri& a, const ModelUri& b) {
        const URI left = fromModel(a), right = fromModel(b);
        EXPECT_EQ(left == right, right == left);
        EXPECT_EQ(left == right, modelEqual(a, b)) << "the model";
        return left == right;
    }
    static bool equal(const std::string& a, const std::string& b) { return *parsed(a) == *parsed(b); }
};

using Member = std::optional<std::string> ModelUri::*;
const Member kCompared[] = {&ModelUri::scheme, &ModelUri::authority, &ModelUri::path, &ModelUri::query,
                            &ModelUri::fragment};

/// Everything absent but one component.
ModelUri only(Member component, const char* text) {
    ModelUri uri;
    uri.*component = text;
    return uri;
}

TEST_F(UriCompareTest, IsEqualToItself) {
    const UriPtr uri = parsed("x://u@h:8/p?q#f");
    EXPECT_TRUE(*uri == *uri);
    const URI none;
    EXPECT_TRUE(none == none);
}

TEST_F(UriCompareTest, IsEqualToItsCopy) {
    const UriPtr uri = parsed("x://u@h:8/p?q#f");
    uri->setPort(8);
    EXPECT_TRUE(*uri == URI(*uri));
}

TEST_F(UriCompareTest, AbsentOnesAreEqual) {
    EXPECT_TRUE(URI() == URI());
}

TEST_F(UriCompareTest, EachComponentCounts) {
    for (const auto component : kCompared)
        EXPECT_FALSE(equal(only(component, "a"), only(component, "b")));
}

TEST_F(UriCompareTest, AbsentDiffersFromEmpty) {
    for (const auto component : kCompared)
        EXPECT_FALSE(equal(only(component, ""), ModelUri()));
}

TEST_F(UriCompareTest, LengthCounts) {
    for (const auto component : kCompared)
        EXPECT_FALSE(equal(only(component, "a"), only(component, "ab")));
}

TEST_F(UriCompareTest, SameTextInAnotherComponentDiffers) {
    EXPECT_FALSE(equal(ModelUri{.query = "a"}, ModelUri{.fragment = "a"}));
}

TEST_F(UriCompareTest, CaseIsIgnoredInEveryComponent) {
    for (const auto component : kCompared)
        EXPECT_TRUE(equal(only(component, "aBcXyZ%4a"), only(component, "AbCxYz%4A")));
    EXPECT_TRUE(equal("X://H/P", "x://h/p"));
    EXPECT_TRUE(equal("x:/Path?Query#Frag", "x:/pATH?qUERY#fRAG"));
}

TEST_F(UriCompareTest, OnlyLettersOfAsciiFold) {
    EXPECT_FALSE(equal(only(&ModelUri::path, "@"), only(&ModelUri::path, "`")));
    EXPECT_FALSE(equal(only(&ModelUri::path, "["), only(&ModelUri::path, "{")));
    EXPECT_FALSE(equal(only(&ModelUri::path, "\xC4"), only(&ModelUri::path, "\xE4")));
}

TEST_F(UriCompareTest, EscapesAreText) {
    EXPECT_FALSE(equal("%41", "A"));
    EXPECT_TRUE(equal("%4a", "%4A"));
}

TEST_F(UriCompareTest, DotSegmentsAreText) {
    EXPECT_FALSE(equal("/a/./b", "/a/b"));
}

TEST_F(UriCompareTest, PartsOfTheAuthorityTakeNoPart) {
    URI a, b;
    a.setUserInfo(hostText("u"));
    a.setHost(hostText("h"));
    a.setPort(8);
    EXPECT_TRUE(a == b);
    b.setHost(hostText("other"));
    EXPECT_TRUE(a == b);
}

} // namespace
} // namespace Quillon::Testing
