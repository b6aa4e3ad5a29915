#include "system/SharedLibraryLoader.h"

#include "plugins/TestModule.h"
#include "support/HostFixture.h"
#include "system/ChildProcess.h"
#include "system/DlCalls.h"
#include "system/HostOverride.h"
#include "system/InternalException.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"

#include <boost/weak_ptr.hpp>

#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <new>
#include <set>
#include <thread>
#include <vector>

namespace Quillon::System {
namespace {

using Testing::afterStatics;
using Testing::dlCalls;
using Testing::isModuleOpen;
using Testing::kUnexpected;
using Testing::undestroyed;

const std::string kPlain = Testing::moduleFileName("zutarnex_test_plain");
const std::string kOther = Testing::moduleFileName("zutarnex_test_other");

boost::shared_ptr<SharedLibrary> load(const std::string& path, bool keepLoaded = false) {
    return SharedLibraryLoader::createSharedLibraryLoader()->loadSharedLibrary(path.c_str(), keepLoaded);
}

/// The path under which the module was opened by its name.
std::string pathOf(const std::string& module) {
    const boost::shared_ptr<SharedLibrary> library = load(Testing::moduleFileName(module));
    Dl_info info;
    EXPECT_NE(0, dladdr(library->getSymbol("pluginState"), &info));
    char resolved[PATH_MAX];
    return realpath(info.dli_fname, resolved);
}

class SharedLibraryLoaderTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        load(kPlain);
        load(kOther);
        load(pathOf("zutarnex_test_plain"));
        load(Testing::moduleFileName("zutarnex_test_no_entry"));
        load(Testing::moduleFileName("zutarnex_test_provider"));
        EXPECT_FALSE(isModuleOpen("zutarnex_test_plain"));
    }
};

TEST_F(SharedLibraryLoaderTest, ProcessHasOneLoader) {
    const boost::shared_ptr<SharedLibraryLoader> loader = SharedLibraryLoader::createSharedLibraryLoader();
    ASSERT_TRUE(loader);
    EXPECT_EQ(loader, SharedLibraryLoader::createSharedLibraryLoader());
}

TEST_F(SharedLibraryLoaderTest, OpensAtOnceAndForAll) {
    const boost::shared_ptr<SharedLibrary> library = load(kPlain);
    EXPECT_EQ(RTLD_NOW | RTLD_GLOBAL, dlCalls().lastFlags);
    EXPECT_EQ(0x102, dlCalls().lastFlags);
}

