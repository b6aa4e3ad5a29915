#include "xml/XmlString.h"

#include "runtime/HostServices.h"
#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/OutOfMemoryException.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/StringFields.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace Quillon::Xml {
namespace {

using Testing::everyAllocationFails;
using Testing::fieldsOf;
using Testing::flagsOf;
using Testing::hostMemory;
using Testing::newMemory;
using Testing::text;
using Testing::units;
using Testing::unitsOf;
using Units = std::vector<unsigned short>;

constexpr unsigned int kHashOfNothing = 0xF1F35EC9;

class XmlStringTest : public Testing::HostFixture {
protected:
    void warmUp() override { SCOPED_TRACE("the framework keeps the room for traces"); }
};

/// A string that has lost Valid and kept its value.
void loseValid(XmlString& string) {
    string += text(u"");
    ASSERT_EQ(0u, flagsOf(string) & Valid);
}

/// An owned string whose first zero unit may stand before its end.
XmlString padded(const char16_t* literal, unsigned int size) {
    return XmlString(0, units(literal).data(), size);
}

/// Notes what the library asks of allocateZeroed; can refuse it.
class ZeroedRequests {
public:
    explicit ZeroedRequests(bool refuse = false) : saved_(Runtime::hostServices()) {
        calls = 0;
        count = elementSize = 0;
        refuses = refuse;
        original = saved_.allocateZeroed;
        Runtime::HostServices services = saved_;
        services.allocateZeroed = note;
        Runtime::setHostServices(services);
    }
    ~ZeroedRequests() { Runtime::setHostServices(saved_); }
    ZeroedRequests(const ZeroedRequests&) = delete;
    ZeroedRequests& operator=(const ZeroedRequests&) = delete;

    static inline int calls;
    static inline std::size_t count, elementSize;

private:
    static void* note(std::size_t requested, std::size_t size) {
        ++calls;
        count = requested;
        elementSize = size;
        return refuses ? nullptr : original(requested, size);
    }

