// Where documents come from: a channel, a path or a file: URI.
#include "saxengine/FileByteChannel.h"
#include "saxengine/ReadingFixture.h"
#include "xml/IOException.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <unistd.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Works in a folder of its own, which goes with the test.
class SourcesTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        const std::string pattern = testing::TempDir() + "/sourcesXXXXXX";
        std::string name = pattern;
        folder_ = ::mkdtemp(name.data());
        before_ = std::filesystem::current_path();
    }
    void TearDown() override {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(folder_);
        std::filesystem::path().swap(folder_); // what has room left is not balanced
        std::filesystem::path().swap(before_);
        ReadingFixture::TearDown();
    }
    void write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }
    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    /// The name of the root element, or the message of the exception.
    std::string rootOf(const std::string& systemId) {
        handler().clear();
        const Outcome outcome = outcomeOf([&] { reader().parse(utf8(systemId)); });
        if (outcome.threw)
            return outcome.message;
        const std::string line = handler().linesOf("endElement").back();
        return line.substr(line.rfind(' ') + 2, line.size() - line.rfind(' ') - 4);
    }
    static XmlString utf8(const std::string& text) {
        return makeString(reinterpret_cast<const unsigned char*>(text.c_str()));
    }
    void enter(const std::string& name) const { std::filesystem::current_path(folder_ / name); }

private:
    std::filesystem::path folder_, before_;
};

TEST_F(SourcesTest, PathsAreOpened) {
    write("dir/doc.xml", "<a/>");
    EXPECT_EQ("a", rootOf(path("dir/doc.xml")));
    enter("dir");
    EXPECT_EQ("a", rootOf("doc.xml"));
    EXPECT_EQ("a", rootOf("./doc.xml"));
    EXPECT_EQ("a", rootOf("../dir/doc.xml"));
}

TEST_F(SourcesTest, PathsMayHoldWhatUrisEscape) {
    for (const char* name :
         {"a b.xml", "a%20b.xml", "a#b.xml", "a?b.xml", "\xC3\xA4.xml", "a;b.xml", "1:b.xml"}) {
        write(name, "<a/>");
        EXPECT_EQ("a", rootOf(path(name))) << name;
    }
    write("x:y.xml", "<a/>");
    enter("");
    EXPECT_EQ("a", rootOf("./x:y.xml"));
    EXPECT_THAT(rootOf("x:y.xml"), HasSubstr("cannot open \"x:y.xml\"")) << "that is a URI of the scheme x";
}

TEST_F(SourcesTest, FileUrisAreOpened) {
    write("a b.xml", "<a/>");
    const std::string folder = path("");
    EXPECT_EQ("a", rootOf("file://" + folder + "a%20b.xml"));
    EXPECT_EQ("a", rootOf("file:" + folder + "a%20b.xml"));
    EXPECT_EQ("a", rootOf("file://localhost" + folder + "a%20b.xml"));
    EXPECT_EQ("a", rootOf("FILE://LocalHost" + folder + "a%20b.xml"));
    EXPECT_EQ("a", rootOf("file://" + folder + "%61%20%62.xml"));
    EXPECT_EQ("a", rootOf("file://" + folder + "a b.xml")) << "what should be escaped and is not";
    EXPECT_EQ("a", rootOf("file://" + folder + "a%20b.xml#part"));
    write("\xC3\xA4.xml", "<b/>");
    EXPECT_EQ("b", rootOf("file://" + folder + "%C3%A4.xml"));
    EXPECT_EQ("b", rootOf("file://" + folder + "\xC3\xA4.xml"));
}

TEST_F(SourcesTest, OtherIdentifiersAreRefusedAndNamed) {
    EXPECT_EQ("cannot open \"http://h/x\": only files are read, no network is reached", rootOf("http://h/x"));
    EXPECT_EQ("cannot open \"urn:x\": only files are read, no network is reached", rootOf("urn:x"));
    EXPECT_EQ("cannot open \"file://other/x\": the file is on another host", rootOf("file://other/x"));
    EXPECT_EQ("cannot open \"file:x\": a file: URI needs an absolute path", rootOf("file:x"));
    EXPECT_EQ("cannot open \"file:///x?y\": a file: URI has no query", rootOf("file:///x?y"));
    EXPECT_EQ("cannot open \"file:///x%2\": a percent sign without two hexadecimal digits",
              rootOf("file:///x%2"));
    EXPECT_EQ("cannot open \"file:///x%zz\": a percent sign without two hexadecimal digits",
              rootOf("file:///x%zz"));
    EXPECT_EQ("cannot open \"file:///x%00\": a file name cannot hold a zero byte", rootOf("file:///x%00"));
}

