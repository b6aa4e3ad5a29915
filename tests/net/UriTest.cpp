#include "net/URI.h"

#include "net/UriFixture.h"

#include <type_traits>

namespace Quillon::Testing {
namespace {

using Net::URI;

class UriTest : public UriFixture {
protected:
    static const unsigned char* bytes(const char* text) {
        return reinterpret_cast<const unsigned char*>(text);
    }
    /// Every component and the port set, to texts that tell them apart.
    static void fill(URI& uri, const std::string& suffix = "") {
        uri.setScheme(hostText(("s" + suffix).c_str()));
        uri.setAuthority(hostText(("a" + suffix).c_str()));
        uri.setPath(hostText(("p" + suffix).c_str()));
        uri.setQuery(hostText(("q" + suffix).c_str()));
        uri.setFragment(hostText(("f" + suffix).c_str()));
        uri.setUserInfo(hostText(("u" + suffix).c_str()));
        uri.setHost(hostText(("h" + suffix).c_str()));
        uri.setPort(8);
    }
};

const char kFilled[] =
    "scheme='s' authority='a' path='p' query='q' fragment='f' userInfo='u' host='h' port=8";
const char kFilledWithoutPort[] =
    "scheme='s' authority='a' path='p' query='q' fragment='f' userInfo='u' host='h'";

TEST_F(UriTest, DefaultHasNothingAndNoPort) {
    const URI uri;
    EXPECT_EQ(nullptr, uri.getScheme());
    EXPECT_EQ(nullptr, uri.getAuthority());
    EXPECT_EQ(nullptr, uri.getPath());
    EXPECT_EQ(nullptr, uri.getQuery());
    EXPECT_EQ(nullptr, uri.getFragment());
    EXPECT_EQ(nullptr, uri.getUserInfo());
    EXPECT_EQ(nullptr, uri.getHost());
    EXPECT_EQ(-1, uri.getPort());
}

TEST_F(UriTest, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<URI>);
}

TEST_F(UriTest, ComponentsAreGivenInTheOrderOfTheText) {
    const URI uri(bytes("s"), bytes("u@h:8"), bytes("/p"), bytes("q"), bytes("f"));
    EXPECT_EQ("scheme='s' authority='u@h:8' path='/p' query='q' fragment='f'", show(uri));
}

TEST_F(UriTest, GivenAuthorityIsNotTakenApart) {
    const URI uri(nullptr, bytes("u@h:8"), nullptr, nullptr, nullptr);
    EXPECT_EQ("authority='u@h:8'", show(uri));
    EXPECT_EQ(-1, uri.getPort());
}

TEST_F(UriTest, GivenComponentsAreNotChecked) {
    const URI uri(bytes("1 :"), bytes("[/"), bytes("? %"), bytes("#"), bytes("^%"));
    EXPECT_EQ("scheme='1 :' authority='[/' path='? %' query='#' fragment='^%'", show(uri));
}

TEST_F(UriTest, GivenComponentsAreCopied) {
    const unsigned char scheme[] = "s";
    const URI uri(scheme, scheme, scheme, scheme, scheme);
    EXPECT_NE(scheme, uri.getScheme());
    EXPECT_NE(uri.getScheme(), uri.getAuthority());
}

TEST_F(UriTest, NullIsAbsentAndEmptyIsEmpty) {
    const URI absent(nullptr, nullptr, nullptr, nullptr, nullptr);
    const URI empty(bytes(""), bytes(""), bytes(""), bytes(""), bytes(""));
    EXPECT_EQ("", show(absent));
    EXPECT_EQ("scheme='' authority='' path='' query='' fragment=''", show(empty));
}

TEST_F(UriTest, EachSetterStoresTheVeryPointer) {
    URI uri;
    unsigned char* const texts[] = {hostText("s"), hostText("a"), hostText("p"), hostText("q"),
                                    hostText("f"), hostText("u"), hostText("h")};
    uri.setScheme(texts[0]);
    uri.setAuthority(texts[1]);
    uri.setPath(texts[2]);
    uri.setQuery(texts[3]);
    uri.setFragment(texts[4]);
    uri.setUserInfo(texts[5]);
    uri.setHost(texts[6]);
    EXPECT_EQ(texts[0], uri.getScheme());
    EXPECT_EQ(texts[1], uri.getAuthority());
    EXPECT_EQ(texts[2], uri.getPath());
    EXPECT_EQ(texts[3], uri.getQuery());
    EXPECT_EQ(texts[4], uri.getFragment());
    EXPECT_EQ(texts[5], uri.getUserInfo());
    EXPECT_EQ(texts[6], uri.getHost());
}

TEST_F(UriTest, SettersFreeTheFormerText) {
    URI uri;
    fill(uri);
    const std::ptrdiff_t blocks = hostMemory().liveBlocks();
    fill(uri, "2");
    EXPECT_EQ(blocks, hostMemory().liveBlocks());
    EXPECT_STREQ("h2", reinterpret_cast<const char*>(uri.getHost()));
}

TEST_F(UriTest, SettingTheSamePointerAgainChangesNothing) {
    URI uri;
    fill(uri);
    uri.setScheme(uri.getScheme());
    uri.setAuthority(uri.getAuthority());
    uri.setPath(uri.getPath());
    uri.setQuery(uri.getQuery());
    uri.setFragment(uri.getFragment());
    uri.setUserInfo(uri.getUserInfo());
    uri.setHost(uri.getHost());
    EXPECT_EQ(kFilled, show(uri));
}

TEST_F(UriTest, SettingNullMakesAbsent) {
    URI uri;
    fill(uri);
    uri.setQuery(nullptr);
    uri.setHost(nullptr);
    EXPECT_EQ("scheme='s' authority='a' path='p' fragment='f' userInfo='u' port=8", show(uri));
}

TEST_F(UriTest, SettersDoNotKeepTheAuthorityConsistent) {
    URI uri;
    uri.setAuthority(hostText("u@h:8"));
    uri.setHost(hostText("other"));
    uri.setPort(9);
    EXPECT_EQ("authority='u@h:8' host='other' port=9", show(uri));
}

TEST_F(UriTest, PortIsStoredAsItIs) {
    URI uri;
    for (const int port : {0, 80, 65536, -1, -2}) {
        uri.setPort(port);
        EXPECT_EQ(port, uri.getPort());
    }
}

TEST_F(UriTest, DestructionFreesEveryComponent) {
    const std::ptrdiff_t blocks = hostMemory().liveBlocks();
    {
        URI uri;
        fill(uri);
        EXPECT_EQ(blocks + 7, hostMemory().liveBlocks());
    }
    EXPECT_EQ(blocks, hostMemory().liveBlocks());
}

TEST_F(UriTest, CopyConstructorCopiesEveryComponent) {
    URI uri;
    fill(uri);
    const URI copied(uri);
    EXPECT_EQ(kFilledWithoutPort, show(copied));
    EXPECT_NE(uri.getPath(), copied.getPath());
}

TEST_F(UriTest, CopyHasNoPort) {
    URI uri;
    uri.setPort(8);
    EXPECT_EQ(-1, URI(uri).getPort());
}

TEST_F(UriTest, CopyKeepsEmptyAndAbsentApart) {
    URI uri;
    uri.setQuery(hostText(""));
    EXPECT_EQ("query=''", show(URI(uri)));
}

TEST_F(UriTest, CopyKeepsWhatTheOtherLacks) {
    URI uri;
    fill(uri);
    URI other;
    other.setPath(hostText("new"));
    other.setHost(hostText("new"));
    other.setPort(9);
    uri.copy(other);
    EXPECT_EQ("scheme='s' authority='a' path='new' query='q' fragment='f' userInfo='u' host='new' port=8",
              show(uri));
}

TEST_F(UriTest, CopyOfItselfChangesNothing) {
    URI uri;
    fill(uri);
    uri.copy(uri);
    EXPECT_EQ(kFilled, show(uri));
}

TEST_F(UriTest, AssignmentDropsWhatTheOtherLacks) {
    URI uri;
    fill(uri);
    URI other;
    other.setPath(hostText("new"));
    uri = other;
    EXPECT_EQ("path='new' port=8", show(uri));
}

TEST_F(UriTest, AssignmentCopiesEveryComponent) {
    URI other;
    fill(other);
    URI uri;
    URI& result = uri = other;
    EXPECT_EQ(&uri, &result);
    EXPECT_EQ(kFilledWithoutPort, show(uri));
    EXPECT_NE(other.getScheme(), uri.getScheme());
}

TEST_F(UriTest, AssignmentKeepsPort) {
    URI uri, other;
    uri.setPort(8);
    other.setPort(9);
    uri = other;
    EXPECT_EQ(8, uri.getPort());
}

TEST_F(UriTest, AssignmentToItselfChangesNothing) {
    URI uri;
    fill(uri);
    unsigned char* const path = uri.getPath();
    const URI& same = uri;
    uri = same;
    EXPECT_EQ(kFilled, show(uri));
    EXPECT_EQ(path, uri.getPath());
}

TEST_F(UriTest, CleanupFreesEveryComponent) {
    const std::ptrdiff_t blocks = hostMemory().liveBlocks();
    URI uri;
    fill(uri);
    uri.cleanup();
    EXPECT_EQ(blocks, hostMemory().liveBlocks());
    EXPECT_EQ(nullptr, uri.getScheme());
    EXPECT_EQ(nullptr, uri.getHost());
    uri.cleanup();
}

TEST_F(UriTest, CleanupKeepsPort) {
    URI uri;
    fill(uri);
    uri.cleanup();
    EXPECT_EQ("port=8", show(uri));
}

TEST_F(UriTest, ConstructionSurvivesEveryFailure) {
    everyAllocationFails([] { const URI uri(bytes("s"), bytes("a"), bytes("p"), bytes("q"), bytes("f")); });
}

TEST_F(UriTest, CopyConstructionSurvivesEveryFailure) {
    URI uri;
    fill(uri);
    everyAllocationFails([&] { const URI copied(uri); });
    everyNewFails([&] { delete new URI(uri); });
}

TEST_F(UriTest, CopyKeepsTheOldValueWhenMemoryRunsOut) {
    URI uri, other;
    fill(uri);
    fill(other, "2");
    everyAllocationFails([&] { uri.copy(other); }, [&] { EXPECT_EQ(kFilled, show(uri)); });
    EXPECT_STREQ("h2", reinterpret_cast<const char*>(uri.getHost()));
}

TEST_F(UriTest, AssignmentKeepsTheOldValueWhenMemoryRunsOut) {
    URI uri, other;
    fill(uri);
    fill(other, "2");
    everyAllocationFails([&] { uri = other; }, [&] { EXPECT_EQ(kFilled, show(uri)); });
    EXPECT_STREQ("h2", reinterpret_cast<const char*>(uri.getHost()));
}

TEST_F(UriTest, CopyingAllocatesOneBlockForEachComponent) {
    URI uri;
    uri.setScheme(hostText("s"));
    uri.setHost(hostText("h"));
    const std::size_t requests = hostMemory().requests();
    const URI copied(uri);
    EXPECT_EQ(requests + 2, hostMemory().requests());
}

} // namespace
} // namespace Quillon::Testing