    static inline bool refuses;
    static inline void* (*original)(std::size_t, std::size_t);
    Runtime::HostServices saved_;
};

/// The bytes of a block for `unitCount` units: two for each of the smallest even number not below `unitCount` + 3.
std::size_t blockBytesFor(std::size_t unitCount) {
    const std::size_t needed = unitCount + 3;
    return 2 * (needed % 2 == 0 ? needed : needed + 1);
}

// Construction

TEST_F(XmlStringTest, DefaultIsNullWithAllFieldsZero) {
    const XmlString string;
    EXPECT_EQ((Testing::StringFields{nullptr, 0, 0, Null | Valid}), fieldsOf(string));
    EXPECT_TRUE(string.isNull());
    EXPECT_EQ(nullptr, string.data());
    EXPECT_EQ(nullptr, string.getPtr());
    EXPECT_EQ(0u, string.size());
    EXPECT_EQ(0u, string.capacity());
}

TEST_F(XmlStringTest, NullStringsAllocateNothing) {
    const std::size_t before = hostMemory().requests();
    const XmlString string, copy(string), fromPointer(0, nullptr), fromLength(0, nullptr, 7);
    EXPECT_EQ(before, hostMemory().requests());
}

TEST_F(XmlStringTest, PointerIsCountedUpToItsFirstZeroUnit) {
    const unsigned short source[] = {'a', 'b', 0, 'c', 0};
    const XmlString string(0, source);
    EXPECT_EQ(2u, string.size());
    EXPECT_EQ(2u, string.capacity());
    EXPECT_EQ(u"ab", unitsOf(string));
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
}

TEST_F(XmlStringTest, NullPointerGivesANullStringWithTheGivenFlags) {
    for (unsigned char flags = 0; flags <= 3; ++flags) {
        const XmlString counted(flags, nullptr), measured(flags, nullptr, 5);
        const Testing::StringFields expected{nullptr, 0, 0, static_cast<std::uint8_t>(flags | Null | Valid)};
        EXPECT_EQ(expected, fieldsOf(counted)) << int{flags};
        EXPECT_EQ(expected, fieldsOf(measured)) << int{flags};
    }
}

TEST_F(XmlStringTest, EmptyTextIsNotNull) {
    const XmlString string = text(u"");
    EXPECT_FALSE(string.isNull());
    ASSERT_NE(nullptr, string.data());
    EXPECT_EQ(0, string.data()[0]);
    EXPECT_EQ(0u, string.size());
}

TEST_F(XmlStringTest, OwnedCopyDoesNotFollowItsSource) {
    unsigned short source[] = {'a', 'b', 0};
    const XmlString string(0, source);
    source[0] = 'x';
    EXPECT_NE(source, string.data());
    EXPECT_EQ(u"ab", unitsOf(string));
}

TEST_F(XmlStringTest, BorrowedViewPointsAtItsSourceAndAllocatesNothing) {
    unsigned short source[] = {'a', 'b', 0};
    const std::size_t before = hostMemory().requests();
    const XmlString string(Borrowed, source), literal(Immutable | Borrowed, source),
        part(Borrowed, source, 1);
    EXPECT_EQ(before, hostMemory().requests());
    EXPECT_EQ((Testing::StringFields{source, 2, 2, Borrowed | Valid}), fieldsOf(string));
    EXPECT_EQ((Testing::StringFields{source, 2, 2, Immutable | Borrowed | Valid}), fieldsOf(literal));
    EXPECT_EQ((Testing::StringFields{source, 1, 1, Borrowed | Valid}), fieldsOf(part));
    source[0] = 'x';
    EXPECT_EQ(u"xb", unitsOf(string));
}

TEST_F(XmlStringTest, OnlyImmutableAndBorrowedAreTakenFromTheArgument) {
    const unsigned short source[] = {'a', 0};
    EXPECT_EQ(unsigned{Valid}, flagsOf(XmlString(0xFC, source)));
    EXPECT_EQ(unsigned{Immutable | Valid}, flagsOf(XmlString(0xFD, source, 1)));
    EXPECT_EQ(unsigned{Immutable | Borrowed | Valid}, flagsOf(XmlString(0xFF, source)));
    EXPECT_EQ(unsigned{Null | Valid}, flagsOf(XmlString(0xFC, nullptr)));
}

TEST_F(XmlStringTest, CreateKeepsLengthOverTerminator) {
    const unsigned short source[] = {'a', 'b', 0, 'x', 'y'};
    const XmlString string(0, source, 5);
    EXPECT_EQ(5u, string.size());
    EXPECT_EQ(5u, string.capacity());
    EXPECT_EQ(std::u16string(u"ab\0\0\0", 5), unitsOf(string));
    EXPECT_EQ(text(u"ab").hash(), string.hash());
}

TEST_F(XmlStringTest, LengthMayExceedWhatStandsBeforeTheTerminator) {
    const unsigned short source[] = {'a', 'b', 0}; // nothing behind the zero unit is read
    const XmlString string(0, source, 500);
    EXPECT_EQ(500u, string.size());
    EXPECT_EQ(std::u16string(u"ab") + std::u16string(498, u'\0'), unitsOf(string));
}

TEST_F(XmlStringTest, LengthMayEndBeforeTheTerminator) {
    const unsigned short source[] = {'a', 'b', 'c'};
    const XmlString string(0, source, 2);
    EXPECT_EQ(u"ab", unitsOf(string));
    EXPECT_EQ(0, string.data()[2]);
}

TEST_F(XmlStringTest, LengthZeroGivesAnEmptyString) {
    const unsigned short source[] = {'a', 0};
    const XmlString string(0, source, 0);
    EXPECT_FALSE(string.isNull());
    EXPECT_EQ(0u, string.size());
    EXPECT_EQ(0, string.data()[0]);
}

TEST_F(XmlStringTest, EveryUnitValueIsKept) {
    Units source;
    for (unsigned int unit = 1; unit <= 0xFFFF; ++unit)
        source.push_back(static_cast<unsigned short>(unit));
    source.push_back(0);
    const XmlString string(0, source.data());
    ASSERT_EQ(0xFFFFu, string.size());
    EXPECT_TRUE(std::equal(source.begin(), source.end(), string.data()));
}

// The shared block

TEST_F(XmlStringTest, BlockIsRoundedToFourBytesAndZeroFilled) {
    for (unsigned int n = 0; n <= 40; ++n) {
        const Units source(n + 1, 'a');
        ZeroedRequests requests;
        const XmlString string(0, source.data(), n);
        EXPECT_EQ(1, requests.calls) << n;
        EXPECT_EQ(4u, requests.elementSize) << n;
        ASSERT_EQ(blockBytesFor(n), requests.count * requests.elementSize) << n;
        const unsigned short* end = string.getPtr() + (blockBytesFor(n) - 4) / 2;
        EXPECT_TRUE(std::all_of(string.getPtr() + n, end, [](unsigned short unit) { return unit == 0; }))
            << n;
        EXPECT_GT(end, string.getPtr() + n) << "no terminator for " << n;
    }
}

TEST_F(XmlStringTest, CountStandsInTheFourBytesBeforeTheUnits) {
    const XmlString string = text(u"abc");
    const XmlString copy(string);
    std::uint32_t count = 0;
    std::memcpy(&count, reinterpret_cast<const char*>(string.getPtr()) - 4, 4);
    EXPECT_EQ(2u, count);
}

TEST_F(XmlStringTest, BlockIsReleasedByItsAddress) {
    const XmlString* string = new XmlString(text(u"abc"));
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    delete string;
    EXPECT_EQ(before - 1, hostMemory().liveBlocks());
}

TEST_F(XmlStringTest, LargestBlockIsTheOneWhoseBytesFit32Bits) {
    const unsigned short source[] = {0};
    ZeroedRequests requests(true);
    EXPECT_THROW(XmlString(0, source, 0x7FFFFFFB), System::OutOfMemoryException);
    EXPECT_EQ(1, requests.calls);
    EXPECT_EQ(0x3FFFFFFFu, requests.count);
}

TEST_F(XmlStringTest, LargerBlocksAreRefusedWithoutAsking) {
    const unsigned short source[] = {0};
    ZeroedRequests requests;
    for (const unsigned int n :
         {0x7FFFFFFCu, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFCu, 0xFFFFFFFDu, 0xFFFFFFFFu})
        EXPECT_THROW(XmlString(0, source, n), System::OutOfMemoryException) << n;
    EXPECT_EQ(0, requests.calls);
}

TEST_F(XmlStringTest, BorrowedViewMayHaveEverySize) {
    const unsigned short source[] = {0};
    const XmlString string(Borrowed, source, 0xFFFFFFFF);
    EXPECT_EQ(0xFFFFFFFFu, string.size());
    EXPECT_EQ(0xFFFFFFFFu, string.capacity());
}

// create

struct Before {
    const char* name;
    XmlString (*make)(unsigned short* buffer);
};

const Before kBefore[] = {
    {"Null", [](unsigned short*) { return XmlString(); }},
    {"Owned", [](unsigned short*) { return text(u"old"); }},
    {"OwnedImmutable", [](unsigned short*) { return XmlString(Immutable, units(u"old").data()); }},
    {"Borrowed", [](unsigned short* buffer) { return XmlString(Borrowed, buffer); }},
    {"Literal", [](unsigned short* buffer) { return XmlString(Immutable | Borrowed, buffer); }},
};

TEST_F(XmlStringTest, CreateArgumentDecidesWhateverTheStringWas) {
    for (const Before& before : kBefore) {
        for (unsigned char flags = 0; flags <= 3; ++flags) {
            SCOPED_TRACE(before.name + std::to_string(flags));
            unsigned short buffer[] = {'x', 'y', 0};
            unsigned short source[] = {'a', 'b', 'c', 0};
            XmlString string = before.make(buffer);
            string.create(flags, source, 3);
            EXPECT_EQ(u"abc", unitsOf(string));
            EXPECT_EQ(3u, string.capacity());
            EXPECT_EQ(unsigned{flags} | Valid, flagsOf(string));
            EXPECT_EQ((flags & Borrowed) != 0, string.getPtr() == source);
            EXPECT_EQ('x', buffer[0]) << "a borrowed buffer is left alone";
        }
    }
}

TEST_F(XmlStringTest, CreateFromNullGivesANullStringWhateverTheStringWas) {
    for (const Before& before : kBefore) {
        for (unsigned char flags = 0; flags <= 3; ++flags) {
            SCOPED_TRACE(before.name + std::to_string(flags));
            unsigned short buffer[] = {'x', 0};
            XmlString string = before.make(buffer);
            string.create(flags, nullptr, 9);
            const auto expected = static_cast<std::uint8_t>(flags | Null | Valid);
            EXPECT_EQ((Testing::StringFields{nullptr, 0, 0, expected}), fieldsOf(string));
        }
    }
}

TEST_F(XmlStringTest, CreateIgnoresImmutable) {
    XmlString string(Immutable, units(u"old").data());
    string.create(Immutable, units(u"new").data(), 3);
    EXPECT_EQ(u"new", unitsOf(string));
    EXPECT_EQ(unsigned{Immutable | Valid}, flagsOf(string));
}

TEST_F(XmlStringTest, CreateSetsValidAgain) {
    XmlString string = text(u"old");
    loseValid(string);
    string.create(0, units(u"new").data(), 3);
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
}

TEST_F(XmlStringTest, CreateReleasesWhatTheStringHeld) {
    XmlString string = text(u"old");
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    string.create(0, units(u"new").data(), 3);
    EXPECT_EQ(before, hostMemory().liveBlocks());
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringTest, CreateDropsOnlyItsOwnHoldOnASharedBlock) {
    const XmlString other = text(u"old");
    XmlString string(other);
    string.create(0, units(u"new").data(), 3);
    EXPECT_EQ(1u, other.getRefs());
    EXPECT_EQ(u"old", unitsOf(other));
}

TEST_F(XmlStringTest, CreateTakesASourceInsideItsOwnBlock) {
    XmlString string = text(u"abcdef");
    string.create(0, string.data() + 2, 3);
    EXPECT_EQ(u"cde", unitsOf(string));
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringTest, CreateKeepsOldValueAndLosesValidWhenMemoryRunsOut) {
    XmlString string = text(u"old");
    const unsigned short* const storage = string.getPtr();
    const Units source = units(u"new text");
    everyAllocationFails([&] { string.create(Immutable, source.data(), 8); },
                         [&] {
                             EXPECT_EQ((Testing::StringFields{storage, 3, 3, 0}), fieldsOf(string));
                             EXPECT_EQ(1u, string.getRefs());
                         });
    EXPECT_EQ(u"new text", unitsOf(string));
}

TEST_F(XmlStringTest, CreateRefusesTooMuchAndKeepsOldValue) {
    XmlString string = text(u"old");
    EXPECT_THROW(string.create(0, units(u"x").data(), 0xFFFFFFFF), System::OutOfMemoryException);
    EXPECT_EQ(u"old", unitsOf(string));
    EXPECT_EQ(0u, flagsOf(string));
}

TEST_F(XmlStringTest, FailedBorrowedTargetStaysBorrowed) {
    unsigned short buffer[] = {'x', 0};
    XmlString string(Borrowed, buffer);
    hostMemory().failRequest(1);
    EXPECT_THROW(string.create(0, units(u"new").data(), 3), System::OutOfMemoryException);
    EXPECT_EQ((Testing::StringFields{buffer, 1, 1, Borrowed}), fieldsOf(string));
}

TEST_F(XmlStringTest, ConstructionFailsWithOutOfMemory) {
    const Units source = units(u"text");
    everyAllocationFails([&] { XmlString(0, source.data()); });
    everyAllocationFails([&] { XmlString(0, source.data(), 2); });
}

TEST_F(XmlStringTest, StaticCreateMakesAViewOnTheSourcesStorage) {
    XmlString source = text(u"abc");
    const XmlString view = XmlString::create(Borrowed, source);
    EXPECT_EQ((Testing::StringFields{source.getPtr(), 3, 3, Borrowed | Valid}), fieldsOf(view));
    EXPECT_EQ(1u, source.getRefs());
}

TEST_F(XmlStringTest, StaticCreateMakesAnOwnedCopy) {
    XmlString source = text(u"abc");
    const XmlString copy = XmlString::create(0, source);
    EXPECT_NE(source.getPtr(), copy.getPtr());
    EXPECT_EQ(u"abc", unitsOf(copy));
    EXPECT_EQ(1u, source.getRefs());
    EXPECT_EQ(1u, copy.getRefs());
}

TEST_F(XmlStringTest, StaticCreateRecountsTheLength) {
    XmlString source = padded(u"ab", 5);
    EXPECT_EQ(2u, XmlString::create(0, source).size());
    EXPECT_EQ(2u, XmlString::create(Borrowed, source).size());
    unsigned short buffer[] = {'a', 'b', 'c', 0};
    XmlString part(Borrowed, buffer, 1);
    EXPECT_EQ(3u, XmlString::create(0, part).size()) << "also beyond the size";
}

TEST_F(XmlStringTest, StaticCreateFromNullIsNull) {
    XmlString source;
    EXPECT_EQ(unsigned{Null | Valid}, flagsOf(XmlString::create(0, source)));
    EXPECT_EQ(unsigned{Borrowed | Null | Valid}, flagsOf(XmlString::create(Borrowed, source)));
}

// Copying

TEST_F(XmlStringTest, CopySharesTheBlock) {
    const XmlString string = text(u"abc");
    EXPECT_EQ(1u, string.getRefs());
    const std::size_t before = hostMemory().requests();
    {
        const XmlString copy(string);
        EXPECT_EQ(before, hostMemory().requests());
        EXPECT_EQ(string.getPtr(), copy.getPtr());
        EXPECT_EQ(2u, string.getRefs());
        EXPECT_EQ(fieldsOf(string), fieldsOf(copy));
    }
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringTest, LastHoldFreesTheBlockOnce) {
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    {
        auto first = std::make_unique<XmlString>(text(u"abc"));
        const XmlString second(*first);
        first.reset();
        EXPECT_EQ(before + 1, hostMemory().liveBlocks());
        EXPECT_EQ(u"abc", unitsOf(second));
    }
    EXPECT_EQ(before, hostMemory().liveBlocks());
}

TEST_F(XmlStringTest, CopyConstructorTakesAllFlags) {
    unsigned short buffer[] = {'a', 0};
    for (unsigned char flags = 0; flags <= 3; ++flags) {
        const XmlString string(flags, buffer), nothing(flags, nullptr);
        EXPECT_EQ(fieldsOf(string), fieldsOf(XmlString(string))) << int{flags};
        EXPECT_EQ(fieldsOf(nothing), fieldsOf(XmlString(nothing))) << int{flags};
    }
}

TEST_F(XmlStringTest, CopyOfInvalidIsNullAndInvalid) {
    XmlString string = text(u"abc");
    loseValid(string);
    const XmlString copy(string);
    EXPECT_EQ((Testing::StringFields{nullptr, 0, 0, Null}), fieldsOf(copy));
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringTest, CopyFromInvalidOnlyClearsValid) {
    XmlString source = text(u"abc"), target = text(u"old");
    loseValid(source);
    const Testing::StringFields before = fieldsOf(target);
    EXPECT_EQ(&target, &(target = source));
    EXPECT_EQ((Testing::StringFields{before.data, 3, 3, 0}), fieldsOf(target));
    EXPECT_EQ(u"old", unitsOf(target));
    EXPECT_EQ(1u, target.getRefs());
}

TEST_F(XmlStringTest, CopyFromInvalidLeavesABorrowedBufferAlone) {
    unsigned short buffer[] = {'o', 'l', 'd', 0};
    XmlString source = text(u"ab"), target(Borrowed, buffer);
    loseValid(source);
    target = source;
    EXPECT_EQ((Testing::StringFields{buffer, 3, 3, Borrowed}), fieldsOf(target));
    EXPECT_EQ('o', buffer[0]);
}

TEST_F(XmlStringTest, CopyToItselfChangesNothing) {
    XmlString string = text(u"abc");
    XmlString& same = string;
    EXPECT_EQ(&string, &(string = same));
    EXPECT_EQ(&string, &string.copy(same));
    EXPECT_EQ(u"abc", unitsOf(string));
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringTest, CopyToItselfIsAllowedForImmutableStringsToo) {
    XmlString string(Immutable, units(u"abc").data());
    XmlString& same = string;
    EXPECT_NO_THROW(string = same);
}

TEST_F(XmlStringTest, CopyToItselfDoesNotSetValid) {
    XmlString string = text(u"abc");
    loseValid(string);
    string.copy(string);
    EXPECT_EQ(0u, flagsOf(string));
}

TEST_F(XmlStringTest, ImmutableStringRefusesEveryChange) {
    unsigned short buffer[] = {'o', 'l', 'd', 0};
    const XmlString source = text(u"new"), nothing;
    XmlString invalid = text(u"new");
    loseValid(invalid);
    for (const unsigned char flags : {1, 3}) {
        XmlString string(flags, buffer), null(flags, nullptr);
        for (XmlString* target : {&string, &null}) {
            const Testing::StringFields before = fieldsOf(*target);
            for (const XmlString* from : {&source, &nothing, static_cast<const XmlString*>(&invalid)}) {
                EXPECT_THROW(target->copy(*from), ImmutableObjectWriteError);
                EXPECT_THROW(*target = *from, ImmutableObjectWriteError);
                EXPECT_THROW(*target += *from, ImmutableObjectWriteError);
            }
            EXPECT_THROW(*target += *target, ImmutableObjectWriteError);
            EXPECT_EQ(before, fieldsOf(*target));
        }
    }
    EXPECT_EQ('o', buffer[0]);
}

TEST_F(XmlStringTest, AssignmentReturnsItsTarget) {
    XmlString target;
    const XmlString source = text(u"abc");
    EXPECT_EQ(&target, &target.copy(source));
    EXPECT_EQ(&target, &(target = source));
    EXPECT_EQ(&target, &(target += source));
}

TEST_F(XmlStringTest, AssignmentSharesTheSourcesBlockAndDropsTheOldOne) {
    const XmlString source = text(u"a longer text");
    XmlString target = text(u"old");
    const XmlString other(target);
    target = source;
    EXPECT_EQ(source.getPtr(), target.getPtr());
    EXPECT_EQ(2u, source.getRefs());
    EXPECT_EQ(1u, other.getRefs());
    EXPECT_EQ(fieldsOf(source), fieldsOf(target));
}

TEST_F(XmlStringTest, AssignmentBetweenStringsOnOneBlockKeepsBothHolds) {
    XmlString first = text(u"abc"), second(first);
    first = second;
    EXPECT_EQ(2u, first.getRefs());
    EXPECT_EQ(u"abc", unitsOf(first));
}

TEST_F(XmlStringTest, AssignmentOfALiteralMakesTheTargetImmutable) {
    const Units literal = units(u"name");
    XmlString target = text(u"old");
    target = XmlString(Immutable | Borrowed, literal.data());
    EXPECT_EQ((Testing::StringFields{literal.data(), 4, 4, Immutable | Borrowed | Valid}), fieldsOf(target));
    EXPECT_THROW(target = text(u"new"), ImmutableObjectWriteError);
    EXPECT_THROW(target += text(u"new"), ImmutableObjectWriteError);
}

TEST_F(XmlStringTest, AssignmentOfAnOwnedImmutableStringSharesItAndItsFlag) {
    const XmlString source(Immutable, units(u"abc").data());
    XmlString target;
    target = source;
    EXPECT_EQ(2u, source.getRefs());
    EXPECT_EQ(unsigned{Immutable | Valid}, flagsOf(target));
}

TEST_F(XmlStringTest, AssignmentOfABorrowedStringMakesTheTargetBorrowed) {
    unsigned short buffer[] = {'a', 'b', 0};
    XmlString target = text(u"old");
    target = XmlString(Borrowed, buffer);
    EXPECT_EQ((Testing::StringFields{buffer, 2, 2, Borrowed | Valid}), fieldsOf(target));
}

TEST_F(XmlStringTest, AssignmentOfNullMakesTheTargetNull) {
    unsigned short buffer[] = {'a', 'b', 0};
    XmlString owned = text(u"old"), borrowed(Borrowed, buffer), null;
    for (XmlString* target : {&owned, &borrowed, &null}) {
        *target = XmlString();
        EXPECT_EQ((Testing::StringFields{nullptr, 0, 0, Null | Valid}), fieldsOf(*target));
    }
    EXPECT_EQ('a', buffer[0]);
}

TEST_F(XmlStringTest, AssignmentToABorrowedNullStringShares) {
    for (const XmlString& source : {text(u"abc"), text(u"")}) {
        XmlString target(Borrowed, nullptr);
        target = source;
        EXPECT_EQ(fieldsOf(source), fieldsOf(target));
        EXPECT_EQ(2u, source.getRefs());
    }
}

TEST_F(XmlStringTest, AssignmentTakesOverACapacityBeyondTheSize) {
    XmlString source = text(u"abc"), target;
    source += text(u"de");
    target = source;
    EXPECT_EQ(5u, target.size());
    EXPECT_EQ(6u, target.capacity());
}

TEST_F(XmlStringTest, AssignmentSetsValidAgain) {
    XmlString target = text(u"old");
    loseValid(target);
    target = text(u"new");
    EXPECT_EQ(unsigned{Valid}, flagsOf(target));
    EXPECT_EQ(u"new", unitsOf(target));
}

TEST_F(XmlStringTest, CopiesNeverAllocate) {
    const XmlString source = text(u"abc");
    const std::size_t before = hostMemory().requests();
    XmlString target;
    target = source;
    XmlString copy(target);
    copy.copy(source);
    EXPECT_EQ(before, hostMemory().requests());
}

// Copying into a borrowed buffer

TEST_F(XmlStringTest, BorrowedTargetWithRoomKeepsItsBuffer) {
    unsigned short buffer[] = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'E'};
    XmlString target(Borrowed, buffer, 10);
    const XmlString source = text(u"abcd");
    target = source;
    EXPECT_EQ((Testing::StringFields{buffer, 10, 4, Borrowed | Valid}), fieldsOf(target));
    EXPECT_EQ(1u, source.getRefs());
    EXPECT_TRUE(std::equal(buffer, buffer + 11, Units{'a', 'b', 'c', 'd', 0, 0, 0, 0, 0, 0, 'E'}.begin()));
    target = text(u"0123456789");
    EXPECT_EQ(10u, target.size()) << "the capacity was kept, too";
}

