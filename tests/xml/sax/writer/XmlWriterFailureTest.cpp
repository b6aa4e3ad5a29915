// What is left, what gets out and what ends the process: memory, streams, and the narrow throw declaration of events.
#include "xml/sax/writer/XmlWriter.h"

#include "WriterFixture.h"
#include "runtime/HostServices.h"
#include "xml/IllegalArgumentException.h"
#include "xml/sax/SaxException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/SaxParseException.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <ios>
#include <stdexcept>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::everyAllocationFails;
using Testing::everyNewFails;
using Testing::hostMemory;
using Testing::newMemory;
using Testing::show;
using Testing::text;
using Testing::units;

using Call = void (*)(XmlWriter&);

struct NamedCall {
    const char* name;
    Call call;
};

std::string nameOf(const testing::TestParamInfo<NamedCall>& info) {
    return info.param.name;
}

/// The strings of the calls, made before memory fails.
struct Arguments {
    std::vector<unsigned short> run = units(u"a<b\n\"c'");
    XmlString name = text(u"name");
    XmlString percentName = text(u"%name");
    XmlString value = text(u"a<b\n\"c'");
    AttributesImpl attributes = attributesOf({{u"a", u"1<"}, {u"b", u"\"2"}});
};

const Arguments* arguments = nullptr; // lives as long as a test

class WithArguments : public WriterFixture {
protected:
    WithArguments() { arguments = &own; }
    ~WithArguments() override { arguments = nullptr; }

    Arguments own;
};

// The output primitives, when memory runs out

class XmlWriterPrimitiveTest : public WithArguments, public testing::WithParamInterface<NamedCall> {};

const NamedCall kPrimitives[] = {
    {"RawWriteOfARange", [](XmlWriter& w) { w.rawWrite(arguments->run.data(), 1, 4); }},
    {"RawWriteOfAString", [](XmlWriter& w) { w.rawWrite(arguments->value); }},
    {"RawWriteOfAUnit", [](XmlWriter& w) { w.rawWrite(static_cast<unsigned short>(u'x')); }},
    {"NewLine", [](XmlWriter& w) { w.newLine(); }},
    {"EscapeEntityValue",
     [](XmlWriter& w) { w.escapeChars(arguments->run.data(), 0, 7, XmlWriter::EntityValue); }},
    {"EscapeAttributeValue",
     [](XmlWriter& w) { w.escapeChars(arguments->run.data(), 0, 7, XmlWriter::AttributeValue); }},
    {"EscapeCharacterData",
     [](XmlWriter& w) { w.escapeChars(arguments->run.data(), 0, 7, XmlWriter::CharacterData); }},
    {"EscapeNothing",
     [](XmlWriter& w) { w.escapeChars(arguments->run.data(), 0, 7, XmlWriter::UnescapedText); }},
    {"WriteQuotedValue",
     [](XmlWriter& w) { w.writeQuotedValue(arguments->value, XmlWriter::AttributeValue); }},
    {"WriteStartTag", [](XmlWriter& w) { w.writeStartTag(arguments->name, arguments->attributes); }},
};

/// An encoding that only the host can convert to.
constexpr char kHostsEncoding[] = "windows-1252";

constexpr const char* kOwnEncodings[] = {"UTF-8", "US-ASCII", "ISO-8859-1"};

TEST_P(XmlWriterPrimitiveTest, OutOfMemoryGetsOutAndLeavesTheStartOfTheText) {
    writer.setEncoding(kHostsEncoding);
    GetParam().call(writer);
    const std::string whole = written();
    ASSERT_NE("", whole);
    std::string longest;
    std::size_t failures = 0;
    everyAllocationFails([&] { GetParam().call(writer); },
                         [&] {
                             const std::string left = written();
                             EXPECT_LT(left.size(), whole.size());
                             EXPECT_EQ(whole.substr(0, left.size()), left);
                             EXPECT_GE(left.size(), longest.size());
                             longest = left;
                             ++failures;
                         });
    EXPECT_LE(1U, failures);
    EXPECT_EQ(whole, written());
}