TEST_F(SourcesTest, FileThatCannotBeOpenedIsNamedWithTheReason) {
    EXPECT_EQ("cannot open \"" + path("none.xml") + "\": No such file or directory",
              rootOf(path("none.xml")));
    EXPECT_EQ("cannot open \"" + path("") + "\": Is a directory", rootOf(path("")));
    EXPECT_THAT(handler().lines(), ElementsAre()) << "no event before the document is open";
}

TEST_F(SourcesTest, SourceWithoutAnythingIsRefused) {
    EXPECT_EQ("the input source has neither a byte channel nor a system identifier", rootOf(""));
    InputSource nothing;
    EXPECT_TRUE(outcomeOf([&] { reader().parse(nothing); }).threw);
    EXPECT_TRUE(outcomeOf([&] { reader().parse(XmlString()); }).threw);
}

TEST_F(SourcesTest, ChannelGoesBeforeTheIdentifierAndIsNotClosed) {
    MemoryByteChannel channel("<a/>", 4);
    InputSource source(&channel);
    source.setSystemId(text(u"/no/such/file"));
    EXPECT_FALSE(outcomeOf([&] { reader().parse(source); }).threw);
    EXPECT_TRUE(channel.isOpen());
    unsigned char byte;
    EXPECT_EQ(0u, channel.read(&byte, 1)) << "it was read to its end";
    FileByteChannel file("/dev/null");
    InputSource empty(&file);
    EXPECT_TRUE(outcomeOf([&] { reader().parse(empty); }).isParseException);
    EXPECT_TRUE(file.isOpen());
}

TEST_F(SourcesTest, ClosedChannelThrowsItsOwnException) {
    MemoryByteChannel channel("<a/>", 4);
    channel.close();
    InputSource source(&channel);
    EXPECT_THROW(reader().parse(source), IOException);
}

/// Claims more than it was asked for.
TEST_F(SourcesTest, ChannelThatClaimsTooMuchIsAFailure) {
    class Liar : public ReadableByteChannel {
    public:
        void close() override {}
        bool isOpen() const override { return true; }
        unsigned int read(unsigned char*, unsigned int length) override { return length + 1; }
    } liar;
    InputSource source(&liar);
    EXPECT_THROW(reader().parse(source), IOException);
}

TEST_F(SourcesTest, EntitiesAreFoundBesideTheirDocument) {
    readExternalEntities();
    write("dir with space/doc.xml", "<!DOCTYPE a SYSTEM '../dtds/a%20b.dtd'><a>&e;</a>");
    write("dtds/a b.dtd", "<!ENTITY e SYSTEM 'e.ent'>");
    write("dtds/e.ent", "<b/>");
    enter("");
    for (const std::string& systemId : {std::string("dir with space/doc.xml"), path("dir with space/doc.xml"),
                                        "file://" + path("dir%20with%20space/doc.xml")}) {
        EXPECT_EQ("a", rootOf(systemId)) << systemId;
        EXPECT_EQ(2u, handler().linesOf("startElement").size());
    }
}

TEST_F(SourcesTest, DocumentWithoutAnIdentifierStandsInTheCurrentFolder) {
    readExternalEntities();
    write("e.ent", "<b/>");
    enter("");
    EXPECT_FALSE(read("<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>").threw);
    EXPECT_EQ(2u, handler().linesOf("startElement").size());
    EXPECT_THAT(handler().linesOf("resolveEntity"),
                ElementsAre(R"(resolveEntity("e", null, null, "e.ent"))"));
    EXPECT_THAT(handler().linesOf("externalEntityDecl"),
                ElementsAre(R"(externalEntityDecl("e", null, "e.ent"))"));
}

TEST_F(SourcesTest, ReadingThatFailsIsNamed) {
    // A file that can be opened but not read.
    EXPECT_THAT(rootOf("/proc/self/mem"), HasSubstr("cannot read \"/proc/self/mem\""));
}

} // namespace
} // namespace Quillon::Xml::Sax
