#include "system/QVPI_Arguments.h"

#include "support/HostFixture.h"
#include "system/HostOverride.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace Quillon::System {
namespace {

// Functions to hand out; only their addresses matter, but for the printing ones.
void abort1() {}
void abort2() {}
void exit1(int) {}
void* malloc1(std::size_t) {
    return nullptr;
}
void* realloc1(void*, std::size_t) {
    return nullptr;
}
void* calloc1(std::size_t, std::size_t) {
    return nullptr;
}
void free1(void*) {}

std::string printedByPlugin;
std::string printedByHost;

std::string formatted(const char* format, std::va_list arguments) {
    char text[256];
    std::vsnprintf(text, sizeof text, format, arguments);
    return text;
}

int printForPlugin(const char* format, std::va_list arguments) {
    printedByPlugin += formatted(format, arguments);
    return 0;
}

int printForHost(const char* format, std::va_list arguments) {
    printedByHost += formatted(format, arguments);
    return 0;
}

template <class Function>
QVPI_PluginOption option(const char* name, Function* value) {
    return {name, reinterpret_cast<void*>(value)};
}

QVPI_PluginOption option(const char* name) {
    return {name, nullptr};
}

int parse(QVPI_Arguments& arguments, const std::vector<QVPI_PluginOption>& options, std::uint8_t quiet = 0) {
    const QVPI_PluginInitArgs args = {0x00010000, static_cast<std::uint32_t>(options.size()), options.data(),
                                      quiet};
    return arguments.parse(&args);
}

/// Refuses every option that is not common, and notes what it was asked about.
class RefusingArguments : public QVPI_Arguments {
public:
    int handleQvpiPluginOption(const QVPI_PluginOption* option) override {
        asked.push_back(option->name);
        return std::strcmp(option->name, "known") == 0 ? 0 : 1;
    }
    std::vector<std::string> asked;
};

class PluginArgumentsTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        printedByPlugin.clear();
        printedByHost.clear();
        printedByPlugin.reserve(1'000);
        printedByHost.reserve(1'000);
    }

    const Testing::HostOverride host_{[](Runtime::HostServices& services) { services.print = printForHost; }};
};

TEST_F(PluginArgumentsTest, AllIsNullAfterConstruction) {
    const QVPI_Arguments arguments;
    EXPECT_EQ(nullptr, arguments.abort);
    EXPECT_EQ(nullptr, arguments.exit);
    EXPECT_EQ(nullptr, arguments.vprintf);
    EXPECT_EQ(nullptr, arguments.malloc);
    EXPECT_EQ(nullptr, arguments.realloc);
    EXPECT_EQ(nullptr, arguments.calloc);
    EXPECT_EQ(nullptr, arguments.free);
}

TEST_F(PluginArgumentsTest, EmptyListIsFine) {
    QVPI_Arguments arguments;
    EXPECT_EQ(0, parse(arguments, {}));
    const QVPI_PluginInitArgs noList = {0x00010000, 0, nullptr, 0};
    EXPECT_EQ(0, arguments.parseQvpiInitArgs(&noList));
}

TEST_F(PluginArgumentsTest, EachCommonOptionGoesToItsField) {
    QVPI_Arguments arguments;
    EXPECT_EQ(0, parse(arguments, {option("exit", exit1), option("abort", abort1), option("malloc", malloc1),
                                   option("realloc", realloc1), option("calloc", calloc1),
                                   option("free", free1), option("vprintf", printForPlugin)}));
    EXPECT_EQ(abort1, arguments.abort);
    EXPECT_EQ(exit1, arguments.exit);
    EXPECT_EQ(printForPlugin, arguments.vprintf);
    EXPECT_EQ(malloc1, arguments.malloc);
    EXPECT_EQ(realloc1, arguments.realloc);
    EXPECT_EQ(calloc1, arguments.calloc);
    EXPECT_EQ(free1, arguments.free);
}

TEST_F(PluginArgumentsTest, CommonOptionSaysWhetherItWasOne) {
    QVPI_Arguments arguments;
    for (const char* name : {"abort", "exit", "vprintf", "malloc", "realloc", "calloc", "free"}) {
        const QVPI_PluginOption common = option(name);
        EXPECT_EQ(0, arguments.handleQvpiCommonOption(&common)) << name;
    }
    for (const char* name : {"", "a", "fre", "Free", "xfree", "printf", "mallo"}) {
        const QVPI_PluginOption other = option(name);
        EXPECT_EQ(-1, arguments.handleQvpiCommonOption(&other)) << name;
    }
}

TEST_F(PluginArgumentsTest, NameMatchesByPrefix) {
    QVPI_Arguments arguments;
    const QVPI_PluginOption exitCode = option("exit_code", exit1);
    const QVPI_PluginOption freeze = option("freeze", free1);
    const QVPI_PluginOption mallocator = option("mallocator", malloc1);
    EXPECT_EQ(0, arguments.handleQvpiCommonOption(&exitCode));
    EXPECT_EQ(0, arguments.handleQvpiCommonOption(&freeze));
    EXPECT_EQ(0, arguments.handleQvpiCommonOption(&mallocator));
    EXPECT_EQ(exit1, arguments.exit);
    EXPECT_EQ(free1, arguments.free);
    EXPECT_EQ(malloc1, arguments.malloc);
    const QVPI_PluginOption aborted = option("abort_all", abort1);
    const QVPI_PluginOption vprintf8 = option("vprintf8", printForPlugin);
    const QVPI_PluginOption reallocarray = option("reallocarray", realloc1);
    const QVPI_PluginOption callocs = option("callocs", calloc1);
    for (const QVPI_PluginOption* each : {&aborted, &vprintf8, &reallocarray, &callocs})
        EXPECT_EQ(0, arguments.handleQvpiCommonOption(each)) << each->name;
    EXPECT_EQ(abort1, arguments.abort);
    EXPECT_EQ(printForPlugin, arguments.vprintf);
    EXPECT_EQ(realloc1, arguments.realloc);
    EXPECT_EQ(calloc1, arguments.calloc);
}

TEST_F(PluginArgumentsTest, SecondParseAddsToTheFirst) {
    QVPI_Arguments arguments;
    EXPECT_EQ(-1, parse(arguments, {option("malloc", malloc1), option("free", free1)}));
    EXPECT_EQ(0, parse(arguments, {option("realloc", realloc1), option("calloc", calloc1)}))
        << "together they are complete";
    EXPECT_EQ(malloc1, arguments.malloc);
    EXPECT_EQ(calloc1, arguments.calloc);
    EXPECT_EQ(0, parse(arguments, {}));
    EXPECT_EQ(-1, parse(arguments, {option("calloc")})) << "one of four was taken away";
    EXPECT_EQ(free1, arguments.free);
}

TEST_F(PluginArgumentsTest, LaterDuplicateOverwrites) {
    QVPI_Arguments arguments;
    EXPECT_EQ(0, parse(arguments, {option("abort", abort1), option("abort", abort2)}));
    EXPECT_EQ(abort2, arguments.abort);
    EXPECT_EQ(0, parse(arguments, {option("abort")}));
    EXPECT_EQ(nullptr, arguments.abort);
}

TEST_F(PluginArgumentsTest, AbortExitAndPrintingAreIndependent) {
    QVPI_Arguments onlyAbort;
    QVPI_Arguments onlyExit;
    QVPI_Arguments onlyPrinting;
    EXPECT_EQ(0, parse(onlyAbort, {option("abort", abort1)}));
    EXPECT_EQ(0, parse(onlyExit, {option("exit", exit1)}));
    EXPECT_EQ(0, parse(onlyPrinting, {option("vprintf", printForPlugin)}));
}

TEST_F(PluginArgumentsTest, AllocatorIsCompleteOrAbsent) {
    const QVPI_PluginOption parts[] = {option("malloc", malloc1), option("realloc", realloc1),
                                       option("calloc", calloc1), option("free", free1)};
    for (unsigned set = 0; set < 16; ++set) {
        std::vector<QVPI_PluginOption> options;
        for (unsigned i = 0; i < 4; ++i)
            if (set & (1u << i))
                options.push_back(parts[i]);
        QVPI_Arguments arguments;
        EXPECT_EQ(set == 0 || set == 15 ? 0 : -1, parse(arguments, options)) << "set " << set;
    }
}

TEST_F(PluginArgumentsTest, IncompleteAllocatorFailsAlthoughEveryOptionIsGood) {
    QVPI_Arguments arguments;
    EXPECT_EQ(-1,
              parse(arguments, {option("malloc", malloc1), option("free", free1), option("abort", abort1)}));
    EXPECT_EQ(abort1, arguments.abort) << "the options were taken all the same";
    EXPECT_EQ("", printedByHost);
}

TEST_F(PluginArgumentsTest, BaseAcceptsUnknownOptions) {
    QVPI_Arguments arguments;
    EXPECT_EQ(0, parse(arguments, {option("whatever"), option("abort", abort1)}));
    EXPECT_EQ(abort1, arguments.abort);
    EXPECT_EQ("", printedByHost);
}

TEST_F(PluginArgumentsTest, OverrideIsAskedOnlyForWhatIsNotCommon) {
    RefusingArguments arguments;
    EXPECT_EQ(0, parse(arguments, {option("abort", abort1), option("known"), option("exit", exit1)}));
    EXPECT_EQ(std::vector<std::string>{"known"}, arguments.asked);
}

TEST_F(PluginArgumentsTest, RefusedOptionIsReportedAndFails) {
    RefusingArguments arguments;
    EXPECT_EQ(-1, parse(arguments, {option("strange")}));
    EXPECT_EQ("Unknown option: strange\n", printedByHost);
}

TEST_F(PluginArgumentsTest, QuietFailsWithoutAReport) {
    RefusingArguments arguments;
    EXPECT_EQ(-1, parse(arguments, {option("strange")}, 1));
    EXPECT_EQ(-1, parse(arguments, {option("strange")}, 255));
    EXPECT_EQ("", printedByHost);
}

TEST_F(PluginArgumentsTest, ReportGoesThroughThePrintingOption) {
    RefusingArguments arguments;
    EXPECT_EQ(-1, parse(arguments, {option("vprintf", printForPlugin), option("strange")}));
    EXPECT_EQ("Unknown option: strange\n", printedByPlugin);
    EXPECT_EQ("", printedByHost);
}

TEST_F(PluginArgumentsTest, NothingBehindABadOptionIsLookedAt) {
    RefusingArguments arguments;
    EXPECT_EQ(-1, parse(arguments, {option("strange"), option("abort", abort1), option("stranger")}));
    EXPECT_EQ(std::vector<std::string>{"strange"}, arguments.asked);
    EXPECT_EQ(nullptr, arguments.abort);
    EXPECT_EQ("Unknown option: strange\n", printedByHost);
}

TEST_F(PluginArgumentsTest, VersionOfTheRecordIsNotRead) {
    QVPI_Arguments arguments;
    const QVPI_PluginOption abort = option("abort", abort1);
    const QVPI_PluginInitArgs args = {0xFFFFFFFF, 1, &abort, 0};
    EXPECT_EQ(0, arguments.parse(&args));
}

TEST_F(PluginArgumentsTest, NothingIsObsolete) {
    QVPI_Arguments arguments;
    const QVPI_PluginOption any = option("any");
    EXPECT_FALSE(arguments.isObsoleteOption(&any));
    EXPECT_FALSE(arguments.isObsoleteOption(nullptr));
}

TEST_F(PluginArgumentsTest, BadOptionSaysWhetherItReported) {
    QVPI_Arguments arguments;
    const QVPI_PluginOption bad = option("bad %s option");
    EXPECT_TRUE(arguments.isBadOption(&bad, 0));
    EXPECT_FALSE(arguments.isBadOption(&bad, 1));
    EXPECT_EQ("Unknown option: bad %s option\n", printedByHost);
}

TEST_F(PluginArgumentsTest, CopyTakesTheSevenFunctions) {
    QVPI_Arguments arguments;
    ASSERT_EQ(0, parse(arguments, {option("exit", exit1), option("abort", abort1), option("malloc", malloc1),
                                   option("realloc", realloc1), option("calloc", calloc1),
                                   option("free", free1), option("vprintf", printForPlugin)}));
    const QVPI_Arguments copy(arguments);
    QVPI_Arguments assigned;
    assigned = arguments;
    for (const QVPI_Arguments* each : {&copy, static_cast<const QVPI_Arguments*>(&assigned)}) {
        EXPECT_EQ(abort1, each->abort);
        EXPECT_EQ(exit1, each->exit);
        EXPECT_EQ(printForPlugin, each->vprintf);
        EXPECT_EQ(malloc1, each->malloc);
        EXPECT_EQ(realloc1, each->realloc);
        EXPECT_EQ(calloc1, each->calloc);
        EXPECT_EQ(free1, each->free);
    }
}

TEST_F(PluginArgumentsTest, NullArgumentsFail) {
    QVPI_Arguments arguments;
    const QVPI_PluginInitArgs noList = {0x00010000, 1, nullptr, 0};
    EXPECT_EQ(-1, arguments.parse(nullptr));
    EXPECT_EQ(-1, arguments.parse(&noList));
    EXPECT_EQ("", printedByHost);
}

TEST_F(PluginArgumentsTest, OptionWithoutNameIsBad) {
    RefusingArguments arguments;
    EXPECT_EQ(-1, parse(arguments, {option(nullptr)}));
    EXPECT_TRUE(arguments.asked.empty());
    EXPECT_EQ("Unknown option: (null)\n", printedByHost);
}

class ThrowingArguments : public QVPI_Arguments {
    int handleQvpiPluginOption(const QVPI_PluginOption*) override { throw 7; }
};

TEST_F(PluginArgumentsTest, ExceptionOfTheOverridePasses) {
    ThrowingArguments arguments;
    EXPECT_THROW(parse(arguments, {option("any")}), int);
}

TEST_F(PluginArgumentsTest, ParsingNeedsNoMemory) {
    QVPI_Arguments arguments;
    const QVPI_PluginOption options[] = {option("abort", abort1), option("any")};
    const QVPI_PluginInitArgs args = {0x00010000, 2, options, 0};
    Testing::everyAllocationFails([&] { EXPECT_EQ(0, arguments.parse(&args)); });
    Testing::everyNewFails([&] { EXPECT_EQ(0, arguments.parse(&args)); });
}

} // namespace
} // namespace Quillon::System
