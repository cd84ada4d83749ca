#pragma once

#include "PeakMemory.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

namespace selvane::benchmarks {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// Rounds of each measurement; what is reported are medians.
inline constexpr int rounds = 11;

template <typename Action>
Milliseconds timed(Action action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - start;
}

inline Milliseconds median(std::vector<Milliseconds> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::ranges::nth_element(times, middle);
    return *middle;
}

/// What a measurement may cost.
struct Limit {
    /// In times its floor.
    double ratio;
    /// Worth reaching, beyond the limit.
    std::optional<double> goal = std::nullopt;
    /// In time, on the machines that the project is developed on.
    std::optional<double> milliseconds = std::nullopt;
};

/// Measures `action` and `floor` in turns, so that both see the same machine; what `tidy` does before each
/// action doesn't count. Reports medians, their ratio and the limit that it is held to.
template <typename Tidy, typename Action, typename Floor>
void measure(benchmark::State& state, Limit limit, Tidy tidy, Action action, Floor floor) {
    for (auto unused : state) {
        static_cast<void>(unused);
        std::vector<Milliseconds> times;
        std::vector<Milliseconds> floors;
        action();
        floor();
        for (int round = 0; round < rounds; ++round) {
            floors.push_back(timed(floor));
            tidy();
            times.push_back(timed(action));
        }
        const Milliseconds time = median(times);
        tidy();
        const PeakMemory memory;
        action();
        state.counters["peak_mb"] = memory.megabytes();
        state.counters["ms"] = time.count();
        state.counters["floor_ms"] = median(floors).count();
        state.counters["ratio_to_floor"] = time / median(floors);
        state.counters["limit"] = limit.ratio;
        if (limit.goal)
            state.counters["goal"] = *limit.goal;
        if (limit.milliseconds)
            state.counters["limit_ms"] = *limit.milliseconds;
        state.SetIterationTime(time.count() / 1000);
    }
}

} // namespace selvane::benchmarks
