#include "xml/sax/Attributes2Impl.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/UserException.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/sax/FieldAt.h"
#include "xml/sax/NotedRequests.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::fieldAt;
using Testing::kWord;
using Testing::show;
using Testing::text;

// Behind AttributesImpl's fields and the second virtual table pointer.
constexpr std::size_t kDeclared = kWord == 4 ? 24 : 40;
constexpr std::size_t kFlagCount = kDeclared + 2 * kWord;
constexpr std::size_t kFlagCapacity = kFlagCount + 4;

std::uint32_t flagCountOf(const Attributes2Impl& list) {
    return fieldAt<std::uint32_t>(list, kFlagCount);
}

std::uint32_t flagCapacityOf(const Attributes2Impl& list) {
    return fieldAt<std::uint32_t>(list, kFlagCapacity);
}

void add(Attributes2Impl& list, const char16_t* qName, const char16_t* type) {
    list.addAttribute(text(u"urn:u"), text(qName), text(qName), text(type), text(u"value"));
}

void addToBase(AttributesImpl& list, const char16_t* qName, const char16_t* type) {
    list.addAttribute(text(u"urn:u"), text(qName), text(qName), text(type), text(u"value"));
}

/// One letter per entry: D when it is declared, else d.
std::string declaredOf(const Attributes2& list) {
    std::string result;
    for (unsigned int i = 0; i < list.getLength(); ++i)
        result += list.isDeclared(i) ? 'D' : 'd';
    return result;
}

/// One letter per entry: S when it is specified, else s.
std::string specifiedOf(const Attributes2& list) {
    std::string result;
    for (unsigned int i = 0; i < list.getLength(); ++i)
        result += list.isSpecified(i) ? 'S' : 's';
    return result;
}

/// The qualified names, separated by blanks.
std::string namesOf(const Attributes& list) {
    std::string result;
    for (unsigned int i = 0; i < list.getLength(); ++i)
        result += (i != 0 ? " " : "") + show(list.getQName(i));
    return result;
}

/// What is thrown as `Exception`, by its message; "" when nothing is.
template <class Exception, class Call>
std::string messageOf(Call call) {
    try {
        call();
    } catch (const Exception& exception) {
        return dynamic_cast<const System::UserException&>(exception).getMessage();
    }
    return "";
}

class Attributes2ImplTest : public Testing::HostFixture {
protected:
    void warmUp() override { // the first message of the catalog makes things that stay
        messageOf<IllegalArgumentException>([] { IllegalArgumentException::doThrow(XmlString()); });
    }
};

// Flags of added entries

TEST_F(Attributes2ImplTest, NewListIsEmpty) {
    const Attributes2Impl list;
    EXPECT_EQ(0u, list.getLength());
    EXPECT_EQ(0u, flagCountOf(list));
    EXPECT_EQ(0u, flagCapacityOf(list));
}

TEST_F(Attributes2ImplTest, AddedEntryIsSpecified) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    EXPECT_TRUE(list.isSpecified(0u));
    EXPECT_EQ("a", namesOf(list));
}

TEST_F(Attributes2ImplTest, AddedEntryIsDeclaredUnlessItsTypeIsCDATA) {
    for (const char16_t* type : {u"ID", u"", u"cdata", u"CDATA ", static_cast<const char16_t*>(nullptr)}) {
        Attributes2Impl list;
        add(list, u"a", type);
        EXPECT_TRUE(list.isDeclared(0u)) << show(text(type));
    }
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    EXPECT_FALSE(list.isDeclared(0u));
}

TEST_F(Attributes2ImplTest, GrowthForgetsFlagsBeyondTheCarriedOnes) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    EXPECT_EQ("d", declaredOf(list));
    EXPECT_EQ(0u, flagCountOf(list));
    EXPECT_EQ(1u, flagCapacityOf(list));
    list.setSpecified(0, false);

    add(list, u"b", u"CDATA"); // carries nothing over
    EXPECT_EQ("Dd", declaredOf(list));
    EXPECT_EQ("SS", specifiedOf(list));
    EXPECT_EQ(1u, flagCountOf(list));
    EXPECT_EQ(2u, flagCapacityOf(list));

    list.setDeclared(0, false);
    list.setSpecified(0, false);
    list.setSpecified(1, false);
    add(list, u"c", u"CDATA"); // carries the first entry's over
    EXPECT_EQ("dDd", declaredOf(list));
    EXPECT_EQ("sSS", specifiedOf(list));
    EXPECT_EQ(2u, flagCountOf(list));
    EXPECT_EQ(3u, flagCapacityOf(list));
}