TEST_F(XmlStringTest, BorrowedTargetWithoutRoomSharesTheSourcesBlock) {
    unsigned short buffer[] = {'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'};
    XmlString target(Borrowed, buffer, 10);
    const XmlString source = text(u"abcdefghijkl");
    target = source;
    EXPECT_EQ(fieldsOf(source), fieldsOf(target));
    EXPECT_EQ(2u, source.getRefs());
    EXPECT_EQ('0', buffer[0]);
}

TEST_F(XmlStringTest, BufferMayBeFilledToItsLastUnit) {
    auto buffer = std::make_unique<unsigned short[]>(3); // a sanitizer sees every step beyond
    std::fill_n(buffer.get(), 3, static_cast<unsigned short>('x'));
    XmlString target(Borrowed, buffer.get(), 3);
    target = text(u"abc");
    EXPECT_EQ(3u, target.size());
    EXPECT_EQ(u"abc", unitsOf(target));
    EXPECT_EQ(unsigned{Borrowed | Valid}, flagsOf(target));
}

TEST_F(XmlStringTest, InPlaceCopyReadsNoMoreThanTheSourcesSize) {
    auto sourceUnits = std::make_unique<unsigned short[]>(2);
    std::fill_n(sourceUnits.get(), 2, static_cast<unsigned short>('a'));
    unsigned short buffer[] = {'0', '1', '2', '3', 0};
    XmlString target(Borrowed, buffer);
    target = XmlString(Borrowed, sourceUnits.get(), 2);
    EXPECT_EQ(u"aa", unitsOf(target));
    EXPECT_EQ(0, buffer[2]);
    EXPECT_EQ(0, buffer[3]);
}

