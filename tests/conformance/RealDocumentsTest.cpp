// Documents as they are met in the wild, read with and without what they refer to.
#include "conformance/RealDocuments.h"

#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"
#include "xml/sax/DefaultHandler2.h"

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

class CountingHandler : public DefaultHandler2 {
public:
    void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
        ++elements;
    }
    unsigned int elements = 0;
};

class RealDocumentsTest : public ReadingFixture {
protected:
    Outcome readFile(const std::string& path) {
        handler().clear();
        return outcomeOf([&] { reader().parse(makeString(path.c_str())); });
    }
    std::vector<std::string> eventsOf(const std::string& name) {
        const Outcome outcome = readFile(sharedDataPath("real/" + name));
        EXPECT_FALSE(outcome.threw) << name << ": " << outcome.message;
        return handler().lines();
    }
};

TEST_F(RealDocumentsTest, EveryOneIsAccepted) {
    if (!hasSharedData("documents from the wild"))
        return;
    const std::vector<std::string> paths = realDocuments();
    EXPECT_EQ(30u, paths.size());
    for (const std::string& path : paths) {
        CountingHandler counter;
        reader().setContentHandler(&counter);
        const Outcome outcome = readFile(path);
        EXPECT_FALSE(outcome.threw) << path << ":" << outcome.line << ": " << outcome.message;
        EXPECT_GT(counter.elements, 10u) << path;
    }
}

TEST_F(RealDocumentsTest, EveryOneIsAcceptedWithItsExternalEntities) {
    if (!hasSharedData("documents from the wild with their entities"))
        return;
    RealDocumentResolver resolver;
    reader().setEntityResolver(&resolver);
    readExternalEntities();
    CountingHandler counter;
    reader().setContentHandler(&counter);
    for (const std::string& path : realDocuments()) {
        const Outcome outcome = readFile(path);
        EXPECT_FALSE(outcome.threw) << outcome.systemId << ":" << outcome.line << ": " << outcome.message;
    }
}

TEST_F(RealDocumentsTest, EntitiesOfTheExternalSubsetComeOutAsText) {
    if (!hasSharedData("XHTML with &nbsp; from its DTD"))
        return;
    RealDocumentResolver resolver;
    eventsOf("xhtml1-latin1-entities.html");
    EXPECT_FALSE(handler().linesOf("skippedEntity").empty());
    reader().setEntityResolver(&resolver);
    readExternalEntities();
    eventsOf("xhtml1-latin1-entities.html");
    EXPECT_TRUE(handler().linesOf("skippedEntity").empty());
    EXPECT_NE(std::string::npos, handler().text().find("\xC2\xA0"));
}

TEST_F(RealDocumentsTest, Utf16AndUtf8OfOnePageGiveTheSameEvents) {
    if (!hasSharedData("one page in two encodings"))
        return;
    handler().joinText(true);
    const std::vector<std::string> utf8 = eventsOf("manual/mod/core.xml.ja");
    EXPECT_EQ(utf8, eventsOf("manual/mod/core-utf16le.xml.ja"));
}

TEST_F(RealDocumentsTest, KoreanPageIsRecoded) {
    if (!hasSharedData("a page in EUC-KR"))
        return;
    handler().joinText(true);
    eventsOf("manual/dso-euc-kr.xml.ko");
    // "dynamic shared objects" in Korean, of the page's title
    EXPECT_NE(
        std::string::npos,
        handler().text().find("\xEB\x8F\x99\xEC\xA0\x81\xEA\xB3\xB5\xEC\x9C\xA0\xEA\xB0\x9D\xEC\xB2\xB4"));
}

} // namespace
} // namespace Quillon::Xml::Sax