TEST_F(Attributes2ImplTest, ArraysThatAreLargeEnoughDoNotGrow) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    add(list, u"b", u"CDATA");
    list.clear();
    EXPECT_EQ(2u, flagCapacityOf(list));
    add(list, u"c", u"CDATA");
    add(list, u"d", u"CDATA");
    EXPECT_EQ("dd", declaredOf(list));
    EXPECT_EQ(1u, flagCountOf(list));
    EXPECT_EQ(2u, flagCapacityOf(list));
}

// Reading and setting flags

TEST_F(Attributes2ImplTest, FlagsAreSetOneByOne) {
    Attributes2Impl list;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(list, name, u"ID");
    list.setDeclared(1, false);
    EXPECT_EQ("DdD", declaredOf(list));
    EXPECT_EQ("SSS", specifiedOf(list));
    list.setSpecified(2, false);
    EXPECT_EQ("SSs", specifiedOf(list));
    list.setDeclared(1, true);
    list.setSpecified(2, true);
    EXPECT_EQ("DDD", declaredOf(list));
    EXPECT_EQ("SSS", specifiedOf(list));
}

TEST_F(Attributes2ImplTest, FlagsAreFoundByName) {
    Attributes2Impl list;
    add(list, u"a", u"ID");
    add(list, u"b", u"ID");
    list.setDeclared(1, false);
    list.setSpecified(0, false);
    EXPECT_TRUE(list.isDeclared(text(u"a")));
    EXPECT_FALSE(list.isDeclared(text(u"b")));
    EXPECT_FALSE(list.isSpecified(text(u"a")));
    EXPECT_TRUE(list.isSpecified(text(u"b")));
    EXPECT_TRUE(list.isDeclared(text(u"urn:u"), text(u"a")));
    EXPECT_FALSE(list.isDeclared(text(u"urn:u"), text(u"b")));
    EXPECT_FALSE(list.isSpecified(text(u"urn:u"), text(u"a")));
    EXPECT_TRUE(list.isSpecified(text(u"urn:u"), text(u"b")));
}

struct UnknownNameCase {
    const char* name;
    bool (*query)(const Attributes2&);
    const char* message;
};

class UnknownNameTest : public Attributes2ImplTest, public testing::WithParamInterface<UnknownNameCase> {};

TEST_P(UnknownNameTest, IsAnIllegalArgument) {
    Attributes2Impl list;
    const auto query = [&] { GetParam().query(list); };
    EXPECT_EQ(GetParam().message, messageOf<IllegalArgumentException>(query));
    add(list, u"a", u"ID");
    EXPECT_EQ(GetParam().message, messageOf<IllegalArgumentException>(query));
}

const UnknownNameCase kUnknownNameCases[] = {
    {"DeclaredByQName", [](const Attributes2& list) { return list.isDeclared(text(u"x")); },
     "Illegal argument provided: qName is not in Attribute declared list."},
    {"SpecifiedByQName", [](const Attributes2& list) { return list.isSpecified(text(u"x")); },
     "Illegal argument provided: qName is not in Attribute specified list."},
    {"DeclaredByUri", [](const Attributes2& list) { return list.isDeclared(text(u"urn:u"), text(u"x")); },
     "Illegal argument provided: uri-localName is not in Attribute declared list."},
    {"SpecifiedByUri", [](const Attributes2& list) { return list.isSpecified(text(u"x"), text(u"a")); },
     "Illegal argument provided: uri-localName is not in Attribute specified list."},
};

INSTANTIATE_TEST_SUITE_P(Queries, UnknownNameTest, testing::ValuesIn(kUnknownNameCases),
                         [](const auto& info) { return std::string(info.param.name); });