TEST_P(XmlWriterPrimitiveTest, AllocatesNothingInTheWritersEncodings) {
    for (const char* encoding : kOwnEncodings) {
        writer.setEncoding(encoding);
        const std::size_t ofHost = hostMemory().requests(), ofNew = newMemory().requests();
        GetParam().call(writer);
        EXPECT_EQ(ofHost, hostMemory().requests()) << encoding;
        EXPECT_EQ(ofNew, newMemory().requests()) << encoding;
        EXPECT_NE("", written());
    }
}

TEST_P(XmlWriterPrimitiveTest, AsksOperatorNewForNothing) {
    writer.setEncoding(kHostsEncoding);
    const std::size_t before = newMemory().requests();
    GetParam().call(writer);
    EXPECT_EQ(before, newMemory().requests());
    EXPECT_NE("", written());
}

TEST_P(XmlWriterPrimitiveTest, StreamExceptionGetsOutAndNoBlockIsLost) {
    out.exceptions(std::ios_base::badbit);
    sink.takeNothing();
    EXPECT_THROW(GetParam().call(writer), std::ios_base::failure);
    EXPECT_EQ("", written());
}

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterPrimitiveTest, testing::ValuesIn(kPrimitives), nameOf);

class XmlWriterFailureTest : public WithArguments {};

TEST_F(XmlWriterFailureTest, EndOfLineAllocatesNothing) {
    const std::size_t before = hostMemory().requests();
    const XmlString eol = writer.eol();
    EXPECT_EQ(before, hostMemory().requests());
}

TEST_F(XmlWriterFailureTest, RefusalOfAnIllegalCharacterMayRunOutOfMemory) {
    const auto refused = [&] {
        try {
            escape(u"\u0001", XmlWriter::CharacterData);
        } catch (const IllegalCharacterException&) {
        }
    };
    everyAllocationFails(refused);
    everyNewFails(refused);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterFailureTest, RefusalOfANamelessAttributeMayRunOutOfMemory) {
    const AttributesImpl nameless = attributesOf({{u"", u"v"}});
    const auto refused = [&] {
        try {
            writer.writeStartTag(own.name, nameless);
        } catch (const IllegalArgumentException&) {
        }
    };
    everyAllocationFails(refused);
    everyNewFails(refused);
}

TEST_F(XmlWriterFailureTest, RefusalOfAnEncodingMayRunOutOfMemory) {
    writer.setEncoding("X-No-Such");
    everyAllocationFails([&] {
        try {
            writer.newLine();
        } catch (const SaxNotSupportedException& e) {
            EXPECT_EQ("Encoding: X-No-Such", show(e.getMessage()));
        }
    });
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterFailureTest, RunningOutOfMemoryInAnotherEncodingIsNotAnUnknownEncoding) {
    for (const char* encoding :
         {"us-ascii", "iso-8859-1", kHostsEncoding}) { // names are known by their exact spelling
        writer.setEncoding(encoding);
        const std::size_t before = hostMemory().requests();
        everyAllocationFails([&] { writer.newLine(); });
        EXPECT_LT(before + 1, hostMemory().requests()) << encoding;
        EXPECT_EQ("\n", written());
    }
}

TEST_F(XmlWriterFailureTest, MakingAWriterAllocatesNothingThatStays) {
    const std::ptrdiff_t hostBlocks = hostMemory().liveBlocks(), objects = newMemory().liveBlocks();
    XmlWriter other(out);
    EXPECT_EQ(hostBlocks, hostMemory().liveBlocks());
    EXPECT_EQ(objects, newMemory().liveBlocks());
}

// Streams

TEST_F(XmlWriterFailureTest, FieldWidthPadsTheFirstFragmentOnly) {
    out.width(4);
    rawWrite(u"ab");
    rawWrite(u"ab");
    EXPECT_EQ("  abab", written());
    out.width(4);
    escape(u"ab<cd", XmlWriter::CharacterData);
    EXPECT_EQ("  ab&lt;cd", written());
    out.width(4);
    startElement(u"e", own.attributes);
    EXPECT_EQ("   <e a=\"1&lt;\" b=\"&quot;2\">", written());
}

