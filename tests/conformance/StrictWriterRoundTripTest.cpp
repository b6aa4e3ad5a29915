// What the strict writer writes reads back as the same events, or it refuses an event: for documents of the world, for
// the W3C's suite, and for random streams of events.
#include "conformance/RealDocuments.h"
#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/EventFilter.h"
#include "xml/sax/writer/StrictWriter.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// What takes a sanitizer longer than it is worth: larger documents have the same kinds of events.
constexpr std::uintmax_t kLargestSanitized = 200000;

const char* const kEncodings[] = {"UTF-8", "US-ASCII", "ISO-8859-1"};

/// Whether the event `line` goes on with the text of the event before.
bool continues(const std::string& before, const std::string& line) {
    for (const std::string event : {"characters(\"", "ignorableWhitespace(\""})
        if (before.starts_with(event) && line.starts_with(event))
            return true;
    return false;
}

/// Without the locator, empty texts and the boundaries of CDATA sections, and with adjacent texts joined.
std::vector<std::string> comparable(const std::vector<std::string>& lines) {
    const std::string kEnd = "\")";
    std::vector<std::string> result;
    for (const std::string& line : lines) {
        if (line == "startCDATA()" || line == "endCDATA()" || line == "characters(\"\")"
            || line == "ignorableWhitespace(\"\")" || line.starts_with("setDocumentLocator("))
            continue;
        if (!result.empty() && continues(result.back(), line))
            result.back().replace(result.back().size() - kEnd.size(), kEnd.size(),
                                  line.substr(line.find('"') + 1));
        else
            result.push_back(line);
    }
    return result;
}

/// A document and how it is read.
struct Reading {
    std::string path; ///< also the base of the text that is written
    bool hasNamespaces = true;
    bool isReal = false;
};

class StrictWriterRoundTripTest : public ReadingFixture {
protected:
    /// GoogleTest keeps the room of its stack of traces, and a stream's locale how numbers are written.
    void warmUp() override {
        ReadingFixture::warmUp();
        SCOPED_TRACE("");
        std::ostringstream() << 1 << 1.5;
    }
    void TearDown() override {
        std::string().swap(lastMessage_);
        ReadingFixture::TearDown();
    }

    void prepare(SaxEngineReader& reader, const Reading& reading, bool externals) {
        reader.setFeature(SC_Features_Namespaces(), reading.hasNamespaces);
        reader.setFeature(SC_Features_ExternalGeneralEntities(), externals);
        reader.setFeature(SC_Features_ExternalParameterEntities(), externals);
        reader.setEntityResolver(reading.isReal ? &resolver_ : nullptr);
    }

    /// The events of a document, in their comparable form; nothing when it is refused.
    std::optional<std::vector<std::string>> eventsOf(InputSource& source, const Reading& reading,
                                                     bool externals) {
        SaxEngineReader reader;
        RecordingHandler handler;
        prepare(reader, reading, externals);
        listen(reader, handler);
        reader.setEntityResolver(reading.isReal ? &resolver_ : nullptr);
        reader.setFeature(SC_Features_NamespacePrefixes(), true);
        const Outcome outcome = outcomeOf([&] { reader.parse(source); });
        lastMessage_ = outcome.message;
        return outcome.threw ? std::nullopt : std::optional(comparable(handler.lines()));
    }

    /// Writes the document again; nothing when the writer refuses it, with the reason in lastMessage_.
    std::optional<std::string> rewritten(InputSource& source, const Reading& reading, bool externals,
                                         const char* encoding) {
        SaxEngineReader reader;
        prepare(reader, reading, externals);
        std::ostringstream out;
        StrictWriter writer(out);
        writer.setEncoding(encoding);
        EventFilter::bind(&reader, &writer);
        const Outcome outcome = outcomeOf([&] { reader.parse(source); });
        lastMessage_ = outcome.message;
        return outcome.threw ? std::nullopt : std::optional(out.str());
    }

    void checkDocument(const Reading& reading) {
        for (const bool externals : {false, true}) {
            InputSource source(makeString(reading.path.c_str()));
            const auto original = eventsOf(source, reading, externals);
            if (!original)
                continue; // there is nothing to write
            for (const char* encoding : kEncodings)
                checkEncoding(reading, externals, encoding, source, *original);
        }
    }