struct BadIndexCase {
    const char* name;
    void (*call)(Attributes2Impl&, unsigned int);
};

class Attributes2BadIndexTest : public Attributes2ImplTest,
                                public testing::WithParamInterface<BadIndexCase> {};

TEST_P(Attributes2BadIndexTest, IsRefusedInLowerCase) {
    Attributes2Impl list;
    const auto message = [&](unsigned int index) {
        return messageOf<ArrayIndexOutOfBoundsException>([&] { GetParam().call(list, index); });
    };
    EXPECT_EQ("Array index out of bounds; no attribute at index: 0.", message(0));
    add(list, u"a", u"CDATA");
    add(list, u"b", u"CDATA");
    EXPECT_EQ("Array index out of bounds; no attribute at index: 2.", message(2));
    EXPECT_EQ("Array index out of bounds; no attribute at index: -1.", message(0xFFFFFFFF));
    EXPECT_EQ("a b", namesOf(list));
}

const BadIndexCase kBadIndexCases[] = {
    {"isDeclared", [](Attributes2Impl& list, unsigned int i) { list.isDeclared(i); }},
    {"isSpecified", [](Attributes2Impl& list, unsigned int i) { list.isSpecified(i); }},
    {"setDeclared", [](Attributes2Impl& list, unsigned int i) { list.setDeclared(i, true); }},
    {"setSpecified", [](Attributes2Impl& list, unsigned int i) { list.setSpecified(i, true); }},
    {"removeAttribute", [](Attributes2Impl& list, unsigned int i) { list.removeAttribute(i); }},
};

INSTANTIATE_TEST_SUITE_P(Operations, Attributes2BadIndexTest, testing::ValuesIn(kBadIndexCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Attributes2ImplTest, SettersOfStringsReportAsThePlainList) {
    Attributes2Impl list;
    EXPECT_EQ("Array index out of bounds; No attribute at index:: 0.",
              messageOf<ArrayIndexOutOfBoundsException>([&] { list.setValue(0, XmlString()); }));
}

// Removal

TEST_F(Attributes2ImplTest, RemovalMovesTheFlagsDown) {
    Attributes2Impl list;
    for (const char16_t* name : {u"a", u"b", u"c", u"d"})
        add(list, name, u"ID");
    list.setDeclared(2, false);
    list.setSpecified(3, false);
    list.removeAttribute(1);
    EXPECT_EQ("a (null) c", namesOf(list)); // the entries stay where they are
    EXPECT_EQ("DdD", declaredOf(list));
    EXPECT_EQ("SSs", specifiedOf(list));
}

TEST_F(Attributes2ImplTest, RemovalOfTheLastLeavesTheFlags) {
    Attributes2Impl list;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(list, name, u"ID");
    list.setDeclared(1, false);
    list.setSpecified(0, false);
    list.removeAttribute(2);
    EXPECT_EQ("a b", namesOf(list));
    EXPECT_EQ("Dd", declaredOf(list));
    EXPECT_EQ("sS", specifiedOf(list));
}

TEST_F(Attributes2ImplTest, RemovalLowersTheCountOfCarriedFlags) {
    Attributes2Impl list;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(list, name, u"ID");
    EXPECT_EQ(2u, flagCountOf(list));
    list.removeAttribute(2);
    EXPECT_EQ(1u, flagCountOf(list));
    EXPECT_EQ(3u, flagCapacityOf(list));
}

TEST_F(Attributes2ImplTest, CountBelowZeroCarriesTheWholeArraysOver) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    list.removeAttribute(0);
    EXPECT_EQ(0xFFFFFFFFu, flagCountOf(list));
    add(list, u"b", u"CDATA");
    list.setSpecified(0, false);
    add(list, u"c", u"CDATA"); // copies one flag of each array: there are no more
    EXPECT_EQ("dd", declaredOf(list));
    EXPECT_EQ("sS", specifiedOf(list));
    EXPECT_EQ(1u, flagCountOf(list));
    EXPECT_EQ(2u, flagCapacityOf(list));
}

// Copying from other lists