TEST_F(SharedLibraryLoaderTest, KeepLoadedDoesNotChangeTheFlags) {
    // In a process of its own, because what is kept stays.
    EXPECT_EXIT(
        {
            load(kPlain, true);
            std::_Exit(dlCalls().lastFlags == 0x102 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(SharedLibraryLoaderTest, HeldLibraryIsSharedAndOpenedOnce) {
    const int opens = dlCalls().opens;
    const boost::shared_ptr<SharedLibrary> first = load(kPlain);
    const boost::shared_ptr<SharedLibrary> second = load(kPlain);
    EXPECT_EQ(first, second);
    EXPECT_EQ(opens + 1, dlCalls().opens);
}

TEST_F(SharedLibraryLoaderTest, LastReleaseClosesOnce) {
    boost::shared_ptr<SharedLibrary> first = load(kPlain);
    boost::shared_ptr<SharedLibrary> second = load(kPlain);
    const int closes = dlCalls().closes;
    first.reset();
    EXPECT_EQ(closes, dlCalls().closes);
    second.reset();
    EXPECT_EQ(closes + 1, dlCalls().closes);
    EXPECT_FALSE(isModuleOpen("zutarnex_test_plain"));
}

TEST_F(SharedLibraryLoaderTest, ReleasedLibraryIsOpenedAgain) {
    // A weak pointer keeps the old object's memory, so that equal addresses mean the same object.
    const boost::weak_ptr<SharedLibrary> old(load(kPlain));
    ASSERT_TRUE(old.expired());
    const int opens = dlCalls().opens;
    const boost::shared_ptr<SharedLibrary> again = load(kPlain);
    ASSERT_TRUE(again);
    EXPECT_EQ(opens + 1, dlCalls().opens);
    EXPECT_TRUE(isModuleOpen("zutarnex_test_plain"));
    EXPECT_TRUE(old.expired());
    EXPECT_EQ(again, load(kPlain)); // the entry was overwritten
    EXPECT_EQ(opens + 1 + 1, dlCalls().opens) << "of which isModuleOpen made one";
}

TEST_F(SharedLibraryLoaderTest, SpellingsOfAPathAreEntriesOfTheirOwn) {
    const std::string path = pathOf("zutarnex_test_plain");
    const boost::shared_ptr<SharedLibrary> byName = load(kPlain);
    const boost::shared_ptr<SharedLibrary> byPath = load(path);
    EXPECT_NE(byName, byPath);
    EXPECT_EQ(byName->getSymbol("pluginState"), byPath->getSymbol("pluginState"));
}

TEST_F(SharedLibraryLoaderTest, PathIsCopied) {
    std::string path = kPlain;
    const boost::shared_ptr<SharedLibrary> library = load(path);
    path[3] = 'X';
    EXPECT_EQ(library, load(kPlain));
}

TEST_F(SharedLibraryLoaderTest, SymbolsServeModulesThatAreOpenedLater) {
    const std::string needy = Testing::moduleFileName("zutarnex_test_needy");
    EXPECT_THROW(load(needy), SharedLibraryNotFoundException); // unresolved symbol
    EXPECT_EXIT(
        {
            const auto provider = load(Testing::moduleFileName("zutarnex_test_provider"));
            const auto library = load(needy);
            std::_Exit(reinterpret_cast<int (*)()>(library->getSymbol("askTheOtherModule"))());
        },
        ::testing::ExitedWithCode(42), "");
}

TEST_F(SharedLibraryLoaderTest, MissingFileIsTriedAgain) {
    const int opens = dlCalls().opens;
    EXPECT_THROW(load("libzutarnex_test_not_there.so"), SharedLibraryNotFoundException);
    EXPECT_THROW(load("libzutarnex_test_not_there.so"), SharedLibraryNotFoundException);
    EXPECT_EQ(opens + 2, dlCalls().opens);
}

TEST_F(SharedLibraryLoaderTest, MissingFileIsAnInternalException) {
    EXPECT_THROW(load("libzutarnex_test_not_there.so"), InternalException);
}

TEST_F(SharedLibraryLoaderTest, WrongFormatIsNotFound) {
    EXPECT_THROW(load(Testing::moduleFileName("zutarnex_test_no_module")), SharedLibraryNotFoundException);
}

TEST_F(SharedLibraryLoaderTest, FailureLeavesOtherEntriesAlone) {
    const boost::shared_ptr<SharedLibrary> held = load(kPlain);
    EXPECT_THROW(load("libzutarnex_test_not_there.so"), SharedLibraryNotFoundException);
    EXPECT_EQ(held, load(kPlain));
}

TEST_F(SharedLibraryLoaderTest, NullPathIsNotFound) {
    const int opens = dlCalls().opens;
    const auto loader = SharedLibraryLoader::createSharedLibraryLoader();
    EXPECT_THROW(loader->loadSharedLibrary(nullptr, false), SharedLibraryNotFoundException);
    EXPECT_EQ(opens, dlCalls().opens);
}

TEST_F(SharedLibraryLoaderTest, EmptyPathIsWhatTheSystemMakesOfIt) {
    // To dlopen it is the program itself, as null would be; the loader adds nothing of its own.
    const int opens = dlCalls().opens;
    EXPECT_EXIT(
        {
            load("");
            std::_Exit(dlCalls().opens == opens + 1 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(SharedLibraryLoaderTest, SymbolIsItsAddress) {
    const boost::shared_ptr<SharedLibrary> library = load(kPlain);
    Testing::TestModule module("zutarnex_test_plain");
    EXPECT_EQ(&module.state(), reinterpret_cast<PluginStateFunction>(library->getSymbol("pluginState"))());
}

TEST_F(SharedLibraryLoaderTest, MissingSymbolLeavesTheLibraryOpen) {
    const boost::shared_ptr<SharedLibrary> library = load(kPlain);
    const int closes = dlCalls().closes;
    EXPECT_THROW(library->getSymbol("notThere"), SymbolNotFoundException);
    EXPECT_THROW(library->getSymbol("notThere"), InternalException);
    EXPECT_EQ(closes, dlCalls().closes);
    EXPECT_NE(nullptr, library->getSymbol("pluginState"));
}

TEST_F(SharedLibraryLoaderTest, SymbolOfNullValueCountsAsMissing) {
    const boost::shared_ptr<SharedLibrary> library = load(Testing::moduleFileName("zutarnex_test_no_entry"));
    EXPECT_NE(nullptr, library->getSymbol("notAnEntry"));
    void* const handle = dlopen("libzutarnex_test_no_entry.so", RTLD_NOW);
    dlerror();
    EXPECT_EQ(nullptr, dlsym(handle, "nullSymbol"));
    EXPECT_EQ(nullptr, dlerror()) << "it is there";
    dlclose(handle);
    EXPECT_THROW(library->getSymbol("nullSymbol"), SymbolNotFoundException);
}

TEST_F(SharedLibraryLoaderTest, NullNameIsMissing) {
    EXPECT_THROW(load(kPlain)->getSymbol(nullptr), SymbolNotFoundException);
}

TEST_F(SharedLibraryLoaderTest, SymbolNeedsNoMemory) {
    const boost::shared_ptr<SharedLibrary> library = load(kPlain);
    Testing::newMemory().failRequest(1);
    EXPECT_NE(nullptr, library->getSymbol("pluginState"));
    EXPECT_THROW(library->getSymbol("notThere"), SymbolNotFoundException);
    EXPECT_TRUE(Testing::newMemory().failureIsPending());
    Testing::newMemory().failRequest(0);
}

/// What changes the process's loader for good happens in a process of its own.
class SharedLibraryLoaderDeathTest : public ::testing::Test {};

TEST_F(SharedLibraryLoaderDeathTest, KeptLibraryStaysOpenAndIsShared) {
    EXPECT_EXIT(
        {
            SharedLibrary* const first = load(kPlain, true).get();
            const int opens = dlCalls().opens;
            CHECK_FACT(load(kPlain).get() == first);
            CHECK_FACT(dlCalls().opens == opens);
            CHECK_FACT(isModuleOpen("zutarnex_test_plain"));
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(SharedLibraryLoaderDeathTest, LibraryMayBeKeptOnALaterLoad) {
    EXPECT_EXIT(
        {
            boost::shared_ptr<SharedLibrary> first = load(kPlain);
            SharedLibrary* const address = first.get();
            load(kPlain, true);
            load(kPlain, true); // replaces the pointer that is held already
            first.reset();
            CHECK_FACT(isModuleOpen("zutarnex_test_plain"));
            CHECK_FACT(load(kPlain).get() == address);
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(SharedLibraryLoaderDeathTest, ReopenedLibraryMayBeKept) {
    EXPECT_EXIT(
        {
            load(kPlain);
            CHECK_FACT(!isModuleOpen("zutarnex_test_plain"));
            load(kPlain, true);
            CHECK_FACT(isModuleOpen("zutarnex_test_plain"));
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(SharedLibraryLoaderDeathTest, KeptLibraryIsClosedAtExit) {
    EXPECT_EXIT(
        {
            const auto library = load(kPlain, true);
            reinterpret_cast<PluginStateFunction>(library->getSymbol("pluginState"))()->announces = 1;
            std::atexit([] { std::fputs("before the loader goes\n", stderr); });
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "before the loader goes\n(.|\n)*module unloaded");
}

TEST_F(SharedLibraryLoaderDeathTest, LoaderIsLetGoAtExit) {
    EXPECT_EXIT(
        {
            load(kPlain, true);
            afterStatics = [] {
                CHECK_FACT(!isModuleOpen("zutarnex_test_plain"));
                CHECK_FACT(!SharedLibraryLoader::createSharedLibraryLoader());
                std::_Exit(7);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(7), "");
}

TEST_F(SharedLibraryLoaderDeathTest, HeldLoaderOutlivesTheExitHandler) {
    EXPECT_EXIT(
        {
            undestroyed<boost::shared_ptr<SharedLibraryLoader>>() =
                SharedLibraryLoader::createSharedLibraryLoader();
            load(kPlain, true);
            afterStatics = [] {
                auto& loader = undestroyed<boost::shared_ptr<SharedLibraryLoader>>();
                CHECK_FACT(loader.use_count() == 1);
                CHECK_FACT(isModuleOpen("zutarnex_test_plain"));
                const int closes = dlCalls().closes; // at this late hour the C library only counts them
                loader.reset();
                CHECK_FACT(dlCalls().closes == closes + 1);
                std::_Exit(7);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(7), "");
}

TEST_F(SharedLibraryLoaderDeathTest, HeldLibraryOutlivesTheLoader) {
    EXPECT_EXIT(
        {
            undestroyed<boost::shared_ptr<SharedLibrary>>() = load(kPlain, true);
            afterStatics = [] {
                auto& library = undestroyed<boost::shared_ptr<SharedLibrary>>();
                CHECK_FACT(library->getSymbol("pluginState") != nullptr);
                const int closes = dlCalls().closes; // at this late hour the C library only counts them
                library.reset();
                CHECK_FACT(dlCalls().closes == closes + 1);
                std::_Exit(7);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(7), "");
}

TEST_F(SharedLibraryLoaderDeathTest, ThreadsThatAskFirstGetTheSameLoader) {
    EXPECT_EXIT(
        {
            std::vector<SharedLibraryLoader*> loaders(8);
            std::vector<std::thread> threads;
            for (auto& loader : loaders)
                threads.emplace_back(
                    [&] { loader = SharedLibraryLoader::createSharedLibraryLoader().get(); });
            for (std::thread& thread : threads)
                thread.join();
            const std::set<SharedLibraryLoader*> different(loaders.begin(), loaders.end());
            std::_Exit(different.size() == 1 && *different.begin() ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(SharedLibraryLoaderDeathTest, LoaderThatCannotBeMadeIsTriedAgain) {
    EXPECT_EXIT(
        {
            int failures = 0;
            for (std::size_t k = 1;; ++k) {
                Testing::newMemory().failRequest(k);
                try {
                    SharedLibraryLoader::createSharedLibraryLoader();
                    break;
                } catch (const std::bad_alloc&) {
                    ++failures;
                }
            }
            Testing::newMemory().failRequest(0);
            CHECK_FACT(failures > 0);
            CHECK_FACT(SharedLibraryLoader::createSharedLibraryLoader());
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

/// Every request that loading makes; the process must end, and end through the host.
TEST_F(SharedLibraryLoaderDeathTest, FailedAllocationEndsTheProcess) {
    int failures = 0;
    int status = kUnexpected; // stays so in the child process, which looks for its round
    for (std::size_t k = 1; status == kUnexpected; ++k) {
        EXPECT_EXIT(
            {
                const Testing::HostOverride host(Testing::endUnexpectedlyWithStatus);
                SharedLibraryLoader::createSharedLibraryLoader();
                Testing::newMemory().failRequest(k);
                load(kPlain, true);
                std::_Exit(0);
            },
            [&](int exit) {
                status = WEXITSTATUS(exit);
                return WIFEXITED(exit) && (status == 0 || status == kUnexpected);
            },
            "");
        failures += status == kUnexpected;
    }
    EXPECT_GE(failures, 4) << "library, its entry, and the pin";
}

class FailingLoader : public SharedLibraryLoader {
    boost::shared_ptr<SharedLibrary> doLoadSharedLibrary(const char*, bool) override {
        throw boost::bad_weak_ptr();
    }
};

TEST_F(SharedLibraryLoaderDeathTest, AnyOtherExceptionOfALoaderEndsTheProcess) {
    EXPECT_EXIT(
        {
            const Testing::HostOverride host(Testing::endUnexpectedlyWithStatus);
            FailingLoader().loadSharedLibrary("any", false);
        },
        ::testing::ExitedWithCode(kUnexpected), "");
}

/// Its one symbol is itself.
class FixedLibrary : public SharedLibrary {
public:
    void* getSymbol(const char*) override { return this; }
};

TEST_F(SharedLibraryLoaderTest, CopyOfALibraryIsAnObjectOfItsOwn) {
    FixedLibrary library;
    FixedLibrary copy(library);
    SharedLibrary& asLibrary = copy;
    EXPECT_EQ(&copy, asLibrary.getSymbol("any"));
    EXPECT_EQ(&library, library.getSymbol("any"));
    static_assert(sizeof(SharedLibrary) == sizeof(void*), "there is nothing to copy");
}

class ForwardTarget : public SharedLibraryLoader {
public:
    std::string path;
    bool keepLoaded = false;

private:
    boost::shared_ptr<SharedLibrary> doLoadSharedLibrary(const char* name, bool keep) override {
        path = name;
        keepLoaded = keep;
        return boost::shared_ptr<SharedLibrary>();
    }
};

TEST_F(SharedLibraryLoaderTest, LoadForwardsToTheImplementation) {
    ForwardTarget loader;
    EXPECT_FALSE(loader.loadSharedLibrary("a path", true));
    EXPECT_EQ("a path", loader.path);
    EXPECT_TRUE(loader.keepLoaded);
    const ForwardTarget copy(loader); // copies set up an object and share nothing
    EXPECT_EQ("a path", copy.path);
}

} // namespace
} // namespace Quillon::System