TEST_F(XmlWriterFailureTest, FieldWidthPadsEachPartOfAReplacementByItself) {
    out.width(4);
    escape(u"<", XmlWriter::CharacterData);
    EXPECT_EQ("   &lt;", written());
    writer.setEncoding("US-ASCII");
    out.width(4);
    escape(u"\u00E9", XmlWriter::CharacterData);
    EXPECT_EQ("   &;", written());
    out.width(4);
    escape(u"\n", XmlWriter::CharacterData); // no empty fragment before it
    EXPECT_EQ("   \n", written());
}

TEST_F(XmlWriterFailureTest, FieldWidthFillsAsTheStreamSays) {
    out.width(5);
    out.fill('*');
    out.setf(std::ios_base::left, std::ios_base::adjustfield);
    rawWrite(u"ab");
    EXPECT_EQ("ab***", written());
}

TEST_F(XmlWriterFailureTest, EmptyTextIsAFragmentAndNullIsNone) {
    out.width(3);
    writer.rawWrite(XmlString());
    EXPECT_EQ("", written());
    EXPECT_EQ(3, out.width());
    writer.rawWrite(text(u""));
    EXPECT_EQ("   ", written());
    EXPECT_EQ(0, out.width());
    out.width(2);
    writer.rawWrite(nullptr, 0, 0);
    EXPECT_EQ("  ", written());
    out.width(2);
    escape(u"", XmlWriter::CharacterData);
    EXPECT_EQ("", written());
    EXPECT_EQ(2, out.width());
}

TEST_F(XmlWriterFailureTest, FailedStreamIsNotNoticed) {
    out.setstate(std::ios_base::failbit);
    writer.startDocument();
    startElement(u"e", own.attributes);
    characters(u"a<b");
    endElement(u"e");
    writer.endDocument();
    EXPECT_EQ("", written());
    EXPECT_TRUE(out.fail());
    out.clear();
    characters(u"c");
    EXPECT_EQ("c", written());
}

TEST_F(XmlWriterFailureTest, FullStreamIsNotNoticed) {
    struct Full : std::streambuf {
    } full;
    std::ostream nowhere(&full);
    XmlWriter other(nowhere);
    other.startDocument();
    other.rawWrite(text(u"abc"));
    EXPECT_TRUE(nowhere.bad());
}

TEST_F(XmlWriterFailureTest, StreamExceptionLeavesWhatWasWrittenBefore) {
    struct Short : std::streambuf {
        Short() { setp(bytes, bytes + sizeof bytes); }
        char bytes[3];
    } threeBytes;
    std::ostream narrow(&threeBytes);
    narrow.exceptions(std::ios_base::badbit);
    XmlWriter other(narrow);
    EXPECT_THROW(other.writeStartTag(text(u"e"), own.attributes), std::ios_base::failure);
    EXPECT_EQ("<e ", std::string(threeBytes.bytes, 3));
}

// Attributes of an application's own

struct Thrower : ForeignAttributes {
    unsigned int getLength() const override { return at(0), 1; }
    XmlString getQName(unsigned int) const override { return at(1), text(u"a"); }
    XmlString getValue(unsigned int) const override { return at(2), text(u"v"); }

    void at(int place) const {
        if (place == where)
            raise();
    }
    Thrower(int where, void (*raise)()) : where(where), raise(raise) {}
    int where;
    void (*raise)();
};

const char* const kLeftByThrower[] = {"<e", "<e", "<e a="};

void raiseSaxException() {
    throw SaxException(text(u"stop"));
}
void raiseSaxParseException() {
    throw SaxParseException(text(u"stop"), XmlString(), XmlString(), 1, 2);
}
void raiseRuntimeError() {
    throw std::runtime_error("from the attributes");
}
void raiseInt() {
    throw 1;
}

TEST_F(XmlWriterFailureTest, SaxExceptionOfAttributesPasses) {
    for (int where : {0, 1, 2}) {
        try {
            startElement(u"e", Thrower(where, raiseSaxException));
            ADD_FAILURE() << "nothing was thrown";
        } catch (const SaxException& e) {
            EXPECT_EQ("stop", show(e.getMessage()));
        }
        EXPECT_EQ(kLeftByThrower[where], written());
    }
}