TEST_F(Attributes2ImplTest, PlainListIsSpecifiedAndDeclaredByType) {
    AttributesImpl plain;
    addToBase(plain, u"a", u"CDATA");
    addToBase(plain, u"b", u"ID");
    addToBase(plain, u"c", u"CDATA");
    Attributes2Impl list;
    list.setAttributes(plain);
    EXPECT_EQ("a b c", namesOf(list));
    EXPECT_EQ("dDd", declaredOf(list));
    EXPECT_EQ("SSS", specifiedOf(list));
    EXPECT_EQ(0u, flagCountOf(list));
    EXPECT_EQ(3u, flagCapacityOf(list));
    EXPECT_EQ("dDd", declaredOf(Attributes2Impl(static_cast<const Attributes&>(plain))));
}

TEST_F(Attributes2ImplTest, FlagsOfAnAttributes2AreCopied) {
    Attributes2Impl source;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(source, name, u"CDATA");
    source.setDeclared(0, true);
    source.setDeclared(1, false);
    source.setDeclared(2, true);
    source.setSpecified(2, false);
    Attributes2Impl list;
    add(list, u"old", u"CDATA");
    list.setAttributes(source);
    EXPECT_EQ("a b c", namesOf(list));
    EXPECT_EQ("DdD", declaredOf(list));
    EXPECT_EQ("SSs", specifiedOf(list));
}

TEST_F(Attributes2ImplTest, SourceIsRecognisedThroughItsBase) {
    Attributes2Impl source;
    add(source, u"a", u"CDATA");
    source.setDeclared(0, true);
    source.setSpecified(0, false);
    const AttributesImpl& asPlain = source;
    Attributes2Impl list;
    list.setAttributes(asPlain);
    EXPECT_EQ("D", declaredOf(list));
    EXPECT_EQ("s", specifiedOf(list));
}

/// A list of somebody else's: `length` entries, the even ones declared, the odd ones specified.
class ForeignAttributes2 : public Attributes2 {
public:
    explicit ForeignAttributes2(unsigned int length) : length_(length) {}

    unsigned int getLength() const override { return length_; }
    XmlString getURI(unsigned int) const override { return XmlString(); }
    XmlString getLocalName(unsigned int) const override { return text(u"name"); }
    XmlString getQName(unsigned int) const override { return text(u"name"); }
    XmlString getType(unsigned int) const override { return text(u"CDATA"); }
    XmlString getValue(unsigned int) const override { return XmlString(); }
    int getIndex(const XmlString&, const XmlString&) const override { return -1; }
    int getIndex(const XmlString&) const override { return -1; }
    XmlString getType(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getType(const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&) const override { return XmlString(); }
    bool isDeclared(unsigned int i) const override { return i % 2 == 0; }
    bool isDeclared(const XmlString&) const override { return false; }
    bool isDeclared(const XmlString&, const XmlString&) const override { return false; }
    bool isSpecified(unsigned int i) const override { return i % 2 != 0; }
    bool isSpecified(const XmlString&) const override { return false; }
    bool isSpecified(const XmlString&, const XmlString&) const override { return false; }

private:
    unsigned int length_;
};

TEST_F(Attributes2ImplTest, FlagsOfAForeignAttributes2AreCopied) {
    const ForeignAttributes2 source(3);
    Attributes2Impl list;
    list.setAttributes(source);
    EXPECT_EQ("name name name", namesOf(list));
    EXPECT_EQ("DdD", declaredOf(list));
    EXPECT_EQ("sSs", specifiedOf(list));
    const Attributes& asAttributes = source;
    const Attributes2Impl made(asAttributes);
    EXPECT_EQ("DdD", declaredOf(made));
    EXPECT_EQ("sSs", specifiedOf(made));
}

TEST_F(Attributes2ImplTest, EachFlagArrayHoldsAByteForEachEntry) {
    const XmlString null;
    AttributesImpl source;
    for (int i = 0; i < 7; ++i)
        source.addAttribute(null, null, null, null, null);
    Attributes2Impl added, set;
    const Testing::NotedRequests noted;
    added.addAttribute(null, null, null, null, null);
    added.addAttribute(null, null, null, null, null);
    set.setAttributes(source);
    std::vector<std::string> flags, strings;
    for (const std::string& line : noted.lines())
        (line.find("Zeroed") == std::string::npos ? flags : strings).push_back(line);
    EXPECT_EQ((std::vector<std::string>{noted.plain(1), noted.plain(1), noted.plain(2), noted.plain(2),
                                        noted.plain(7), noted.plain(7)}),
              flags);
    EXPECT_EQ(
        (std::vector<std::string>{noted.zeroed(25, sizeof(XmlString)), noted.zeroed(50, sizeof(XmlString))}),
        strings);
}

TEST_F(Attributes2ImplTest, ShorterListReusesTheArrays) {
    Attributes2Impl list;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(list, name, u"ID");
    AttributesImpl plain;
    addToBase(plain, u"x", u"CDATA");
    list.setAttributes(plain);
    EXPECT_EQ("x", namesOf(list));
    EXPECT_EQ("d", declaredOf(list));
    EXPECT_EQ(2u, flagCountOf(list));
    EXPECT_EQ(3u, flagCapacityOf(list));
}

TEST_F(Attributes2ImplTest, SettingAListToItselfEmptiesIt) {
    Attributes2Impl list;
    add(list, u"a", u"ID");
    add(list, u"b", u"ID");
    list.setAttributes(list);
    EXPECT_EQ(0u, list.getLength());
}

TEST_F(Attributes2ImplTest, CopiesAreIndependent) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    list.setSpecified(0, false);
    Attributes2Impl copy(list);
    Attributes2Impl fromInterface(static_cast<const Attributes&>(list));
    list.setSpecified(0, true);
    list.setDeclared(0, true);
    EXPECT_EQ("d", declaredOf(copy));
    EXPECT_EQ("s", specifiedOf(copy));
    EXPECT_EQ("s", specifiedOf(fromInterface));
}

