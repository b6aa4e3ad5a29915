// The writer against a plain model of it, on streams of every kind: bytes, exceptions, and the state of the stream.
#include "xml/sax/writer/XmlWriter.h"

#include "PlainModel.h"
#include "WriterFixture.h"
#include "xml/sax/Attributes2Impl.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Text = std::vector<unsigned short>;

/// Takes so many bytes and no more.
class LimitedSink : public std::streambuf {
public:
    LimitedSink(std::size_t limit, bool throws) : limit_(limit), throws_(throws) {}

    std::string bytes;
    unsigned int syncs = 0;

protected:
    std::streamsize xsputn(const char* text, std::streamsize count) override {
        const std::size_t room = limit_ - bytes.size();
        const std::size_t taken = std::min(room, static_cast<std::size_t>(count));
        bytes.append(text, taken);
        if (throws_ && taken != static_cast<std::size_t>(count))
            throw std::runtime_error("the sink is full");
        return static_cast<std::streamsize>(taken);
    }
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }
    int sync() override { return ++syncs, 0; }

private:
    std::size_t limit_;
    bool throws_;
};

/// What a stream is set to before an operation.
struct StreamCase {
    std::size_t limit = std::string::npos;
    bool throws = false;
    bool isTied = false, isUnbuffered = false, isLeft = false;
    std::ios_base::iostate exceptions = std::ios_base::goodbit;
    std::ios_base::iostate state = std::ios_base::goodbit;
    std::streamsize width = 0;
    const char* encoding = "UTF-8";
    bool isCanonical = false;

    /// What a throwing buffer took when the stream keeps the exception to itself is not known, and so not whether
    /// the fragment that failed was the last one.
    bool hidesWhatFailed() const { return throws && (exceptions & std::ios_base::badbit) == 0; }
};

struct Outcome {
    std::string bytes, exception;
    std::ios_base::iostate state;
    std::streamsize width;

    bool operator==(const Outcome&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& o) {
        return out << o.bytes.size() << " bytes '" << o.bytes.substr(0, 200) << "', " << o.exception
                   << ", state " << o.state << ", width " << o.width;
    }
};

std::string exceptionOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::ios_base::failure&) {
        return "failure";
    } catch (const std::runtime_error& e) {
        return e.what();
    } catch (const IllegalCharacterException& e) {
        return dynamic_cast<const System::UserException&>(e).getMessage();
    } catch (const IllegalArgumentException&) {
        return "illegal argument";
    }
    return "nothing";
}

template <class Writer, class Operation>
Outcome outcomeOf(const StreamCase& c, const Operation& operation) {
    LimitedSink sink(c.limit, c.throws);
    std::ostream out(&sink);
    std::ostringstream tied;
    if (c.isTied)
        out.tie(&tied);
    if (c.isUnbuffered)
        out.setf(std::ios_base::unitbuf);
    if (c.isLeft)
        out.setf(std::ios_base::left, std::ios_base::adjustfield);
    out.fill('*');
    out.setstate(c.state);
    if ((c.exceptions & c.state) == 0)
        out.exceptions(c.exceptions);
    out.width(c.width);
    Writer writer(out);
    writer.setEncoding(c.encoding);
    writer.setCanonical(c.isCanonical);
    Outcome outcome;
    outcome.exception = exceptionOf([&] { operation(writer, sink); });
    outcome.bytes = sink.bytes;
    outcome.state = out.rdstate();
    outcome.width = out.width();
    return outcome;
}

class XmlWriterModelTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        exceptionOf([] { throw std::ios_base::failure(""); });
        exceptionOf([] { IllegalCharacterException::doThrow(1); });
    }

    std::size_t below(std::size_t bound) { return random_() % bound; }
    bool oneIn(std::size_t bound) { return below(bound) == 0; }

    /// Text of one script or another, of any length, with what has to be escaped here and there.
    Text randomText(bool isLegal) {
        static constexpr unsigned short kMarked[] = {'<', '>', '&', '"', '\'', '\n', '\r', '\t', 0x7F, 0x80};
        static constexpr unsigned short kIllegal[] = {0, 1, 0x1F, 0xFFFE, 0xFFFF};
        static constexpr std::size_t kLengths[] = {0, 3, 20, 70, 300, 3000, 9000};
        static constexpr unsigned short kScripts[] = {'a', 'a', 0xE0, 0x410, 0x4E00, 0xD7F0, 0xD83C, 0xFFF0};
        Text text(below(kLengths[below(std::size(kLengths))] + 1));
        const unsigned short script = kScripts[below(std::size(kScripts))];
        const std::size_t markedOneIn = 2 + below(200), otherOneIn = 2 + below(100);
        for (std::size_t i = 0; i < text.size(); ++i) {
            text[i] = static_cast<unsigned short>(script + below(13));
            if (oneIn(markedOneIn))
                text[i] = kMarked[below(std::size(kMarked))];
            else if (oneIn(otherOneIn))
                text[i] = static_cast<unsigned short>('a' + below(26));
            else if (script == 0xD83C && i % 2 != 0)
                text[i] = static_cast<unsigned short>(0xDC00 + below(0x400));
        }
        if (!isLegal && !text.empty() && oneIn(3))
            text[below(text.size())] = kIllegal[below(std::size(kIllegal))];
        return text;
    }

    XmlString randomString(bool isLegal) {
        if (oneIn(10))
            return XmlString();
        Text text = randomText(isLegal);
        text.push_back(0);
        return XmlString(0, text.data(), static_cast<unsigned int>(text.size() - 1));
    }

    StreamCase randomStream(bool mayThrow) {
        static constexpr const char* kEncodings[] = {"UTF-8", "US-ASCII", "ISO-8859-1", "UTF-8", "utf-8"};
        static constexpr std::ios_base::iostate kMasks[] = {
            std::ios_base::goodbit, std::ios_base::badbit, std::ios_base::failbit,
            std::ios_base::badbit | std::ios_base::failbit, std::ios_base::eofbit};
        static constexpr std::ios_base::iostate kStates[] = {std::ios_base::badbit, std::ios_base::failbit,
                                                             std::ios_base::eofbit};
        StreamCase c;
        c.encoding = oneIn(20) ? nullptr : kEncodings[below(std::size(kEncodings))];
        c.isCanonical = oneIn(3);
        if (oneIn(2))
            return c;
        if (oneIn(2))
            c.limit = below(oneIn(2) ? 40 : 12000);
        c.throws = oneIn(2);
        c.isTied = oneIn(6);
        c.isUnbuffered = oneIn(6);
        c.isLeft = oneIn(2);
        c.width = oneIn(4) ? static_cast<std::streamsize>(below(20)) : 0;
        if (oneIn(8))
            c.state = kStates[below(std::size(kStates))];
        if (mayThrow)
            c.exceptions = kMasks[below(std::size(kMasks))];
        return c;
    }

    template <class Operation>
    void compare(const StreamCase& c, const Operation& operation) {
        Outcome expected = outcomeOf<PlainModel>(c, operation), actual = outcomeOf<XmlWriter>(c, operation);
        if (c.hidesWhatFailed()) {
            expected.state |= std::ios_base::failbit;
            actual.state |= std::ios_base::failbit;
        }
        EXPECT_EQ(expected, actual) << "limit " << c.limit << ", throws " << c.throws << ", exceptions "
                                    << c.exceptions << ", width " << c.width << ", encoding "
                                    << (c.encoding ? c.encoding : "none");
    }

    static unsigned int lengthOf(const Text& text) { return static_cast<unsigned int>(text.size()); }

private:
    std::mt19937 random_{1}; // NOLINT: the same in every run
};

constexpr int kRounds = 1500;

TEST_F(XmlWriterModelTest, RawTextIsThatOfTheModel) {
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const Text text = randomText(false);
        compare(randomStream(true),
                [&](auto& writer, auto&) { writer.rawWrite(text.data(), 0, lengthOf(text)); });
    }
}

TEST_F(XmlWriterModelTest, RawTextInPiecesIsThatOfTheModel) {
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const Text text = randomText(false);
        const auto split = static_cast<unsigned int>(below(text.size() + 1));
        compare(randomStream(true), [&](auto& writer, auto&) {
            writer.rawWrite(text.data(), 0, split);
            writer.rawWrite(text.data(), split, lengthOf(text) - split);
        });
    }
}

TEST_F(XmlWriterModelTest, EscapedTextIsThatOfTheModel) {
    for (int round = 0; round < 2 * kRounds && !HasFailure(); ++round) {
        const Text text = randomText(false);
        const auto context = static_cast<XmlWriter::EscapeContext>(below(4));
        compare(randomStream(true),
                [&](auto& writer, auto&) { writer.escapeChars(text.data(), 0, lengthOf(text), context); });
    }
}

TEST_F(XmlWriterModelTest, QuotedValuesAreThoseOfTheModel) {
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const XmlString value = randomString(false);
        const auto context = static_cast<XmlWriter::EscapeContext>(below(4));
        compare(randomStream(true), [&](auto& writer, auto&) { writer.writeQuotedValue(value, context); });
    }
}

template <class List>
List attributesFrom(const std::vector<std::pair<XmlString, XmlString>>& entries) {
    List list;
    for (const auto& [name, value] : entries)
        list.addAttribute(XmlString(), name, name, XmlString(), value);
    return list;
}

/// An application's own list that looks at the sink and writes into it whenever it is asked.
class MeddlingAttributes : public ForeignAttributes {
public:
    MeddlingAttributes(const AttributesImpl& list, LimitedSink& sink) : list_(list), sink_(sink) {}