TEST_F(XmlStringTest, InPlaceCopyStopsAtAZeroUnit) {
    unsigned short buffer[] = {'0', '1', '2', '3', '4', '5', 'E'};
    const unsigned short source[] = {'a', 'b', 0, 'c', 'd'};
    XmlString target(Borrowed, buffer, 6);
    target = XmlString(Borrowed, source, 5);
    EXPECT_EQ(2u, target.size());
    EXPECT_TRUE(std::equal(buffer, buffer + 7, Units{'a', 'b', 0, 0, 0, 0, 'E'}.begin()));
}

TEST_F(XmlStringTest, InPlaceCopyOfEmptyTextClearsTheBuffer) {
    unsigned short buffer[] = {'0', '1', 'E'};
    XmlString target(Borrowed, buffer, 2);
    target = text(u"");
    EXPECT_EQ((Testing::StringFields{buffer, 2, 0, Borrowed | Valid}), fieldsOf(target));
    EXPECT_TRUE(std::equal(buffer, buffer + 3, Units{0, 0, 'E'}.begin()));
}

TEST_F(XmlStringTest, InPlaceCopyLeavesTheFlagsAsTheyWere) {
    unsigned short buffer[] = {'0', '1', '2', 0};
    const Units literal = units(u"ab");
    XmlString target(Borrowed, buffer);
    target = XmlString(Immutable | Borrowed, literal.data());
    EXPECT_EQ((Testing::StringFields{buffer, 3, 2, Borrowed | Valid}), fieldsOf(target));
    loseValid(target);
    target = text(u"c");
    EXPECT_EQ((Testing::StringFields{buffer, 3, 1, Borrowed}), fieldsOf(target));
    EXPECT_EQ('c', buffer[0]);
}

