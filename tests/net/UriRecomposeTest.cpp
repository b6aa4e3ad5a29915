// URI::recompose.
#include "net/URI.h"

#include "net/UriFixture.h"
#include "runtime/HostServices.h"

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriRecomposeTest : public UriFixture {};

std::string recomposedModel(const ModelUri& uri) {
    return recomposed(fromModel(uri));
}

TEST_F(UriRecomposeTest, NothingIsTheEmptyText) {
    EXPECT_EQ("", recomposed(URI()));
}

TEST_F(UriRecomposeTest, EachComponentHasItsMark) {
    EXPECT_EQ("s:", recomposedModel({.scheme = "s"}));
    EXPECT_EQ("//a", recomposedModel({.authority = "a"}));
    EXPECT_EQ("p", recomposedModel({.path = "p"}));
    EXPECT_EQ("?q", recomposedModel({.query = "q"}));
    EXPECT_EQ("#f", recomposedModel({.fragment = "f"}));
    EXPECT_EQ(
        "s://a/p?q#f",
        recomposedModel({.scheme = "s", .authority = "a", .path = "/p", .query = "q", .fragment = "f"}));
}

TEST_F(UriRecomposeTest, EmptyComponentsKeepTheirMarks) {
    EXPECT_EQ("://?#",
              recomposedModel({.scheme = "", .authority = "", .path = "", .query = "", .fragment = ""}));
}

TEST_F(UriRecomposeTest, PartsOfTheAuthorityTakeNoPart) {
    URI uri;
    uri.setAuthority(hostText("a"));
    uri.setUserInfo(hostText("u"));
    uri.setHost(hostText("h"));
    uri.setPort(8);
    EXPECT_EQ("//a", recomposed(uri));
}

TEST_F(UriRecomposeTest, ParsedTextComesBack) {
    for (const char* text : {"", "x://u@h:80/p?q#f", "x:", "//", "?", "#", "a/b", "x://[::1]:1/",
                             "X://H:/%41?%42#%43", "//@", "/p#^"})
        EXPECT_EQ(text, recomposed(*parsed(text)));
}

TEST_F(UriRecomposeTest, IsOneBlockOfTheHost) {
    const UriPtr uri = parsed("x://u@h:80/p?q#f");
    const std::size_t host = hostMemory().requests(), objects = newMemory().requests();
    unsigned char* text = uri->recompose();
    EXPECT_EQ(host + 1, hostMemory().requests());
    EXPECT_EQ(objects, newMemory().requests());
    Runtime::release(text);
}

TEST_F(UriRecomposeTest, SurvivesEveryFailure) {
    const UriPtr uri = parsed("x://u@h:80/p?q#f");
    everyAllocationFails([&] { Runtime::release(uri->recompose()); });
}

} // namespace
} // namespace Quillon::Testing