TEST_F(Attributes2ImplTest, AssignmentReplacesEntriesAndFlags) {
    Attributes2Impl list, other;
    add(list, u"a", u"CDATA");
    list.setSpecified(0, false);
    add(other, u"x", u"ID");
    add(other, u"y", u"ID");
    other = list;
    EXPECT_EQ("a", namesOf(other));
    EXPECT_EQ("d", declaredOf(other));
    EXPECT_EQ("s", specifiedOf(other));
    const Attributes2Impl& same = other;
    other = same;
    EXPECT_EQ("a", namesOf(other));
    EXPECT_EQ("s", specifiedOf(other));
}

/// A list whose n-th flag query throws.
class ThrowingFlags : public Attributes2Impl {
public:
    using Attributes2Impl::isDeclared;
    using Attributes2Impl::isSpecified;
    bool isDeclared(unsigned int i) const override { return count(), Attributes2Impl::isDeclared(i); }
    bool isSpecified(unsigned int i) const override { return count(), Attributes2Impl::isSpecified(i); }

    int throwIn = 0;

private:
    void count() const {
        if (--const_cast<ThrowingFlags*>(this)->throwIn == 0)
            throw 1;
    }
};

TEST_F(Attributes2ImplTest, SourceThatThrowsLeavesTheListEmpty) {
    ThrowingFlags source;
    add(source, u"a", u"CDATA");
    add(source, u"b", u"CDATA");
    for (int query = 1; query <= 4; ++query) {
        Attributes2Impl list;
        add(list, u"old", u"ID");
        source.throwIn = query;
        EXPECT_THROW(list.setAttributes(source), int);
        EXPECT_EQ(0u, list.getLength());
        source.throwIn = query;
        EXPECT_THROW(Attributes2Impl(static_cast<const Attributes&>(source)), int);
    }
}

/// A list that announces more entries, or fewer, than it has when it is asked again.
class FickleLength : public AttributesImpl {
public:
    unsigned int getLength() const override {
        const unsigned int length = AttributesImpl::getLength();
        return std::exchange(const_cast<FickleLength*>(this)->first, false) ? announced : length;
    }

    bool first = true;
    unsigned int announced = 0;
};

