// The system plug-in loader is asked for while it is being made, or only when the process ends. The first takes an
// application whose operator new asks for plug-ins, hence a program of its own; both one that has no loader yet.
#include "system/QVPI_PluginLoader.h"

#include "system/AskingOperatorNew.h"
#include "system/IllegalStateException.h"
#include "system/PluginNotFoundException.h"
#include "system/SharedLibraryLoader.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace Quillon::System {
namespace {

using Testing::askingOperatorNew;

/// A loader whose parent is the system loader.
class ChildLoader : public QVPI_PluginLoader {
    boost::shared_ptr<QVPI_Plugin_> findPlugin(const char*) const override {
        return boost::shared_ptr<QVPI_Plugin_>();
    }
};

class PluginLoaderRecursionDeathTest : public ::testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    /// In each round, in a process of its own, the next request for memory asks. Returns how many there are.
    template <class MakeLoader>
    int refusedRequests(MakeLoader makeLoader) {
        int rounds = 0;
        bool more = true;
        while (more && !HasFailure()) {
            EXPECT_EXIT(
                {
                    askingOperatorNew().asksIn = rounds + 1;
                    makeLoader();
                    const bool asked = askingOperatorNew().asksIn == 0;
                    askingOperatorNew().asksIn = 0;
                    const auto loader = QVPI_PluginLoader::getSystemPluginLoader();
                    const bool isRight = loader && loader == QVPI_PluginLoader::getSystemPluginLoader();
                    std::_Exit(!isRight || askingOperatorNew().refusals != asked ? 1 : asked ? 2 : 0);
                },
                [&](int exit) {
                    more = WEXITSTATUS(exit) == 2;
                    return WIFEXITED(exit) && WEXITSTATUS(exit) != 1;
                },
                "");
            ++rounds;
        }
        return rounds - 1;
    }
};

TEST_F(PluginLoaderRecursionDeathTest, RecursiveInvocationIsIllegalState) {
    const int requests = refusedRequests([] { QVPI_PluginLoader::getSystemPluginLoader(); });
    EXPECT_GE(requests, 2) << "the shared-library loader and the system loader";
}

TEST_F(PluginLoaderRecursionDeathTest, DefaultParentIsMadeUnderTheSameGuard) {
    const int requests = refusedRequests([] { ChildLoader(); });
    EXPECT_GE(requests, 2);
}

TEST_F(PluginLoaderRecursionDeathTest, RecursionThatIsNotCaughtLeavesNoHalfMadeLoader) {
    EXPECT_EXIT(
        {
            askingOperatorNew().asksIn = 1;
            askingOperatorNew().letsPass = true;
            bool passed = false;
            try {
                QVPI_PluginLoader::initSystemPluginLoader();
            } catch (const IllegalStateException&) {
                passed = true;
            }
            std::_Exit(passed && QVPI_PluginLoader::getSystemPluginLoader()
                               && askingOperatorNew().refusals == 1
                           ? 0
                           : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(PluginLoaderRecursionDeathTest, LoaderMadeBehindTheExitHandlerFindsNothing) {
    EXPECT_EXIT(
        {
            std::atexit([] { // runs after what is registered below
                try {
                    QVPI_PluginLoader::getSystemPluginLoader()->loadPlugin("zutarnex_test_plain", nullptr,
                                                                           false);
                } catch (const PluginNotFoundException&) {
                    std::_Exit(7);
                }
            });
            SharedLibraryLoader::createSharedLibraryLoader();
            std::exit(1);
        },
        ::testing::ExitedWithCode(7), "");
}

} // namespace
} // namespace Quillon::System
