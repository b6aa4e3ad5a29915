// The XML Conformance Test Suite of the W3C: each case that has one right answer for a reader which does not validate
// gets it, and each canonical form comes out byte for byte. There is no list of exceptions.
#include "conformance/CanonicalForm.h"
#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"
#include "xml/sax/LexicalHandler.h"

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

struct ConformanceCase {
    std::string id, expect, path, output;
    bool hasNamespaces;
};

std::vector<ConformanceCase> conformanceCases() {
    std::vector<ConformanceCase> cases;
    for (const std::vector<std::string>& row : tableRows(sharedData("xmlconf/cases.tsv")))
        cases.push_back({row.at(0), row.at(2), row.at(3), row.at(4), row.at(6) == "yes"});
    return cases;
}

class XmlConformanceTest : public ReadingFixture {
protected:
    /// The canonical form of a document, or why it was refused.
    struct Result {
        Outcome outcome;
        std::string canonical;
    };
    static Result readCase(SaxEngineReader& reader, const ConformanceCase& testCase) {
        CanonicalForm canonical;
        reader.setContentHandler(&canonical);
        reader.setDTDHandler(&canonical);
        reader.setErrorHandler(&canonical);
        reader.setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&canonical));
        reader.setFeature(SC_Features_Namespaces(), testCase.hasNamespaces);
        const std::string path = sharedDataPath("xmlconf/" + testCase.path);
        Result result;
        result.outcome = outcomeOf([&] { reader.parse(makeString(path.c_str())); });
        result.canonical = canonical.text();
        return result;
    }
    static void prepare(SaxEngineReader& reader) {
        reader.setFeature(SC_Features_ExternalGeneralEntities(), true);
        reader.setFeature(SC_Features_ExternalParameterEntities(), true);
        reader.setFeature(SC_Features_NamespacePrefixes(), true);
        reader.setFeature(SC_Features_ResolveDtdUris(), false);
    }
};

TEST_F(XmlConformanceTest, EveryCaseGetsItsAnswer) {
    if (!hasSharedData("the XML Conformance Test Suite"))
        return;
    SaxEngineReader reader; // one for all of them, the refused ones too
    prepare(reader);
    int judged = 0;
    for (const ConformanceCase& testCase : conformanceCases()) {
        const Result result = readCase(reader, testCase);
        if (testCase.expect == "either")
            continue;
        ++judged;
        EXPECT_EQ(testCase.expect == "reject", result.outcome.threw)
            << testCase.id << " " << testCase.path << " " << result.outcome.message;
        EXPECT_EQ(result.outcome.threw, result.outcome.isParseException)
            << testCase.id << " " << result.outcome.message;
    }
    EXPECT_EQ(1430, judged);
}

TEST_F(XmlConformanceTest, EveryCanonicalFormComesOut) {
    if (!hasSharedData("the canonical forms of the XML Conformance Test Suite"))
        return;
    SaxEngineReader reader;
    prepare(reader);
    int compared = 0;
    for (const ConformanceCase& testCase : conformanceCases()) {
        if (testCase.output.empty())
            continue;
        ++compared;
        const Result result = readCase(reader, testCase);
        EXPECT_EQ(sharedData("xmlconf/" + testCase.output), result.canonical) << testCase.id;
    }
    EXPECT_EQ(215, compared);
}

} // namespace
} // namespace Quillon::Xml::Sax