    void checkEncoding(const Reading& reading, bool externals, const char* encoding, InputSource& source,
                       const std::vector<std::string>& original) {
        SCOPED_TRACE(reading.path + (externals ? " with entities in " : " in ") + encoding);
        const std::optional<std::string> text = rewritten(source, reading, externals, encoding);
        if (!text) {
            ++refused_;
            EXPECT_TRUE(isAllowedRefusal(lastMessage_, encoding, reading.hasNamespaces)) << lastMessage_;
            return;
        }
        MemoryByteChannel channel(text->data(), static_cast<unsigned int>(text->size()));
        InputSource again(&channel);
        again.setSystemId(makeString(reading.path.c_str()));
        const auto readBack = eventsOf(again, reading, externals);
        ASSERT_TRUE(readBack) << lastMessage_;
        EXPECT_EQ(original, *readBack);
        ++written_;
        if (folder_)
            std::ofstream(*folder_ / (std::to_string(written_) + ".xml"), std::ios::binary) << *text;
    }

    /// A name, comment or instruction that holds what the encoding lacks, or an entity that was skipped because of a
    /// declaration that cannot be written.
    static bool isAllowedRefusal(const std::string& message, const char* encoding, bool hasNamespaces) {
        const bool isUnwritable = message.find(" cannot stand in ") != std::string::npos;
        const bool isSkipped = message.find("no declaration would make a parser skip") != std::string::npos;
        const bool isFragment =
            message.find("U+0023 cannot stand in the system identifier") != std::string::npos;
        const bool isColon = !hasNamespaces && message.find("U+003A cannot stand in ") != std::string::npos;
        return isSkipped || isFragment || isColon || (isUnwritable && std::string(encoding) != "UTF-8");
    }

    /// Keeps what is written from now on, for another parser to look at.
    void keepTexts() {
        folder_ =
            std::filesystem::path(testing::TempDir()) / ("zutarnex-strict-" + std::to_string(::getpid()));
        std::filesystem::create_directories(*folder_);
    }

    void expectXmllintAcceptsThem() {
        if (std::system("xmllint --version 2> /dev/null") != 0) {
            std::printf("left out, no xmllint on this machine: its judgement of what was written\n");
        } else {
            const std::string report = (*folder_ / "report").string();
            const std::string command = "find " + folder_->string() + " -name '*.xml' -print0"
                                        + " | xargs -0 -n 500 xmllint --noout --nonet --huge 2> " + report;
            EXPECT_EQ(0, std::system(command.c_str())) << std::ifstream(report).rdbuf();
        }
        std::filesystem::remove_all(*folder_);
        folder_.reset();
    }

    int written_ = 0, refused_ = 0;

private:
    RealDocumentResolver resolver_;
    std::string lastMessage_;
    std::optional<std::filesystem::path> folder_;
};

TEST_F(StrictWriterRoundTripTest, RealDocumentsReadBackTheSame) {
    if (!hasSharedData("real documents, through the strict writer"))
        return;
    keepTexts();
    for (const std::string& path : realDocuments())
        if (!kIsSanitized || std::filesystem::file_size(path) <= kLargestSanitized)
            checkDocument({path, true, true});
    EXPECT_LT(100, written_);
    expectXmllintAcceptsThem();
}

TEST_F(StrictWriterRoundTripTest, TheConformanceSuiteReadsBackTheSame) {
    if (!hasSharedData("the XML Conformance Test Suite, through the strict writer"))
        return;
    keepTexts();
    for (const std::vector<std::string>& row : tableRows(sharedData("xmlconf/cases.tsv")))
        if (row.at(2) != "reject")
            checkDocument({sharedDataPath("xmlconf/" + row.at(3)), row.at(6) == "yes", false});
    EXPECT_LT(2200, written_);
    expectXmllintAcceptsThem();
}

// Random streams

/// Makes up events, most of them in their place and some hostile, gives each to the writer and, when that took it, to
/// a handler that keeps what a reader should deliver.
class RandomStream {
public:
    RandomStream(unsigned int seed, StrictWriter& writer, RecordingHandler& expected)
        : random_(seed), writer_(writer), expected_(expected) {}

    void play() {
        both([&](auto& h) { h.content().startDocument(); });
        if (chance(2))
            playDoctype();
        for (int i = upTo(3); i > 0; --i)
            playMisc();
        for (int i = 3 + upTo(25); i > 0; --i)
            playContent();
        finish();
    }

    int refused() const { return refused_; }

private:
    /// The two receivers under one face.
    struct WriterFace {
        StrictWriter& w;
        ContentHandler& content() { return w; }
        LexicalHandler& lexical() { return w; }
        DeclHandler& decl() { return w; }
        DTDHandler& dtd() { return w; }
    };
    struct RecorderFace {
        RecordingHandler& r;
        ContentHandler& content() { return r; }
        LexicalHandler& lexical() { return r; }
        DeclHandler& decl() { return r; }
        DTDHandler& dtd() { return r; }
    };

