// Limits: depth, and memory that does not grow with the document.
#include "saxengine/ReadingFixture.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <utility>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

/// Gives `begin` once, `middle` so many times and `end` once.
class RepeatingChannel : public ReadableByteChannel {
public:
    RepeatingChannel(std::string begin, const std::string& middle, long long times, std::string end)
        : begin_(std::move(begin)), end_(std::move(end)), times_(times) {
        perRead_ = std::max<long long>(1, 8000 / static_cast<long long>(middle.size()));
        for (long long i = 0; i < perRead_; ++i)
            middle_ += middle;
        one_ = middle;
    }
    void close() override {}
    bool isOpen() const override { return true; }
    unsigned int read(unsigned char* buffer, unsigned int length) override {
        if (pending_.empty())
            pending_ = next();
        const std::size_t count = pending_.copy(reinterpret_cast<char*>(buffer), length);
        pending_.erase(0, count);
        return static_cast<unsigned int>(count);
    }

private:
    std::string next() {
        if (!begin_.empty())
            return std::exchange(begin_, {});
        if (times_ >= perRead_) {
            times_ -= perRead_;
            return middle_;
        }
        if (times_ > 0) {
            --times_;
            return one_;
        }
        return std::exchange(end_, {});
    }
    std::string begin_, middle_, one_, end_, pending_;
    long long times_, perRead_;
};

class LimitsTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        reader().setContentHandler(&quiet_);
        reader().setProperty(SC_Properties_LexicalHandler(), nullptr);
    }
    Outcome readRepeated(const char* begin, const char* middle, long long times, const char* end) {
        RepeatingChannel channel(begin, middle, times, end);
        InputSource source(&channel);
        return outcomeOf([&] { reader().parse(source); });
    }
    static std::string nested(unsigned int depth) {
        std::string document;
        for (unsigned int i = 0; i < depth; ++i)
            document += "<a>";
        for (unsigned int i = 0; i < depth; ++i)
            document += "</a>";
        return document;
    }

private:
    DefaultHandler2 quiet_;
};

TEST_F(LimitsTest, DepthIsTenThousandAtFirst) {
    EXPECT_EQ(10000u, SaxEngineReader::kDefaultMaximumDepth);
    EXPECT_EQ(10000u, reader().maximumDepth());
    EXPECT_FALSE(read(nested(10000)).threw);
    const Outcome outcome = refused(nested(10001));
    EXPECT_EQ("the elements are nested deeper than the limit maximumDepth, which is 10000", outcome.message);
    EXPECT_EQ(30001, outcome.column);
}

TEST_F(LimitsTest, DepthCanBeChanged) {
    reader().setMaximumDepth(3);
    EXPECT_EQ(3u, reader().maximumDepth());
    EXPECT_FALSE(read("<a><a><a/><a></a></a></a>").threw);
    EXPECT_EQ("the elements are nested deeper than the limit maximumDepth, which is 3",
              refused(nested(4)).message);
    EXPECT_TRUE(read("<a><a><a><a/></a></a></a>").threw);
    reader().setMaximumDepth(20000);
    EXPECT_FALSE(read(nested(20000)).threw);
    reader().setMaximumDepth(0);
    EXPECT_TRUE(read("<a/>").threw);
}

TEST_F(LimitsTest, DepthCountsThroughEntities) {
    readExternalEntities();
    serveResources();
    reader().setMaximumDepth(4);
    resources["file:///e"] = "<b><c/></b>";
    const std::string doctype = "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///e'><!ENTITY i '<d>&e;</d>'>]>";
    EXPECT_FALSE(read(doctype + "<a>&i;</a>").threw);
    const Outcome outcome = refused(doctype + "<a><a>&i;</a></a>");
    EXPECT_THAT(outcome.message, ::testing::HasSubstr("maximumDepth"));
    EXPECT_EQ("file:///e", outcome.systemId);
}

