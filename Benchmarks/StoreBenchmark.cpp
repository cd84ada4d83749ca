#include "DiskFolder.h"
#include "GeneratedHistory.h"
#include "Measure.h"
#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstdlib>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace {

using namespace selvane;
using namespace selvane::benchmarks;
using Sessions = std::vector<FocusSession>;

/// A store with a generated history in a folder of its own.
class Fixture {
public:
    explicit Fixture(std::size_t count) : history(generatedHistory(count)) {
        if (!store().save(history))
            std::abort();
    }

    JSONStore<Sessions> store() {
        return {folder.path() / "sessions.json",
                {&files, [] { return Date{}; }, [] { return Calendar::utc(); }}};
    }

    PosixFileSystem files;
    Sessions history;
    DiskFolder folder;
};

/// Loading as the program loads, element by element, against the bare parse of the same bytes in memory by a
/// parser that has its buffers already.
void LoadHistory(benchmark::State& state) {
    Fixture fixture(static_cast<std::size_t>(state.range(0)));
    fixture.history = {};
    const simdjson::padded_string bytes =
        simdjson::padded_string::load((fixture.folder.path() / "sessions.json").string());
    state.counters["file_mb"] = static_cast<double>(bytes.size()) / 1e6;
    simdjson::dom::parser parser;
    std::optional<Sessions> history;
    measure(
        state, Limit{.ratio = 6.5, .goal = 3.5}, [&] { history.reset(); },
        [&] {
            auto result = fixture.store().readLossy();
            history = std::move(std::get<JSONStore<Sessions>::Loaded>(result).value);
            if (history->size() != static_cast<std::size_t>(state.range(0)))
                std::abort();
        },
        [&] {
            if (parser.parse(bytes).error() != simdjson::SUCCESS)
                std::abort();
        });
}

/// Saving, against writing ready bytes with as much care.
void SaveHistory(benchmark::State& state) {
    Fixture fixture(static_cast<std::size_t>(state.range(0)));
    const auto contents = FileContents::read(fixture.files, fixture.folder.path() / "sessions.json");
    const std::string_view bytes = contents->bytes();
    state.counters["file_mb"] = static_cast<double>(bytes.size()) / 1e6;
    measure(
        state, Limit{.ratio = 1.5, .goal = 1.1}, [] {},
        [&] {
            if (!fixture.store().save(fixture.history))
                std::abort();
        },
        [&] { fixture.folder.writeDurably(bytes); });
}

BENCHMARK(LoadHistory)
    ->Arg(2'000)
    ->Arg(60'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(SaveHistory)
    ->Arg(2'000)
    ->Arg(60'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
