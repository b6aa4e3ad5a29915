// URI::resolve.
#include "net/URI.h"

#include "net/UriFixture.h"

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriResolveTest : public UriFixture {
protected:
    static std::string resolved(const URI& base, const URI& reference, bool strict = true) {
        return show(*UriPtr(reference.resolve(base, strict)));
    }
    static std::string resolved(const std::string& base, const std::string& reference, bool strict = true) {
        return resolved(*parsed(base), *parsed(reference), strict);
    }
    static std::string text(const std::string& base, const std::string& reference, bool strict = true) {
        return recomposed(*UriPtr(parsed(reference)->resolve(*parsed(base), strict)));
    }
};

const char kBase[] = "x://a/b/c/d;p?q";

TEST_F(UriResolveTest, RelativePathIsMerged) {
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/g'", resolved(kBase, "g"));
    EXPECT_EQ("scheme='x' authority='a' path='/b/g'", resolved(kBase, "../g"));
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/g' query='y' fragment='s'", resolved(kBase, "g?y#s"));
}

TEST_F(UriResolveTest, EmptyReferenceGivesPathAndQueryOfTheBase) {
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/d;p' query='q'", resolved(kBase, ""));
}

TEST_F(UriResolveTest, QueryOfTheReferenceReplacesTheBases) {
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/d;p' query='y'", resolved(kBase, "?y"));
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/d;p' query=''", resolved(kBase, "?"));
}

TEST_F(UriResolveTest, PathOfTheBaseIsTakenAsItIs) {
    EXPECT_EQ("scheme='x' authority='a' path='/b/../c/.'", resolved("x://a/b/../c/.", ""));
    EXPECT_EQ("scheme='x' authority='a' path='/b/../c/.' query='y'", resolved("x://a/b/../c/.", "?y"));
}

TEST_F(UriResolveTest, FragmentIsTheReferencesInEveryCase) {
    EXPECT_EQ("scheme='x' path='b' fragment='f'", resolved("x:b#old", "#f"));
    EXPECT_EQ("scheme='x' path='b'", resolved("x:b#old", ""));
    EXPECT_EQ("scheme='y' path='c' fragment='f'", resolved("x:b#old", "y:c#f"));
    EXPECT_EQ("scheme='x' authority='h' path='' fragment='f'", resolved("x:b#old", "//h#f"));
    EXPECT_EQ("scheme='x' path='/c' fragment='f'", resolved("x:b#old", "/c#f"));
    EXPECT_EQ("scheme='x' path='c'", resolved("x:b#old", "c"));
}

TEST_F(UriResolveTest, ReferenceWithSchemeStandsAlone) {
    EXPECT_EQ("scheme='y' authority='h' path='/c' query='z'", resolved(kBase, "y://h/b/../c?z"));
    EXPECT_EQ("scheme='y' path=''", resolved(kBase, "y:"));
    EXPECT_EQ("scheme='y' path='c'", resolved(kBase, "y:../c"));
}

TEST_F(UriResolveTest, ReferenceWithAuthorityTakesTheScheme) {
    EXPECT_EQ("scheme='x' authority='h' path='/c' query='z'", resolved(kBase, "//h/b/../c?z"));
    EXPECT_EQ("scheme='x' authority='h' path=''", resolved(kBase, "//h"));
}

TEST_F(UriResolveTest, AbsolutePathIsNotMerged) {
    EXPECT_EQ("scheme='x' authority='a' path='/h'", resolved(kBase, "/g/../h"));
}

TEST_F(UriResolveTest, SameSchemeIsDroppedWhenNotStrict) {
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/g'", resolved(kBase, "x:g", false));
    EXPECT_EQ("scheme='x' path='g'", resolved(kBase, "x:g", true));
    EXPECT_EQ("scheme='x' authority='a' path='/b/c/d;p' query='q'", resolved(kBase, "x:", false));
    EXPECT_EQ("scheme='x' authority='h' path=''", resolved(kBase, "x://h", false));
}

TEST_F(UriResolveTest, SchemesOfOtherCaseAreNotTheSame) {
    EXPECT_EQ("scheme='X' path='g'", resolved(kBase, "X:g", false));
}

TEST_F(UriResolveTest, EmptySchemeIsTheSameAsNone) {
    const URI base = fromModel({.authority = "a", .path = "/b"});
    const URI reference = fromModel({.scheme = "", .path = "g"});
    EXPECT_EQ("authority='a' path='/g'", resolved(base, reference, false));
    EXPECT_EQ("scheme='' path='g'", resolved(base, reference, true));
    const URI baseWithEmptyScheme = fromModel({.scheme = "", .path = "/b"});
    EXPECT_EQ("scheme='' path='/g'", resolved(baseWithEmptyScheme, fromModel({.path = "g"}), false));
}

