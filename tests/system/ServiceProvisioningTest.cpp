#include "system/ServiceProvisioning.h"

#include "plugins/TestModule.h"
#include "support/HostFixture.h"
#include "system/HostOverride.h"
#include "system/MessageCodeException.h"
#include "system/PluginNotFoundException.h"
#include "system/QVPI_PluginLoader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>

namespace Quillon::System {
namespace {

using Testing::TestModule;
using Plugin = boost::shared_ptr<QVPI_Plugin_>;

const char* const kPlain = "zutarnex_test_plain";
const char* const kWithArguments = "zutarnex_test_arguments";

class ServiceProvisioningTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        ServiceProvisioning::doCreate(kPlain);
        ServiceProvisioning::doCreate(kWithArguments);
        EXPECT_THROW(ServiceProvisioning::doCreate("zutarnex_test_not_there"), PluginNotFoundException);
    }

    /// The function that a plug-in was given under this name.
    template <class Function>
    static Function* given(const TestModule& module, const char* name) {
        for (const SeenOption& option : module.state().options)
            if (std::strcmp(option.name, name) == 0)
                return reinterpret_cast<Function*>(option.value);
        return nullptr;
    }
};

/// A plug-in that remembered its options.
struct CreatedPlugin {
    TestModule module{kPlain};
    Plugin plugin;

    CreatedPlugin() {
        module.state().readsOptions = 1;
        plugin = ServiceProvisioning::doCreate(kPlain);
    }
};

TEST_F(ServiceProvisioningTest, CreatesThroughTheSystemLoader) {
    const CreatedPlugin created;
    ASSERT_TRUE(created.plugin);
    EXPECT_EQ(created.plugin, QVPI_PluginLoader::getSystemPluginLoader()->loadPlugin(kPlain, nullptr, false));
    EXPECT_EQ(QVPI_PluginLoader::getSystemPluginLoader().get(), created.module.state().loader);
}

TEST_F(ServiceProvisioningTest, RecordOfOptionsIsAsPromised) {
    const CreatedPlugin created;
    const PluginState& state = created.module.state();
    EXPECT_EQ(0x00010000u, state.argsVersion);
    EXPECT_EQ(7u, state.argsCount);
    EXPECT_EQ(1, state.argsQuiet);
}

TEST_F(ServiceProvisioningTest, OptionsComeInOrder) {
    const CreatedPlugin created;
    const char* const names[] = {"exit", "abort", "malloc", "realloc", "calloc", "free", "vprintf"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_STREQ(names[i], created.module.state().options[i].name);
        EXPECT_NE(nullptr, created.module.state().options[i].value);
    }
}

TEST_F(ServiceProvisioningTest, PluginIsNotKept) {
    CreatedPlugin created;
    created.plugin.reset();
    EXPECT_EQ(1, created.module.state().destroyed);
}

TEST_F(ServiceProvisioningTest, HeldPluginIsShared) {
    CreatedPlugin created;
    EXPECT_EQ(created.plugin, ServiceProvisioning::doCreate(kPlain));
    EXPECT_EQ(1, created.module.state().created);
}