TEST_F(XmlStringTest, InPlaceCopyTakesASourceInTheSameBuffer) {
    unsigned short buffer[] = {'a', 'b', 'c', 'd', 'e', 0};
    XmlString target(Borrowed, buffer);
    target = XmlString(Borrowed, buffer + 2, 3);
    EXPECT_EQ(u"cde", unitsOf(target));
    EXPECT_TRUE(std::equal(buffer, buffer + 6, Units{'c', 'd', 'e', 0, 0, 0}.begin()));
    unsigned short forward[] = {'a', 'b', 'c', 'd', 'e', 0};
    XmlString tail(Borrowed, forward + 2, 3);
    tail = XmlString(Borrowed, forward, 3);
    EXPECT_EQ(u"abc", unitsOf(tail));
}

// Appending

TEST_F(XmlStringTest, AppendJoinsTheUnits) {
    XmlString string = text(u"abc");
    string += text(u"de");
    EXPECT_EQ(u"abcde", unitsOf(string));
    EXPECT_EQ(0, string.data()[5]);
    EXPECT_EQ(5u, string.size());
    EXPECT_EQ(6u, string.capacity());
    EXPECT_EQ(1u, string.getRefs());
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
}

TEST_F(XmlStringTest, AppendAllocatesOneUnitMoreThanCreateWould) {
    const Units left(20, 'a'), right(20, 'b');
    for (unsigned int m = 0; m <= 9; ++m) {
        for (unsigned int n = 1; n <= 9; ++n) {
            XmlString string(0, left.data(), m);
            const XmlString tail(0, right.data(), n);
            ZeroedRequests requests;
            string += tail;
            EXPECT_EQ(1, requests.calls);
            EXPECT_EQ(blockBytesFor(m + n + 1), requests.count * requests.elementSize) << m << '+' << n;
            EXPECT_EQ(m + n, string.size());
            EXPECT_EQ(m + n + 1, string.capacity());
            EXPECT_EQ(std::u16string(m, u'a') + std::u16string(n, u'b'), unitsOf(string));
            const unsigned short* end = string.getPtr() + (blockBytesFor(m + n + 1) - 4) / 2;
            EXPECT_TRUE(std::all_of(string.getPtr() + m + n, end, [](unsigned short u) { return u == 0; }));
        }
    }
}

TEST_F(XmlStringTest, AppendDropsTheOldBlockAndLeavesOtherHolders) {
    XmlString string = text(u"abc");
    const XmlString other(string);
    string += text(u"de");
    EXPECT_EQ(1u, other.getRefs());
    EXPECT_EQ(u"abc", unitsOf(other));
}

TEST_F(XmlStringTest, AppendOfNullChangesNothingAndSetsValid) {
    XmlString string = text(u"abc");
    loseValid(string);
    const Testing::StringFields before = fieldsOf(string);
    string += XmlString();
    EXPECT_EQ((Testing::StringFields{before.data, 3, 3, Valid}), fieldsOf(string));
    XmlString null;
    null += XmlString();
    EXPECT_EQ((Testing::StringFields{nullptr, 0, 0, Null | Valid}), fieldsOf(null));
}

TEST_F(XmlStringTest, AppendOfEmptyLeavesValidClear) {
    XmlString string = text(u"abc");
    const Testing::StringFields before = fieldsOf(string);
    string += text(u"");
    EXPECT_EQ((Testing::StringFields{before.data, 3, 3, 0}), fieldsOf(string));
    EXPECT_EQ(u"abc", unitsOf(string));
    XmlString null;
    null += text(u"");
    EXPECT_EQ((Testing::StringFields{nullptr, 0, 0, Null}), fieldsOf(null));
}

TEST_F(XmlStringTest, AfterAppendOfEmptyAnAssignmentOnlyClearsTheTargetsValid) {
    XmlString source = text(u"abc"), target = text(u"old");
    source += text(u"");
    target = source;
    EXPECT_EQ(u"old", unitsOf(target));
    EXPECT_EQ(0u, flagsOf(target));
}

TEST_F(XmlStringTest, AppendOfInvalidLeavesValidClear) {
    XmlString string = text(u"abc"), tail = text(u"de");
    loseValid(tail);
    string += tail;
    EXPECT_EQ(u"abc", unitsOf(string));
    EXPECT_EQ(0u, flagsOf(string));
}

TEST_F(XmlStringTest, AppendOfInvalidNullLeavesValidClear) {
    XmlString string = text(u"abc"), tail = text(u"de");
    tail.dissociate();
    string += tail;
    EXPECT_EQ(0u, flagsOf(string));
}

TEST_F(XmlStringTest, AppendToItselfLeavesValidClear) {
    XmlString string = text(u"abc");
    const Testing::StringFields before = fieldsOf(string);
    XmlString& same = string;
    string += same;
    EXPECT_EQ((Testing::StringFields{before.data, 3, 3, 0}), fieldsOf(string));
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringTest, AppendOfAShareDoublesTheText) {
    XmlString string = text(u"abc");
    const XmlString share(string);
    string += share;
    EXPECT_EQ(u"abcabc", unitsOf(string));
    EXPECT_EQ(u"abc", unitsOf(share));
    EXPECT_EQ(1u, share.getRefs());
}

TEST_F(XmlStringTest, AppendOfAViewOnItsOwnBlock) {
    XmlString string = text(u"abc");
    const XmlString view = XmlString::create(Borrowed, string);
    string += view;
    EXPECT_EQ(u"abcabc", unitsOf(string));
}

TEST_F(XmlStringTest, AppendToAnInvalidStringSetsValid) {
    XmlString string = text(u"abc");
    loseValid(string);
    string += text(u"de");
    EXPECT_EQ(u"abcde", unitsOf(string));
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
}

TEST_F(XmlStringTest, AppendToNullGivesAnOwnedCopy) {
    const XmlString tail = text(u"de");
    XmlString string;
    string += tail;
    EXPECT_EQ(u"de", unitsOf(string));
    EXPECT_EQ(3u, string.capacity());
    EXPECT_NE(tail.getPtr(), string.getPtr());
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
}

TEST_F(XmlStringTest, AppendToADissociatedStringForgetsItsSize) {
    XmlString string = text(u"abc");
    string.dissociate();
    string += text(u"de");
    EXPECT_EQ(u"de", unitsOf(string));
}

TEST_F(XmlStringTest, AppendMakesABorrowedStringOwnItsBlock) {
    unsigned short buffer[] = {'a', 'b', 'c', 0, 0, 0, 0};
    XmlString string(Borrowed, buffer), null(Borrowed, nullptr);
    string += text(u"de");
    null += text(u"de");
    EXPECT_EQ(u"abcde", unitsOf(string));
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
    EXPECT_EQ(1u, string.getRefs());
    EXPECT_EQ(0, buffer[3]);
    EXPECT_EQ(unsigned{Valid}, flagsOf(null));
    EXPECT_EQ(u"de", unitsOf(null));
}

