// URI::relativize.
#include "net/URI.h"

#include "net/UriFixture.h"

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriRelativizeTest : public UriFixture {
protected:
    static std::string relativized(const URI& base, const URI& target) {
        return show(*UriPtr(target.relativize(base)));
    }
    static std::string relativized(const std::string& base, const std::string& target) {
        return relativized(*parsed(base), *parsed(target));
    }
};

TEST_F(UriRelativizeTest, OtherSchemeGivesAllOfTheTarget) {
    EXPECT_EQ("scheme='y' authority='u@h:8' path='/b/../c' query='q' fragment='f'",
              relativized("x://h/b/c", "y://u@h:8/b/../c?q#f"));
    EXPECT_EQ("scheme='y' path='b'", relativized("x:b", "y:b"));
}

TEST_F(UriRelativizeTest, SchemesAreComparedWithoutCase) {
    EXPECT_EQ("path=''", relativized("abc:b", "ABC:b"));
}

TEST_F(UriRelativizeTest, MissingSchemeIsNotHeeded) {
    EXPECT_EQ("path=''", relativized("x:b", "b"));
    EXPECT_EQ("path=''", relativized("b", "x:b"));
}

TEST_F(UriRelativizeTest, OtherAuthorityGivesAllButTheScheme) {
    EXPECT_EQ("authority='i' path='/b/c' query='q' fragment='f'", relativized("x://h/b/c", "x://i/b/c?q#f"));
    EXPECT_EQ("authority='i' path='/b/c'", relativized("x://h/b/c", "//i/b/c"));
    EXPECT_EQ("authority='' path='/b'", relativized("x://h/b", "x:///b"));
}

TEST_F(UriRelativizeTest, AuthoritiesAreComparedWithoutCase) {
    EXPECT_EQ("path=''", relativized("x://Host/b", "x://hOST/b"));
}

TEST_F(UriRelativizeTest, AuthorityIsKeptWhenTheBaseHasNone) {
    EXPECT_EQ("authority='h' path='d'", relativized("x:/b/c", "x://h/b/d"));
    EXPECT_EQ("authority='h' path=''", relativized("x:/b/c", "x://h/b/c"));
}

TEST_F(UriRelativizeTest, MissingAuthorityIsNotHeeded) {
    EXPECT_EQ("path='d'", relativized("x://h/b/c", "x:/b/d"));
    EXPECT_EQ("path=''", relativized("x://h/b/c", "x:/b/c"));
}

TEST_F(UriRelativizeTest, EqualPathsGiveTheEmptyOne) {
    EXPECT_EQ("path=''", relativized("x://h/b/c", "x://h/b/c"));
    EXPECT_EQ("path=''", relativized("x:", "x:"));
    EXPECT_EQ("path='' fragment='f'", relativized("x:b#g", "x:b#f"));
}

TEST_F(UriRelativizeTest, PathsAreComparedWithoutCase) {
    EXPECT_EQ("path=''", relativized("x:/A/b", "x:/a/B"));
}

TEST_F(UriRelativizeTest, OtherQueryIsKeptBetweenEqualPaths) {
    EXPECT_EQ("path='' query='r'", relativized("x:b?q", "x:b?r"));
    EXPECT_EQ("path='' query=''", relativized("x:b?q", "x:b?"));
}

TEST_F(UriRelativizeTest, SameQueryIsDroppedBetweenEqualPaths) {
    EXPECT_EQ("path=''", relativized("x:b?q", "x:b?q"));
    EXPECT_EQ("path=''", relativized("x:b?q", "x:b?Q"));
}

TEST_F(UriRelativizeTest, QueryIsDroppedWhenTheBaseHasNone) {
    EXPECT_EQ("path=''", relativized("x:b", "x:b?q"));
    EXPECT_EQ("path=''", relativized("x:b?q", "x:b"));
}

TEST_F(UriRelativizeTest, QueryAndFragmentAreKeptBetweenOtherPaths) {
    EXPECT_EQ("path='d' query='q' fragment='f'", relativized("x:/b/c?q#f", "x:/b/d?q#f"));
    EXPECT_EQ("path='d' query='q'", relativized("x:/b/c", "x:/b/d?q"));
}

struct WayCase {
    const char* name;
    const char* base;
    const char* target;
    const char* way;
};

class UriWayTest : public UriFixture, public ::testing::WithParamInterface<WayCase> {};

TEST_P(UriWayTest, LeadsFromBaseToTarget) {
    const URI base = fromModel({.path = GetParam().base}), target = fromModel({.path = GetParam().target});
    EXPECT_STREQ(GetParam().way, textOf(UriPtr(target.relativize(base))->getPath()).c_str());
    EXPECT_EQ(GetParam().way, modelRelativePath(GetParam().base, GetParam().target)) << "the model";
}

