#include "runtime/HashFrontInternal.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Quillon::Runtime {
namespace {

class HashFrontTest : public Testing::HostFixture {};

struct Entry {
    std::uint32_t hash;
    int name;
    int version;
};

using Front = HashFront<Entry>;

struct Slots {
    explicit Slots(std::size_t entryCount)
        : count(Front::slotCountFor(entryCount)), slots(std::make_unique<Entry*[]>(count)),
          front(slots.get(), count) {}

    void put(Entry& entry) {
        front.put(entry, [&entry](const Entry& other) { return other.name == entry.name; });
    }
    Entry* find(std::uint32_t hash, int name) const {
        return front.find(hash, [name](const Entry& other) { return other.name == name; });
    }

    std::size_t count;
    std::unique_ptr<Entry*[]> slots;
    Front front;
};

TEST_F(HashFrontTest, AtLeastHalfOfTheSlotsStayFree) {
    for (const std::size_t count : {1u, 2u, 3u, 4u, 5u, 10'000u}) {
        EXPECT_LE(count * 2, Front::slotCountFor(count));
        EXPECT_GT(count * 4, Front::slotCountFor(count));
    }
}

TEST_F(HashFrontTest, EntriesAreFoundByHashAndName) {
    Slots table(3);
    Entry first{8, 1, 0}, second{8, 2, 0}, third{15, 3, 0};
    for (Entry* entry : {&first, &second, &third})
        table.put(*entry);
    EXPECT_EQ(&first, table.find(8, 1));
    EXPECT_EQ(&second, table.find(8, 2));
    EXPECT_EQ(&third, table.find(15, 3));
    EXPECT_EQ(nullptr, table.find(8, 3));
    EXPECT_EQ(nullptr, table.find(9, 1));
    EXPECT_TRUE(table.front.holdsAll());
}

TEST_F(HashFrontTest, NewEntryTakesThePlaceOfTheSame) {
    Slots table(3);
    Entry other{8, 1, 0}, older{8, 2, 1}, newer{8, 2, 2};
    for (Entry* entry : {&other, &older, &newer})
        table.put(*entry);
    EXPECT_EQ(&newer, table.find(8, 2));
    EXPECT_EQ(&other, table.find(8, 1));
}

TEST_F(HashFrontTest, CollidingEntriesAreLeftOutFromTheSeventeenthOn) {
    Slots table(100);
    std::vector<Entry> entries;
    for (int name = 0; name < 100; ++name)
        entries.push_back({77, name, 0});
    for (int name = 0; name < 100; ++name) {
        table.put(entries[name]);
        EXPECT_EQ(name < 16, table.front.holdsAll()) << name;
    }
    for (int name = 0; name < 100; ++name)
        EXPECT_EQ(name < 16 ? &entries[name] : nullptr, table.find(77, name)) << name;
    Entry newer{77, 50, 1};
    table.put(newer);
    EXPECT_EQ(nullptr, table.find(77, 50));
}

TEST_F(HashFrontTest, TableWithoutAFreeSlotIsSearchedToItsEnd) {
    Slots table(2);
    Entry entries[5] = {{1, 1, 0}, {1, 2, 0}, {2, 3, 0}, {3, 4, 0}, {1, 5, 0}};
    for (Entry& entry : entries)
        table.put(entry);
    EXPECT_EQ(&entries[3], table.find(3, 4));
    EXPECT_EQ(nullptr, table.find(1, 5));
    EXPECT_FALSE(table.front.holdsAll());
}

TEST_F(HashFrontTest, HashIsNeverZeroAndReadsNoFurther) {
    const std::string text(100, 'x');
    for (std::size_t length = 0; length <= text.size(); ++length) {
        const std::unique_ptr<char[]> exact(new char[length]); // its end is watched in sanitizer builds
        text.copy(exact.get(), length);
        EXPECT_NE(0u, frontHashOf(exact.get(), length));
        EXPECT_EQ(frontHashOf(text.data(), length), frontHashOf(exact.get(), length));
    }
}

/// Every byte counts in the bits that choose the slot; the number of slots taken is that of a random choice (632 of
/// 1,000), or nearly.
TEST_F(HashFrontTest, SimilarNamesSpread) {
    for (const std::string before : {"", "a", "element", "namespace-prefix:element-name"})
        for (const std::string behind : {"", "s", "Type", "-with-a-long-end"}) {
            std::set<std::uint32_t> taken;
            for (int i = 0; i < 1024; ++i) {
                const std::string name = before + std::to_string(i) + behind;
                taken.insert(frontHashOf(name.data(), name.size()) & 1023);
            }
            EXPECT_LT(580u, taken.size()) << before << '*' << behind;
        }
}

} // namespace
} // namespace Quillon::Runtime