TEST_F(XmlStringTest, AppendOfALiteralDoesNotMakeTheResultImmutable) {
    const Units literal = units(u"de");
    XmlString string = text(u"abc");
    string += XmlString(Immutable | Borrowed, literal.data());
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
    EXPECT_NO_THROW(string += text(u"f"));
    EXPECT_EQ(u"abcdef", unitsOf(string));
}

TEST_F(XmlStringTest, AppendStopsAtZeroUnitsAndKeepsTheSizes) {
    const unsigned short left[] = {'a', 0, 'b'}, right[] = {'c', 'd', 0, 'e'};
    XmlString string(Borrowed, left, 3);
    string += XmlString(Borrowed, right, 4);
    EXPECT_EQ(7u, string.size());
    EXPECT_EQ(std::u16string(u"a\0\0cd\0\0", 7), unitsOf(string));
}

TEST_F(XmlStringTest, AppendReadsNoMoreThanTheSizes) {
    auto left = std::make_unique<unsigned short[]>(2);
    auto right = std::make_unique<unsigned short[]>(1);
    std::fill_n(left.get(), 2, static_cast<unsigned short>('a'));
    right[0] = 'b';
    XmlString string(Borrowed, left.get(), 2);
    string += XmlString(Borrowed, right.get(), 1);
    EXPECT_EQ(u"aab", unitsOf(string));
}

TEST_F(XmlStringTest, AppendKeepsOldValueWhenMemoryRunsOut) {
    const XmlString old = text(u"old"), tail = text(u"new");
    XmlString target = old;
    everyAllocationFails([&] { target += tail; },
                         [&] {
                             EXPECT_EQ(0, target.compare(old));
                             EXPECT_EQ(2u, old.getRefs());
                             EXPECT_EQ(0u, flagsOf(target));
                         });
    EXPECT_EQ(u"oldnew", unitsOf(target));
}

TEST_F(XmlStringTest, AppendRefusesSizesThatDoNotFit) {
    const unsigned short source[] = {'a', 0};
    const struct {
        unsigned int left, right;
    } cases[] = {{0x40000000, 0x40000000}, {0xFFFFFFFF, 1}, {0xFFFFFFFF, 0xFFFFFFFF}, {1, 0xFFFFFFFE}};
    ZeroedRequests requests;
    for (const auto& sizes : cases) {
        XmlString string(Borrowed, source, sizes.left);
        const XmlString tail(Borrowed, source, sizes.right);
        EXPECT_THROW(string += tail, System::OutOfMemoryException) << sizes.left << '+' << sizes.right;
        EXPECT_EQ((Testing::StringFields{source, sizes.left, sizes.left, Borrowed}), fieldsOf(string));
    }
    EXPECT_EQ(0, requests.calls);
}

TEST_F(XmlStringTest, LargestAppendIsTheOneWhoseBytesFit32Bits) {
    const unsigned short source[] = {'a', 0};
    XmlString string(Borrowed, source, 0x7FFFFFF9);
    const XmlString tail(Borrowed, source, 1);
    ZeroedRequests requests(true);
    EXPECT_THROW(string += tail, System::OutOfMemoryException);
    EXPECT_EQ(0x3FFFFFFFu, requests.count);
}

// dissociate

TEST_F(XmlStringTest, DissociateKeepsSizes) {
    XmlString string = text(u"abc");
    string.dissociate();
    EXPECT_EQ((Testing::StringFields{nullptr, 3, 3, Null}), fieldsOf(string));
    EXPECT_TRUE(string.isNull());
    EXPECT_EQ(nullptr, string.data());
}

TEST_F(XmlStringTest, DissociateFreesWithTheLastHold) {
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    XmlString first = text(u"abc"), second(first);
    first.dissociate();
    EXPECT_EQ(before + 1, hostMemory().liveBlocks());
    EXPECT_EQ(1u, second.getRefs());
    second.dissociate();
    EXPECT_EQ(before, hostMemory().liveBlocks());
}

TEST_F(XmlStringTest, DissociateLeavesBorrowedAndNullStringsAlone) {
    unsigned short buffer[] = {'a', 0};
    XmlString borrowed(Borrowed, buffer), literal(Immutable | Borrowed, buffer), null, gone = text(u"abc");
    gone.dissociate();
    for (XmlString* string : {&borrowed, &literal, &null, &gone}) {
        const Testing::StringFields before = fieldsOf(*string);
        string->dissociate();
        EXPECT_EQ(before, fieldsOf(*string));
    }
}

TEST_F(XmlStringTest, DissociateDoesNotAskForImmutable) {
    XmlString string(Immutable, units(u"abc").data());
    string.dissociate();
    EXPECT_EQ(unsigned{Immutable | Null}, flagsOf(string));
}

// Comparing

struct CompareCase {
    const char* name;
    const char16_t* left;
    const char16_t* right;
    int result;
};

const CompareCase kCompareCases[] = {
    {"BothNull", nullptr, nullptr, 0},
    {"NullBeforeEmpty", nullptr, u"", -1},
    {"EmptyAfterNull", u"", nullptr, 1},
    {"NullBeforeText", nullptr, u"abc", -1},
    {"TextAfterNull", u"abc", nullptr, 1},
    {"BothEmpty", u"", u"", 0},
    {"EqualTextInTwoBlocks", u"abc", u"abc", 0},
    {"FirstDifferenceWins", u"ab", u"b", u'a' - u'b'},
    {"FirstDifferenceWinsOverLength", u"ba", u"abcde", u'b' - u'a'},
    {"PrefixIsSmallerByTheMissingUnits", u"ab", u"abcde", -3},
    {"LongerIsGreaterByItsRest", u"abcde", u"ab", 3},
    {"EmptyBeforeText", u"", u"abc", -3},
    {"UnitsAreUnsigned", u"\uFFFF", u"\u0001", 0xFFFE},
    {"UnitsAreUnsignedTheOtherWay", u"\u0001", u"\uFFFF", -0xFFFE},
    {"SurrogatesCompareAsUnits", u"\U00010000", u"\uFFFD", 0xD800 - 0xFFFD},
};

class XmlStringCompareTest : public XmlStringTest, public ::testing::WithParamInterface<CompareCase> {};

TEST_P(XmlStringCompareTest, GivesTheDifference) {
    EXPECT_EQ(GetParam().result, text(GetParam().left).compare(text(GetParam().right)));
}

