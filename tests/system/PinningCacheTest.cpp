#include "system/PinningCacheInternal.h"

#include "support/HostFixture.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <string>

namespace Quillon::System {
namespace {

/// Longer than what a std::string holds without memory.
const char* const kName = "a name that needs memory of its own";

class IntCache : public PinningCache<int> {
public:
    using PinningCache<int>::find;
    using PinningCache<int>::insert;
    using PinningCache<int>::pin;
};

class PinningCacheTest : public Testing::HostFixture {};

TEST_F(PinningCacheTest, UnknownNameGivesNothing) {
    EXPECT_FALSE(IntCache().find(kName));
}

TEST_F(PinningCacheTest, KnownObjectIsFoundAsLongAsItLives) {
    IntCache cache;
    boost::shared_ptr<int> object = boost::make_shared<int>(1);
    cache.insert(kName, object, false);
    EXPECT_EQ(object, cache.find(kName));
    object.reset();
    EXPECT_FALSE(cache.find(kName));
}

TEST_F(PinningCacheTest, PinnedObjectLivesAsLongAsTheCache) {
    boost::weak_ptr<int> watch;
    {
        IntCache cache;
        boost::shared_ptr<int> object = boost::make_shared<int>(1);
        watch = object;
        cache.insert(kName, object, true);
        object.reset();
        EXPECT_EQ(1, *cache.find(kName));
    }
    EXPECT_TRUE(watch.expired());
}

/// Goes with the control block that holds the deleter, when the last pointer of any kind has let go.
struct Note {
    std::string& notes;
    char name;
    ~Note() { notes += name; }
};

struct NotingDeleter {
    boost::shared_ptr<Note> note;
    void operator()(int*) const { note->notes += 'd'; }
};

boost::shared_ptr<int> noted(std::string& notes, char name) {
    static int object = 0;
    return boost::shared_ptr<int>(&object, NotingDeleter{boost::shared_ptr<Note>(new Note{notes, name})});
}

TEST_F(PinningCacheTest, WhatIsKnownIsForgottenBeforeThePinsAreReleased) {
    std::string notes;
    {
        IntCache cache;
        cache.insert("a", noted(notes, 'a'), true);
        cache.insert("b", noted(notes, 'b'), true);
    }
    // The weak pointers had gone, so each release was the last one; which is the first is the map's affair.
    EXPECT_TRUE(notes == "dadb" || notes == "dbda") << notes;
}

TEST_F(PinningCacheTest, KnownObjectMayBePinnedLater) {
    IntCache cache;
    boost::shared_ptr<int> object = boost::make_shared<int>(1);
    cache.insert(kName, object, false);
    cache.pin(kName, object);
    object.reset();
    EXPECT_TRUE(cache.find(kName));
}

TEST_F(PinningCacheTest, InsertionOverwritesWhatWasKnown) {
    IntCache cache;
    cache.insert(kName, boost::make_shared<int>(1), false);
    const boost::shared_ptr<int> second = boost::make_shared<int>(2);
    cache.insert(kName, second, true);
    EXPECT_EQ(second, cache.find(kName));
}

TEST_F(PinningCacheTest, NamesAreComparedBytewise) {
    IntCache cache;
    const boost::shared_ptr<int> object = boost::make_shared<int>(1);
    cache.insert("libx.so", object, false);
    EXPECT_FALSE(cache.find("./libx.so"));
    EXPECT_FALSE(cache.find("LIBX.SO"));
    EXPECT_FALSE(cache.find("libx.so "));
    EXPECT_FALSE(cache.find(std::string("libx.so\0", 8)));
}

TEST_F(PinningCacheTest, InsertionWithoutMemoryChangesNeitherMap) {
    IntCache cache;
    const boost::shared_ptr<int> object = boost::make_shared<int>(1);
    Testing::everyNewFails([&] { cache.insert(kName, object, true); },
                           [&] {
                               EXPECT_FALSE(cache.find(kName));
                               EXPECT_EQ(1, object.use_count());
                           });
    EXPECT_EQ(2, object.use_count());
}

TEST_F(PinningCacheTest, OverwritingWithoutMemoryKeepsWhatWasKnown) {
    IntCache cache;
    const boost::shared_ptr<int> first = boost::make_shared<int>(1);
    const boost::shared_ptr<int> second = boost::make_shared<int>(2);
    cache.insert(kName, first, false);
    Testing::everyNewFails([&] { cache.insert(kName, second, true); },
                           [&] { EXPECT_EQ(first, cache.find(kName)); });
    EXPECT_EQ(second, cache.find(kName));
}

} // namespace
} // namespace Quillon::System
