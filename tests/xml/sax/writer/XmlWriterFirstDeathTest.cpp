// The first writer of a process, which makes the locator of all: each test is a child of its own.
#include "xml/sax/writer/XmlWriter.h"

#include "WriterFixture.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace Quillon::Xml::Sax {
namespace {

using Testing::everyAllocationFails;
using Testing::hostMemory;
using Testing::newMemory;

/// Ends with status 0 when `holds`.
[[noreturn]] void report(bool holds) {
    std::_Exit(holds && !testing::Test::HasFailure() ? 0 : 1);
}

TEST(XmlWriterFirstDeathTest, MayRunOutOfMemory) {
    EXPECT_EXIT(
        {
            FixedSink sink;
            std::ostream out(&sink);
            bool failed = false;
            everyAllocationFails([&] { XmlWriter first(out); }, [&] { failed = true; });
            XmlWriter writer(out);
            writer.startDocument();
            report(failed && !sink.written().empty());
        },
        testing::ExitedWithCode(0), "");
}

TEST(XmlWriterFirstDeathTest, LeavesNoBlockBehind) {
    EXPECT_EXIT(
        {
            FixedSink sink;
            std::ostream out(&sink);
            const std::ptrdiff_t hostBlocks = hostMemory().liveBlocks();
            const std::ptrdiff_t objects = newMemory().liveBlocks();
            const std::size_t requests = hostMemory().requests();
            { XmlWriter writer(out); }
            report(hostMemory().requests() > requests && hostBlocks == hostMemory().liveBlocks()
                   && objects == newMemory().liveBlocks());
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace Quillon::Xml::Sax