TEST_F(Attributes2ImplTest, SourceThatChangesItsLengthIsNotBelieved) {
    for (const unsigned int announced : {0u, 1u, 4u}) {
        FickleLength source;
        addToBase(source, u"a", u"CDATA");
        addToBase(source, u"b", u"CDATA");
        source.announced = announced;
        Attributes2Impl list;
        list.setAttributes(source);
        EXPECT_EQ("a b", namesOf(list));
        EXPECT_EQ(2u, declaredOf(list).size());
    }
}

// Through the base class

TEST_F(Attributes2ImplTest, EntryAddedThroughTheBaseReadsAsDeclaredAndSpecified) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    addToBase(list, u"b", u"CDATA");
    EXPECT_EQ("dD", declaredOf(list));
    EXPECT_EQ("SS", specifiedOf(list));
    list.setDeclared(0, false);
    EXPECT_EQ(1u, flagCapacityOf(list));
    list.setSpecified(1, false);
    EXPECT_EQ("Ss", specifiedOf(list));
    EXPECT_EQ(2u, flagCapacityOf(list));
    list.setDeclared(1, false);
    EXPECT_EQ("Dd", declaredOf(list));
}

TEST_F(Attributes2ImplTest, EntryWithoutFlagsCanBeRemoved) {
    Attributes2Impl list;
    add(list, u"a", u"CDATA");
    for (const char16_t* name : {u"b", u"c", u"d"})
        addToBase(list, name, u"CDATA");
    list.removeAttribute(3);
    list.removeAttribute(1);
    list.removeAttribute(0);
    EXPECT_EQ("(null)", namesOf(list));
}

// Every sequence against a model

/// The rules for entries and flags, written down once more with vectors.
struct Model {
    void grow(std::size_t wanted) {
        if (capacity >= wanted)
            return;
        const std::size_t carried =
            count < 0 ? capacity : std::min<std::size_t>(static_cast<std::size_t>(count), capacity);
        for (std::string* flags : {&declared, &specified}) {
            flags->resize(carried);
            flags->resize(wanted, '1');
        }
        count = static_cast<long>(capacity);
        capacity = wanted;
    }
    void add(const std::string& name, bool isDeclared) {
        names.push_back(name);
        grow(names.size());
        specified[names.size() - 1] = '1';
        declared[names.size() - 1] = isDeclared ? '1' : '0';
    }
    void remove(std::size_t i) {
        const std::size_t last = names.size() - 1;
        names[i] = "(null)";
        names.resize(last);
        if (i != last) {
            for (std::string* flags : {&declared, &specified})
                flags->replace(i, last - i, std::string(*flags, i + 1, last - i));
        }
        --count;
    }

    std::vector<std::string> names;
    std::string declared, specified;
    std::size_t capacity = 0;
    long count = 0;
};

void expectEqual(const Model& model, const Attributes2Impl& list) {
    ASSERT_EQ(model.names.size(), list.getLength());
    for (unsigned int i = 0; i < list.getLength(); ++i) {
        ASSERT_EQ(model.names[i], show(list.getQName(i)));
        ASSERT_EQ(model.declared[i] == '1', list.isDeclared(i)) << i;
        ASSERT_EQ(model.specified[i] == '1', list.isSpecified(i)) << i;
    }
    ASSERT_EQ(model.capacity, flagCapacityOf(list));
    ASSERT_EQ(static_cast<std::uint32_t>(model.count), flagCountOf(list));
}

/// One step on both, chosen by `choice`.
void step(Model& model, Attributes2Impl& list, std::uint32_t choice, unsigned int number) {
    const std::size_t length = model.names.size();
    const unsigned int index = length != 0 ? choice / 8 % static_cast<unsigned int>(length) : 0;
    if (choice % 8 < 4 || length == 0) {
        const std::string name = "n" + std::to_string(number);
        model.add(name, choice % 2 != 0);
        add(list, std::u16string(name.begin(), name.end()).c_str(), choice % 2 != 0 ? u"ID" : u"CDATA");
    } else if (choice % 8 < 6) {
        model.remove(index);
        list.removeAttribute(index);
    } else if (choice % 8 == 6) {
        model.declared[index] = '0';
        list.setDeclared(index, false);
    } else {
        model.specified[index] = '0';
        list.setSpecified(index, false);
    }
}

