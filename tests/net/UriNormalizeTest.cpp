// URI::normalize.
#include "net/URI.h"

#include "net/UriFixture.h"

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriNormalizeTest : public UriFixture {
protected:
    static std::string normalized(const URI& uri) { return show(*UriPtr(uri.normalize())); }
    static std::string normalized(const std::string& text) { return normalized(*parsed(text)); }
};

TEST_F(UriNormalizeTest, AuthorityKeepsItsCase) {
    EXPECT_EQ("scheme='abc' authority='Host' path='/a/b' host='host'", normalized("Abc://Host/a/./b"));
}

TEST_F(UriNormalizeTest, OnlySchemeHostAndPathChange) {
    EXPECT_EQ(
        "scheme='x' authority='U@H:8' path='/P%4a' query='Q/../R' fragment='F/./G' userInfo='U' host='h'",
        normalized("X://U@H:8/A/../P%4a?Q/../R#F/./G"));
}

TEST_F(UriNormalizeTest, OnlyLettersOfAsciiChange) {
    URI uri;
    uri.setHost(hostText("@AZ[`az{\xC3\x84"));
    EXPECT_EQ("path='' host='@az[`az{\xC3\x84'", normalized(uri));
}

TEST_F(UriNormalizeTest, PathKeepsItsCase) {
    EXPECT_EQ("path='/A/B'", normalized("/A/./B"));
}

TEST_F(UriNormalizeTest, HostKeepsNoCaseInItsEscapes) {
    EXPECT_EQ("authority='A%4Bc' path='' host='a%4bc'", normalized("//A%4Bc"));
}

TEST_F(UriNormalizeTest, LiteralIsLowered) {
    EXPECT_EQ("authority='[::AB]' path='' host='[::ab]'", normalized("//[::AB]"));
}

TEST_F(UriNormalizeTest, AbsentComponentsStayAbsent) {
    EXPECT_EQ("path='a'", normalized("./a"));
}

TEST_F(UriNormalizeTest, NullPathIsAnEmptyOne) {
    EXPECT_EQ("path=''", normalized(URI()));
}

TEST_F(UriNormalizeTest, ResultHasNoPort) {
    const UriPtr uri = parsed("x://h:8/");
    uri->setPort(8);
    EXPECT_EQ(-1, UriPtr(uri->normalize())->getPort());
    EXPECT_EQ(8, uri->getPort());
}

TEST_F(UriNormalizeTest, IsItsOwnNormalForm) {
    for (const char* text : {"X://H/../a/./b", "a/../b", "./a", "..", "X:a/..", "//H"}) {
        const UriPtr once(parsed(text)->normalize());
        EXPECT_EQ(show(*once), normalized(*once));
    }
}

TEST_F(UriNormalizeTest, AllocatesOneBlockForEachComponent) {
    const UriPtr uri = parsed("x://u@h/p?q#f");
    const std::size_t host = hostMemory().requests(), objects = newMemory().requests();
    const UriPtr normal(uri->normalize());
    EXPECT_EQ(host + 7, hostMemory().requests());
    EXPECT_EQ(objects + 1, newMemory().requests());
}

TEST_F(UriNormalizeTest, SurvivesEveryFailure) {
    const UriPtr uri = parsed("X://u@H:8/a/./b?q#f");
    everyAllocationFails([&] { UriPtr(uri->normalize()); });
    everyNewFails([&] { UriPtr(uri->normalize()); });
}

} // namespace
} // namespace Quillon::Testing
