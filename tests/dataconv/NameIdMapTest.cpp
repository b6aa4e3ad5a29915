#include "dataconv/NameIdMap.h"

#include "support/HostFixture.h"
#include "system/InternalException.h"
#include "system/OutOfRangeException.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace Quillon::DataConv {
namespace {

using Testing::everyNewFails;
using Testing::newMemory;

class NameIdMapTest : public Testing::HostFixture {
    void warmUp() override { NameIdMap::getGlobalNameIdMap(); }
};

std::vector<std::string> numberedNames(unsigned int count) {
    std::vector<std::string> names;
    for (unsigned int i = 1; i <= count; ++i)
        names.push_back("name number " + std::to_string(i));
    return names;
}

TEST_F(NameIdMapTest, NewMapIsEmpty) {
    const NameIdMap map;
    EXPECT_EQ(0u, map.size());
    EXPECT_FALSE(map.contains(0u));
    EXPECT_FALSE(map.contains(1u));
    EXPECT_FALSE(map.contains("a"));
    EXPECT_EQ(0u, map.find("a"));
    EXPECT_THROW(map.find(0u), System::OutOfRangeException);
    EXPECT_THROW(map.find(1u), System::OutOfRangeException);
}

TEST_F(NameIdMapTest, IdsAreDenseInTheOrderOfInsertion) {
    NameIdMap map;
    EXPECT_EQ(1u, map.insert("b"));
    EXPECT_EQ(2u, map.insert("a"));
    EXPECT_EQ(2u, map.size());
    EXPECT_EQ(1u, map.find("b"));
    EXPECT_EQ(2u, map.find("a"));
    EXPECT_STREQ("b", map.find(1u));
    EXPECT_STREQ("a", map.find(2u));
    EXPECT_TRUE(map.contains("a"));
    EXPECT_TRUE(map.contains(2u));
    EXPECT_EQ(0u, map.find("missing"));
    EXPECT_FALSE(map.contains("missing"));
}

TEST_F(NameIdMapTest, LiteralZeroIsAnId) {
    NameIdMap map;
    EXPECT_FALSE(map.contains(0));
    EXPECT_THROW(map.find(0), System::OutOfRangeException);
    map.insert("a");
    EXPECT_TRUE(map.contains(1));
    EXPECT_STREQ("a", map.find(1));
}

TEST_F(NameIdMapTest, IdsNotIssuedAreRefused) {
    NameIdMap map;
    map.insert("a");
    for (const unsigned int id : {0u, map.size() + 1, 3u, 0xFFFFFFFFu}) {
        EXPECT_FALSE(map.contains(id));
        EXPECT_THROW(map.find(id), System::OutOfRangeException) << id;
        EXPECT_THROW(map.find(id), System::InternalException) << id;
    }
}

TEST_F(NameIdMapTest, NamesAreKeptByPointerAndComparedByText) {
    const std::string first = "some name", second = first;
    NameIdMap map;
    map.insert(first.c_str());
    EXPECT_EQ(first.c_str(), map.find(1u));
    EXPECT_EQ(1u, map.find(second.c_str()));
}

TEST_F(NameIdMapTest, SecondInsertionOfANameGetsANewId) {
    const std::string again = "a";
    NameIdMap map;
    EXPECT_EQ(1u, map.insert("a"));
    EXPECT_EQ(2u, map.insert(again.c_str()));
    EXPECT_EQ(2u, map.find("a"));
    EXPECT_STREQ("a", map.find(1u));
    EXPECT_EQ(again.c_str(), map.find(2u));
    EXPECT_EQ(2u, map.find_or_insert("a"));
    EXPECT_EQ(2u, map.size());
}

TEST_F(NameIdMapTest, FindOrInsertInsertsOnce) {
    NameIdMap map;
    EXPECT_EQ(1u, map.find_or_insert("a"));
    EXPECT_EQ(2u, map.find_or_insert("b"));
    EXPECT_EQ(1u, map.find_or_insert("a"));
    EXPECT_EQ(2u, map.size());
}

/// Each pair has one and the same 32-bit hash; see NameHashTest.
TEST_F(NameIdMapTest, NamesWithEqualHashesAreTold) {
    NameIdMap map;
    const char* const names[] = {"costarring", "liquid", "declinate", "macallums", "altarage", "zinke"};
    for (const char* name : names)
        map.insert(name);
    for (unsigned int i = 0; i < 6; ++i)
        EXPECT_EQ(i + 1, map.find(names[i])) << names[i];
}

TEST_F(NameIdMapTest, AnyBytesAreAName) {
    NameIdMap map;
    const char* const names[] = {"",     "\xC3\xA4", "\xC3\xB6", "\xC3\xA4x", "\xC3\xA4y",
                                 "\xFF", "\xFF\xFE", "A",        "a"};
    for (const char* name : names)
        map.insert(name);
    for (unsigned int i = 0; i < 9; ++i)
        EXPECT_EQ(i + 1, map.find(names[i])) << i;
    EXPECT_FALSE(map.contains("\xC3"));
}

/// An insertion asks for a record and a node of the index; one that finds the array full asks for a new array, too.
TEST_F(NameIdMapTest, CapacitiesGrowFrom3Over7And13And21) {
    const std::set<unsigned int> growing = {3, 7, 13, 21, 33, 51};
    const std::vector<std::string> names = numberedNames(60);
    NameIdMap map;
    for (unsigned int id = 1; id <= 60; ++id) {
        const std::size_t before = newMemory().requests();
        ASSERT_EQ(id, map.insert(names[id - 1].c_str()));
        EXPECT_EQ(growing.contains(id) ? 3u : 2u, newMemory().requests() - before) << id;
    }
    for (unsigned int id = 1; id <= 60; ++id) {
        EXPECT_EQ(id, map.find(names[id - 1].c_str()));
        EXPECT_EQ(names[id - 1], map.find(id));
    }
}

TEST_F(NameIdMapTest, LookupsAllocateNothing) {
    NameIdMap map;
    map.insert("a");
    const std::size_t before = newMemory().requests();
    EXPECT_EQ(1u, map.find("a"));
    EXPECT_FALSE(map.contains("b"));
    EXPECT_EQ(1u, map.find_or_insert("a"));
    EXPECT_STREQ("a", map.find(1u));
    EXPECT_EQ(before, newMemory().requests());
}

TEST_F(NameIdMapTest, FailedInsertionLeavesTheMapUnchanged) {
    NameIdMap map;
    map.insert("a");
    map.insert("b");
    everyNewFails([&] { EXPECT_EQ(3u, map.insert("c")); }, // grows
                  [&] {
                      EXPECT_EQ(2u, map.size());
                      EXPECT_FALSE(map.contains("c"));
                      EXPECT_EQ(1u, map.find("a"));
                      EXPECT_STREQ("b", map.find(2u));
                  });
    everyNewFails([&] { EXPECT_EQ(4u, map.insert("a")); }, [&] { EXPECT_EQ(1u, map.find("a")); });
    EXPECT_EQ(4u, map.find("a"));
}

TEST_F(NameIdMapTest, EveryAllocationOfAGrowingMapMayFail) {
    const std::vector<std::string> names = numberedNames(30);
    everyNewFails([&] {
        const boost::shared_ptr<NameIdMap> map = NameIdMap::createStringPool();
        for (const std::string& name : names)
            map->find_or_insert(name.c_str());
    });
}

TEST_F(NameIdMapTest, AnswersAreThoseOfAnOrderedMap) {
    const std::vector<std::string> names = numberedNames(3000);
    std::mt19937 random(1);
    std::map<std::string, unsigned int> model;
    NameIdMap map;
    for (int step = 0; step < 10'000; ++step) {
        const std::string &name = names[random() % names.size()], &other = names[random() % names.size()];
        if (random() % 2 == 0) {
            const unsigned int id = map.insert(name.c_str());
            ASSERT_EQ(static_cast<unsigned int>(map.size()), id);
            model[name] = id;
        }
        for (const std::string& sought : {name, other}) {
            const auto found = model.find(sought);
            ASSERT_EQ(found != model.end() ? found->second : 0, map.find(sought.c_str()));
            ASSERT_EQ(found != model.end(), map.contains(sought.c_str()));
        }
    }
}

TEST_F(NameIdMapTest, FactoryMakesAMapOfItsOwn) {
    const boost::shared_ptr<NameIdMap> first = NameIdMap::createStringPool(),
                                       second = NameIdMap::createStringPool();
    first->insert("a");
    EXPECT_EQ(1u, first->size());
    EXPECT_EQ(0u, second->size());
    EXPECT_EQ(1, first.use_count());
}

TEST_F(NameIdMapTest, ProcessHasOneMap) {
    const boost::shared_ptr<NameIdMap> first = NameIdMap::getGlobalNameIdMap();
    const long owners = first.use_count();
    const boost::shared_ptr<NameIdMap> second = NameIdMap::getGlobalNameIdMap();
    EXPECT_EQ(first.get(), second.get());
    EXPECT_EQ(owners + 1, first.use_count());
    EXPECT_NE(first.get(), NameIdMap::createStringPool().get());
}

} // namespace
} // namespace Quillon::DataConv