TEST_F(XmlWriterFailureTest, KindsOfSaxExceptionPassAsTheyAre) {
    EXPECT_THROW(startElement(u"e", Thrower(1, raiseSaxParseException)), SaxParseException);
}

TEST_F(XmlWriterFailureTest, PrimitivesLetEveryExceptionOfAttributesPass) {
    for (int where : {0, 1, 2}) {
        EXPECT_THROW(writer.writeStartTag(own.name, Thrower(where, raiseSaxException)), SaxException);
        EXPECT_THROW(writer.writeStartTag(own.name, Thrower(where, raiseRuntimeError)), std::runtime_error);
        EXPECT_THROW(writer.writeStartTag(own.name, Thrower(where, raiseInt)), int);
    }
}

TEST_F(XmlWriterFailureTest, WriterGoesOnAfterAnExceptionOfAttributes) {
    EXPECT_THROW(startElement(u"e", Thrower(0, raiseSaxException)), SaxException);
    written();
    startElement(u"e", own.attributes);
    EXPECT_EQ("<e a=\"1&lt;\" b=\"&quot;2\">", written());
}

// What ends the process

/// Every event that writes, called so that it does.
const NamedCall kEvents[] = {
    {"StartDocument", [](XmlWriter& w) { w.startDocument(); }},
    {"EndDocument", [](XmlWriter& w) { w.endDocument(); }},
    {"StartElement",
     [](XmlWriter& w) {
         w.startElement(arguments->name, arguments->name, arguments->name, arguments->attributes);
     }},
    {"EndElement", [](XmlWriter& w) { w.endElement(arguments->name, arguments->name, arguments->name); }},
    {"Characters", [](XmlWriter& w) { w.characters(arguments->run.data(), 0, 7); }},
    {"IgnorableWhitespace", [](XmlWriter& w) { w.ignorableWhitespace(arguments->run.data(), 0, 7); }},
    {"ProcessingInstruction",
     [](XmlWriter& w) { w.processingInstruction(arguments->name, arguments->value); }},
    {"SkippedEntity", [](XmlWriter& w) { w.skippedEntity(arguments->name); }},
    {"StartDTD", [](XmlWriter& w) { w.startDTD(arguments->name, arguments->name, arguments->name); }},
    {"EndDTD", [](XmlWriter& w) { w.endDTD(); }},
    {"StartCDATA", [](XmlWriter& w) { w.startCDATA(); }},
    {"EndCDATA", [](XmlWriter& w) { w.endCDATA(); }},
    {"Comment", [](XmlWriter& w) { w.comment(arguments->run.data(), 0, 7); }},
    {"NotationDecl", [](XmlWriter& w) { w.notationDecl(arguments->name, arguments->name, arguments->name); }},
    {"UnparsedEntityDecl",
     [](XmlWriter& w) {
         w.unparsedEntityDecl(arguments->name, arguments->name, arguments->name, arguments->name);
     }},
    {"ElementDecl", [](XmlWriter& w) { w.elementDecl(arguments->name, arguments->name); }},
    {"AttributeDecl",
     [](XmlWriter& w) {
         w.attributeDecl(arguments->name, arguments->name, arguments->name, arguments->name,
                         arguments->value);
     }},
    {"InternalEntityDecl",
     [](XmlWriter& w) { w.internalEntityDecl(arguments->percentName, arguments->value); }},
    {"ExternalEntityDecl",
     [](XmlWriter& w) { w.externalEntityDecl(arguments->percentName, arguments->name, arguments->name); }},
};

/// Declarations are written, too.
void prepareForEvents(XmlWriter& writer) {
    writer.startedDoctype(true);
}

class XmlWriterEventTest : public WithArguments, public testing::WithParamInterface<NamedCall> {};

TEST_P(XmlWriterEventTest, AllocatesNothingInTheWritersEncodings) {
    for (const char* encoding : kOwnEncodings) {
        for (const bool canonical : {false, true}) {
            XmlWriter fresh(out);
            prepareForEvents(fresh);
            fresh.setEncoding(encoding);
            fresh.setCanonical(canonical);
            const std::size_t ofHost = hostMemory().requests(), ofNew = newMemory().requests();
            GetParam().call(fresh);
            EXPECT_EQ(ofHost, hostMemory().requests()) << encoding;
            EXPECT_EQ(ofNew, newMemory().requests()) << encoding;
        }
    }
}

