#include "saxengine/SaxEngineReader.h"

#include "saxengine/ReadingFixture.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;

class SaxEngineReaderTest : public ReadingFixture {};

TEST_F(SaxEngineReaderTest, DocumentArrivesAsEvents) {
    EXPECT_THAT(events("<?xml version='1.0'?><a x='1'>b<c/><!--d--></a>"),
                ElementsAre("setDocumentLocator(locator)", "startDocument()",
                            R"(startElement("", "a", "a", [("", "x", "x", "CDATA", "1")]))",
                            R"(characters("b"))", R"(startElement("", "c", "c", []))",
                            R"(endElement("", "c", "c"))", R"(comment("d"))", R"(endElement("", "a", "a"))",
                            "endDocument()"));
}

} // namespace
} // namespace Quillon::Xml::Sax
