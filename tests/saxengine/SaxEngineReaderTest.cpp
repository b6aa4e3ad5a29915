#include "saxengine/SaxEngineReader.h"

#include "saxengine/ReadingFixture.h"
#include "system/PluginNotFoundException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/ServiceFactory.h"
#include "xml/sax/XmlFilterImpl.h"

#include <boost/shared_ptr.hpp>
#include <cerrno>
#include <fstream>
#include <gmock/gmock.h>
#include <thread>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class SaxEngineReaderTest : public ReadingFixture {};

TEST_F(SaxEngineReaderTest, DocumentArrivesAsEvents) {
    EXPECT_THAT(events("<?xml version='1.0'?><a x='1'>b<c/><!--d--></a>"),
                ElementsAre("setDocumentLocator(locator)", "startDocument()",
                            R"(startElement("", "a", "a", [("", "x", "x", "CDATA", "1")]))",
                            R"(characters("b"))", R"(startElement("", "c", "c", []))",
                            R"(endElement("", "c", "c"))", R"(comment("d"))", R"(endElement("", "a", "a"))",
                            "endDocument()"));
}

TEST_F(SaxEngineReaderTest, EngineIsNamed) {
    EXPECT_THAT(reader().engineName(), HasSubstr("expat"));
}

TEST_F(SaxEngineReaderTest, SystemIdentifierIsReadLikeASource) {
    const std::string name = testing::TempDir() + "/reader_test.xml";
    std::ofstream(name) << "<a/>";
    reader().parse(makeString(name.c_str()));
    EXPECT_EQ(1u, handler().linesOf("endDocument").size());
    std::remove(name.c_str());
}

TEST_F(SaxEngineReaderTest, ReaderStandsUnderAFilter) {
    XmlFilterImpl filter(&reader());
    filter.setContentHandler(&handler());
    filter.setErrorHandler(&handler());
    handler().clear();
    MemoryByteChannel channel("<a/>", 4);
    InputSource source(&channel);
    filter.parse(source);
    EXPECT_EQ(1u, handler().linesOf("endDocument").size());
}

TEST_F(SaxEngineReaderTest, ReadersShareTheirPluginAndNothingElse) {
    SaxEngineReader other;
    other.setFeature(SC_Features_Namespaces(), false);
    other.setMaximumDepth(1);
    EXPECT_TRUE(reader().getFeature(SC_Features_Namespaces()));
    EXPECT_EQ(10000u, reader().maximumDepth());
    EXPECT_EQ(nullptr, other.getContentHandler());
}