TEST_F(ServiceProvisioningTest, MemoryOptionsAreTheHostsAllocator) {
    const CreatedPlugin created;
    const auto allocate = given<void*(std::size_t)>(created.module, "malloc");
    const auto resize = given<void*(void*, std::size_t)>(created.module, "realloc");
    const auto allocateZeroed = given<void*(std::size_t, std::size_t)>(created.module, "calloc");
    const auto release = given<void(void*)>(created.module, "free");
    const std::ptrdiff_t blocks = Testing::hostMemory().liveBlocks();
    auto* const block = static_cast<char*>(allocate(4));
    std::memcpy(block, "abc", 4);
    auto* const resized = static_cast<char*>(resize(block, 4'000));
    EXPECT_STREQ("abc", resized);
    auto* const zeroed = static_cast<char*>(allocateZeroed(3, 5));
    EXPECT_EQ(std::string(15, '\0'), std::string(zeroed, 15));
    EXPECT_EQ(blocks + 2, Testing::hostMemory().liveBlocks());
    release(resized);
    release(zeroed);
    EXPECT_EQ(blocks, Testing::hostMemory().liveBlocks());
}

char printed[64];

int printToBuffer(const char* format, std::va_list arguments) {
    return std::vsnprintf(printed, sizeof printed, format, arguments);
}

TEST_F(ServiceProvisioningTest, PrintingOptionIsTheHostsPrint) {
    const Testing::HostOverride host([](Runtime::HostServices& services) { services.print = printToBuffer; });
    const Plugin plugin = ServiceProvisioning::doCreate(kWithArguments);
    ServiceProvisioning::doDetach(plugin.get()); // prints
    EXPECT_STREQ("detached 7\n", printed);
}

TEST_F(ServiceProvisioningTest, CppPluginLivesInTheHostsMemory) {
    const std::ptrdiff_t blocks = Testing::hostMemory().liveBlocks();
    Plugin plugin = ServiceProvisioning::doCreate(kWithArguments);
    EXPECT_EQ(blocks + 1, Testing::hostMemory().liveBlocks());
    void* const context = ServiceProvisioning::doAttach(plugin);
    EXPECT_EQ(blocks + 2, Testing::hostMemory().liveBlocks());
    Runtime::release(context);
    plugin.reset();
    EXPECT_EQ(blocks, Testing::hostMemory().liveBlocks());
}

TEST_F(ServiceProvisioningTest, MissingPluginIsPluginNotFound) {
    EXPECT_THROW(ServiceProvisioning::doCreate("zutarnex_test_not_there"), PluginNotFoundException);
    EXPECT_THROW(ServiceProvisioning::doCreate(nullptr), PluginNotFoundException);
}

TEST_F(ServiceProvisioningTest, PluginWithoutMemoryIsThePluginsError) {
    // The first requests are those of the messages on the way; the plug-in's own makes its entry fail.
    bool pluginFailed = false;
    for (std::size_t k = 1; k <= 3; ++k) {
        Testing::hostMemory().failRequest(k);
        try {
            ServiceProvisioning::doCreate(kWithArguments);
            ADD_FAILURE() << "request " << k;
        } catch (const OutOfMemoryException&) {
        } catch (const CataloguedException& exception) {
            EXPECT_EQ("\"Plug-in failed to return [zutarnex_test_arguments] plug-in level interface.\"",
                      exception.getMessage());
            pluginFailed = true;
        }
        Testing::hostMemory().failRequest(0);
    }
    EXPECT_TRUE(pluginFailed);
}

TEST_F(ServiceProvisioningTest, AttachReturnsTheContextOfThePlugin) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    int context = 0;
    module.state().attachContext = &context;
    module.state().contextBefore = &context;
    EXPECT_EQ(&context, ServiceProvisioning::doAttach(plugin));
    EXPECT_EQ(nullptr, module.state().contextBefore) << "the word starts as null";
    EXPECT_EQ(1, module.state().attached);
    EXPECT_EQ(plugin.get(), module.state().lastRecord);
}

TEST_F(ServiceProvisioningTest, ContextIsNullUnlessThePluginSetsOne) {
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    EXPECT_EQ(nullptr, ServiceProvisioning::doAttach(plugin));
}

TEST_F(ServiceProvisioningTest, AttachAcceptsPositiveStatus) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    for (const std::int32_t status : {0, 1, 0x7FFFFFFF}) {
        module.state().attachStatus = status;
        ServiceProvisioning::doAttach(plugin);
    }
    EXPECT_EQ(3, module.state().attached);
}

TEST_F(ServiceProvisioningTest, AttachHoldsThePluginNoLonger) {
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    ServiceProvisioning::doAttach(plugin);
    EXPECT_EQ(1, plugin.use_count());
}

TEST_F(ServiceProvisioningTest, DetachCallsThePlugin) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    ServiceProvisioning::doDetach(plugin.get());
    EXPECT_EQ(1, module.state().detached);
    EXPECT_EQ(plugin.get(), module.state().lastRecord);
}