/// With a stack of a few pages above what it takes to get here, ten million levels still end in the named error.
TEST_F(LimitsTest, TenMillionLevelsEndInAFatalErrorOnly) {
    const Outcome outcome = readRepeated("<a>", "<a>", 10000000, "");
    EXPECT_TRUE(outcome.isParseException);
    EXPECT_THAT(outcome.message, ::testing::HasSubstr("maximumDepth"));
}

/// Where the stack is, at the deepest event.
class StackProbe : public DefaultHandler2 {
public:
    std::uintptr_t lowest = UINTPTR_MAX, first = 0;
    void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
        char here;
        const auto address = reinterpret_cast<std::uintptr_t>(&here);
        if (first == 0)
            first = address;
        lowest = std::min(lowest, address);
    }
};

TEST_F(LimitsTest, DepthTakesNoStack) {
    StackProbe probe;
    reader().setContentHandler(&probe);
    reader().setMaximumDepth(200000);
    EXPECT_TRUE(readRepeated("<a>", "<b>", 199999, "").isParseException); // no element is closed
    EXPECT_LT(probe.first - probe.lowest, 4096u);
}

TEST_F(LimitsTest, DepthOfEntitiesTakesNoStack) {
    std::string document = "<!DOCTYPE a [<!ENTITY e0 '<b/>'>";
    for (int i = 1; i <= 20000; ++i)
        document += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    StackProbe probe;
    reader().setContentHandler(&probe);
    EXPECT_FALSE(read(document + "]><a>&e20000;</a>").threw);
    EXPECT_LT(probe.first - probe.lowest, 4096u);
}

/// The most memory that this process ever had, in KiB; 0 under a sanitizer, which keeps what was freed.
long peakMemory() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 0;
#else
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    return 0;
#endif
#endif
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#endif
}

/// The most blocks that were in use at an element.
class BlockProbe : public DefaultHandler2 {
public:
    std::ptrdiff_t most = 0;
    void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
        most = std::max(most, hostMemory().liveBlocks() + newMemory().liveBlocks());
    }
};

/// The limit is on how many times as much the document grows to, in any encoding that it may come in.
TEST_F(LimitsTest, AmplificationCountsWhatWasRead) {
    constexpr int kReferences = 6000;
    const std::string entity(1000, 'x'); // twice as many bytes in UTF-16, as Expat counts it
    std::string references;
    for (int i = 0; i < kReferences; ++i)
        references += "&e;";
    const auto document = [&](std::size_t size) {
        const std::string end = "<!DOCTYPE a [<!ENTITY e '" + entity + "'>]><a>" + references + "</a>";
        return std::string(size - end.size(), '\n') + end;
    };
    constexpr std::size_t kText = 2 * 1000 * kReferences;
    EXPECT_FALSE(read(document(kText / 96)).threw);
    EXPECT_THAT(refused(document(kText / 102)).message, ::testing::HasSubstr("amplification limit"));
}

TEST_F(LimitsTest, MemoryDoesNotGrowWithTheDocument) {
    const char row[] = "<row id='1'><name>text</name><!--c--><?p d?><![CDATA[d]]>more text\n</row>";
    const char recoded[] = "<?xml version='1.0' encoding='EUC-KR'?><a>";
    BlockProbe probe;
    reader().setContentHandler(&probe);
    EXPECT_FALSE(readRepeated("<a>", row, 1000, "</a>").threw);
    EXPECT_FALSE(readRepeated(recoded, row, 1000, "</a>").threw);
    const std::ptrdiff_t blocks = probe.most;
    const long memory = peakMemory();
    EXPECT_FALSE(readRepeated("<a>", row, 300000, "</a>").threw); // 22 MB
    EXPECT_FALSE(readRepeated(recoded, row, 100000, "</a>").threw);
    EXPECT_EQ(blocks, probe.most);
    EXPECT_LT(peakMemory() - memory, 2048);
}

} // namespace
} // namespace Quillon::Xml::Sax