    unsigned int getLength() const override { return meddle(), list_.getLength(); }
    XmlString getQName(unsigned int i) const override { return meddle(), list_.getQName(i); }
    XmlString getValue(unsigned int i) const override { return meddle(), list_.getValue(i); }

private:
    void meddle() const { sink_.bytes += "[" + std::to_string(sink_.bytes.size()) + "]"; }

    const AttributesImpl& list_;
    LimitedSink& sink_;
};

TEST_F(XmlWriterModelTest, StartTagsAreThoseOfTheModel) {
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        const XmlString name = randomString(false);
        std::vector<std::pair<XmlString, XmlString>> entries(below(4));
        for (auto& [entryName, value] : entries) {
            entryName = randomString(false);
            value = randomString(false);
        }
        const auto plain = attributesFrom<AttributesImpl>(entries);
        const auto flagged = attributesFrom<Attributes2Impl>(entries);
        const StreamCase c = randomStream(true);
        compare(c, [&](auto& writer, auto&) { writer.writeStartTag(name, plain); });
        compare(c, [&](auto& writer, auto&) { writer.writeStartTag(name, flagged); });
        StreamCase unlimited = c;
        unlimited.limit = std::string::npos;
        compare(unlimited, [&](auto& writer, LimitedSink& sink) {
            writer.writeStartTag(name, MeddlingAttributes(plain, sink));
        });
    }
}

/// A list whose strings lost their Valid: a copy of them is null.
TEST_F(XmlWriterModelTest, InvalidStringsOfAListAreThoseOfTheModel) {
    XmlString invalid = Testing::text(u"x");
    invalid += invalid;
    AttributesImpl list = attributesOf({{u"a", u"v"}, {u"b", u"w"}});
    list.setValue(0, invalid);
    compare({}, [&](auto& writer, auto&) { writer.writeStartTag(Testing::text(u"e"), list); });
    list.setQName(1, invalid);
    compare({}, [&](auto& writer, auto&) { writer.writeStartTag(Testing::text(u"e"), list); });
}

/// What an event lets out ends the process, so here are streams and texts that nothing is thrown for.
TEST_F(XmlWriterModelTest, EventsAreThoseOfTheModel) {
    for (int round = 0; round < kRounds / 10 && !HasFailure(); ++round) {
        StreamCase c = randomStream(false);
        const bool isUtf8 = c.encoding == nullptr || c.encoding[0] == 'u' || c.encoding[2] == 'F';
        const auto seed = static_cast<unsigned int>(below(1000000));
        compare(c, [&](auto& writer, auto&) {
            std::mt19937 random(seed); // NOLINT: the same for both
            writer.startDocument();
            for (int i = 0; i < 20; ++i) {
                const XmlString name = Testing::text(u"name"),
                                text = Testing::text(u"caf\u00E9 & <\u4E2D>\n");
                const AttributesImpl list = attributesOf({{u"a", u"\"1\"\n"}, {u"b", u"'\u00E9'"}});
                switch (random() % 6) {
                case 0:
                    writer.startElement(name, name, name, list);
                    break;
                case 1:
                    writer.endElement(name, name, name);
                    break;
                case 2:
                    writer.characters(text.data(), 1, text.size() - 2);
                    break;
                case 3:
                    writer.comment(text.data(), 0, isUtf8 ? text.size() : 3);
                    break;
                case 4:
                    writer.processingInstruction(name, isUtf8 ? text : name);
                    break;
                default:
                    writer.skippedEntity(text);
                }
            }
            writer.endDocument();
        });
    }
}

/// A text that is longer than any buffer, cut by a failing stream at every byte.
TEST_F(XmlWriterModelTest, StreamThatFailsAtAnyByteIsThatOfTheModel) {
    Text text(2500, 'x');
    for (std::size_t i = 0; i < text.size(); i += 31)
        text[i] = i % 2 != 0 ? '<' : 0x4E2D;
    const AttributesImpl list = attributesOf({{u"a", u"1<"}, {u"b", u"\"2"}});
    for (std::size_t limit = 0; limit < 3000; limit += limit < 60 ? 1 : 37) {
        for (const bool throws : {false, true}) {
            for (const auto mask : {std::ios_base::goodbit, std::ios_base::badbit, std::ios_base::failbit}) {
                StreamCase c;
                c.limit = limit;
                c.throws = throws;
                c.exceptions = mask;
                compare(c, [&](auto& writer, auto&) {
                    writer.escapeChars(text.data(), 0, lengthOf(text), XmlWriter::CharacterData);
                });
                compare(c, [&](auto& writer, auto&) { writer.writeStartTag(Testing::text(u"e"), list); });
            }
        }
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