TEST_P(XmlWriterEventTest, AsksOperatorNewForNothing) {
    prepareForEvents(writer);
    writer.setEncoding(kHostsEncoding);
    const std::size_t before = newMemory().requests();
    GetParam().call(writer);
    EXPECT_EQ(before, newMemory().requests());
    EXPECT_NE("", written());
}

TEST_P(XmlWriterEventTest, UnknownEncodingIsASaxException) {
    prepareForEvents(writer);
    writer.setEncoding("X-No-Such");
    EXPECT_THROW(GetParam().call(writer), SaxNotSupportedException);
    EXPECT_EQ("", written());
}

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterEventTest, testing::ValuesIn(kEvents), nameOf);

/// Ends with status 42 and says so: `unexpected` of a host of its own.
void endInOurOwnWay() {
    std::fputs("the host's unexpected\n", stderr);
    std::_Exit(42);
}

void useOwnUnexpected() {
    Runtime::HostServices services = Runtime::hostServices();
    services.unexpected = endInOurOwnWay;
    Runtime::setHostServices(services);
}

class XmlWriterEventDeathTest : public WithArguments, public testing::WithParamInterface<NamedCall> {};

/// How many requests to the host's memory the event makes in an encoding that only the host can convert to.
std::size_t requestsOf(Call call, XmlWriter& writer) {
    prepareForEvents(writer);
    writer.setEncoding(kHostsEncoding);
    const std::size_t before = hostMemory().requests();
    call(writer);
    return hostMemory().requests() - before;
}

void callWithFailingRequest(Call call, XmlWriter& writer, std::size_t k) {
    useOwnUnexpected();
    prepareForEvents(writer);
    writer.setEncoding(kHostsEncoding);
    hostMemory().failRequest(k);
    call(writer);
}

TEST_P(XmlWriterEventDeathTest, OutOfMemoryAtTheFirstRequestGoesToUnexpected) {
    EXPECT_EXIT(callWithFailingRequest(GetParam().call, writer, 1), testing::ExitedWithCode(42),
                "^the host's unexpected\n$");
}

TEST_P(XmlWriterEventDeathTest, OutOfMemoryAtTheLastRequestGoesToUnexpected) {
    const std::size_t last = requestsOf(GetParam().call, writer);
    ASSERT_GE(last, 1U);
    EXPECT_EXIT(callWithFailingRequest(GetParam().call, writer, last), testing::ExitedWithCode(42),
                "^the host's unexpected\n$");
}

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterEventDeathTest, testing::ValuesIn(kEvents), nameOf);

/// Whether each k-th request of the events, in children, ends in the same way: all of them for one long event.
class XmlWriterDeathTest : public WithArguments {};

TEST_F(XmlWriterDeathTest, OutOfMemoryAtEveryRequestOfAnEventGoesToUnexpected) {
    const Call attributeDecl = [](XmlWriter& w) {
        w.attributeDecl(arguments->name, arguments->name, arguments->name, arguments->name, arguments->value);
    };
    const std::size_t last = requestsOf(attributeDecl, writer);
    for (std::size_t k = 1; k <= last; ++k)
        EXPECT_EXIT(callWithFailingRequest(attributeDecl, writer, k), testing::ExitedWithCode(42),
                    "^the host's unexpected\n$");
}

/// Events with a character that cannot be written.
const NamedCall kRefusedEvents[] = {
    {"Characters", [](XmlWriter& w) { w.characters(units(u"a\fb").data(), 0, 3); }},
    {"CharactersInCData",
     [](XmlWriter& w) {
         w.startCDATA();
         w.characters(units(u"a\fb").data(), 0, 3);
     }},
    {"IgnorableWhitespace", [](XmlWriter& w) { w.ignorableWhitespace(units(u"\f").data(), 0, 1); }},
    {"Comment", [](XmlWriter& w) { w.comment(units(u"\f").data(), 0, 1); }},
    {"ProcessingInstruction", [](XmlWriter& w) { w.processingInstruction(text(u"pi"), text(u"\f")); }},
    {"AttributeValue",
     [](XmlWriter& w) {
         w.startElement(XmlString(), XmlString(), text(u"e"), attributesOf({{u"a", u"\f"}}));
     }},
    {"AttributeDefault",
     [](XmlWriter& w) { w.attributeDecl(text(u"e"), text(u"a"), text(u"CDATA"), XmlString(), text(u"\f")); }},
    {"EntityValue", [](XmlWriter& w) { w.internalEntityDecl(text(u"e"), text(u"\f")); }},
};