TEST_F(Attributes2ImplTest, RandomSequencesFollowTheModel) {
    std::mt19937 random(20240229);
    for (int sequence = 0; sequence < 500; ++sequence) {
        Model model;
        Attributes2Impl list;
        for (unsigned int number = 0; number < 40; ++number) {
            step(model, list, static_cast<std::uint32_t>(random()), number);
            expectEqual(model, list);
            ASSERT_FALSE(HasFailure()) << "sequence " << sequence << ", step " << number;
        }
    }
}

// Memory

TEST_F(Attributes2ImplTest, FailedAdditionChangesNeitherEntriesNorFlags) {
    for (const int length : {0, 1, 5, 6}) {
        Attributes2Impl list;
        for (int i = 0; i < length; ++i)
            add(list, u"a", u"CDATA");
        const std::string declared = declaredOf(list);
        const std::uint32_t count = flagCountOf(list), capacity = flagCapacityOf(list);
        const XmlString value = text(u"CDATA");
        Testing::everyAllocationFails([&] { list.addAttribute(value, value, value, value, value); },
                                      [&] {
                                          EXPECT_EQ(static_cast<unsigned int>(length), list.getLength());
                                          EXPECT_EQ(declared, declaredOf(list));
                                          EXPECT_EQ(count, flagCountOf(list));
                                          EXPECT_EQ(capacity, flagCapacityOf(list));
                                      });
        EXPECT_EQ(static_cast<unsigned int>(length) + 1, list.getLength());
    }
}

TEST_F(Attributes2ImplTest, FailedRemovalChangesNeitherEntriesNorFlags) {
    Attributes2Impl list;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(list, name, u"CDATA");
    const std::string declared = declaredOf(list);
    Testing::everyAllocationFails([&] { list.removeAttribute(0); },
                                  [&] {
                                      EXPECT_EQ("a b c", namesOf(list));
                                      EXPECT_EQ(declared, declaredOf(list));
                                      EXPECT_EQ(2u, flagCountOf(list));
                                  });
}

TEST_F(Attributes2ImplTest, FailedSetAttributesLeavesTheListEmpty) {
    Attributes2Impl source;
    for (const char16_t* name : {u"a", u"b", u"c"})
        add(source, name, u"ID");
    AttributesImpl plain(source);
    Attributes2Impl fromFlagged, fromPlain;
    Testing::everyAllocationFails([&] { fromFlagged.setAttributes(source); },
                                  [&] { EXPECT_EQ(0u, fromFlagged.getLength()); });
    Testing::everyAllocationFails([&] { fromPlain.setAttributes(plain); },
                                  [&] { EXPECT_EQ(0u, fromPlain.getLength()); });
    EXPECT_EQ("a b c", namesOf(fromFlagged));
    EXPECT_EQ("DDD", declaredOf(fromPlain));
}

TEST_F(Attributes2ImplTest, FailedCopyAndAssignmentLeaveNothingBehind) {
    Attributes2Impl source, list;
    add(source, u"a", u"ID");
    add(list, u"x", u"CDATA");
    add(list, u"y", u"CDATA");
    Testing::everyAllocationFails([&] { const Attributes2Impl copy(source); });
    Testing::everyAllocationFails([&] { list = source; },
                                  [&] {
                                      EXPECT_EQ("x y", namesOf(list));
                                      EXPECT_EQ("Dd", declaredOf(list));
                                  });
    EXPECT_EQ("a", namesOf(list));
}

TEST_F(Attributes2ImplTest, FlagsOfAnEntryFromTheBaseNeedMemory) {
    Attributes2Impl list;
    addToBase(list, u"a", u"CDATA");
    Testing::everyAllocationFails([&] { list.setDeclared(0, false); },
                                  [&] { EXPECT_EQ("D", declaredOf(list)); });
    EXPECT_EQ("d", declaredOf(list));
}

} // namespace
} // namespace Quillon::Xml::Sax