TEST_F(ServiceProvisioningTest, EachThreadAttachesAndDetachesItself) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    static std::thread::id attaching, detaching;
    module.state().onAttach = [](void*) { attaching = std::this_thread::get_id(); };
    module.state().onDetach = [](void*) { detaching = std::this_thread::get_id(); };
    int contexts[2] = {};
    module.state().attachContext = &contexts[0];
    EXPECT_EQ(&contexts[0], ServiceProvisioning::doAttach(plugin));
    module.state().attachContext = &contexts[1];
    std::thread::id other;
    std::thread([&] {
        other = std::this_thread::get_id();
        EXPECT_EQ(&contexts[1], ServiceProvisioning::doAttach(plugin));
        EXPECT_EQ(other, attaching);
        ServiceProvisioning::doDetach(plugin.get());
    }).join();
    EXPECT_EQ(other, detaching);
    EXPECT_EQ(2, module.state().attached);
    EXPECT_EQ(1, module.state().detached);
    ServiceProvisioning::doDetach(plugin.get());
    EXPECT_EQ(std::this_thread::get_id(), detaching);
    EXPECT_EQ(2, module.state().detached);
}

class ServiceProvisioningDeathTest : public ServiceProvisioningTest {};

TEST_F(ServiceProvisioningDeathTest, ExitOptionIsTheHostsPanic) {
    const CreatedPlugin created;
    EXPECT_EXIT(given<void(int)>(created.module, "exit")(42), ::testing::ExitedWithCode(42), "^$");
}

TEST_F(ServiceProvisioningDeathTest, AbortOptionIsAFatalError) {
    const CreatedPlugin created;
    EXPECT_EXIT(given<void()>(created.module, "abort")(), ::testing::ExitedWithCode(1),
                "^fatal error 1: Plug-in called abort\n$");
}

constexpr char kAttachText[] = "^fatal error 3: Failed to attach current thread to plugin\n$";
constexpr char kDetachText[] = "^fatal error 3: Failed to detach current thread from plug-in\n$";

TEST_F(ServiceProvisioningDeathTest, AttachEndsTheProcessOnNegativeStatus) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    module.state().attachStatus = -1;
    EXPECT_EXIT(ServiceProvisioning::doAttach(plugin), ::testing::ExitedWithCode(3), kAttachText);
    module.state().attachStatus = INT32_MIN;
    EXPECT_EXIT(ServiceProvisioning::doAttach(plugin), ::testing::ExitedWithCode(3), kAttachText);
}

TEST_F(ServiceProvisioningDeathTest, DetachEndsTheProcessOnPositiveStatus) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    module.state().detachStatus = 1;
    EXPECT_EXIT(ServiceProvisioning::doDetach(plugin.get()), ::testing::ExitedWithCode(3), kDetachText);
}

TEST_F(ServiceProvisioningDeathTest, DetachEndsTheProcessOnNegativeStatus) {
    const TestModule module(kPlain);
    const Plugin plugin = ServiceProvisioning::doCreate(kPlain);
    module.state().detachStatus = -1;
    EXPECT_EXIT(ServiceProvisioning::doDetach(plugin.get()), ::testing::ExitedWithCode(3), kDetachText);
}

TEST_F(ServiceProvisioningDeathTest, NoPluginCannotBeAttachedOrDetached) {
    EXPECT_EXIT(ServiceProvisioning::doAttach(Plugin()), ::testing::ExitedWithCode(3), kAttachText);
    EXPECT_EXIT(ServiceProvisioning::doDetach(nullptr), ::testing::ExitedWithCode(3), kDetachText);
}

TEST_F(ServiceProvisioningDeathTest, HostThatReturnsFromAFatalErrorEndsUnexpectedly) {
    EXPECT_EXIT(
        {
            const Testing::HostOverride host([](Runtime::HostServices& services) {
                services.fatalError = [](int, const char*) {};
                services.unexpected = [] { std::_Exit(97); };
            });
            ServiceProvisioning::doDetach(nullptr);
        },
        ::testing::ExitedWithCode(97), "");
}

} // namespace
} // namespace Quillon::System