    template <class Event>
    bool both(Event event) {
        WriterFace writer{writer_};
        try {
            event(writer);
        } catch (const SaxException& refusal) {
            ++refused_;
            EXPECT_NE(std::string::npos, show(refusal.getMessage()).find(": ")) << show(refusal.getMessage());
            return false;
        }
        RecorderFace recorder{expected_};
        event(recorder);
        return true;
    }

    int upTo(int n) { return static_cast<int>(random_() % static_cast<unsigned int>(n + 1)); }
    bool chance(int oneIn) { return upTo(oneIn - 1) == 0; }
    template <std::size_t N>
    const char16_t* pick(const char16_t* const (&list)[N]) {
        return list[random_() % N];
    }

    XmlString name() {
        static constexpr const char16_t* kNames[] = {u"a",      u"b",      u"c",   u"d1",
                                                     u"\u00E9", u"\u05D0", u"x-y", u"_"};
        static constexpr const char16_t* kBad[] = {u"",       u"1", u"a b", u"<", u"a:b:c",
                                                   u"\u20AC", u"-", u":",   u"a:"};
        return text(chance(12) ? pick(kBad) : pick(kNames));
    }

    /// Text made of what is special somewhere, of any unit at all, and of letters.
    std::u16string units(int most) {
        static constexpr std::u16string_view kSpecial = u"<>&'\"]]>--?>%;#\r\n\t x\u00E9\u20AC";
        std::u16string result;
        for (int i = upTo(most); i > 0; --i) {
            if (chance(40))
                result += static_cast<char16_t>(random_());
            else if (chance(15))
                result += u"\U0001F600";
            else
                result += kSpecial[random_() % kSpecial.size()];
        }
        return result;
    }
    XmlString string(int most) { return text(units(most)); }
    /// Mostly harmless, where hostile text would be refused nearly always.
    XmlString mildString() {
        static constexpr const char16_t* kMild[] = {u"", u"x", u"a b", u"urn:x", u"x.dtd", u"\u00E9"};
        return chance(8) ? string(4) : text(pick(kMild));
    }
    XmlString orNull(const XmlString& value) { return chance(3) ? XmlString() : value; }

    template <class Send>
    void sendText(const std::u16string& all, Send send) {
        const std::vector<unsigned short> copy(all.begin(), all.end());
        both([&](auto& h) { send(h, copy.data(), static_cast<unsigned int>(copy.size())); });
    }

    void playMisc() {
        if (chance(2)) {
            const std::u16string comment = chance(3) ? units(6) : u" c ";
            sendText(comment, [](auto& h, auto* ch, unsigned int n) { h.lexical().comment(ch, 0, n); });
        } else {
            const XmlString target = name(), data = chance(3) ? string(5) : text(u"d");
            both([&](auto& h) { h.content().processingInstruction(target, data); });
        }
    }

    void playDoctype() {
        const XmlString doctype = name(), publicId = orNull(mildString()), systemId = orNull(mildString());
        if (!both([&](auto& h) { h.lexical().startDTD(doctype, publicId, systemId); }))
            return;
        for (int i = upTo(8); i > 0; --i)
            playDeclaration();
        both([&](auto& h) { h.lexical().endDTD(); });
    }

    void playDeclaration() {
        static constexpr const char16_t* kModels[] = {u"ANY",     u"EMPTY",        u"(#PCDATA)",
                                                      u"(a,b?)*", u"(#PCDATA|a)*", u"(a"};
        static constexpr const char16_t* kTypes[] = {u"CDATA", u"CDATA", u"NMTOKENS",
                                                     u"ID",    u"(p|q)", u"NOTATION (n)"};
        static constexpr const char16_t* kModes[] = {nullptr,      nullptr,   u"#IMPLIED",
                                                     u"#REQUIRED", u"#FIXED", u"x"};
        const XmlString first = name(), second = name();
        const XmlString publicId = orNull(mildString()), systemId = orNull(mildString());
        const XmlString model = text(pick(kModels)), type = text(pick(kTypes)), mode = text(pick(kModes));
        const XmlString value = chance(2) ? XmlString() : string(5), replacement = string(8);
        const XmlString entity = chance(4) ? joined(text(u"%"), u"", first) : first;
        switch (upTo(7)) {
        case 0:
            both([&](auto& h) { h.decl().elementDecl(first, model); });
            break;
        case 1:
        case 2:
            both([&](auto& h) { h.decl().attributeDecl(first, second, type, mode, value); });
            break;
        case 3:
            both([&](auto& h) { h.decl().internalEntityDecl(entity, replacement); });
            break;
        case 4:
            both([&](auto& h) { h.decl().externalEntityDecl(first, publicId, systemId); });
            break;
        case 5:
            both([&](auto& h) { h.dtd().notationDecl(first, publicId, systemId); });
            break;
        case 6:
            both([&](auto& h) { h.dtd().unparsedEntityDecl(first, publicId, systemId, second); });
            break;
        default:
            playMisc();
        }
    }