class XmlWriterRefusalDeathTest : public WithArguments, public testing::WithParamInterface<NamedCall> {};

TEST_P(XmlWriterRefusalDeathTest, IllegalCharacterGoesToUnexpected) {
    EXPECT_EXIT(
        {
            useOwnUnexpected();
            prepareForEvents(writer);
            GetParam().call(writer);
        },
        testing::ExitedWithCode(42), "^the host's unexpected\n$");
}

TEST_P(XmlWriterRefusalDeathTest, IllegalCharacterEndsTheProcessByDefault) {
    EXPECT_EXIT(
        {
            prepareForEvents(writer);
            GetParam().call(writer);
        },
        testing::KilledBySignal(SIGABRT), "Illegal or non-writable character: U\\+000C\\.");
}

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterRefusalDeathTest, testing::ValuesIn(kRefusedEvents), nameOf);

TEST_F(XmlWriterDeathTest, UnwritableCharacterInACommentGoesToUnexpected) {
    EXPECT_EXIT(
        {
            writer.setEncoding("US-ASCII");
            comment(u"\u00E9");
        },
        testing::KilledBySignal(SIGABRT), "Illegal or non-writable character: U\\+00E9\\.");
}

TEST_F(XmlWriterDeathTest, UnwritableCharacterInACDataSectionGoesToUnexpected) {
    EXPECT_EXIT(
        {
            writer.setEncoding("ISO-8859-1");
            writer.startCDATA();
            characters(u"\u20AC");
        },
        testing::KilledBySignal(SIGABRT), "Illegal or non-writable character: U\\+20AC\\.");
}

TEST_F(XmlWriterDeathTest, UnwritableCharacterInAProcessingInstructionGoesToUnexpected) {
    EXPECT_EXIT(
        {
            writer.setEncoding("US-ASCII");
            processingInstruction(u"pi", u"\u00E9");
        },
        testing::KilledBySignal(SIGABRT), "Illegal or non-writable character: U\\+00E9\\.");
}

TEST_F(XmlWriterDeathTest, NamelessAttributeGoesToUnexpected) {
    EXPECT_EXIT(startElement(u"e", attributesOf({{u"", u"v"}})), testing::KilledBySignal(SIGABRT),
                "Illegal argument provided: no XML name\\.");
}

TEST_F(XmlWriterDeathTest, StreamExceptionInAnEventGoesToUnexpected) {
    EXPECT_EXIT(
        {
            useOwnUnexpected();
            out.exceptions(std::ios_base::badbit);
            sink.takeNothing();
            characters(u"a");
        },
        testing::ExitedWithCode(42), "^the host's unexpected\n$");
}

TEST_F(XmlWriterDeathTest, OtherExceptionsOfAttributesGoToUnexpected) {
    for (int where : {0, 1, 2}) {
        EXPECT_EXIT(startElement(u"e", Thrower(where, raiseRuntimeError)), testing::KilledBySignal(SIGABRT),
                    "from the attributes");
        EXPECT_EXIT(
            {
                useOwnUnexpected();
                startElement(u"e", Thrower(where, raiseInt));
            },
            testing::ExitedWithCode(42), "^the host's unexpected\n$");
    }
}

TEST_F(XmlWriterDeathTest, ProcessEndsAlsoWhenUnexpectedReturns) {
    EXPECT_EXIT(
        {
            Runtime::HostServices services = Runtime::hostServices();
            services.unexpected = [] { std::fputs("returned\n", stderr); };
            Runtime::setHostServices(services);
            characters(u"\f");
        },
        testing::KilledBySignal(SIGABRT), "returned");
}

} // namespace
} // namespace Quillon::Xml::Sax
