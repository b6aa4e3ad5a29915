#include "xml/XmlStringPool.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "system/InternalException.h"
#include "system/OutOfMemoryException.h"
#include "system/OutOfRangeException.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/StringFields.h"
#include "xml/XmlStringPoolContext.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace Quillon::Xml {
namespace {

using Testing::everyAllocationFails;
using Testing::everyNewFails;
using Testing::newMemory;
using Testing::text;
using Testing::units;
using Testing::unitsOf;

class XmlStringPoolTest : public Testing::HostFixture {};

/// "string0", "string1" and so on, none of them in the order of its number for long.
XmlString numbered(unsigned int number) {
    std::u16string name = u"string";
    for (const char digit : std::to_string(number))
        name += static_cast<char16_t>(digit);
    return text(name);
}

TEST_F(XmlStringPoolTest, NewPoolIsEmpty) {
    const XmlStringPool pool;
    EXPECT_EQ(0u, pool.size());
    EXPECT_FALSE(pool.contains(0u));
    EXPECT_FALSE(pool.contains(1u));
    EXPECT_THROW(pool.find(1u), System::OutOfRangeException);
    EXPECT_FALSE(pool.contains(text(u"a")));
    EXPECT_EQ(0u, pool.find(text(u"a")));
}

TEST_F(XmlStringPoolTest, FactoryMakesAPoolOfItsOwn) {
    const boost::shared_ptr<XmlStringPool> first = XmlStringPool::createXmlStringPool();
    const boost::shared_ptr<XmlStringPool> second = XmlStringPool::createXmlStringPool();
    first->insert(text(u"a"));
    EXPECT_EQ(1u, first->size());
    EXPECT_EQ(0u, second->size());
}

TEST_F(XmlStringPoolTest, IdsAreDenseInTheOrderOfInsertion) {
    XmlStringPool pool;
    EXPECT_EQ(1u, pool.insert(text(u"c")));
    EXPECT_EQ(2u, pool.insert(text(u"a")));
    EXPECT_EQ(3u, pool.insert(text(u"b")));
    EXPECT_EQ(3u, pool.size());
    EXPECT_EQ(u"c", unitsOf(pool.find(1u)));
    EXPECT_EQ(u"a", unitsOf(pool.find(2u)));
    EXPECT_EQ(u"b", unitsOf(pool.find(3u)));
    EXPECT_EQ(1u, pool.find(text(u"c")));
    EXPECT_EQ(2u, pool.find(text(u"a")));
    EXPECT_EQ(3u, pool.find(text(u"b")));
}

TEST_F(XmlStringPoolTest, IdsNotGivenOutAreRefused) {
    XmlStringPool pool;
    pool.insert(text(u"a"));
    for (const unsigned int id : {0u, 2u, 3u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(pool.contains(id));
        EXPECT_THROW(pool.find(id), System::OutOfRangeException) << id;
        EXPECT_THROW(pool.find(id), System::InternalException) << id;
    }
    EXPECT_TRUE(pool.contains(1u));
}

TEST_F(XmlStringPoolTest, FindByIdSharesThePooledBlock) {
    XmlStringPool pool;
    const XmlString string = text(u"abc");
    pool.insert(string);
    EXPECT_EQ(string.data(), pool.find(1u).data());
    EXPECT_EQ(3u, string.getRefs()); // this one, the entry's, the index's
}

TEST_F(XmlStringPoolTest, StringsAreTakenWithTheirFlags) {
    static const unsigned short literal[] = {'a', 0};
    XmlStringPool pool;
    pool.insert(XmlString(Immutable | Borrowed, literal));
    EXPECT_EQ(literal, pool.find(1u).data());
    EXPECT_EQ(unsigned{Immutable | Borrowed | Valid}, Testing::flagsOf(pool.find(1u)));
}

TEST_F(XmlStringPoolTest, LookupComparesUnitByUnit) {
    XmlStringPool pool;
    const std::vector<std::u16string> strings = {u"",       u"a", u"aa", u"b", std::u16string(u"a\0", 2),
                                                 u"\uFFFF", u"A"};
    for (const std::u16string& string : strings)
        pool.insert(text(string));
    for (unsigned int i = 0; i < strings.size(); ++i)
        EXPECT_EQ(i + 1, pool.find(text(strings[i])));
    EXPECT_FALSE(pool.contains(text(u"ab")));
    EXPECT_TRUE(pool.contains(text(u"aa")));
}

TEST_F(XmlStringPoolTest, NullStringIsAStringLikeAnyOther) {
    XmlStringPool pool;
    EXPECT_FALSE(pool.contains(XmlString()));
    pool.insert(text(u""));
    EXPECT_EQ(2u, pool.insert(XmlString()));
    EXPECT_EQ(2u, pool.find(XmlString()));
    EXPECT_EQ(1u, pool.find(text(u"")));
    EXPECT_TRUE(pool.find(2u).isNull());
}

TEST_F(XmlStringPoolTest, StringWithoutValidIsPooledAsNull) {
    XmlString invalid = text(u"abc");
    invalid += text(u""); // takes Valid away
    XmlStringPool pool;
    EXPECT_EQ(1u, pool.insert(invalid));
    EXPECT_TRUE(pool.find(1u).isNull());
    EXPECT_EQ(0u, pool.find(text(u"abc")));
    EXPECT_EQ(1u, pool.find(XmlString()));
}

/// What is superseded cannot be reached any more, so that the balance of the fixture does not hold here.
TEST(SupersededXmlStringPoolTest, SecondInsertionOfAStringGetsANewId) {
    static const unsigned short literal[] = {'a', 0};
    const XmlString string(Immutable | Borrowed, literal);
    XmlStringPool pool;
    EXPECT_EQ(1u, pool.insert(string));
    EXPECT_EQ(2u, pool.insert(XmlString(0, literal)));
    EXPECT_EQ(2u, pool.size());
    EXPECT_EQ(2u, pool.find(string));
    EXPECT_EQ(u"a", unitsOf(pool.find(1u)));
    EXPECT_EQ(u"a", unitsOf(pool.find(2u)));
    EXPECT_EQ(literal, pool.find(1u).data());
    EXPECT_NE(literal, pool.find(2u).data());
}

TEST(SupersededXmlStringPoolTest, SupersededEntriesOutliveThePool) {
    XmlString string = text(u"abc");
    const std::ptrdiff_t before = newMemory().liveBlocks();
    {
        XmlStringPool pool;
        for (int i = 0; i < 5; ++i)
            pool.insert(string);
    }
    EXPECT_EQ(before + 4, newMemory().liveBlocks());
    EXPECT_EQ(5u, string.getRefs());
}

/// An insertion asks for an entry and a node of the index; one that finds the array full asks for a new array, too.
TEST_F(XmlStringPoolTest, CapacitiesGrowFrom3Over6And10And16And25And39) {
    const std::set<unsigned int> growing = {3, 6, 10, 16, 25, 39, 60};
    XmlStringPool pool;
    for (unsigned int id = 1; id <= 70; ++id) {
        const XmlString string = numbered(id);
        const std::size_t before = newMemory().requests();
        ASSERT_EQ(id, pool.insert(string));
        EXPECT_EQ(growing.contains(id) ? 3u : 2u, newMemory().requests() - before) << id;
    }
    for (unsigned int id = 1; id <= 70; ++id) {
        EXPECT_EQ(0, numbered(id).compare(pool.find(id)));
        EXPECT_EQ(id, pool.find(numbered(id)));
    }
}

TEST_F(XmlStringPoolTest, LookupsAllocateNothing) {
    XmlStringPool pool;
    const XmlString string = text(u"abc");
    pool.insert(string);
    const std::size_t objects = newMemory().requests(), blocks = Testing::hostMemory().requests();
    EXPECT_EQ(1u, pool.find(string));
    EXPECT_TRUE(pool.contains(string));
    EXPECT_EQ(3u, pool.find(1u).size());
    EXPECT_EQ(objects, newMemory().requests());
    EXPECT_EQ(blocks, Testing::hostMemory().requests());
}

TEST_F(XmlStringPoolTest, FailedInsertionLeavesThePoolUnchanged) {
    XmlStringPool pool;
    const XmlString first = text(u"a"), second = text(u"b"), third = text(u"c");
    pool.insert(first);
    pool.insert(second);
    everyNewFails([&] { EXPECT_EQ(3u, pool.insert(third)); }, // grows
                  [&] {
                      EXPECT_EQ(2u, pool.size());
                      EXPECT_FALSE(pool.contains(third));
                      EXPECT_EQ(1u, pool.find(first));
                      EXPECT_EQ(2u, pool.find(second));
                  });
    EXPECT_EQ(3u, pool.find(third));
    EXPECT_EQ(4u, pool.insert(text(u"d")));
}

TEST_F(XmlStringPoolTest, EveryAllocationOfAGrowingPoolMayFail) {
    std::vector<XmlString> strings;
    for (unsigned int i = 0; i < 30; ++i)
        strings.push_back(numbered(i));
    everyNewFails([&] {
        const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
        for (const XmlString& string : strings)
            pool->insert(string);
    });
}

/// Nothing but the ordered index.
class IndexedPool {
public:
    void insert(const XmlString& s) { index_.insert_or_assign(s, ++size_); }
    unsigned int find(const XmlString& s) const {
        const auto found = index_.find(s);
        return found != index_.end() ? found->second : 0;
    }

private:
    struct Below {
        bool operator()(const XmlString& left, const XmlString& right) const noexcept {
            return left.compare(right) < 0;
        }
    };
    std::map<XmlString, unsigned int, Below> index_;
    unsigned int size_ = 0;
};

/// Strings of every kind out of few units, so that many are equal, lie on the same units, or change.
class StringMaker {
public:
    explicit StringMaker(unsigned int seed) : random_(seed) {}

    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(random_() % limit); }
    XmlString owned() {
        std::u16string value;
        for (unsigned int length = below(5); length != 0; --length)
            value += static_cast<char16_t>("ab"[below(2)]);
        if (below(16) == 0)
            value.insert(below(static_cast<unsigned int>(value.size()) + 1), 1, u'\0');
        return text(value);
    }
    /// A view on `other`'s units, from their start; where they are followed by a zero unit, perhaps that one included.
    XmlString viewOn(const XmlString& other) {
        const bool isOwned = (Testing::flagsOf(other) & (Borrowed | Null)) == 0;
        return XmlString(static_cast<unsigned char>(Borrowed | below(2)), other.getPtr(),
                         below(other.size() + (isOwned ? 2 : 1)));
    }
    XmlString viewOnBuffer() {
        return XmlString(static_cast<unsigned char>(Borrowed | below(2)), buffers_[below(4)], below(7));
    }
    void changeBuffer() { buffers_[below(4)][below(8)] = "ab"[below(2)]; }

private:
    std::mt19937 random_;
    unsigned short buffers_[4][8] = {{'a', 'b'}, {'b', 'a', 'a'}, {'a', 'a', 'b', 'b'}, {'b'}};
};

/// Owned strings, and views of what is looked up; then also views that are inserted; then also views that change.
enum class Strings { Owned, Views, ChangingViews };

void expectTheAnswersOfTheIndex(unsigned int seed, Strings strings) {
    StringMaker make(seed);
    XmlStringPool pool;
    IndexedPool model;
    std::vector<XmlString> inserted(1);
    const auto anyOf = [&] { return inserted[make.below(static_cast<unsigned int>(inserted.size()))]; };
    for (int step = 0; step < 200; ++step) {
        XmlString next = make.owned();
        if (make.below(32) == 0)
            next = XmlString();
        if (strings != Strings::Owned && make.below(8) == 0)
            next = XmlString(make.below(2) == 0 ? make.viewOnBuffer() : make.viewOn(anyOf()));
        if (strings == Strings::ChangingViews && make.below(4) == 0)
            make.changeBuffer();
        pool.insert(next);
        model.insert(next);
        inserted.push_back(next);
        for (const XmlString& sought :
             {next, make.owned(), anyOf(), make.viewOn(anyOf()), make.viewOnBuffer(), XmlString()}) {
            ASSERT_EQ(model.find(sought), pool.find(sought)) << "seed " << seed << ", step " << step;
            ASSERT_EQ(model.find(sought) != 0, pool.contains(sought));
        }
    }
}

TEST(SupersededXmlStringPoolTest, AnswersAreThoseOfTheIndex) {
    for (unsigned int seed = 1; seed <= 200; ++seed)
        for (const Strings strings : {Strings::Owned, Strings::Views, Strings::ChangingViews})
            expectTheAnswersOfTheIndex(seed, strings);
}

/// The index meets the string on the same units first.
TEST_F(XmlStringPoolTest, StringOnTheSameUnitsMayBeFoundForALongerOne) {
    const XmlString shorter = text(u"a"), longer = text(std::u16string(u"a\0", 2));
    XmlStringPool pool;
    pool.insert(shorter);
    pool.insert(longer);
    EXPECT_EQ(1u, pool.find(XmlString(Borrowed, shorter.data(), 2)));
    EXPECT_EQ(2u, pool.find(longer));
}

TEST_F(XmlStringPoolTest, ManyStringsAreFound) {
    XmlStringPool pool;
    for (unsigned int i = 1; i <= 20'000; ++i)
        ASSERT_EQ(i, pool.insert(numbered(i)));
    for (unsigned int i = 1; i <= 20'000; ++i) {
        ASSERT_EQ(i, pool.find(numbered(i)));
        ASSERT_EQ(0u, pool.find(numbered(20'000 + i)));
    }
}

TEST_F(XmlStringPoolTest, ChangedBorrowedStringIsLookedUpAsItIsNow) {
    unsigned short buffer[] = {'a', 0};
    XmlStringPool pool;
    pool.insert(XmlString(Borrowed, buffer, 1));
    buffer[0] = 'b';
    EXPECT_EQ(1u, pool.find(text(u"b")));
    EXPECT_EQ(0u, pool.find(text(u"a")));
}

// Layout

static_assert(sizeof(XmlStringPool) == sizeof(void*) && !std::is_polymorphic_v<XmlStringPool>);
static_assert(!std::is_copy_constructible_v<XmlStringPool> && !std::is_copy_assignable_v<XmlStringPool>);
static_assert(sizeof(XmlStringPoolContext) == 3 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<XmlStringPoolContext>);

/// A pool points at the array of entries, the index, the capacity and the next id, in this order.
TEST_F(XmlStringPoolTest, PoolPointsAtItsFields) {
    XmlStringPool pool;
    pool.insert(text(u"a"));
    pool.insert(text(u"b"));
    pool.insert(text(u"c"));
    const char* fields = nullptr;
    std::memcpy(&fields, &pool, sizeof fields);
    std::uint32_t numbers[2] = {};
    std::memcpy(numbers, fields + sizeof(void*) + sizeof(std::map<XmlString, void*>), sizeof numbers);
    EXPECT_EQ(6u, numbers[0]);
    EXPECT_EQ(4u, numbers[1]);
    const char* const* entries = nullptr;
    std::memcpy(&entries, fields, sizeof entries);
    EXPECT_EQ(nullptr, entries[0]);
    EXPECT_EQ(pool.find(2u).compare(*reinterpret_cast<const XmlString*>(entries[2])), 0);
    std::uint32_t id = 0;
    std::memcpy(&id, entries[2] + sizeof(XmlString), sizeof id);
    EXPECT_EQ(2u, id);
    EXPECT_EQ(nullptr, entries[5]);
}

TEST_F(XmlStringPoolTest, ContextHoldsThePoolBehindItsTable) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    const XmlStringPoolContext context(pool);
    const XmlStringPool* held = nullptr;
    std::memcpy(&held, reinterpret_cast<const char*>(&context) + sizeof(void*), sizeof held);
    EXPECT_EQ(pool.get(), held);
}

// makePooledString

TEST_F(XmlStringPoolTest, PooledStringsOfOneTextShareOneBlock) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    const std::vector<unsigned short> name = units(u"name");
    const XmlString first = makePooledString(pool, name.data());
    const XmlString second = makePooledString(pool, name.data());
    EXPECT_EQ(u"name", unitsOf(first));
    EXPECT_EQ(first.data(), second.data());
    EXPECT_NE(name.data(), first.data());
    EXPECT_EQ(1u, pool->size());
    EXPECT_EQ(first.data(), pool->find(1u).data());
}

TEST_F(XmlStringPoolTest, PooledStringsAreOwnedAndImmutable) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    XmlString pooled = makePooledString(pool, units(u"name").data());
    EXPECT_EQ(unsigned{Immutable | Valid}, Testing::flagsOf(pooled));
    EXPECT_THROW(pooled += text(u"x"), ImmutableObjectWriteError);
    EXPECT_THROW(pooled = text(u"x"), ImmutableObjectWriteError);
    EXPECT_EQ(u"name", unitsOf(pooled));
}

TEST_F(XmlStringPoolTest, PooledStringsOutliveThePool) {
    boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    const XmlString pooled = makePooledString(pool, units(u"name").data());
    pool.reset();
    EXPECT_EQ(u"name", unitsOf(pooled));
    EXPECT_EQ(1u, pooled.getRefs());
}

TEST_F(XmlStringPoolTest, TextIsPooledFromUtf16Utf8AndTheLocalCodePage) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    const XmlString utf16 = makePooledString(pool, units(u"n\u00E4me").data());
    const XmlString utf8 = makePooledString(pool, reinterpret_cast<const unsigned char*>("n\xC3\xA4me"));
    EXPECT_EQ(utf16.data(), utf8.data());
    const XmlString native = makePooledString(pool, "name");
    EXPECT_EQ(u"name", unitsOf(native));
    EXPECT_EQ(2u, pool->size());
    EXPECT_EQ(native.data(), makePooledString(pool, units(u"name").data()).data());
}

TEST_F(XmlStringPoolTest, StringThatIsThereAlreadyIsReturnedAsItIs) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    const XmlString own = text(u"name");
    pool->insert(own);
    const XmlString pooled = makePooledString(pool, "name");
    EXPECT_EQ(own.data(), pooled.data());
    EXPECT_EQ(unsigned{Valid}, Testing::flagsOf(pooled));
    EXPECT_EQ(1u, pool->size());
}