    void playContent() {
        switch (upTo(10)) {
        case 0:
        case 1:
            playStart();
            break;
        case 2:
            playEnd();
            break;
        case 3:
            playMisc();
            break;
        case 4:
            both([&](auto& h) { h.lexical().startCDATA(); });
            break;
        case 5:
            both([&](auto& h) { h.lexical().endCDATA(); });
            break;
        case 6: {
            const XmlString entity = name();
            both([&](auto& h) { h.content().skippedEntity(entity); });
            break;
        }
        case 7:
            sendText(chance(4) ? units(2) : u" \n",
                     [](auto& h, auto* ch, unsigned int n) { h.content().ignorableWhitespace(ch, 0, n); });
            break;
        default:
            sendText(units(9), [](auto& h, auto* ch, unsigned int n) { h.content().characters(ch, 0, n); });
        }
    }

    struct Element {
        XmlString uri, localName, qName;
        std::vector<XmlString> prefixes;
    };

    /// The namespace that the prefix has in the open elements.
    XmlString uriOf(const XmlString& prefix) const {
        for (auto mapping = mappings_.rbegin(); mapping != mappings_.rend(); ++mapping)
            if (mapping->first.compare(prefix) == 0)
                return mapping->second;
        return text(u"");
    }

    static XmlString joined(const XmlString& first, const char16_t* between, const XmlString& second) {
        return text(unitsOf(first) + between + unitsOf(second));
    }

    static XmlString prefixed(const XmlString& prefix, const XmlString& localName) {
        return prefix.size() == 0 ? localName : joined(prefix, u":", localName);
    }

    void playStart() {
        static constexpr const char16_t* kPrefixes[] = {u"", u"", u"p", u"q"};
        static constexpr const char16_t* kUris[] = {u"urn:1", u"urn:2&\"", u"urn:\u20AC", u""};
        Element element;
        const std::size_t mappingsBefore = mappings_.size();
        while (chance(3)) {
            const XmlString prefix = text(pick(kPrefixes)), uri = text(pick(kUris));
            if (both([&](auto& h) { h.content().startPrefixMapping(prefix, uri); })) {
                mappings_.emplace_back(prefix, uri);
                element.prefixes.push_back(prefix);
            }
        }
        const XmlString prefix = text(pick(kPrefixes));
        element.localName = name();
        if (element.localName.size() == 0) // would be a stream without expanded names
            element.localName = text(u"?");
        element.qName = prefixed(prefix, element.localName);
        element.uri = chance(30) ? text(u"urn:3") : uriOf(prefix);
        AttributesImpl attributes;
        for (int i = upTo(3); i > 0; --i) {
            const XmlString attributePrefix = text(pick(kPrefixes)), localName = name();
            const XmlString uri = attributePrefix.size() == 0 ? text(u"") : uriOf(attributePrefix);
            attributes.addAttribute(uri, localName, prefixed(attributePrefix, localName),
                                    text(chance(10) ? u"ID" : u"CDATA"), string(6));
        }
        const auto send = [&](const Attributes& list) {
            return both([&](auto& h) {
                h.content().startElement(element.uri, element.localName, element.qName, list);
            });
        };
        if (send(attributes) || recover(element, send))
            elements_.push_back(element);
        else
            mappings_.resize(mappingsBefore);
    }

    /// Mappings have been announced, so an element must come: one that nothing can be said against, unless this is not
    /// the place for any element.
    template <class Send>
    bool recover(Element& element, Send send) {
        if (element.prefixes.empty())
            return false;
        element.qName = element.localName = text(u"plain");
        element.uri = uriOf(text(u""));
        return send(AttributesImpl());
    }

