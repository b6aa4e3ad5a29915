// What XmlWriter writes reads back as the same events, apart from the documents of round-trip-differences.tsv, each of
// which stands there with the rule of the writer that changes it. The list is exact: a document in it must differ, and
// in nothing else than its rule says.
#include "conformance/RealDocuments.h"
#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"
#include "xml/sax/writer/XmlWriter.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <sstream>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::uintmax_t kLargest = 200000; // larger ones take a sanitizer longer than they are worth
#else
constexpr std::uintmax_t kLargest = UINTMAX_MAX;
#endif

using Lines = std::vector<std::string>;

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

Lines changed(Lines lines, const std::string& begin, const std::function<std::string(std::string)>& change) {
    for (std::string& line : lines)
        if (line.starts_with(begin))
            line = change(line);
    return lines;
}

/// A rule of the writer: what the events look like where it is taken out of both sides. Without a function, what is
/// written is ill-formed.
struct WriterRule {
    const char* name;
    const char* test; ///< where the rule is held
    std::function<Lines(Lines)> takenOut;
};

const std::vector<WriterRule>& writerRules() {
    // "The writer never emits character references": so what only a reference keeps is read as the text that it makes.
    static const std::vector<WriterRule> rules = {
        {"tabs-and-line-feeds-in-attributes", "XmlWriterTest.TabAndCarriageReturnStayInEveryContext",
         [](Lines lines) {
             return changed(std::move(lines), "startElement(", [](const std::string& line) {
                 return replaced(replaced(line, "\\n", " "), "\\t", " ");
             });
         }},
        {"carriage-returns", "XmlWriterTest.TabAndCarriageReturnStayInEveryContext",
         [](Lines lines) {
             lines = changed(std::move(lines), "characters(", [](const std::string& line) {
                 return replaced(replaced(line, "\\r\\n", "\\n"), "\\r", "\\n");
             });
             return changed(std::move(lines), "startElement(", [](const std::string& line) {
                 return replaced(replaced(replaced(line, "\\r\\n", " "), "\\n", " "), "\\r", " ");
             });
         }},
        // In an entity's value, & and % stand as they are, and quotes become references, which are not expanded there.
        {"quotes-in-entity-values", "XmlWriterDtdTest.EntityValueKeepsMarkupAndEscapesQuotes",
         [](Lines lines) {
             return changed(std::move(lines), "internalEntityDecl(", [](const std::string& line) {
                 return replaced(replaced(line, "&quot;", "\\\""), "&apos;", "'");
             });
         }},
        {"references-in-entity-values", "XmlWriterTest.QuotedEntityValueKeepsMarkup",
         [](Lines lines) {
             return changed(std::move(lines), "internalEntityDecl(",
                            [](const std::string& line) { return replaced(line, "&#38;", "&"); });
         }},
        {"references-in-entity-values-refused", "XmlWriterTest.QuotedEntityValueKeepsMarkup", nullptr},
        {"quotation-marks-in-identifiers", "XmlWriterDtdTest.DoctypeNamesAndIdentifiersAreWrittenAsTheyStand",
         nullptr},
        {"public-literals-without-space", "XmlWriterDtdTest.PublicExternalEntityHasNoSpaces", nullptr},
    };
    return rules;
}

class RoundTripTest : public ReadingFixture {
protected:
    void warmUp() override {
        ReadingFixture::warmUp();
        writerRules();
        std::ostringstream out;
        XmlWriter(out).startDocument();
    }

    struct Reading {
        Outcome outcome;
        Lines lines;
    };