INSTANTIATE_TEST_SUITE_P(Table, XmlStringCompareTest, ::testing::ValuesIn(kCompareCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlStringTest, CompareOfTheSameStorageIsEqualWhateverTheSizes) {
    const unsigned short buffer[] = {'a', 'b', 'c', 0};
    EXPECT_EQ(0, XmlString(Borrowed, buffer, 1).compare(XmlString(Borrowed, buffer, 3)));
    const XmlString string = text(u"abc"), share(string);
    EXPECT_EQ(0, string.compare(share));
    EXPECT_EQ(0, string.compare(string));
}

TEST_F(XmlStringTest, CompareTreatsZeroUnitsLikeAnyOther) {
    const unsigned short left[] = {'a', 0, 'b'}, right[] = {'a', 0, 'c'};
    EXPECT_EQ(-1, XmlString(Borrowed, left, 3).compare(XmlString(Borrowed, right, 3)));
    EXPECT_EQ(-'c', padded(u"a", 2).compare(text(u"ac")));
    EXPECT_EQ(1, padded(u"a", 2).compare(text(u"a"))) << "the zero unit counts";
}

TEST_F(XmlStringTest, CompareOfHugeSizesGivesTheirDifferenceAsASignedNumber) {
    const unsigned short left[] = {0}, right[] = {0};
    const XmlString empty(Borrowed, right, 0);
    EXPECT_EQ(0x7FFFFFFF, XmlString(Borrowed, left, 0x7FFFFFFF).compare(empty));
    EXPECT_EQ(-1, XmlString(Borrowed, left, 0xFFFFFFFF).compare(empty));
}

TEST_F(XmlStringTest, CompareIgnoresTheFlags) {
    unsigned short buffer[] = {'a', 'b', 0};
    XmlString invalid = text(u"ab");
    loseValid(invalid);
    EXPECT_EQ(0, invalid.compare(XmlString(Immutable | Borrowed, buffer)));
    EXPECT_EQ(0, XmlString(Immutable, buffer).compare(XmlString(Borrowed, buffer)));
    EXPECT_EQ(0, XmlString(3, nullptr).compare(XmlString()));
}

/// All strings over {0, 'a', 0x8000, 0xFFFF} up to three units.
std::vector<Units> smallStrings() {
    std::vector<Units> all(1);
    for (std::size_t begin = 0, length = 1; length <= 3; ++length) {
        const std::size_t end = all.size();
        for (; begin < end; ++begin) {
            for (const unsigned short unit : {0, int{'a'}, 0x8000, 0xFFFF}) {
                Units longer = all[begin];
                longer.push_back(unit);
                all.push_back(longer);
            }
        }
    }
    return all;
}

/// A view on exactly these units; an empty vector's view is not null.
XmlString viewOn(const Units& source) {
    static const unsigned short nothing = 0;
    return XmlString(Borrowed, source.empty() ? &nothing : source.data(),
                     static_cast<unsigned int>(source.size()));
}

TEST_F(XmlStringTest, CompareOrdersAllSmallStringsAsTheirUnitsDo) {
    const std::vector<Units> all = smallStrings();
    ASSERT_EQ(85u, all.size());
    for (const Units& left : all) {
        for (const Units& right : all) {
            const int sign = viewOn(left).compare(viewOn(right));
            EXPECT_EQ(left < right, sign < 0);
            EXPECT_EQ(right<left, sign> 0);
        }
    }
}

// Hashing

struct HashCase {
    const char* name;
    const char16_t* text;
    unsigned int hash;
};

const HashCase kHashCases[] = {
    {"Null", nullptr, kHashOfNothing},
    {"Empty", u"", kHashOfNothing},
    {"OneUnit", u"a", 0xD2866770},
    {"ThreeUnits", u"abc", 0xB849C599},
    {"Keyword", u"xmlns", 0x5A634AAD},
    {"LargestUnit", u"\uFFFF", 0xC293155E},
    {"Wrapping", u"aaaaaaaaaaaaaaaaaaaa", 0x9D35C869},
};

class XmlStringHashTest : public XmlStringTest, public ::testing::WithParamInterface<HashCase> {};

TEST_P(XmlStringHashTest, IsFixed) {
    EXPECT_EQ(GetParam().hash, text(GetParam().text).hash());
}

INSTANTIATE_TEST_SUITE_P(Table, XmlStringHashTest, ::testing::ValuesIn(kHashCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlStringTest, HashOfADissociatedStringIsThatOfNull) {
    XmlString string = text(u"abc");
    string.dissociate();
    EXPECT_EQ(kHashOfNothing, string.hash());
}

TEST_F(XmlStringTest, HashStopsAtTheFirstZeroUnit) {
    const unsigned short source[] = {'a', 'b', 0, 'c', 0};
    EXPECT_EQ(text(u"ab").hash(), XmlString(Borrowed, source, 4).hash());
    EXPECT_EQ(kHashOfNothing, padded(u"", 4).hash());
}

TEST_F(XmlStringTest, HashReadsBeyondTheSize) {
    const unsigned short source[] = {'a', 'b', 0};
    EXPECT_EQ(text(u"ab").hash(), XmlString(Borrowed, source, 1).hash());
    EXPECT_EQ(text(u"ab").hash(), XmlString(Borrowed, source, 0).hash());
}

TEST_F(XmlStringTest, HashOfAllSmallStringsFollowsTheFormula) {
    for (const Units& source : smallStrings()) {
        std::uint64_t expected = 97169;
        for (const unsigned short unit : source) {
            if (unit == 0)
                break;
            expected = (expected ^ unit) * 17 % 0x100000000;
        }
        const XmlString string(0, viewOn(source).getPtr(), static_cast<unsigned int>(source.size()));
        EXPECT_EQ(expected * 9987001 % 0x100000000, string.hash());
    }
}

TEST_F(XmlStringTest, HashAndCompareAllocateNothing) {
    const XmlString left = text(u"abc"), right = text(u"abd");
    const std::size_t host = hostMemory().requests(), objects = newMemory().requests();
    static_cast<void>(left.hash());
    static_cast<void>(left.compare(right));
    EXPECT_EQ(host, hostMemory().requests());
    EXPECT_EQ(objects, newMemory().requests());
}

// The count

TEST_F(XmlStringTest, CountsReturnTheChangedCount) {
    XmlString string = text(u"abc");
    EXPECT_EQ(1u, string.getRefs());
    EXPECT_EQ(2u, string.incRefs());
    EXPECT_EQ(2u, string.getRefs());
    EXPECT_EQ(3u, string.incRefs());
    EXPECT_EQ(2u, string.decRefs());
    EXPECT_EQ(1u, string.decRefs());
    EXPECT_EQ(u"abc", unitsOf(string));
}

TEST_F(XmlStringTest, CountIsOneForTheWholeBlock) {
    XmlString first = text(u"abc"), second(first);
    first.incRefs();
    EXPECT_EQ(3u, second.getRefs());
    second.decRefs();
    EXPECT_EQ(2u, first.getRefs());
}

TEST_F(XmlStringTest, ManyThreadsShareOneBlock) {
    constexpr int kThreads = 4, kRounds = 5000;
    const XmlString shared = text(u"shared text");
    std::atomic<bool> failed{false};
    {
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) {
            threads.emplace_back([own = shared, &failed] {
                XmlString assigned;
                for (int round = 0; round < kRounds; ++round) {
                    const XmlString copy(own);
                    assigned = copy;
                    XmlString longer(copy);
                    longer += own;
                    if (assigned.compare(own) != 0 || longer.size() != 2 * own.size())
                        failed = true;
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_FALSE(failed);
    EXPECT_EQ(1u, shared.getRefs());
    EXPECT_EQ(u"shared text", unitsOf(shared));
}

TEST_F(XmlStringTest, LastHoldMayEndOnAnyThread) {
    for (int round = 0; round < 200; ++round) {
        auto first = std::make_unique<XmlString>(text(u"abc"));
        auto second = std::make_unique<XmlString>(*first);
        std::thread other([&] { second.reset(); });
        first.reset();
        other.join();
    }
}

// Allocation operators

TEST_F(XmlStringTest, ObjectsComeFromTheGlobalOperators) {
    const std::size_t before = newMemory().requests();
    const std::size_t host = hostMemory().requests();
    std::unique_ptr<XmlString> one(new XmlString);
    EXPECT_EQ(before + 1, newMemory().requests());
    std::unique_ptr<XmlString[]> many(new XmlString[3]);
    EXPECT_EQ(before + 2, newMemory().requests());
    EXPECT_EQ(host, hostMemory().requests());
    EXPECT_TRUE(many[2].isNull());
}

TEST_F(XmlStringTest, PlacementUsesTheGivenPlace) {
    alignas(XmlString) unsigned char place[2 * sizeof(XmlString)];
    const XmlString source = text(u"abc");
    const std::size_t before = newMemory().requests();
    XmlString* string = new (place) XmlString(source);
    EXPECT_EQ(static_cast<void*>(place), string);
    EXPECT_EQ(source.getPtr(), string->getPtr());
    string->~XmlString();
    EXPECT_EQ(static_cast<void*>(place), XmlString::operator new[](sizeof place, place));
    EXPECT_EQ(before, newMemory().requests());
}

TEST_F(XmlStringTest, NewThatDoesNotThrowIsTheGlobalOne) {
    const std::size_t before = newMemory().requests();
    XmlString* one = new (std::nothrow) XmlString;
    XmlString* many = new (std::nothrow) XmlString[3];
    EXPECT_EQ(before + 2, newMemory().requests());
    delete one;
    delete[] many;
    newMemory().failRequest(1);
    EXPECT_EQ(nullptr, new (std::nothrow) XmlString);
    newMemory().failRequest(0);
}

TEST_F(XmlStringTest, PlaceIsNotFreedWhenConstructionFails) {
    alignas(XmlString) unsigned char place[sizeof(XmlString)];
    const Units source = units(u"abc");
    everyAllocationFails([&] { (new (place) XmlString(0, source.data()))->~XmlString(); });
}

TEST_F(XmlStringTest, NewFailsWithBadAlloc) {
    Testing::everyNewFails([] { delete new XmlString; });
    Testing::everyNewFails([] { delete[] new XmlString[3]; });
}

TEST_F(XmlStringTest, ObjectIsFreedWhenItsConstructionFails) {
    const Units source = units(u"abc");
    everyAllocationFails([&] { delete new XmlString(0, source.data()); });
}

// makeString

TEST_F(XmlStringTest, MakeStringCopiesUnits) {
    unsigned short source[] = {'a', 'b', 0};
    const XmlString string = makeString(source);
    EXPECT_EQ(u"ab", unitsOf(string));
    EXPECT_NE(source, string.getPtr());
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
    source[0] = 0;
    EXPECT_EQ(0u, makeString(source).size());
    EXPECT_FALSE(makeString(source).isNull());
}

TEST_F(XmlStringTest, MakeStringWithFlagsPassesThemOn) {
    const unsigned short source[] = {'a', 'b', 0};
    for (unsigned char flags = 0; flags <= 3; ++flags) {
        const XmlString string = makeString(flags, source);
        EXPECT_EQ(unsigned{flags} | Valid, flagsOf(string));
        EXPECT_EQ((flags & Borrowed) != 0, string.getPtr() == source);
    }
}

TEST_F(XmlStringTest, MakeStringOfNullIsNull) {
    XmlString null;
    const std::size_t before = hostMemory().requests();
    EXPECT_EQ(fieldsOf(null), fieldsOf(makeString(static_cast<const unsigned short*>(nullptr))));
    EXPECT_EQ(fieldsOf(null), fieldsOf(makeString(0, static_cast<const unsigned short*>(nullptr))));
    EXPECT_EQ(fieldsOf(null), fieldsOf(makeString(static_cast<const unsigned char*>(nullptr))));
    EXPECT_EQ(fieldsOf(null), fieldsOf(makeString(static_cast<const char*>(nullptr))));
    EXPECT_EQ(fieldsOf(null), fieldsOf(makeString(null)));
    EXPECT_EQ(fieldsOf(null), fieldsOf(makeString(0, null)));
    EXPECT_EQ(before, hostMemory().requests());
}

XmlString fromUtf8(const char* bytes) {
    return makeString(reinterpret_cast<const unsigned char*>(bytes));
}

struct Utf8Case {
    const char* name;
    const char* bytes;
    const char16_t* text;
};

const Utf8Case kUtf8Cases[] = {
    {"Empty", "", u""},
    {"Ascii", "abc", u"abc"},
    {"TwoBytes", "\xC2\x80\xDF\xBF", u"\u0080\u07FF"},
    {"ThreeBytes", "\xE0\xA0\x80\xEF\xBF\xBF", u"\u0800\uFFFF"},
    {"FourBytes", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", u"\U00010000\U0010FFFF"},
    {"LoneContinuation", "a\x80z", u"a\uFFFDz"},
    {"Overlong", "\xC0\xAF", u"\uFFFD\uFFFD"},
    {"Truncated", "a\xE2\x82", u"a\uFFFD"},
    {"Surrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
    {"BeyondUnicode", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {"NeverAByte", "\xFF", u"\uFFFD"},
};

class MakeStringUtf8Test : public XmlStringTest, public ::testing::WithParamInterface<Utf8Case> {};

TEST_P(MakeStringUtf8Test, Decodes) {
    const XmlString string = fromUtf8(GetParam().bytes);
    EXPECT_EQ(GetParam().text, unitsOf(string));
    EXPECT_EQ(unsigned{Valid}, flagsOf(string));
    EXPECT_EQ(1u, string.getRefs());
}

INSTANTIATE_TEST_SUITE_P(Table, MakeStringUtf8Test, ::testing::ValuesIn(kUtf8Cases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlStringTest, MakeStringFreesItsTemporaryBuffer) {
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    const XmlString utf8 = fromUtf8("abc"), native = makeString("abc");
    EXPECT_EQ(before + 2, hostMemory().liveBlocks());
    EXPECT_EQ(u"abc", unitsOf(native));
}

TEST_F(XmlStringTest, MakeStringFailsWithOutOfMemory) {
    unsigned short source[] = {'a', 'b', 0};
    XmlString string = text(u"abc");
    everyAllocationFails([&] { makeString(source); });
    everyAllocationFails([&] { makeString(Immutable, source); });
    everyAllocationFails([&] { fromUtf8("some text"); });
    everyAllocationFails([&] { makeString("some text"); });
    everyAllocationFails([&] { makeString(string); });
    everyAllocationFails([&] { makeString(Immutable, string); });
}

TEST_F(XmlStringTest, MakeStringOfAStringIsACopyNotAShare) {
    XmlString source = text(u"abc");
    const XmlString copy = makeString(source);
    EXPECT_NE(source.getPtr(), copy.getPtr());
    EXPECT_EQ(u"abc", unitsOf(copy));
    EXPECT_EQ(1u, source.getRefs());
}

TEST_F(XmlStringTest, MakeStringOfAStringWithFlags) {
    XmlString source = padded(u"ab", 4);
    const XmlString view = makeString(Borrowed, source);
    EXPECT_EQ((Testing::StringFields{source.getPtr(), 2, 2, Borrowed | Valid}), fieldsOf(view));
    EXPECT_EQ(unsigned{Immutable | Valid}, flagsOf(makeString(Immutable, source)));
}

TEST_F(XmlStringTest, MakeStringTurnsALiteralIntoAStringThatCanBeChanged) {
    const Units literal = units(u"abc");
    XmlString source(Immutable | Borrowed, literal.data());
    XmlString copy = makeString(source);
    EXPECT_NO_THROW(copy += text(u"d"));
    EXPECT_EQ(u"abcd", unitsOf(copy));
}

} // namespace
} // namespace Quillon::Xml