TEST_F(XmlStringPoolTest, NullTextIsPooledAsANullString) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    EXPECT_TRUE(makePooledString(pool, static_cast<const unsigned short*>(nullptr)).isNull());
    EXPECT_TRUE(makePooledString(pool, static_cast<const char*>(nullptr)).isNull());
    EXPECT_TRUE(makePooledString(pool, static_cast<const unsigned char*>(nullptr)).isNull());
    EXPECT_EQ(1u, pool->size());
    EXPECT_EQ(unsigned{Immutable | Valid | Null}, Testing::flagsOf(pool->find(1u)));
}

TEST_F(XmlStringPoolTest, EveryAllocationOfPoolingATextMayFail) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    pool->insert(text(u"a"));
    pool->insert(text(u"b"));
    const auto isUnchanged = [&] { EXPECT_EQ(2u, pool->size()); };
    everyAllocationFails(
        [&] {
            const XmlString pooled = makePooledString(pool, reinterpret_cast<const unsigned char*>("utf8"));
            EXPECT_EQ(3u, pool->find(pooled));
        },
        isUnchanged);
    const auto holdsThree = [&] { EXPECT_EQ(3u, pool->size()); };
    everyAllocationFails([&] { makePooledString(pool, units(u"utf16").data()); }, holdsThree);
    const auto holdsFour = [&] { EXPECT_EQ(4u, pool->size()); };
    everyAllocationFails([&] { makePooledString(pool, "native"); }, holdsFour);
    const auto holdsFive = [&] { EXPECT_EQ(5u, pool->size()); };
    everyNewFails([&] { makePooledString(pool, "sixth, which makes the pool grow"); }, holdsFive);
    EXPECT_EQ(6u, pool->size());
}

// XmlStringPoolContext

TEST_F(XmlStringPoolTest, ContextHandsOutItsPool) {
    const boost::shared_ptr<XmlStringPool> pool = XmlStringPool::createXmlStringPool();
    {
        const XmlStringPoolContext context(pool);
        EXPECT_EQ(2, pool.use_count());
        EXPECT_EQ(pool, context.getXmlStringPoolRef());
    }
    EXPECT_EQ(1, pool.use_count());
    EXPECT_EQ(nullptr, XmlStringPoolContext(boost::shared_ptr<XmlStringPool>()).getXmlStringPoolRef());
}

} // namespace
} // namespace Quillon::Xml