    /// The events of a document; it is read with the base `path` from `text`, when there is one.
    Reading readWith(RecordingHandler& recorder, const std::string& path, const std::string* written) {
        SaxEngineReader reader;
        listen(reader, recorder);
        reader.setEntityResolver(nullptr);
        recorder.joinText(true);
        return {parse(reader, path, written), recorder.lines()};
    }
    static std::string write(const std::string& path) {
        std::ostringstream out;
        XmlWriter writer(out);
        SaxEngineReader reader;
        reader.setContentHandler(&writer);
        reader.setDTDHandler(&writer);
        reader.setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&writer));
        reader.setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&writer));
        EXPECT_FALSE(parse(reader, path, nullptr).threw) << path;
        return out.str();
    }

    /// Compares both readings of a document; `rule` is null for most.
    void check(const std::string& name, const WriterRule* rule) {
        const std::string path = sharedDataPath(name);
        RecordingHandler first, second;
        const Reading original = readWith(first, path, nullptr);
        if (original.outcome.threw) {
            EXPECT_EQ(nullptr, rule) << name << " is not accepted";
            return;
        }
        const std::string written = write(path);
        const Reading again = readWith(second, path, &written);
        ++compared;
        if (rule && !rule->takenOut) {
            EXPECT_TRUE(again.outcome.threw) << name << ": " << rule->name;
            return;
        }
        ASSERT_FALSE(again.outcome.threw) << name << ": " << again.outcome.message;
        if (!rule) {
            EXPECT_TRUE(original.lines == again.lines)
                << name << ": " << difference(original.lines, again.lines);
            return;
        }
        EXPECT_NE(original.lines, again.lines) << name << " does not differ: take it out of the list";
        const Lines left = rule->takenOut(original.lines), right = rule->takenOut(again.lines);
        EXPECT_TRUE(left == right) << name << ": " << difference(left, right);
    }

    static std::vector<std::string> documentNames() {
        std::vector<std::string> names;
        for (const std::string& path : realDocuments())
            names.push_back(path.substr(sharedDataPath("").size()));
        std::set<std::string> seen; // some documents are two cases
        for (const std::vector<std::string>& row : tableRows(sharedData("xmlconf/cases.tsv")))
            if (seen.insert(row.at(3)).second)
                names.push_back("xmlconf/" + row.at(3));
        return names;
    }
    static std::map<std::string, const WriterRule*> differences() {
        std::ifstream file(ZUTARNEX_ROUND_TRIP_DIFFERENCES);
        const std::string table((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        std::map<std::string, const WriterRule*> result;
        for (const std::vector<std::string>& row : tableRows(table)) {
            const auto& rules = writerRules();
            const auto rule = std::find_if(rules.begin(), rules.end(), [&](const WriterRule& candidate) {
                return row.at(1) == candidate.name;
            });
            EXPECT_NE(rules.end(), rule) << row.at(1) << " is no rule of the writer";
            result[row.at(0)] = &*rule;
        }
        return result;
    }

    int compared = 0;

private:
    /// Namespace declarations reach the writer as attributes. External entities are passed over, as a reader does unless
    /// it is told otherwise: the writer does not write their boundaries, so what they hold would become the document's.
    static Outcome parse(SaxEngineReader& reader, const std::string& path, const std::string* written) {
        reader.setFeature(SC_Features_NamespacePrefixes(), true);
        reader.setErrorHandler(nullptr);
        return outcomeOf([&] {
            if (!written)
                return reader.parse(makeString(path.c_str()));
            MemoryByteChannel channel(written->data(), written->size());
            InputSource source(&channel);
            source.setSystemId(makeString(path.c_str()));
            reader.parse(source);
        });
    }
    static std::string difference(const Lines& left, const Lines& right) {
        const auto at = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
        return (at.first == left.end() ? "the end" : *at.first) + "\n    became "
               + (at.second == right.end() ? "the end" : *at.second);
    }
};

TEST_F(RoundTripTest, EventsComeBackApartFromTheWritersRules) {
    if (!hasSharedData("documents to write and read again"))
        return;
    const std::map<std::string, const WriterRule*> listed = differences();
    EXPECT_EQ(23u, listed.size());
    std::size_t used = 0, leftOut = 0;
    for (const std::string& name : documentNames()) {
        const auto rule = listed.find(name);
        used += rule != listed.end();
        if (std::filesystem::file_size(sharedDataPath(name)) > kLargest)
            ++leftOut;
        else
            check(name, rule == listed.end() ? nullptr : rule->second);
    }
    EXPECT_EQ(listed.size(), used) << "a listed document is not there";
    EXPECT_GT(compared, 400);
    EXPECT_LT(leftOut, 20u);
}

} // namespace
} // namespace Quillon::Xml::Sax
