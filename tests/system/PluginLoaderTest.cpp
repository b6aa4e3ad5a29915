#include "system/QVPI_PluginLoader.h"

#include "plugins/TestModule.h"
#include "support/HostFixture.h"
#include "system/ChildProcess.h"
#include "system/DlCalls.h"
#include "system/HostOverride.h"
#include "system/MessageCodeException.h"
#include "system/PluginNotFoundException.h"

#include <boost/make_shared.hpp>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

namespace Quillon::System {
namespace {

using Testing::dlCalls;
using Testing::isModuleOpen;
using Testing::TestModule;

using Plugin = boost::shared_ptr<QVPI_Plugin_>;
using Loader = boost::shared_ptr<QVPI_PluginLoader>;

const char* const kPlain = "zutarnex_test_plain";
const char* const kOther = "zutarnex_test_other";
const char* const kMissing = "zutarnex_test_not_there";

Plugin load(const char* name, void* args = nullptr, bool keep = false) {
    return QVPI_PluginLoader::getSystemPluginLoader()->loadPlugin(name, args, keep);
}

/// The message of the catalogued error that `scenario` ends with.
template <class Scenario>
std::string messageOf(Scenario scenario) {
    try {
        scenario();
    } catch (const CataloguedException& exception) {
        return exception.getIdentifier() + "|" + exception.getMessage();
    }
    return "no exception";
}

class PluginLoaderTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        for (const char* name : {kPlain, kOther})
            load(name);
        for (const char* name : {"zutarnex_test_wrong_version", "zutarnex_test_failing_entry",
                                 "zutarnex_test_no_record", "zutarnex_test_no_entry", kMissing})
            EXPECT_THROW(load(name), CataloguedException);
    }
};

// --- the system loader -----------------------------------------------------------------------------------------

TEST_F(PluginLoaderTest, ProcessHasOneSystemLoader) {
    const Loader loader = QVPI_PluginLoader::getSystemPluginLoader();
    ASSERT_TRUE(loader);
    EXPECT_EQ(loader, QVPI_PluginLoader::getSystemPluginLoader());
    QVPI_PluginLoader::initSystemPluginLoader();
    EXPECT_EQ(loader, QVPI_PluginLoader::getSystemPluginLoader());
}

TEST_F(PluginLoaderTest, StepsOfLoadingCanBeCalledOneByOne) {
    const Loader loader = QVPI_PluginLoader::getSystemPluginLoader();
    EXPECT_FALSE(loader->findPlugin(kMissing));
    const Plugin plugin = loader->initPlugin(kPlain, nullptr, false);
    ASSERT_TRUE(plugin);
    EXPECT_EQ(plugin, loader->findPlugin(kPlain));
    EXPECT_THROW(loader->initPlugin(kMissing, nullptr, false), PluginNotFoundException);
}

TEST_F(PluginLoaderTest, SystemLoaderHasNoParent) {
    EXPECT_FALSE(QVPI_PluginLoader::getSystemPluginLoader()->getParent());
}