TEST_F(UriResolveTest, BaseWithAuthorityAndEmptyPathGetsASlash) {
    EXPECT_EQ("scheme='x' authority='a' path='/g'", resolved("x://a", "g"));
    EXPECT_EQ("scheme='x' authority='a' path='/g'", resolved("x://a?q", "g"));
    EXPECT_EQ("scheme='x' authority='' path='/g'", resolved("x://", "g"));
}

TEST_F(UriResolveTest, BaseWithoutSlashIsReplaced) {
    EXPECT_EQ("scheme='x' path='g'", resolved("x:", "g"));
    EXPECT_EQ("scheme='x' path='g'", resolved("x:b", "g"));
    EXPECT_EQ("path='g'", resolved("", "g"));
}

TEST_F(UriResolveTest, BasePathIsKeptUpToItsLastSlash) {
    EXPECT_EQ("scheme='x' path='b/g'", resolved("x:b/c", "g"));
    EXPECT_EQ("scheme='x' path='b/c/g'", resolved("x:b/c/", "g"));
    EXPECT_EQ("scheme='x' path='/g'", resolved("x:/", "g"));
}

TEST_F(UriResolveTest, DotSegmentsOfTheBaseVanishWithTheMerge) {
    EXPECT_EQ("scheme='x' authority='a' path='/c/g'", resolved("x://a/b/../c/d", "g"));
}

TEST_F(UriResolveTest, ResultHasNoPartsOfTheAuthority) {
    const UriPtr base = parsed("x://u@a:9/b"), reference = parsed("//v@h:8/p");
    base->setPort(9);
    reference->setPort(8);
    EXPECT_EQ("scheme='x' authority='v@h:8' path='/p'", resolved(*base, *reference));
    EXPECT_EQ("scheme='x' authority='u@a:9' path='/c'", resolved(*base, *parsed("c")));
    EXPECT_EQ(-1, UriPtr(reference->resolve(*base, true))->getPort());
}

TEST_F(UriResolveTest, NullPathOfTheReferenceIsAnEmptyOne) {
    EXPECT_EQ("scheme='x' path='/b' query='q'", resolved(*parsed("x:/b?q"), URI()));
    EXPECT_EQ("scheme='x' path='/b' query='r'", resolved(*parsed("x:/b?q"), fromModel({.query = "r"})));
    EXPECT_EQ("scheme='y' path=''", resolved(*parsed("x:/b?q"), fromModel({.scheme = "y"})));
    EXPECT_EQ("scheme='x' authority='h' path=''", resolved(*parsed("x:/b?q"), fromModel({.authority = "h"})));
}

TEST_F(UriResolveTest, NullPathOfTheBaseIsAnEmptyOne) {
    EXPECT_EQ("path=''", resolved(URI(), URI()));
    EXPECT_EQ("path='g'", resolved(URI(), *parsed("g")));
    EXPECT_EQ("authority='a' path='/g'", resolved(fromModel({.authority = "a"}), *parsed("g")));
    EXPECT_EQ("authority='a' path=''", resolved(fromModel({.authority = "a"}), URI()));
}

TEST_F(UriResolveTest, AgainstItself) {
    const UriPtr uri = parsed("a/b?q#f");
    EXPECT_EQ("path='a/a/b' query='q' fragment='f'", resolved(*uri, *uri));
}

TEST_F(UriResolveTest, OperandsStayAsTheyAre) {
    const UriPtr base = parsed("x://a/b/../c"), reference = parsed("../g");
    base->setPort(9);
    resolved(*base, *reference);
    EXPECT_EQ("scheme='x' authority='a' path='/b/../c' host='a' port=9", show(*base));
    EXPECT_EQ("path='../g'", show(*reference));
}

struct DotSegmentsCase {
    const char* name;
    const char* path;
    const char* result;
};

class UriDotSegmentsTest : public UriFixture, public ::testing::WithParamInterface<DotSegmentsCase> {};

TEST_P(UriDotSegmentsTest, AreRemoved) {
    const URI uri = fromModel({.path = GetParam().path});
    EXPECT_STREQ(GetParam().result, textOf(UriPtr(uri.normalize())->getPath()).c_str());
    const URI withScheme = fromModel({.scheme = "x", .path = GetParam().path});
    EXPECT_STREQ(GetParam().result, textOf(UriPtr(withScheme.resolve(URI(), true))->getPath()).c_str());
    EXPECT_EQ(GetParam().result, modelWithoutDotSegments(GetParam().path)) << "the model";
}