TEST_F(SaxEngineReaderTest, ThreadsReadAtTheSameTime) {
    std::vector<std::unique_ptr<SaxEngineReader>> readers;
    std::vector<std::unique_ptr<RecordingHandler>> recorders;
    for (int i = 0; i < 4; ++i) {
        readers.push_back(std::make_unique<SaxEngineReader>());
        recorders.push_back(std::make_unique<RecordingHandler>());
        recorders.back()->joinText(true);
        listen(*readers.back(), *recorders.back());
    }
    std::string document = "<!DOCTYPE a [<!ENTITY e 'x'><!ATTLIST b c (d|e) 'd'>]><a xmlns='u'>";
    for (int i = 0; i < 500; ++i)
        document += "<b n='" + std::to_string(i) + "'>&e;</b>";
    document += "</a>";
    std::vector<std::thread> threads;
    for (const auto& one : readers)
        threads.emplace_back([&document, reader = one.get()] {
            for (int i = 0; i < 3; ++i) {
                MemoryByteChannel channel(document.data(), document.size());
                InputSource source(&channel);
                reader->parse(source);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& recorder : recorders)
        EXPECT_EQ(recorders[0]->lines(), recorder->lines());
    EXPECT_EQ(3u, recorders[0]->linesOf("endDocument").size());
}

/// A service made by hand: it counts what the reader does with it.
struct FakeService : SaxSvc_ {
    std::int32_t status = 0, interfaceVersion = 0x00010000;
    int attached = 0, attachedNow = 0, destroyed = 0;
    std::uint32_t depth = 0;
    XmlReader* made = nullptr;

    FakeService() {
        static const SaxSvcFunctions kFunctions = {
            [](SaxSvc_* record, void** reader) -> std::int32_t {
                FakeService& fake = of(record);
                EXPECT_EQ(1, fake.attachedNow);
                *reader = fake.made;
                return fake.status;
            },
            [](SaxSvc_* record, void* reader) {
                FakeService& fake = of(record);
                EXPECT_EQ(1, fake.attachedNow);
                EXPECT_EQ(fake.made, reader);
                ++fake.destroyed;
            },
            [](SaxSvc_*) -> const char* { return "fake 1.0"; },
            [](SaxSvc_* record, void* reader, std::uint32_t depth) {
                EXPECT_EQ(of(record).made, reader);
                of(record).depth = depth;
            },
            [](QVPI_Plugin_* record) { return of(record).interfaceVersion; },
            [](QVPI_Plugin_*) {},
            [](QVPI_Plugin_* record, void**) -> std::int32_t {
                ++of(record).attached;
                ++of(record).attachedNow;
                return 0;
            },
            [](QVPI_Plugin_* record) -> std::int32_t {
                --of(record).attachedNow;
                return 0;
            },
        };
        functions = &kFunctions;
    }
    static FakeService& of(void* record) { return *static_cast<FakeService*>(static_cast<SaxSvc_*>(record)); }
    boost::shared_ptr<ServiceFactory> factory() {
        const boost::shared_ptr<QVPI_Plugin_> plugin(
            reinterpret_cast<QVPI_Plugin_*>(static_cast<SaxSvc_*>(this)), [](QVPI_Plugin_*) {});
        return boost::shared_ptr<ServiceFactory>(new ServiceFactory(plugin));
    }
};

TEST_F(SaxEngineReaderTest, ThreadIsAttachedForTheMakingTheParseAndTheEnd) {
    XmlFilterImpl inner(&reader());
    FakeService fake;
    fake.made = &inner;
    {
        SaxEngineReader over(fake.factory());
        EXPECT_EQ(1, fake.attached);
        EXPECT_EQ(0, fake.attachedNow);
        over.setContentHandler(&handler());
        over.getFeature(SC_Features_Namespaces());
        over.setMaximumDepth(77);
        EXPECT_EQ(77u, fake.depth);
        EXPECT_STREQ("fake 1.0", over.engineName());
        EXPECT_EQ(1, fake.attached) << "only what may read is worth it";
        MemoryByteChannel channel("<a>", 3);
        InputSource source(&channel);
        EXPECT_TRUE(outcomeOf([&] { over.parse(source); }).threw);
        EXPECT_EQ(2, fake.attached);
        EXPECT_EQ(0, fake.attachedNow) << "after an exception, too";
    }
    EXPECT_EQ(3, fake.attached);
    EXPECT_EQ(0, fake.attachedNow);
    EXPECT_EQ(1, fake.destroyed);
}

TEST_F(SaxEngineReaderTest, StatusOfTheServiceBecomesATypedException) {
    FakeService fake;
    fake.status = ENOMEM;
    EXPECT_THROW(SaxEngineReader(fake.factory()), System::OutOfMemoryException);
    fake.status = ENOTSUP;
    try {
        SaxEngineReader unusable(fake.factory());
        FAIL();
    } catch (const SaxNotSupportedException& e) {
        EXPECT_THAT(show(e.getMessage()), HasSubstr("16-bit characters"));
    }
    fake.status = -1;
    EXPECT_THROW(SaxEngineReader(fake.factory()), SaxNotSupportedException);
    EXPECT_EQ(0, fake.attachedNow);
    EXPECT_EQ(0, fake.destroyed);
}

class SaxEngineReaderDeathTest : public SaxEngineReaderTest {};

TEST_F(SaxEngineReaderDeathTest, WrongInterfaceVersionEndsTheProcess) {
    FakeService fake;
    fake.interfaceVersion = 0x00020000;
    EXPECT_EXIT(SaxEngineReader(fake.factory()), ::testing::ExitedWithCode(3), "Incompatible SPEI version");
}

} // namespace
} // namespace Quillon::Xml::Sax