TEST_F(PluginLoaderTest, ModuleIsOpenedByLibNameSo) {
    const Testing::DlRedirection redirection("libany name/../x.so", "libzutarnex_test_other.so");
    EXPECT_EXIT(
        {
            load("any name/../x");
            std::_Exit(isModuleOpen(kOther) ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(PluginLoaderTest, EntryGetsArgumentsAndTheLoader) {
    const TestModule module(kPlain);
    int args = 0;
    const Plugin plugin = load(kPlain, &args);
    EXPECT_EQ(1, module.state().created);
    EXPECT_EQ(&args, module.state().initArgs);
    EXPECT_EQ(QVPI_PluginLoader::getSystemPluginLoader().get(), module.state().loader);
    EXPECT_EQ(plugin.get(), module.state().lastRecord);
}

TEST_F(PluginLoaderTest, PlainCPluginWorks) {
    const Plugin plugin = load(kPlain);
    ASSERT_TRUE(plugin);
    EXPECT_EQ(0x00010000, plugin->functions->version(plugin.get()));
}

TEST_F(PluginLoaderTest, HeldPluginIsSharedAndCreatedOnce) {
    const TestModule module(kPlain);
    const Plugin first = load(kPlain);
    const Plugin second = load(kPlain);
    EXPECT_EQ(first, second);
    EXPECT_EQ(1, module.state().created);
}

TEST_F(PluginLoaderTest, CachedPluginIgnoresArguments) {
    const TestModule module(kPlain);
    int firstArgs = 0;
    int secondArgs = 0;
    Plugin plugin = load(kPlain, &firstArgs);
    EXPECT_EQ(plugin, load(kPlain, &secondArgs, true));
    EXPECT_EQ(&firstArgs, module.state().initArgs);
    plugin.reset();
    EXPECT_EQ(1, module.state().destroyed) << "keep was ignored";
}

TEST_F(PluginLoaderTest, NamesAreCachedEachForItself) {
    const Plugin plain = load(kPlain);
    const Plugin other = load(kOther);
    EXPECT_NE(plain, other);
    EXPECT_EQ(plain, load(kPlain));
}

TEST_F(PluginLoaderTest, NameIsCopied) {
    std::string name = kPlain;
    const Plugin plugin = load(name.c_str());
    name[0] = 'X';
    EXPECT_EQ(plugin, load(kPlain));
}

TEST_F(PluginLoaderTest, LastReleaseDestroysTheRecordOnce) {
    const TestModule module(kPlain);
    Plugin first = load(kPlain);
    Plugin second = load(kPlain);
    void* const record = first.get();
    first.reset();
    EXPECT_EQ(0, module.state().destroyed);
    second.reset();
    EXPECT_EQ(1, module.state().destroyed);
    EXPECT_EQ(record, module.state().lastRecord);
}

TEST_F(PluginLoaderTest, ModuleStaysOpenWhenItsRecordIsGone) {
    load(kPlain);
    EXPECT_TRUE(isModuleOpen(kPlain));
    const int closes = dlCalls().closes;
    load(kPlain);
    EXPECT_EQ(closes, dlCalls().closes);
}

TEST_F(PluginLoaderTest, DestroyedPluginIsCreatedAgain) {
    const TestModule module(kPlain);
    QVPI_Plugin_* const firstRecord = load(kPlain).get();
    const int opens = dlCalls().opens;
    const Plugin second = load(kPlain);
    ASSERT_TRUE(second);
    EXPECT_NE(firstRecord, second.get());
    EXPECT_EQ(2, module.state().created);
    EXPECT_EQ(opens, dlCalls().opens) << "the module was open still";
    EXPECT_EQ(second, load(kPlain)) << "the entry was overwritten";
}

TEST_F(PluginLoaderTest, VersionIsAskedTwice) {
    const TestModule module(kPlain);
    const Plugin plugin = load(kPlain);
    EXPECT_EQ(2, module.state().versionAsked);
}

TEST_F(PluginLoaderTest, SecondVersionIsNotLookedAt) {
    const TestModule module(kPlain);
    module.state().changesVersion = 1;
    for (const std::int32_t later : {0x20000, 0, -1}) {
        module.state().versionAsked = 0;
        module.state().laterVersion = later;
        const Plugin plugin = load(kPlain);
        EXPECT_TRUE(plugin);
        EXPECT_EQ(2, module.state().versionAsked);
    }
}

TEST_F(PluginLoaderTest, RightSecondVersionDoesNotMendAWrongOne) {
    const TestModule module(kPlain);
    module.state().version = 0x20000;
    module.state().changesVersion = 1;
    module.state().laterVersion = 0x10000;
    EXPECT_THROW(load(kPlain), CataloguedException);
    EXPECT_EQ(1, module.state().versionAsked);
}

struct VersionCase {
    std::int32_t version;
    bool accepted;
};

class PluginVersionTest : public PluginLoaderTest, public ::testing::WithParamInterface<VersionCase> {};

TEST_P(PluginVersionTest, OnlyTheMajorVersionCounts) {
    const TestModule module(kPlain);
    module.state().version = GetParam().version;
    if (GetParam().accepted)
        EXPECT_TRUE(load(kPlain));
    else
        EXPECT_EQ("KAVOLT|\"Plug-in [zutarnex_test_plain] has incompatible QVPI version number.\"",
                  messageOf([] { load(kPlain); }));
    EXPECT_EQ(GetParam().accepted ? 2 : 1, module.state().versionAsked);
}

INSTANTIATE_TEST_SUITE_P(Versions, PluginVersionTest,
                         ::testing::Values(VersionCase{65'536, true}, VersionCase{65'541, true},
                                           VersionCase{0x1FFFF, true}, VersionCase{131'072, false},
                                           VersionCase{65'535, false}, VersionCase{0, false},
                                           VersionCase{-1, false}, VersionCase{-65'536, false},
                                           VersionCase{0x7FFF0001, false}),
                         [](const auto& info) {
                             return (info.param.version < 0 ? "Minus" : "")
                                    + std::to_string(std::abs(std::int64_t{info.param.version}));
                         });

// --- failures --------------------------------------------------------------------------------------------------

TEST_F(PluginLoaderTest, MissingModuleIsPluginNotFound) {
    EXPECT_THROW(load(kMissing), PluginNotFoundException);
    EXPECT_EQ("KAVOLT:PluginNotFound|Plug-in [zutarnex_test_not_there] module not found.",
              messageOf([] { load(kMissing); }));
}

TEST_F(PluginLoaderTest, MissingModuleIsLookedForEachTime) {
    const int opens = dlCalls().opens;
    EXPECT_THROW(load(kMissing), PluginNotFoundException);
    EXPECT_THROW(load(kMissing), PluginNotFoundException);
    EXPECT_EQ(opens + 2, dlCalls().opens);
}

TEST_F(PluginLoaderTest, ModuleOfWrongFormatIsPluginNotFound) {
    EXPECT_THROW(load("zutarnex_test_no_module"), PluginNotFoundException);
}

TEST_F(PluginLoaderTest, MissingEntryIsNamedBehindThePlugin) {
    EXPECT_EQ(
        "KAVOLT|\"Plug-in entry [zutarnex_test_no_entry] not found, [QVPI_CreatePlugin] is not a valid QVPI "
        "plugin.\"",
        messageOf([] { load("zutarnex_test_no_entry"); }));
    EXPECT_FALSE(isModuleOpen("zutarnex_test_no_entry"));
}

TEST_F(PluginLoaderTest, FailingEntryIsTheError) {
    EXPECT_EQ("KAVOLT|\"Plug-in failed to return [zutarnex_test_failing_entry] plug-in level interface.\"",
              messageOf([] { load("zutarnex_test_failing_entry"); }));
    EXPECT_FALSE(isModuleOpen("zutarnex_test_failing_entry"));
}

TEST_F(PluginLoaderTest, EntryWithoutRecordIsTheErrorOfAFailingOne) {
    EXPECT_EQ("KAVOLT|\"Plug-in failed to return [zutarnex_test_no_record] plug-in level interface.\"",
              messageOf([] { load("zutarnex_test_no_record"); }));
}

TEST_F(PluginLoaderTest, RecordWithoutFunctionsIsTheErrorOfAFailingEntry) {
    const TestModule module(kPlain);
    module.state().leavesNoFunctions = 1;
    EXPECT_EQ("KAVOLT|\"Plug-in failed to return [zutarnex_test_plain] plug-in level interface.\"",
              messageOf([] { load(kPlain); }));
}

TEST_F(PluginLoaderTest, RecordOfAFailingEntryIsNotTouched) {
    const TestModule module(kPlain);
    module.state().entryStatus = 1;
    EXPECT_THROW(load(kPlain), CataloguedException);
    EXPECT_EQ(1, module.state().created);
    EXPECT_EQ(0, module.state().versionAsked);
    EXPECT_EQ(0, module.state().destroyed);
}

TEST_F(PluginLoaderTest, WrongVersionIsTheError) {
    EXPECT_EQ("KAVOLT|\"Plug-in [zutarnex_test_wrong_version] has incompatible QVPI version number.\"",
              messageOf([] { load("zutarnex_test_wrong_version"); }));
    EXPECT_FALSE(isModuleOpen("zutarnex_test_wrong_version"));
}

TEST_F(PluginLoaderTest, RecordOfWrongVersionIsNotDestroyed) {
    const TestModule module("zutarnex_test_wrong_version");
    EXPECT_THROW(load("zutarnex_test_wrong_version"), CataloguedException);
    EXPECT_EQ(1, module.state().created);
    EXPECT_EQ(1, module.state().versionAsked);
    EXPECT_EQ(0, module.state().destroyed);
}

TEST_F(PluginLoaderTest, ErrorsByCodeAreUserExceptionsButNotPluginNotFound) {
    for (const char* name :
         {"zutarnex_test_no_entry", "zutarnex_test_failing_entry", "zutarnex_test_wrong_version"}) {
        try {
            load(name);
            ADD_FAILURE() << name;
        } catch (const PluginNotFoundException&) {
            ADD_FAILURE() << name;
        } catch (const UserException&) {
        }
    }
}

TEST_F(PluginLoaderTest, PluginThatFailedIsTriedAgain) {
    const TestModule module(kPlain);
    module.state().entryStatus = -1;
    EXPECT_THROW(load(kPlain), CataloguedException);
    module.state().entryStatus = 0;
    EXPECT_TRUE(load(kPlain));
    EXPECT_EQ(2, module.state().created);
}

TEST_F(PluginLoaderTest, NullNameIsPluginNotFound) {
    EXPECT_EQ("KAVOLT:PluginNotFound|Plug-in [(null)] module not found.", messageOf([] { load(nullptr); }));
}

TEST_F(PluginLoaderTest, EmptyNameIsPluginNotFound) {
    EXPECT_EQ("KAVOLT:PluginNotFound|Plug-in [] module not found.", messageOf([] { load(""); }));
}

TEST_F(PluginLoaderTest, LongestNameIsLookedFor) {
    const std::string name(4'089, 'n');
    const int opens = dlCalls().opens;
    EXPECT_THROW(load(name.c_str()), PluginNotFoundException);
    EXPECT_EQ(opens + 1, dlCalls().opens);
}

TEST_F(PluginLoaderTest, NameThatDoesNotFitIsNotLookedFor) {
    for (const std::size_t length : {std::size_t{4'090}, std::size_t{4'096}, std::size_t{100'000}}) {
        const std::string name(length, 'n');
        const int opens = dlCalls().opens;
        EXPECT_EQ("KAVOLT:PluginNotFound|Plug-in [" + name + "] module not found.",
                  messageOf([&] { load(name.c_str()); }));
        EXPECT_EQ(opens, dlCalls().opens);
    }
}

// --- chains of loaders -----------------------------------------------------------------------------------------

/// Records what it is asked for.
class RecordingLoader : public QVPI_PluginLoader {
public:
    RecordingLoader() = default;
    explicit RecordingLoader(const Loader& parent) : QVPI_PluginLoader(parent) {}

    Plugin cached;
    Plugin made;
    mutable std::vector<std::string> calls;
    void* args = nullptr;
    bool keep = false;

protected:
    Plugin findPlugin(const char* name) const override {
        calls.push_back(std::string("find ") + name);
        return cached;
    }
    Plugin initPlugin(const char* name, void* theArgs, bool theKeep) override {
        calls.push_back(std::string("init ") + name);
        args = theArgs;
        keep = theKeep;
        return made ? made : QVPI_PluginLoader::initPlugin(name, theArgs, theKeep);
    }
};

/// A loader that adds nothing to the base.
class PlainLoader : public QVPI_PluginLoader {
public:
    PlainLoader() = default;
    explicit PlainLoader(const Loader& parent) : QVPI_PluginLoader(parent) {}

protected:
    Plugin findPlugin(const char* name) const override { return QVPI_PluginLoader::findPlugin(name); }
};

QVPI_Plugin_ somePlugin;
Plugin unowned() {
    return Plugin(&somePlugin, [](QVPI_Plugin_*) {});
}

TEST_F(PluginLoaderTest, DefaultParentIsTheSystemLoader) {
    EXPECT_EQ(QVPI_PluginLoader::getSystemPluginLoader(), PlainLoader().getParent());
}

TEST_F(PluginLoaderTest, ParentIsWhatWasPassed) {
    const Loader parent = boost::make_shared<PlainLoader>();
    EXPECT_EQ(parent, PlainLoader(parent).getParent());
    EXPECT_FALSE(PlainLoader(Loader()).getParent());
}

TEST_F(PluginLoaderTest, OwnCacheIsAskedFirst) {
    const auto parent = boost::make_shared<RecordingLoader>(Loader());
    RecordingLoader loader(parent);
    loader.cached = unowned();
    EXPECT_EQ(loader.cached, loader.loadPlugin("p", nullptr, false));
    EXPECT_EQ(std::vector<std::string>{"find p"}, loader.calls);
    EXPECT_TRUE(parent->calls.empty());
}

TEST_F(PluginLoaderTest, AncestorsAreAskedBeforeTheLoaderMakesThePlugin) {
    const auto root = boost::make_shared<RecordingLoader>(Loader());
    const auto middle = boost::make_shared<RecordingLoader>(root);
    RecordingLoader loader(middle);
    root->made = unowned();
    int args = 0;
    EXPECT_EQ(root->made, loader.loadPlugin("p", &args, true));
    EXPECT_EQ(std::vector<std::string>{"find p"}, loader.calls);
    EXPECT_EQ(std::vector<std::string>{"find p"}, middle->calls);
    EXPECT_EQ((std::vector<std::string>{"find p", "init p"}), root->calls);
    EXPECT_EQ(&args, root->args);
    EXPECT_TRUE(root->keep);
}

TEST_F(PluginLoaderTest, WhatAnAncestorHasIsMadeByNobody) {
    const auto root = boost::make_shared<RecordingLoader>(Loader());
    const auto middle = boost::make_shared<RecordingLoader>(root);
    RecordingLoader loader(middle);
    root->cached = unowned();
    loader.made = middle->made = root->made = unowned();
    EXPECT_EQ(root->cached, loader.loadPlugin("p", nullptr, true));
    for (const RecordingLoader* each : {&loader, middle.get(), root.get()})
        EXPECT_EQ(std::vector<std::string>{"find p"}, each->calls);
    middle->cached = unowned();
    EXPECT_EQ(middle->cached, loader.loadPlugin("p", nullptr, true));
    EXPECT_EQ(std::vector<std::string>{"find p"}, root->calls)
        << "the nearest one that has it ends the search";
}

TEST_F(PluginLoaderTest, ChainThatCannotSupplyLeavesItToTheLoader) {
    const auto root = boost::make_shared<RecordingLoader>(Loader());
    RecordingLoader loader(root);
    loader.made = unowned();
    int args = 0;
    EXPECT_EQ(loader.made, loader.loadPlugin("p", &args, true));
    EXPECT_EQ((std::vector<std::string>{"find p", "init p"}), root->calls);
    EXPECT_EQ((std::vector<std::string>{"find p", "init p"}), loader.calls);
    EXPECT_EQ(&args, loader.args);
    EXPECT_TRUE(loader.keep);
}

TEST_F(PluginLoaderTest, ExhaustedChainIsPluginNotFound) {
    const auto root = boost::make_shared<RecordingLoader>(Loader());
    RecordingLoader loader(root);
    EXPECT_EQ("KAVOLT:PluginNotFound|Plug-in [p] module not found.",
              messageOf([&] { loader.loadPlugin("p", nullptr, false); }));
    EXPECT_EQ((std::vector<std::string>{"find p", "init p"}), root->calls);
    EXPECT_EQ((std::vector<std::string>{"find p", "init p"}), loader.calls);
}

TEST_F(PluginLoaderTest, PlainLoaderNeverMakesAnything) {
    PlainLoader orphan{Loader()};
    EXPECT_THROW(orphan.loadPlugin(kPlain, nullptr, false), PluginNotFoundException);
}

TEST_F(PluginLoaderTest, PlainLoaderSharesWhatTheSystemLoaderSupplies) {
    PlainLoader loader;
    const Plugin plugin = loader.loadPlugin(kPlain, nullptr, false);
    EXPECT_EQ(plugin, load(kPlain));
}

TEST_F(PluginLoaderTest, OtherErrorsOfAnAncestorPassUnchanged) {
    RecordingLoader loader;
    loader.made = unowned();
    EXPECT_EQ("KAVOLT|\"Plug-in failed to return [zutarnex_test_failing_entry] plug-in level interface.\"",
              messageOf([&] { loader.loadPlugin("zutarnex_test_failing_entry", nullptr, false); }));
    EXPECT_EQ(std::vector<std::string>{"find zutarnex_test_failing_entry"}, loader.calls);
}

class ThrowingLoader : public QVPI_PluginLoader {
public:
    ThrowingLoader() : QVPI_PluginLoader(Loader()) {}
    bool findThrows = false;

protected:
    Plugin findPlugin(const char*) const override {
        if (findThrows)
            throw 1;
        return Plugin();
    }
    Plugin initPlugin(const char*, void*, bool) override { throw std::string("not made"); }
};

TEST_F(PluginLoaderTest, ExceptionsOfOverridesPassUnchanged) {
    ThrowingLoader loader;
    EXPECT_THROW(loader.loadPlugin("p", nullptr, false), std::string);
    loader.findThrows = true;
    EXPECT_THROW(loader.loadPlugin("p", nullptr, false), int);
}

/// Names the protected operations, which then can be called on every loader.
class Protected : public QVPI_PluginLoader {
public:
    using QVPI_PluginLoader::findPlugin;
    using QVPI_PluginLoader::initPlugin;
};

Plugin init(QVPI_PluginLoader& loader, const char* name) {
    return (loader.*&Protected::initPlugin)(name, nullptr, false);
}

TEST_F(PluginLoaderTest, SystemLoaderFindsOnlyWhatLives) {
    const Loader loader = QVPI_PluginLoader::getSystemPluginLoader();
    const auto find = [&](const char* name) { return ((*loader).*&Protected::findPlugin)(name); };
    EXPECT_FALSE(find("never asked for"));
    Plugin plugin = load(kPlain);
    EXPECT_EQ(plugin, find(kPlain));
    plugin.reset();
    EXPECT_FALSE(find(kPlain)) << "the entry is there still, expired";
}

// --- memory ----------------------------------------------------------------------------------------------------

TEST_F(PluginLoaderTest, LoadWithoutHostMemoryThrowsAndCachesNothing) {
    const TestModule module(kPlain);
    Testing::everyAllocationFails([] { load(kPlain); },
                                  [&] {
                                      EXPECT_EQ(0, module.state().created);
                                      EXPECT_TRUE(load(kPlain));
                                      module.reset();
                                  });
}

TEST_F(PluginLoaderTest, FailureWithoutHostMemoryIsThatFailure) {
    for (const char* name : {kMissing, "zutarnex_test_no_entry", "zutarnex_test_failing_entry",
                             "zutarnex_test_no_record", "zutarnex_test_wrong_version"})
        Testing::everyAllocationFails([&] {
            try {
                load(name);
            } catch (const CataloguedException&) {
            }
        });
}

class PluginLoaderDeathTest : public ::testing::Test {};

/// In a process of its own for each request: inside the shared-library loader a failure ends the process, everywhere
/// else it is std::bad_alloc, with the record destroyed and nothing cached.
TEST_F(PluginLoaderDeathTest, LoadWithoutMemoryEndsTheProcessOrThrows) {
    constexpr int kThrown = 98;
    int ended = 0;
    int thrown = 0;
    int status = -1;
    for (std::size_t k = 1; status != 0; ++k) {
        EXPECT_EXIT(
            {
                const Testing::HostOverride host(Testing::endUnexpectedlyWithStatus);
                const TestModule module(kPlain);
                const Loader loader = QVPI_PluginLoader::getSystemPluginLoader();
                load(kOther);
                Testing::newMemory().failRequest(k);
                try {
                    loader->loadPlugin(kPlain, nullptr, true);
                } catch (const std::bad_alloc&) {
                    CHECK_FACT(module.state().destroyed == module.state().created);
                    const int created = module.state().created;
                    const Plugin plugin = load(kPlain);
                    CHECK_FACT(plugin && module.state().created == created + 1);
                    std::_Exit(kThrown);
                }
                CHECK_FACT(module.state().created == 1 && module.state().destroyed == 0);
                std::_Exit(0);
            },
            [&](int exit) {
                status = WEXITSTATUS(exit);
                ended += status == Testing::kUnexpected;
                thrown += status == kThrown;
                return WIFEXITED(exit)
                       && (status == 0 || status == kThrown || status == Testing::kUnexpected);
            },
            "");
        if (HasFailure())
            break;
    }
    EXPECT_GE(ended, 2) << "library and entry of the shared-library loader";
    EXPECT_GE(thrown, 4) << "message, control block, two entries of the cache";
}

TEST_F(PluginLoaderDeathTest, BaseInitPluginLetsOnlyPluginNotFoundEscape) {
    PlainLoader loader{Loader()};
    EXPECT_THROW(init(loader, "p"), PluginNotFoundException);
    for (Testing::AllocationSource* source : {&Testing::hostMemory(), &Testing::newMemory()}) {
        EXPECT_EXIT(
            {
                const Testing::HostOverride host(Testing::endUnexpectedlyWithStatus);
                source->failRequest(1);
                init(loader, "a name of some length, so that its message needs memory");
            },
            ::testing::ExitedWithCode(Testing::kUnexpected), "");
    }
}

// --- the catalog -----------------------------------------------------------------------------------------------

int registrations = 0;

void countRegistrations(Runtime::HostServices& services) {
    services.addMessageTable = [](void*, const Runtime::MessageTable*) { ++registrations; };
}

TEST_F(PluginLoaderDeathTest, RaisingByCodeDoesNotRegisterTheCatalog) {
    EXPECT_EXIT(
        {
            const Testing::HostOverride host(countRegistrations);
            const Loader loader = QVPI_PluginLoader::getSystemPluginLoader();
            for (const char* name :
                 {"zutarnex_test_no_entry", "zutarnex_test_failing_entry", "zutarnex_test_wrong_version"}) {
                try {
                    init(*loader, name);
                    CHECK_FACT(!"reached");
                } catch (const CataloguedException&) {
                }
            }
            CHECK_FACT(registrations == 0);
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(PluginLoaderDeathTest, LoadingRegistersTheCatalogBeforeAnythingFails) {
    EXPECT_EXIT(
        {
            CHECK_FACT(messageOf([] { load("zutarnex_test_failing_entry"); })
                       == "KAVOLT|\"Plug-in failed to return [zutarnex_test_failing_entry] plug-in level "
                          "interface.\"");
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

// --- keeping, unloading ----------------------------------------------------------------------------------------

TEST_F(PluginLoaderDeathTest, KeptPluginLivesWithoutOwners) {
    EXPECT_EXIT(
        {
            const TestModule module(kPlain);
            QVPI_Plugin_* const record = load(kPlain, nullptr, true).get();
            CHECK_FACT(load(kPlain).get() == record);
            CHECK_FACT(module.state().created == 1 && module.state().destroyed == 0);
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST_F(PluginLoaderDeathTest, KeptPluginIsDestroyedAndItsModuleClosedAtUnload) {
    EXPECT_EXIT(
        {
            load(kPlain, nullptr, true);
            Testing::stateOf(kPlain).announces = 1;
            static int closes;
            closes = dlCalls().closes;
            Testing::afterStatics = [] {
                CHECK_FACT(dlCalls().closes == closes + 1);
                std::_Exit(7);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(7), "record destroyed\n");
}

TEST_F(PluginLoaderDeathTest, ModuleOfADestroyedPluginIsClosedAtUnload) {
    EXPECT_EXIT(
        {
            load(kPlain);
            CHECK_FACT(isModuleOpen(kPlain));
            static int closes;
            closes = dlCalls().closes;
            Testing::afterStatics = [] {
                CHECK_FACT(dlCalls().closes == closes + 1);
                std::_Exit(7);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(7), "");
}

Plugin applicationStatic; // constructed and destroyed with the program

TEST_F(PluginLoaderDeathTest, StaticOfTheApplicationMayHoldAPlugin) {
    EXPECT_EXIT(
        {
            applicationStatic = load(kPlain);
            Testing::stateOf(kPlain).announces = 1;
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "record destroyed\n(.|\n)*module unloaded\n");
}

TEST_F(PluginLoaderDeathTest, HeldPluginOutlivesTheSystemLoader) {
    EXPECT_EXIT(
        {
            Testing::undestroyed<Plugin>() = load(kPlain);
            Testing::afterStatics = [] {
                CHECK_FACT(!QVPI_PluginLoader::getSystemPluginLoader());
                Plugin& plugin = Testing::undestroyed<Plugin>();
                CHECK_FACT(plugin->functions->version(plugin.get()) == 0x00010000);
                const TestModule module(kPlain);
                const int closes = dlCalls().closes;
                plugin.reset();
                CHECK_FACT(module.state().destroyed == 1);
                CHECK_FACT(dlCalls().closes == closes + 1);
                std::_Exit(7);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(7), "");
}

TEST_F(PluginLoaderDeathTest, PluginThatAsksForTheLoaderAtUnloadGetsNone) {
    EXPECT_EXIT(
        {
            load(kPlain, nullptr, true);
            Testing::stateOf(kPlain).onDestroy = [](void*) {
                CHECK_FACT(!QVPI_PluginLoader::getSystemPluginLoader());
                CHECK_FACT(!PlainLoader().getParent());
                std::fputs("asked in vain\n", stderr);
            };
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "asked in vain");
}

TEST_F(PluginLoaderDeathTest, LoaderThatCannotBeMadeIsTriedAgain) {
    EXPECT_EXIT(
        {
            int failures = 0;
            for (std::size_t k = 1;; ++k) {
                Testing::newMemory().failRequest(k);
                try {
                    QVPI_PluginLoader::getSystemPluginLoader();
                    break;
                } catch (const std::bad_alloc&) {
                    ++failures;
                }
            }
            Testing::newMemory().failRequest(0);
            CHECK_FACT(failures > 0);
            CHECK_FACT(load(kPlain));
            std::_Exit(0);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace Quillon::System