const DotSegmentsCase kDotSegmentsCases[] = {
    {"Nothing", "", ""},
    {"None", "/a/b", "/a/b"},
    {"FirstExampleOfTheRfc", "/a/b/c/./../../g", "/a/g"},
    {"SecondExampleOfTheRfc", "mid/content=5/../6", "mid/6"},
    {"LeadingTwoDots", "../a", "a"},
    {"LeadingOneDot", "./a", "a"},
    {"SeveralLeadingOnes", "../.././../a", "a"},
    {"OneDotInside", "/a/./b", "/a/b"},
    {"OneDotAtTheEnd", "/a/.", "/a/"},
    {"OneDotBehindSlash", "/.", "/"},
    {"TwoDotsInside", "/a/b/../c", "/a/c"},
    {"TwoDotsAtTheEnd", "/a/b/..", "/a/"},
    {"TwoDotsBehindSlash", "/..", "/"},
    {"TwoDotsAboveTheRoot", "/../../a", "/a"},
    {"OneDotAlone", ".", ""},
    {"TwoDotsAlone", "..", ""},
    {"TwoDotsAloneBehindLeadingOnes", "../..", ""},
    {"SlashBehindOneDot", "./", ""},
    {"SlashBehindTwoDots", "../", ""},
    {"OutputWithoutSlashBecomesEmpty", "mid/../a", "/a"},
    {"OutputWithoutSlashBecomesEmptyAtTheEnd", "mid/..", "/"},
    {"DotsThatStartLongerSegments", ".a/..b/.../....", ".a/..b/.../...."},
    {"DotsThatEndLongerSegments", "a./b../c", "a./b../c"},
    {"DotsThatStartALongerFirstSegment", "..a", "..a"},
    {"EmptySegmentsAreSegments", "/a//../b", "/a/b"},
    {"TwoSlashesAtTheBeginning", "//..//a", "//a"},
    {"EmptySegmentAboveTheRoot", "/..//a", "//a"},
    {"EscapedDotsAreNone", "/a/%2e%2E/b", "/a/%2e%2E/b"},
};
INSTANTIATE_TEST_SUITE_P(Paths, UriDotSegmentsTest, ::testing::ValuesIn(kDotSegmentsCases),
                         [](const auto& info) { return info.param.name; });

std::string repeated(const char* part, std::size_t times) {
    std::string text;
    for (; times != 0; --times)
        text += part;
    return text;
}

// Quadratic work on these would take hours.
TEST_F(UriResolveTest, DeepPathsTakeLinearTime) {
    constexpr std::size_t kDepth = 1000000;
    EXPECT_EQ("x://a/g", text("x://a/" + repeated("b/", kDepth), repeated("../", kDepth) + "g"));
    EXPECT_EQ("x://a/g", text("x://a/", repeated("../", kDepth) + "g"));
    EXPECT_EQ("x://a/g", text("x://a/" + repeated("b/", kDepth) + repeated("../", kDepth), "g"));
    EXPECT_EQ("x://a/b/g", text("x://a/b/", repeated("b/../", kDepth) + "g"));
    EXPECT_EQ("x://a/g", text("x://a/", repeated("./", kDepth) + "g"));
    EXPECT_EQ("x:/g", text("x:", repeated("bbbb", kDepth) + repeated("/..", kDepth) + "/g"));
}

TEST_F(UriResolveTest, SurvivesEveryFailure) {
    const UriPtr base = parsed("x://a/b/c?q#f");
    for (const char* text : {"g?q#f", "", "?q#f", "//h/p?q#f", "x://h/p?q#f", "/p?q#f"}) {
        const UriPtr reference = parsed(text);
        everyAllocationFails([&] { UriPtr(reference->resolve(*base, true)); });
        everyNewFails([&] { UriPtr(reference->resolve(*base, true)); });
    }
}

/// Merging two paths and removing dot segments included.
TEST_F(UriResolveTest, AllocatesOneBlockForEachComponent) {
    const UriPtr base = parsed("x://a/b/c?q#f");
    for (const char* text : {"g/../h?q#f", "../g?q#f", "/p/./p?q#f", "//h/p/..?q#f", "x://h/p?q#f", "?q#f"}) {
        const UriPtr reference = parsed(text);
        const std::size_t host = hostMemory().requests(), objects = newMemory().requests();
        const UriPtr target(reference->resolve(*base, true));
        EXPECT_EQ(host + 5, hostMemory().requests()) << text;
        EXPECT_EQ(objects + 1, newMemory().requests()) << text;
    }
}

} // namespace
} // namespace Quillon::Testing
