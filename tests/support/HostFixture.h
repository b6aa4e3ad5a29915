#ifndef ZUTARNEX_TESTS_SUPPORT_HOSTFIXTURE_H
#define ZUTARNEX_TESTS_SUPPORT_HOSTFIXTURE_H

#include "support/Allocations.h"
#include "system/OutOfMemoryException.h"

#include <gtest/gtest.h>

#include <new>

namespace Quillon::Testing {

/// Checks after every test that no block of the host and no object of operator new is left over, and none was
/// freed twice. What lives as long as the process must be made before: override `warmUp`, which runs outside the
/// balance (each test's; what is there already costs nothing).
class HostFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    virtual void warmUp() {}

private:
    std::ptrdiff_t hostBlocks_ = 0;
    std::ptrdiff_t objects_ = 0;
};

/// Runs `scenario` again and again; in the k-th run the k-th request to `source` fails. Each failure must end the
/// scenario with `Exception` and leave no block behind; `afterFailure` then looks at the state. Ends with the run in which nothing failed.
template <class Exception, class Scenario, class AfterFailure>
void everyRequestFails(AllocationSource& source, Scenario scenario, AfterFailure afterFailure) {
    for (std::size_t k = 1;; ++k) {
        const std::ptrdiff_t hostBlocks = hostMemory().liveBlocks();
        const std::ptrdiff_t objects = newMemory().liveBlocks();
        bool threw = false;
        source.failRequest(k);
        try {
            scenario();
        } catch (const Exception&) {
            threw = true;
        } catch (...) {
            source.failRequest(0);
            throw;
        }
        const bool failed = !source.failureIsPending();
        source.failRequest(0);
        if (!failed) {
            EXPECT_FALSE(threw) << "although no request failed";
            return;
        }
        EXPECT_TRUE(threw) << "when request " << k << " failed";
        EXPECT_EQ(hostBlocks, hostMemory().liveBlocks()) << "host blocks, when request " << k << " failed";
        EXPECT_EQ(objects, newMemory().liveBlocks()) << "objects, when request " << k << " failed";
        afterFailure();
        if (!threw)
            return;
    }
}

/// The same for the two sources with the exceptions that they lead to. `afterFailure` may be left out.
template <class Scenario, class AfterFailure>
void everyAllocationFails(Scenario scenario, AfterFailure afterFailure) {
    everyRequestFails<System::OutOfMemoryException>(hostMemory(), scenario, afterFailure);
}
template <class Scenario>
void everyAllocationFails(Scenario scenario) {
    everyAllocationFails(scenario, [] {});
}
template <class Scenario, class AfterFailure>
void everyNewFails(Scenario scenario, AfterFailure afterFailure) {
    everyRequestFails<std::bad_alloc>(newMemory(), scenario, afterFailure);
}
template <class Scenario>
void everyNewFails(Scenario scenario) {
    everyNewFails(scenario, [] {});
}

} // namespace Quillon::Testing

#endif
