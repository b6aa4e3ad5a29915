#include "xml/sax/AttributesImpl.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/UserException.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/sax/FieldAt.h"
#include "xml/sax/NotedRequests.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::fieldAt;
using Testing::hostMemory;
using Testing::kWord;
using Testing::show;
using Testing::text;

const unsigned short kLiteral[] = {'l', 'i', 't', 0};

XmlString literal() {
    return XmlString(Immutable | Borrowed, kLiteral);
}

std::uint32_t capacityOf(const AttributesImpl& list) {
    return fieldAt<std::uint32_t>(list, kWord);
}

const void* arrayOf(const AttributesImpl& list) {
    return fieldAt<const void*>(list, kWord + 8);
}

/// The strings of an entry, separated by bars.
std::string row(const Attributes& list, unsigned int i) {
    return show(list.getURI(i)) + '|' + show(list.getLocalName(i)) + '|' + show(list.getQName(i)) + '|'
           + show(list.getType(i)) + '|' + show(list.getValue(i));
}

std::vector<std::string> rows(const Attributes& list) {
    std::vector<std::string> result;
    for (unsigned int i = 0; i < list.getLength(); ++i)
        result.push_back(row(list, i));
    return result;
}

using Rows = std::vector<std::string>;

const char* const kNullRow = "(null)|(null)|(null)|(null)|(null)";

/// Entry number n: "u<n>|l<n>|q<n>|t<n>|v<n>".
void addNumbered(AttributesImpl& list, int n) {
    const std::string digits = std::to_string(n);
    const std::u16string number(digits.begin(), digits.end());
    list.addAttribute(text(u"u" + number), text(u"l" + number), text(u"q" + number), text(u"t" + number),
                      text(u"v" + number));
}

std::string numberedRow(int n) {
    const std::string number = std::to_string(n);
    return "u" + number + "|l" + number + "|q" + number + "|t" + number + "|v" + number;
}

void fill(AttributesImpl& list, int count) {
    for (int i = 0; i < count; ++i)
        addNumbered(list, i);
}

Rows numberedRows(int count) {
    Rows result;
    for (int i = 0; i < count; ++i)
        result.push_back(numberedRow(i));
    return result;
}

/// Another implementation of Attributes. It keeps what it was asked, and runs `onQuestion` each time.
class AskedAttributes : public Attributes {
public:
    explicit AskedAttributes(unsigned int length) : length_(length) {}

