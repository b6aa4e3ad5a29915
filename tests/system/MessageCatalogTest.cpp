// The catalog as the host's message service sees it.
#include "system/PluginNotFoundException.h"

#include "support/HostFixture.h"
#include "system/HostOverride.h"
#include "system/IllegalStateException.h"
#include "system/OutOfRangeException.h"
#include "system/SharedLibraryNotFoundException.h"
#include "system/SymbolNotFoundException.h"
#include "system/UserException.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>
#include <vector>

namespace Quillon::System {
namespace {

int registrations = 0;
const Runtime::MessageTable* registeredTable = nullptr;
void* registrationContext = nullptr;

template <class Throw>
void swallow(Throw doThrow) {
    try {
        doThrow();
    } catch (...) {
    }
}

/// Watches the host's table from the program's start, for the catalog is registered once per process only.
class RegistrationWatch : public ::testing::Environment {
public:
    void SetUp() override {
        Runtime::HostServices services = Runtime::hostServices();
        services.addMessageTable = [](void* context, const Runtime::MessageTable* table) {
            if (table->facility == 76) {
                ++registrations;
                registeredTable = table;
                registrationContext = context;
            }
            Runtime::defaultHostServices().addMessageTable(context, table);
        };
        Runtime::setHostServices(services);
    }
};
[[maybe_unused]] const auto* const watch = ::testing::AddGlobalTestEnvironment(new RegistrationWatch);

class MessageCatalogTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        swallow([] { PluginNotFoundException::doThrow("any"); });
    }
    const Runtime::MessageTable& table() { return *registeredTable; }
};

TEST_F(MessageCatalogTest, IsRegisteredOnce) {
    swallow([] { PluginNotFoundException::doThrow("again"); });
    EXPECT_EQ(1, registrations);
}

TEST_F(MessageCatalogTest, IsRegisteredWithTheDefaultMemoryContext) {
    EXPECT_EQ(nullptr, registrationContext);
}

TEST_F(MessageCatalogTest, RecordHoldsCountFacilityAndEmptyRest) {
    EXPECT_EQ(8u, table().count);
    EXPECT_EQ(76u, table().facility);
    EXPECT_STREQ("", table().facilityText);
    EXPECT_EQ(0u, table().reserved1);
    EXPECT_EQ(0u, table().reserved2);
}

TEST_F(MessageCatalogTest, CodesRunFromOneAndEndWithTheMark) {
    for (std::uint32_t i = 0; i < 8; ++i)
        EXPECT_EQ(0x4C0001u + i, table().codes[i]);
    EXPECT_EQ(0xFFFFFFFFu, table().codes[8]);
}

TEST_F(MessageCatalogTest, RecordHoldsEveryName) {
    const char* const names[] = {"QVPI_PLUGIN_NOT_FOUND",
                                 "QVPI_PLUGIN_ENTRY_NOT_FOUND",
                                 "QVPI_PLUGIN_FAILED_TO_RETURN_PLUGIN_INTERFACE",
                                 "QVPI_PLUGIN_VERSION_INCOMPATIBLE",
                                 "QVPI_PLUGIN_MANAGEMENT_ILLEGAL_STATE",
                                 "TARNEX_ILLEGAL_CHARACTER",
                                 "TARNEX_ARRAY_INDEX_OUT_OF_BOUNDS",
                                 "TARNEX_ILLEGAL_ARGUMENT"};
    for (int i = 0; i < 8; ++i)
        EXPECT_STREQ(names[i], table().names[i]);
}

TEST_F(MessageCatalogTest, RecordHoldsEveryFormat) {
    const char* const formats[] = {"Plug-in [%s] module not found.",
                                   "\"Plug-in entry [%s] not found, [%s] is not a valid QVPI plugin.\"",
                                   "\"Plug-in failed to return [%s] plug-in level interface.\"",
                                   "\"Plug-in [%s] has incompatible QVPI version number.\"",
                                   "\"Plug-in management framework entered illegal state due to [%s].\"",
                                   "Illegal or non-writable character: U+%04X.",
                                   "Array index out of bounds; %s: %d.",
                                   "Illegal argument provided: %s."};
    for (int i = 0; i < 8; ++i)
        EXPECT_STREQ(formats[i], table().formats[i]);
}

class MessageCatalogDeathTest : public ::testing::Test {};

/// In a process of its own, where nothing has been raised yet.
TEST_F(MessageCatalogDeathTest, OnlyACataloguedKindRegistersIt) {
    EXPECT_EXIT(
        {
            swallow([] { SharedLibraryNotFoundException::doThrow(); });
            swallow([] { SymbolNotFoundException::doThrow(); });
            swallow([] { OutOfRangeException::doThrow(); });
            swallow([] { IllegalStateException::doThrow("reason"); });
            const int before = registrations;
            swallow([] { PluginNotFoundException::doThrow("first"); });
            const int afterFirst = registrations;
            swallow([] { PluginNotFoundException::doThrow("second"); });
            std::_Exit(before == 0 && afterFirst == 1 && registrations == 1 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

/// Both may register it; the message service takes the table twice and every message is right.
TEST_F(MessageCatalogDeathTest, ThreadsMayRaiseTheirFirstAtOnce) {
    EXPECT_EXIT(
        {
            const Testing::HostOverride host([](Runtime::HostServices& services) {
                services.addMessageTable = Runtime::defaultHostServices().addMessageTable;
            });
            std::atomic<int> right{0};
            std::vector<std::thread> threads;
            for (int i = 0; i < 8; ++i)
                threads.emplace_back([&] {
                    try {
                        PluginNotFoundException::doThrow("abc");
                    } catch (const UserException& exception) {
                        right += exception.getMessage() == "Plug-in [abc] module not found.";
                    }
                });
            for (std::thread& thread : threads)
                thread.join();
            std::_Exit(right == 8 ? 0 : 1);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace Quillon::System
