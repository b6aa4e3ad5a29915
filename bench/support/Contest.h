#ifndef ZUTARNEX_BENCH_SUPPORT_CONTEST_H
#define ZUTARNEX_BENCH_SUPPORT_CONTEST_H

#include "support/Allocations.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>
#include <utility>

namespace Quillon::Bench {

/// What the competitors of a workload are called in results: "<workload>/<competitor>".
inline constexpr const char kLibrary[] = "zutarnex";

/// What one round of a workload is made of. The evaluation divides by `units` for times per operation, and by the time
/// for throughput.
struct Load {
    std::size_t units = 0; ///< operations or events
    std::size_t bytes = 0; ///< of what the workload's title names: output or input
};

/// Enters a competitor. `prepare` is called before the clock starts and returns what is measured: an object whose call
/// operator does the whole work of a round, and whose `load()` is asked after the first round.
template <class Prepare>
void enter(const std::string& workload, const std::string& competitor, Prepare prepare) {
    benchmark::RegisterBenchmark((workload + '/' + competitor).c_str(), [=](benchmark::State& state) {
        auto round = prepare();
        round(); // first-use costs are nobody's subject
        const Load load = round.load();
        const std::uint64_t before = allocationCount();
        round();
        const auto allocations = static_cast<double>(allocationCount() - before);
        for (auto _ : state)
            round();
        state.counters["units"] = static_cast<double>(load.units);
        state.counters["bytes"] = static_cast<double>(load.bytes);
        state.counters["allocations"] = allocations;
    });
}

/// A round whose load is known beforehand.
template <class Work>
class Round {
public:
    Round(Load load, Work work) : load_(load), work_(std::move(work)) {}

    void operator()() { work_(); }
    Load load() const noexcept { return load_; }

private:
    Load load_;
    Work work_;
};

/// An object of namespace scope whose construction runs `entries`: how a file of benchmarks or of one peer's makes
/// itself known.
struct Entries {
    explicit Entries(const std::function<void()>& entries) { entries(); }
};

} // namespace Quillon::Bench

#endif