    unsigned int getLength() const override {
        answer("getLength()");
        return length_;
    }
    XmlString getURI(unsigned int i) const override { return answer("getURI", i); }
    XmlString getLocalName(unsigned int i) const override { return answer("getLocalName", i); }
    XmlString getQName(unsigned int i) const override { return answer("getQName", i); }
    XmlString getType(unsigned int i) const override { return answer("getType", i); }
    XmlString getValue(unsigned int i) const override { return answer("getValue", i); }
    int getIndex(const XmlString&, const XmlString&) const override { return -1; }
    int getIndex(const XmlString&) const override { return -1; }
    XmlString getType(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getType(const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&) const override { return XmlString(); }

    mutable std::vector<std::string> questions;
    std::function<void()> onQuestion;

private:
    XmlString answer(const std::string& operation, unsigned int i) const {
        answer(operation + "(" + std::to_string(i) + ")");
        return text(u"answer");
    }
    void answer(const std::string& question) const {
        questions.push_back(question);
        if (onQuestion)
            onQuestion();
    }

    unsigned int length_;
};

class AttributesImplTest : public Testing::HostFixture {
protected:
    void warmUp() override { // the first message of the catalog makes things that stay
        try {
            ArrayIndexOutOfBoundsException::doThrow(literal(), 0);
        } catch (const ArrayIndexOutOfBoundsException&) {
        }
    }
};

// Size and room

TEST_F(AttributesImplTest, NewListHasNoArray) {
    const std::size_t requests = hostMemory().requests();
    const AttributesImpl list;
    EXPECT_EQ(0u, list.getLength());
    EXPECT_EQ(0u, capacityOf(list));
    EXPECT_EQ(nullptr, arrayOf(list));
    EXPECT_EQ(requests, hostMemory().requests());
}

TEST_F(AttributesImplTest, FirstAttributeReservesRoomForFive) {
    AttributesImpl list;
    fill(list, 1);
    EXPECT_EQ(25u, capacityOf(list));
    const void* array = arrayOf(list);
    for (int i = 1; i < 5; ++i)
        addNumbered(list, i);
    EXPECT_EQ(25u, capacityOf(list));
    EXPECT_EQ(array, arrayOf(list));
}

TEST_F(AttributesImplTest, RoomDoubles) {
    AttributesImpl list;
    fill(list, 5);
    addNumbered(list, 5);
    EXPECT_EQ(50u, capacityOf(list));
    for (int i = 6; i < 10; ++i)
        addNumbered(list, i);
    EXPECT_EQ(50u, capacityOf(list));
    addNumbered(list, 10);
    EXPECT_EQ(100u, capacityOf(list));
    EXPECT_EQ(numberedRows(11), rows(list));
}

TEST_F(AttributesImplTest, ArrayIsTheHosts) {
    AttributesImpl list;
    const XmlString name = text(u"n");
    const std::ptrdiff_t blocks = hostMemory().liveBlocks();
    const std::ptrdiff_t objects = Testing::newMemory().liveBlocks();
    list.addAttribute(name, name, name, name, name);
    EXPECT_EQ(blocks + 1, hostMemory().liveBlocks());
    EXPECT_EQ(objects, Testing::newMemory().liveBlocks());
}

TEST_F(AttributesImplTest, ArrayIsAskedForZeroed) {
    const XmlString null;
    AttributesImpl list;
    const Testing::NotedRequests noted;
    for (int i = 0; i < 11; ++i)
        list.addAttribute(null, null, null, null, null);
    EXPECT_EQ(
        (std::vector<std::string>{noted.zeroed(25, sizeof(XmlString)), noted.zeroed(50, sizeof(XmlString)),
                                  noted.zeroed(100, sizeof(XmlString))}),
        noted.lines());
}

TEST_F(AttributesImplTest, ManyAttributesAreKept) {
    AttributesImpl list;
    fill(list, 1000);
    EXPECT_EQ(numberedRows(1000), rows(list));
    EXPECT_EQ(6400u, capacityOf(list));
}

// Adding

TEST_F(AttributesImplTest, AddedStringsAreShared) {
    const XmlString value = text(u"shared");
    AttributesImpl list;
    list.addAttribute(value, value, value, value, value);
    EXPECT_EQ(6u, value.getRefs());
    EXPECT_EQ(value.data(), list.getValue(0).data());
    fill(list, 9); // over a growth
    EXPECT_EQ(6u, value.getRefs());
    list.clear();
    EXPECT_EQ(1u, value.getRefs());
}

TEST_F(AttributesImplTest, TypeIsStoredUnchanged) {
    AttributesImpl list;
    list.addAttribute(text(u""), text(u"a"), text(u"a"), text(u""), text(u"1"));
    list.addAttribute(text(u""), text(u"b"), text(u"b"), XmlString(), text(u"2"));
    list.addAttribute(text(u""), text(u"c"), text(u"c"), text(u"no such type"), text(u"3"));
    EXPECT_EQ("", show(list.getType(0)));
    EXPECT_TRUE(list.getType(1).isNull());
    EXPECT_EQ("no such type", show(list.getType(2)));
}

TEST_F(AttributesImplTest, NullAndEmptyStringsStayWhatTheyAre) {
    AttributesImpl list;
    list.addAttribute(XmlString(), text(u""), XmlString(), text(u""), XmlString());
    fill(list, 8); // over a growth
    EXPECT_EQ("(null)||(null)||(null)", row(list, 0));
}

TEST_F(AttributesImplTest, OwnStringsCanBeAdded) {
    AttributesImpl list;
    fill(list, 5);
    list.addAttribute(list.getURI(0), list.getLocalName(1), list.getQName(2), list.getType(3),
                      list.getValue(4));
    EXPECT_EQ("u0|l1|q2|t3|v4", row(list, 5));
}

// Reading

TEST_F(AttributesImplTest, ReadingBeyondTheEndGivesNull) {
    AttributesImpl list;
    for (const int added : {0, 2, 3}) { // with five entries, the array has no room behind the last one
        fill(list, added);
        for (const unsigned int index : {list.getLength(), 5u, 0x80000000u, 0xFFFFFFFFu})
            EXPECT_EQ(kNullRow, row(list, index)) << added << ' ' << index;
    }
}

TEST_F(AttributesImplTest, StringsReadAreCopies) {
    AttributesImpl list;
    fill(list, 1);
    const XmlString first = list.getValue(0);
    list.setValue(0, text(u"other"));
    EXPECT_EQ("v0", show(first));
    EXPECT_EQ("other", show(list.getValue(0)));
}

TEST_F(AttributesImplTest, QNameFindsItsEntry) {
    AttributesImpl list;
    fill(list, 3);
    EXPECT_EQ(0, list.getIndex(text(u"q0")));
    EXPECT_EQ(2, list.getIndex(text(u"q2")));
    EXPECT_EQ(-1, list.getIndex(text(u"q3")));
    EXPECT_EQ(-1, list.getIndex(text(u"l2")));
    EXPECT_EQ(-1, AttributesImpl().getIndex(text(u"q0")));
}

TEST_F(AttributesImplTest, UriAndLocalNameFindTheirEntry) {
    AttributesImpl list;
    fill(list, 3);
    EXPECT_EQ(1, list.getIndex(text(u"u1"), text(u"l1")));
    EXPECT_EQ(-1, list.getIndex(text(u"u1"), text(u"l2")));
    EXPECT_EQ(-1, list.getIndex(text(u"u2"), text(u"l1")));
    EXPECT_EQ(-1, AttributesImpl().getIndex(text(u"u1"), text(u"l1")));
}

TEST_F(AttributesImplTest, TheLowestIndexWins) {
    AttributesImpl list;
    addNumbered(list, 0);
    list.addAttribute(text(u"u"), text(u"l"), text(u"q"), text(u"ID"), text(u"first"));
    list.addAttribute(text(u"u"), text(u"l"), text(u"q"), text(u"NMTOKEN"), text(u"second"));
    EXPECT_EQ(1, list.getIndex(text(u"q")));
    EXPECT_EQ(1, list.getIndex(text(u"u"), text(u"l")));
    EXPECT_EQ("first", show(list.getValue(text(u"q"))));
    EXPECT_EQ("ID", show(list.getType(text(u"u"), text(u"l"))));
}

TEST_F(AttributesImplTest, NullNamesAreFoundButAreNotEmptyOnes) {
    AttributesImpl list;
    list.addAttribute(text(u""), text(u"l"), text(u""), text(u"t"), text(u"empty"));
    list.addAttribute(XmlString(), text(u"l"), XmlString(), text(u"t"), text(u"null"));
    EXPECT_EQ(0, list.getIndex(text(u"")));
    EXPECT_EQ(1, list.getIndex(XmlString()));
    EXPECT_EQ(0, list.getIndex(text(u""), text(u"l")));
    EXPECT_EQ(1, list.getIndex(XmlString(), text(u"l")));
}

TEST_F(AttributesImplTest, TypeAndValueAreFoundByName) {
    AttributesImpl list;
    fill(list, 3);
    EXPECT_EQ("t1", show(list.getType(text(u"q1"))));
    EXPECT_EQ("v1", show(list.getValue(text(u"q1"))));
    EXPECT_EQ("t2", show(list.getType(text(u"u2"), text(u"l2"))));
    EXPECT_EQ("v2", show(list.getValue(text(u"u2"), text(u"l2"))));
}

TEST_F(AttributesImplTest, UnknownNameGivesNull) {
    AttributesImpl list;
    fill(list, 3);
    EXPECT_TRUE(list.getType(text(u"x")).isNull());
    EXPECT_TRUE(list.getValue(text(u"x")).isNull());
    EXPECT_TRUE(list.getType(text(u"u1"), text(u"l2")).isNull());
    EXPECT_TRUE(list.getValue(text(u"u1"), text(u"l2")).isNull());
}

// Changing

TEST_F(AttributesImplTest, EachSetterChangesItsStringAlone) {
    AttributesImpl list;
    fill(list, 2);
    list.setURI(1, text(u"U"));
    EXPECT_EQ("U|l1|q1|t1|v1", row(list, 1));
    list.setLocalName(1, text(u"L"));
    EXPECT_EQ("U|L|q1|t1|v1", row(list, 1));
    list.setQName(1, text(u"Q"));
    EXPECT_EQ("U|L|Q|t1|v1", row(list, 1));
    list.setType(1, text(u"T"));
    EXPECT_EQ("U|L|Q|T|v1", row(list, 1));
    list.setValue(1, text(u"V"));
    EXPECT_EQ("U|L|Q|T|V", row(list, 1));
    EXPECT_EQ(numberedRow(0), row(list, 0));
}

TEST_F(AttributesImplTest, SetAttributeChangesAllFive) {
    AttributesImpl list;
    fill(list, 3);
    list.setAttribute(1, text(u"U"), text(u"L"), text(u"Q"), text(u"T"), text(u"V"));
    EXPECT_EQ((Rows{numberedRow(0), "U|L|Q|T|V", numberedRow(2)}), rows(list));
}

struct BadIndexCase {
    const char* name;
    void (*change)(AttributesImpl&, unsigned int);
};

class AttributesImplBadIndexTest : public AttributesImplTest,
                                   public testing::WithParamInterface<BadIndexCase> {};

/// The message that the change ends with, or "" when it does not throw.
std::string badIndexMessage(const BadIndexCase& badIndex, AttributesImpl& list, unsigned int index) {
    try {
        badIndex.change(list, index);
    } catch (const ArrayIndexOutOfBoundsException& exception) {
        return dynamic_cast<const System::UserException&>(exception).getMessage();
    }
    return "";
}

TEST_P(AttributesImplBadIndexTest, IsRefusedWithTheIndex) {
    AttributesImpl list;
    EXPECT_EQ("Array index out of bounds; No attribute at index:: 0.", badIndexMessage(GetParam(), list, 0));
    fill(list, 2);
    EXPECT_EQ("Array index out of bounds; No attribute at index:: 2.", badIndexMessage(GetParam(), list, 2));
    EXPECT_EQ("Array index out of bounds; No attribute at index:: 5.", badIndexMessage(GetParam(), list, 5));
    EXPECT_EQ("Array index out of bounds; No attribute at index:: -1.",
              badIndexMessage(GetParam(), list, 0xFFFFFFFF));
    EXPECT_EQ(numberedRows(2), rows(list));
}

const BadIndexCase kBadIndexCases[] = {
    {"setURI", [](AttributesImpl& list, unsigned int i) { list.setURI(i, XmlString()); }},
    {"setLocalName", [](AttributesImpl& list, unsigned int i) { list.setLocalName(i, XmlString()); }},
    {"setQName", [](AttributesImpl& list, unsigned int i) { list.setQName(i, XmlString()); }},
    {"setType", [](AttributesImpl& list, unsigned int i) { list.setType(i, XmlString()); }},
    {"setValue", [](AttributesImpl& list, unsigned int i) { list.setValue(i, XmlString()); }},
    {"setAttribute",
     [](AttributesImpl& list, unsigned int i) {
         list.setAttribute(i, XmlString(), XmlString(), XmlString(), XmlString(), XmlString());
     }},
    {"removeAttribute", [](AttributesImpl& list, unsigned int i) { list.removeAttribute(i); }},
};

INSTANTIATE_TEST_SUITE_P(Operations, AttributesImplBadIndexTest, testing::ValuesIn(kBadIndexCases),
                         [](const auto& info) { return std::string(info.param.name); });

// Literals and other flags

TEST_F(AttributesImplTest, EntryThatWasSetToALiteralRefusesTheNextValue) {
    AttributesImpl list;
    fill(list, 1);
    list.setValue(0, literal());
    EXPECT_THROW(list.setValue(0, text(u"other")), ImmutableObjectWriteError);
    EXPECT_EQ("lit", show(list.getValue(0)));
}

TEST_F(AttributesImplTest, AddedLiteralRefusesTheNextValue) {
    AttributesImpl list;
    list.addAttribute(literal(), literal(), literal(), literal(), literal());
    EXPECT_THROW(list.setURI(0, text(u"other")), ImmutableObjectWriteError);
    EXPECT_THROW(list.setType(0, text(u"other")), ImmutableObjectWriteError);
}

TEST_F(AttributesImplTest, SetAttributeStopsAtAnImmutableString) {
    AttributesImpl list;
    list.addAttribute(text(u"u"), text(u"l"), literal(), text(u"t"), text(u"v"));
    EXPECT_THROW(list.setAttribute(0, text(u"U"), text(u"L"), text(u"Q"), text(u"T"), text(u"V")),
                 ImmutableObjectWriteError);
    EXPECT_EQ("U|L|lit|t|v", row(list, 0));
}

TEST_F(AttributesImplTest, GrowthAndRemovalMoveLiterals) {
    AttributesImpl list;
    for (int i = 0; i < 6; ++i)
        list.addAttribute(literal(), literal(), literal(), literal(), literal());
    list.removeAttribute(5);
    EXPECT_EQ("lit|lit|lit|lit|lit", row(list, 4));
    EXPECT_EQ(kLiteral, list.getValue(4).data());
    EXPECT_THROW(list.setValue(4, text(u"other")), ImmutableObjectWriteError);
    list.setAttributes(AttributesImpl(list));
    EXPECT_EQ(5u, list.getLength());
}

TEST_F(AttributesImplTest, BorrowedBufferIsWrittenInPlace) {
    unsigned short buffer[] = {'o', 'l', 'd', 0};
    AttributesImpl list;
    fill(list, 1);
    list.setValue(0, XmlString(Borrowed, buffer));
    list.setValue(0, text(u"ne"));
    EXPECT_EQ(buffer, list.getValue(0).data());
    EXPECT_EQ('n', buffer[0]);
    EXPECT_EQ(0, buffer[2]);
}

TEST_F(AttributesImplTest, InvalidStringMakesTheEntryInvalid) {
    AttributesImpl list;
    fill(list, 1);
    XmlString invalid = text(u"x");
    invalid += text(u""); // leaves Valid clear
    list.setValue(0, invalid);
    EXPECT_TRUE(list.getValue(0).isNull()); // a copy of what is not valid is null
    list.setValue(0, text(u"back"));
    EXPECT_EQ("back", show(list.getValue(0)));
}

// Removing

TEST_F(AttributesImplTest, RemovingInFrontLeavesNullsAndDropsTheLast) {
    AttributesImpl list;
    fill(list, 3);
    list.removeAttribute(0);
    EXPECT_EQ((Rows{kNullRow, numberedRow(1)}), rows(list));
}

TEST_F(AttributesImplTest, RemovingInTheMiddleLeavesNullsAndDropsTheLast) {
    AttributesImpl list;
    fill(list, 5);
    list.removeAttribute(2);
    EXPECT_EQ((Rows{numberedRow(0), numberedRow(1), kNullRow, numberedRow(3)}), rows(list));
    list.removeAttribute(0);
    EXPECT_EQ((Rows{kNullRow, numberedRow(1), kNullRow}), rows(list));
}

TEST_F(AttributesImplTest, RemovingTheLastButOneDropsBoth) {
    AttributesImpl list;
    fill(list, 3);
    list.removeAttribute(1);
    EXPECT_EQ((Rows{numberedRow(0), kNullRow}), rows(list));
}

TEST_F(AttributesImplTest, RemovingTheLastIsPlain) {
    AttributesImpl list;
    fill(list, 3);
    list.removeAttribute(2);
    EXPECT_EQ(numberedRows(2), rows(list));
}

TEST_F(AttributesImplTest, RemovingTheOnlyOneLeavesNone) {
    AttributesImpl list;
    fill(list, 1);
    list.removeAttribute(0);
    EXPECT_EQ(0u, list.getLength());
    EXPECT_EQ(kNullRow, row(list, 0));
    EXPECT_EQ(25u, capacityOf(list));
    addNumbered(list, 7);
    EXPECT_EQ(Rows{numberedRow(7)}, rows(list));
}

TEST_F(AttributesImplTest, RemovalKeepsTheCapacity) {
    AttributesImpl list;
    fill(list, 6);
    list.removeAttribute(5);
    EXPECT_EQ(50u, capacityOf(list));
    while (list.getLength() != 0)
        list.removeAttribute(list.getLength() - 1);
    EXPECT_EQ(50u, capacityOf(list));
    addNumbered(list, 0);
    EXPECT_EQ(50u, capacityOf(list));
}

TEST_F(AttributesImplTest, AdditionsAfterARemovalDoNotTrustTheCapacity) {
    AttributesImpl list;
    fill(list, 5);
    list.removeAttribute(4); // the array now holds 20 strings, the capacity says 25
    const void* array = arrayOf(list);
    addNumbered(list, 4);
    EXPECT_NE(array, arrayOf(list));
    EXPECT_EQ(25u, capacityOf(list));
    addNumbered(list, 5);
    EXPECT_EQ(50u, capacityOf(list));
    EXPECT_EQ(numberedRows(6), rows(list));
}

TEST_F(AttributesImplTest, RemovedStringsAreLetGo) {
    const XmlString value = text(u"shared");
    AttributesImpl list;
    list.addAttribute(value, value, value, value, value);
    addNumbered(list, 1);
    list.removeAttribute(0);
    EXPECT_EQ(1u, value.getRefs());
}

// Clearing and copying

TEST_F(AttributesImplTest, ClearFreesTheArray) {
    const std::ptrdiff_t blocks = hostMemory().liveBlocks();
    AttributesImpl list;
    fill(list, 7);
    list.clear();
    EXPECT_EQ(blocks, hostMemory().liveBlocks());
    EXPECT_EQ(0u, list.getLength());
    EXPECT_EQ(0u, capacityOf(list));
    EXPECT_EQ(nullptr, arrayOf(list));
    list.clear();
    addNumbered(list, 3);
    EXPECT_EQ(Rows{numberedRow(3)}, rows(list));
    EXPECT_EQ(25u, capacityOf(list));
}

TEST_F(AttributesImplTest, SetAttributesReplacesEverything) {
    AttributesImpl source, list;
    fill(source, 2);
    fill(list, 7);
    list.setAttributes(source);
    EXPECT_EQ(numberedRows(2), rows(list));
    EXPECT_EQ(25u, capacityOf(list));
    EXPECT_EQ(numberedRows(2), rows(source));
}

TEST_F(AttributesImplTest, SetAttributesReservesLikeAdditions) {
    for (const int length : {0, 1, 5, 6, 10, 11, 21}) {
        AttributesImpl added, set;
        fill(added, length);
        set.setAttributes(added);
        EXPECT_EQ(capacityOf(added), capacityOf(set)) << length;
        addNumbered(set, length);
        EXPECT_EQ(numberedRows(length + 1), rows(set));
    }
}

TEST_F(AttributesImplTest, SetAttributesAsksInOrder) {
    const AskedAttributes source(2);
    AttributesImpl list;
    list.setAttributes(source);
    EXPECT_EQ((Rows{"getLength()", "getURI(0)", "getLocalName(0)", "getQName(0)", "getType(0)", "getValue(0)",
                    "getURI(1)", "getLocalName(1)", "getQName(1)", "getType(1)", "getValue(1)"}),
              source.questions);
    EXPECT_EQ("answer|answer|answer|answer|answer", row(list, 1));
}

TEST_F(AttributesImplTest, SetAttributesClearsFirst) {
    AttributesImpl list;
    fill(list, 2);
    AskedAttributes source(1);
    source.onQuestion = [&] { EXPECT_EQ(0u, list.getLength()); };
    list.setAttributes(source);
    EXPECT_EQ(1u, list.getLength());
}

TEST_F(AttributesImplTest, SettingAnEmptyListLeavesNoArray) {
    AttributesImpl list;
    fill(list, 2);
    list.setAttributes(AttributesImpl());
    EXPECT_EQ(0u, list.getLength());
    EXPECT_EQ(nullptr, arrayOf(list));
}

TEST_F(AttributesImplTest, SettingAListToItselfEmptiesIt) {
    AttributesImpl list;
    fill(list, 3);
    list.setAttributes(list);
    EXPECT_EQ(0u, list.getLength());
}

TEST_F(AttributesImplTest, SourceThatThrowsLeavesTheListEmpty) {
    for (std::size_t question = 2; question <= 11; ++question) {
        AskedAttributes source(2);
        source.onQuestion = [&] {
            if (source.questions.size() == question)
                throw 1;
        };
        AttributesImpl list;
        fill(list, 3);
        EXPECT_THROW(list.setAttributes(source), int);
        EXPECT_EQ(0u, list.getLength());
        EXPECT_THROW(AttributesImpl(static_cast<const Attributes&>((source.questions.clear(), source))), int);
    }
}

TEST_F(AttributesImplTest, MoreStringsThanACountHoldsAreRefused) {
    for (const unsigned int length : {0x30000000u, 0x33333334u, 0x80000000u, 0xFFFFFFFFu}) {
        const AskedAttributes source(length);
        AttributesImpl list;
        fill(list, 3);
        const std::size_t requests = hostMemory().requests();
        EXPECT_THROW(list.setAttributes(source), System::OutOfMemoryException);
        EXPECT_EQ(requests, hostMemory().requests()); // the host is not even asked
        EXPECT_EQ(0u, list.getLength());
        EXPECT_EQ(Rows{"getLength()"}, source.questions);
    }
}

TEST_F(AttributesImplTest, CopiesAreIndependent) {
    AttributesImpl list;
    fill(list, 3);
    AttributesImpl copy(list);
    AttributesImpl fromInterface(static_cast<const Attributes&>(list));
    list.setValue(0, text(u"changed"));
    list.removeAttribute(2);
    EXPECT_EQ(numberedRows(3), rows(copy));
    EXPECT_EQ(numberedRows(3), rows(fromInterface));
    copy.clear();
    EXPECT_EQ(numberedRows(3), rows(fromInterface));
}

TEST_F(AttributesImplTest, CopiesShareTheStrings) {
    const XmlString value = text(u"shared");
    AttributesImpl list;
    list.addAttribute(value, value, value, value, value);
    {
        const AttributesImpl copy(list);
        EXPECT_EQ(11u, value.getRefs());
    }
    EXPECT_EQ(6u, value.getRefs());
}

TEST_F(AttributesImplTest, AssignmentReplacesEverything) {
    AttributesImpl list, other;
    fill(list, 3);
    fill(other, 6);
    other = list;
    EXPECT_EQ(numberedRows(3), rows(other));
    const AttributesImpl& same = other;
    other = same;
    EXPECT_EQ(numberedRows(3), rows(other));
}

TEST_F(AttributesImplTest, AssignmentDoesNotTripOverLiterals) {
    AttributesImpl list, other;
    fill(list, 1);
    other.addAttribute(literal(), literal(), literal(), literal(), literal());
    other = list;
    EXPECT_EQ(numberedRows(1), rows(other));
    other.setValue(0, text(u"still ours"));
}

// Memory

TEST_F(AttributesImplTest, FailedAdditionChangesNothing) {
    for (const int length : {0, 5, 10}) {
        AttributesImpl list;
        fill(list, length);
        const XmlString value = text(u"v");
        Testing::everyAllocationFails([&] { list.addAttribute(value, value, value, value, value); },
                                      [&] {
                                          EXPECT_EQ(numberedRows(length), rows(list));
                                          EXPECT_EQ(1u, value.getRefs());
                                      });
        EXPECT_EQ("v|v|v|v|v", row(list, static_cast<unsigned int>(length)));
    }
}

TEST_F(AttributesImplTest, FailedAdditionAfterARemovalChangesNothing) {
    AttributesImpl list;
    fill(list, 3);
    list.removeAttribute(2);
    const XmlString value = text(u"v");
    Testing::everyAllocationFails([&] { list.addAttribute(value, value, value, value, value); },
                                  [&] { EXPECT_EQ(numberedRows(2), rows(list)); });
}

TEST_F(AttributesImplTest, FailedRemovalChangesNothing) {
    AttributesImpl list;
    fill(list, 4);
    Testing::everyAllocationFails([&] { list.removeAttribute(1); },
                                  [&] { EXPECT_EQ(numberedRows(4), rows(list)); });
    EXPECT_EQ(3u, list.getLength());
}

TEST_F(AttributesImplTest, FailedSetAttributesLeavesTheListEmpty) {
    AttributesImpl source, list;
    fill(source, 6);
    Testing::everyAllocationFails([&] { list.setAttributes(source); },
                                  [&] { EXPECT_EQ(0u, list.getLength()); });
    EXPECT_EQ(numberedRows(6), rows(list));
    hostMemory().failRequest(1);
    EXPECT_THROW(list.setAttributes(source), System::OutOfMemoryException);
    EXPECT_EQ(0u, list.getLength());
}

TEST_F(AttributesImplTest, FailedCopyLeavesNothingBehind) {
    AttributesImpl source;
    fill(source, 6);
    Testing::everyAllocationFails([&] { const AttributesImpl copy(source); });
    Testing::everyAllocationFails([&] { const AttributesImpl copy(static_cast<const Attributes&>(source)); });
}

TEST_F(AttributesImplTest, FailedAssignmentKeepsTheOldList) {
    AttributesImpl source, list;
    fill(source, 6);
    fill(list, 2);
    Testing::everyAllocationFails([&] { list = source; }, [&] { EXPECT_EQ(numberedRows(2), rows(list)); });
    EXPECT_EQ(numberedRows(6), rows(list));
}

TEST_F(AttributesImplTest, BadIndexWithoutMemoryIsReportedAsThat) {
    AttributesImpl list;
    fill(list, 1);
    const auto tooFar = [&] {
        try {
            list.setURI(1, XmlString());
        } catch (const ArrayIndexOutOfBoundsException&) {
        }
    };
    Testing::everyAllocationFails(tooFar);
    Testing::everyNewFails(tooFar);
}

} // namespace
} // namespace Quillon::Xml::Sax