    void playEnd() {
        if (elements_.empty() || chance(10)) {
            const XmlString wrong = text(u"wrong");
            both([&](auto& h) { h.content().endElement(text(u""), wrong, wrong); });
            return;
        }
        const Element element = elements_.back();
        if (!both([&](auto& h) { h.content().endElement(element.uri, element.localName, element.qName); }))
            return;
        elements_.pop_back();
        for (std::size_t i = element.prefixes.size(); i-- > 0;) {
            EXPECT_TRUE(both([&](auto& h) { h.content().endPrefixMapping(element.prefixes[i]); }));
            mappings_.pop_back();
        }
    }

    /// Ends what is open; the root must have come.
    void finish() {
        both([&](auto& h) { h.lexical().endCDATA(); });
        const XmlString root = text(u"root");
        if (elements_.empty()
            && both([&](auto& h) { h.content().startElement(text(u""), root, root, AttributesImpl()); }))
            elements_.push_back({text(u""), root, root, {}});
        while (!elements_.empty())
            playEnd();
        EXPECT_TRUE(both([&](auto& h) { h.content().endDocument(); }));
    }

    std::mt19937 random_;
    StrictWriter& writer_;
    RecordingHandler& expected_;
    std::vector<Element> elements_;
    std::vector<std::pair<XmlString, XmlString>> mappings_;
    int refused_ = 0;
};

constexpr unsigned int kStreams = kIsSanitized ? 10000 : 100000;

TEST_F(StrictWriterRoundTripTest, RandomStreamsAreWrittenSoThatTheyReadBackOrRefused) {
    reader().setFeature(SC_Features_ResolveDtdUris(), false);
    handler().joinText(true);
    int refused = 0;
    for (unsigned int seed = 0; seed < kStreams && !HasFailure(); ++seed) {
        std::ostringstream out;
        StrictWriter writer(out);
        writer.setEncoding(kEncodings[seed % 3]);
        RecordingHandler expected;
        expected.joinText(true);
        RandomStream stream(seed, writer, expected);
        stream.play();
        refused += stream.refused();
        handler().clear();
        const Outcome outcome = read(out.str());
        EXPECT_FALSE(outcome.threw) << outcome.message << "\nseed " << seed << "\n" << out.str();
        EXPECT_EQ(comparable(expected.lines()), comparable(handler().lines())) << "seed " << seed << "\n"
                                                                               << out.str();
    }
    EXPECT_LT(kStreams, static_cast<unsigned int>(refused)); // the hostile ones are there
}

TEST_F(StrictWriterRoundTripTest, EveryUnitAndEveryPairOfMarkupCharactersIsWrittenOrRefused) {
    const std::u16string kMarkup = u"<>&]-?!;#%\"' \r\n\t";
    std::vector<std::pair<std::u16string, std::u16string>> pieces;
    for (unsigned int unit = 0; unit <= 0xFFFF; ++unit)
        pieces.push_back({std::u16string(1, static_cast<char16_t>(unit)), u""});
    for (const char16_t first : kMarkup)
        for (const char16_t second : kMarkup)
            for (const char16_t third : kMarkup) {
                pieces.push_back({{first}, {second, third}});
                pieces.push_back({{first, second}, {third}});
            }
    for (const char* encoding : kEncodings) {
        for (const bool inSection : {false, true}) {
            std::ostringstream out;
            StrictWriter writer(out);
            writer.setEncoding(encoding);
            writer.startDocument();
            const XmlString e = text(u"e");
            writer.startElement(text(u""), e, e, AttributesImpl());
            std::u16string expected;
            for (const auto& [first, second] : pieces) {
                if (inSection)
                    writer.startCDATA();
                for (const std::u16string& piece : {first, second}) {
                    const std::vector<unsigned short> copy(piece.begin(), piece.end());
                    const Outcome outcome = outcomeOf(
                        [&] { writer.characters(copy.data(), 0, static_cast<unsigned int>(copy.size())); });
                    if (!outcome.threw)
                        expected += piece;
                }
                if (inSection)
                    writer.endCDATA();
            }
            writer.endElement(text(u""), e, e);
            writer.endDocument();
            handler().clear();
            EXPECT_FALSE(read(out.str()).threw);
            RecordingHandler wanted;
            const std::vector<unsigned short> copy(expected.begin(), expected.end());
            wanted.characters(copy.data(), 0, static_cast<unsigned int>(copy.size()));
            const std::vector<std::string> lines = comparable(handler().lines());
            ASSERT_EQ(5u, lines.size()) << testing::PrintToString(lines).substr(0, 500);
            EXPECT_TRUE(wanted.lines().front() == lines[2]) << encoding << inSection;
        }
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