const WayCase kWayCases[] = {
    {"FromNothing", "", "/a/b", "/a/b"},
    {"ToNothing", "/a/b", "", ""},
    {"OtherFirstCharacter", "a/b", "/a/b", "/a/b"},
    {"OnlyTheLeadingSlashInCommon", "/a/b", "/c/d", "/c/d"},
    {"NoSlashInCommon", "abc/d", "abd/d", "abd/d"},
    {"NoSlashAtAll", "abc", "abd", "abd"},
    {"Sibling", "/a/b", "/a/c", "c"},
    {"SiblingWithTheSameStart", "/a/bc", "/a/bd", "bd"},
    {"Child", "/a/b", "/a/b/c", "b/c"},
    {"ChildOfAFolder", "/a/b/", "/a/b/c", "c"},
    {"OneUp", "/a/b/c", "/a/d", "../d"},
    {"SeveralUp", "/a/b/c/d/e", "/a/f/g", "../../../f/g"},
    {"EachSlashIsAStepUp", "/a/b//c", "/a/d", "../../d"},
    {"UpToAPrefixOfASegment", "/a/bc/d", "/a/b", "../b"},
    {"UpFromAFolder", "/a/b/", "/a/b", "../b"},
    {"UpToTheFolder", "/a/b/c", "/a/", "../"},
    {"RelativePaths", "a/b", "a/c", "c"},
    {"RelativePathsUp", "a/b/c", "a/d", "../d"},
    {"FolderItselfIsGuarded", "/a/b", "/a/", "./"},
    {"ColonIsGuarded", "/a/b", "/a/c:d", "./c:d"},
    {"ColonInALaterSegmentIsGuarded", "/a/b", "/a/c/d:e", "./c/d:e"},
    {"ColonBehindAStepUpIsNotGuarded", "/a/b/c", "/a/d:e", "../d:e"},
    {"GuardWithNothingLeftToWalk", "/a/", "/a/b:c", "./b:c"},
    {"NothingToGuard", "/a/", "/a/b", "b"},
    {"PathsAreFollowedWithCase", "/a/B/c", "/a/b/d", "../b/d"},
    {"DotSegmentsAreOrdinary", "/a/./b", "/a/../c", "../../c"},
};
INSTANTIATE_TEST_SUITE_P(Paths, UriWayTest, ::testing::ValuesIn(kWayCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(UriRelativizeTest, NullPathIsAnEmptyOne) {
    const URI none, b = fromModel({.path = "/b"});
    EXPECT_EQ("path=''", relativized(none, none));
    EXPECT_EQ("path='/b'", relativized(none, b));
    EXPECT_EQ("path=''", relativized(b, none));
    EXPECT_EQ("path=''", relativized(fromModel({.path = "", .query = "q"}), fromModel({.query = "q"})));
    EXPECT_EQ("scheme='y' path=''", relativized(fromModel({.scheme = "x"}), fromModel({.scheme = "y"})));
    EXPECT_EQ("authority='i' path=''",
              relativized(fromModel({.authority = "h"}), fromModel({.authority = "i"})));
}

TEST_F(UriRelativizeTest, ResultHasNoPartsOfTheAuthority) {
    const UriPtr target = parsed("x://u@i:8/b");
    target->setPort(8);
    EXPECT_EQ("authority='u@i:8' path='/b'", relativized(*parsed("x://h/b"), *target));
}

TEST_F(UriRelativizeTest, ResolvingLeadsBackToTheTarget) {
    for (const char* base :
         {"x://h/a/b/c/d", "x://h/a/b/c/", "x://h/a/b?q", "x://h/a/b/c/d:e", "x://h/a/b:/"})
        for (const char* text : {"x://h/a/b/c/d", "x://h/a/b/c/", "x://h/a/b/c/d/e/f", "x://h/a/b/x:y",
                                 "x://h/b?r", "x://i/a/b", "y://h/a/b", "x://h/a/?r#f", "x://h/"}) {
            const UriPtr target = parsed(text), from = parsed(base);
            const UriPtr way(target->relativize(*from));
            EXPECT_EQ(text, recomposed(*UriPtr(way->resolve(*from, true)))) << "by " << recomposed(*way);
        }
}

TEST_F(UriRelativizeTest, DeepPathsTakeLinearTime) {
    std::string deep = "x:/a/";
    for (int i = 0; i < 1000000; ++i)
        deep += "b/";
    const UriPtr way(parsed("x:/a/c")->relativize(*parsed(deep)));
    const std::string path = textOf(way->getPath());
    ASSERT_EQ(3000001u, path.size());
    EXPECT_EQ("../../", path.substr(0, 6));
    EXPECT_EQ("../c", path.substr(path.size() - 4));
    EXPECT_EQ(deep.substr(5), textOf(UriPtr(parsed(deep)->relativize(*parsed("x:/a/c")))->getPath()));
}

TEST_F(UriRelativizeTest, SurvivesEveryFailure) {
    const UriPtr base = parsed("x://h/a/b?q#f");
    for (const char* text :
         {"y://h/a/b?r#f", "x://i/a/b?r#f", "x://h/a/b?r#f", "x://h/a/c:d?r#f", "/a/c?r#f"}) {
        const UriPtr target = parsed(text);
        everyAllocationFails([&] { UriPtr(target->relativize(*base)); });
        everyNewFails([&] { UriPtr(target->relativize(*base)); });
    }
}

} // namespace
} // namespace Quillon::Testing
