// What only the first call in a process does: each check runs in a child process, in which nothing was used before.
// Nothing of this program's own process may touch the conversions.
#include "dataconv/C99Conversions.h"

#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/CvsnRootNamespace.h"
#include "dataconv/NameIdMap.h"
#include "support/Allocations.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstring>
#include <new>
#include <set>
#include <thread>
#include <typeinfo>
#include <vector>

namespace Quillon::DataConv {
namespace {

using Testing::newMemory;

/// Runs `check` in a child process; what it returns, or nothing when the child has died.
template <class Result, class Check>
Result inNewProcess(Check check) {
    void* shared = mmap(nullptr, sizeof(Result), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    EXPECT_NE(MAP_FAILED, shared);
    const pid_t child = fork();
    if (child == 0) {
        const Result result = check();
        std::memcpy(shared, &result, sizeof result);
        _exit(0);
    }
    int status = -1;
    EXPECT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
    Result result{};
    std::memcpy(&result, shared, sizeof result);
    munmap(shared, sizeof(Result));
    return result;
}

/// The state of the process's conversions: what lives, and how many names and pairs are known.
struct State {
    std::ptrdiff_t objects, hostBlocks;
    unsigned int names, pairs;

    bool operator==(const State& other) const {
        return objects == other.objects && hostBlocks == other.hostBlocks && names == other.names
               && pairs == other.pairs;
    }
};

State stateSince(std::ptrdiff_t objects, std::ptrdiff_t hostBlocks) {
    const boost::shared_ptr<CvsnRegistryNode> node = C99Conversions::instance();
    State state{newMemory().liveBlocks() - objects, Testing::hostMemory().liveBlocks() - hostBlocks,
                NameIdMap::getGlobalNameIdMap()->size(), 0};
    for (unsigned int from = 0; from <= state.names; ++from)
        for (unsigned int to = 0; to <= state.names; ++to)
            state.pairs += node->_lookup(static_cast<int>(from), static_cast<int>(to)) != nullptr;
    return state;
}

/// 14 types have names of their own; together with the C string and 19 readable names that makes 34.
TEST(FirstUseTest, AllNamesAndPairsAreRegistered) {
    const State state = inNewProcess<State>(
        [] { return stateSince(newMemory().liveBlocks(), Testing::hostMemory().liveBlocks()); });
    EXPECT_EQ(14u + 1 + 19, state.names);
    EXPECT_EQ(2u * (14 + 19), state.pairs);
    EXPECT_EQ(0, state.hostBlocks);
}

struct Failure {
    bool happened, threw;
    State state;
};

/// The k-th request of the first call fails, for every k: the call throws std::bad_alloc, and after another one
/// everything is as if nothing had failed.
TEST(FirstUseTest, EveryAllocationOfTheRegistrationMayFail) {
    const State expected = inNewProcess<State>(
        [] { return stateSince(newMemory().liveBlocks(), Testing::hostMemory().liveBlocks()); });
    std::size_t failures = 0;
    for (std::size_t k = 1;; ++k) {
        const Failure failure = inNewProcess<Failure>([k] {
            const std::ptrdiff_t objects = newMemory().liveBlocks(),
                                 hostBlocks = Testing::hostMemory().liveBlocks();
            Failure result{};
            newMemory().failRequest(k);
            try {
                C99Conversions::instance();
            } catch (const std::bad_alloc&) {
                result.threw = true;
            }
            result.happened = !newMemory().failureIsPending();
            newMemory().failRequest(0);
            result.state = stateSince(objects, hostBlocks);
            return result;
        });
        ASSERT_EQ(failure.happened, failure.threw) << "request " << k;
        ASSERT_EQ(expected, failure.state) << "request " << k;
        if (!failure.happened)
            break;
        ++failures;
    }
    EXPECT_GT(failures, 3u * 66) << "each pair has a functor and a node, each name an entry";
}

struct Ids {
    unsigned int firstType, text, firstName, secondType, last;
};

TEST(FirstUseTest, NamesGetTheirIdsInTheOrderOfTheRegistration) {
    const Ids ids = inNewProcess<Ids>([] {
        C99Conversions::instance();
        const boost::shared_ptr<NameIdMap> names = NameIdMap::getGlobalNameIdMap();
        return Ids{names->find(typeid(unsigned char).name()), names->find(typeid(char*).name()),
                   names->find("uint8_t"), names->find(typeid(unsigned short).name()), names->find("bool")};
    });
    EXPECT_EQ(1u, ids.firstType);
    EXPECT_EQ(2u, ids.text);
    EXPECT_EQ(3u, ids.firstName);
    EXPECT_EQ(4u, ids.secondType);
    EXPECT_EQ(34u, ids.last);
}

TEST(FirstUseTest, RootAndMapAreMadeOnceByManyThreads) {
    const bool isOne = inNewProcess<bool>([] {
        constexpr int threadCount = 8;
        const void* roots[threadCount] = {};
        const void* maps[threadCount] = {};
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i)
            threads.emplace_back([&, i] {
                roots[i] = CvsnRootNamespace::instance().get();
                maps[i] = NameIdMap::getGlobalNameIdMap().get();
            });
        for (std::thread& thread : threads)
            thread.join();
        return std::set<const void*>(roots, roots + threadCount).size() == 1
               && std::set<const void*>(maps, maps + threadCount).size() == 1;
    });
    EXPECT_TRUE(isOne);
}

/// A race would be lost once in a hundred processes or so.
TEST(FirstUseTest, ManyThreadsMayComeFirstTogether) {
    for (int round = 0; round != 100; ++round) {
        const State state = inNewProcess<State>([] {
            std::vector<std::thread> threads;
            std::atomic<bool> go = false;
            for (int i = 0; i < 4; ++i)
                threads.emplace_back([&go] {
                    while (!go) {
                    }
                    C99Conversions::instance();
                });
            go = true;
            for (std::thread& thread : threads)
                thread.join();
            return stateSince(0, 0);
        });
        ASSERT_EQ(14u + 1 + 19, state.names);
        ASSERT_EQ(2u * (14 + 19), state.pairs);
    }
}

} // namespace
} // namespace Quillon::DataConv
