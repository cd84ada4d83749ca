#include "GeneratedHistory.h"
#include "Measure.h"
#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <simdjson.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
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
        // Beside the program, since a folder for temporary files may be in memory, where a sync costs
        // nothing.
        std::string name = SELVANE_BENCHMARK_FOLDER "/selvane-benchmark-XXXXXX";
        if (!::mkdtemp(name.data()))
            std::abort();
        folder = name;
        if (!store().save(history))
            std::abort();
    }
    Fixture(const Fixture&) = delete;
    Fixture& operator=(const Fixture&) = delete;
    ~Fixture() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    JSONStore<Sessions> store() {
        return {folder / "sessions.json", {&files, [] { return Date{}; }, [] { return Calendar::utc(); }}};
    }

    PosixFileSystem files;
    Sessions history;
    std::filesystem::path folder;
};

/// Loading as the program loads, element by element, against the bare parse of the same bytes in memory by a
/// parser that has its buffers already.
void LoadHistory(benchmark::State& state) {
    Fixture fixture(static_cast<std::size_t>(state.range(0)));
    fixture.history = {};
    const simdjson::padded_string bytes =
        simdjson::padded_string::load((fixture.folder / "sessions.json").string());
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

/// Saving, against writing ready bytes with as much care: new file, sync, rename, sync of the folder.
void SaveHistory(benchmark::State& state) {
    Fixture fixture(static_cast<std::size_t>(state.range(0)));
    const auto contents = FileContents::read(fixture.files, fixture.folder / "sessions.json");
    const std::string_view bytes = contents->bytes();
    state.counters["file_mb"] = static_cast<double>(bytes.size()) / 1e6;
    const auto check = [](bool isDone) {
        if (!isDone)
            std::abort();
    };
    measure(
        state, Limit{.ratio = 1.5, .goal = 1.1}, [] {},
        [&] { check(fixture.store().save(fixture.history).has_value()); },
        [&] {
            const auto temporary = fixture.folder / "floor.new";
            const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
            check(::write(file, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
            check(::fsync(file) == 0 && ::close(file) == 0);
            check(std::rename(temporary.c_str(), (fixture.folder / "floor").c_str()) == 0);
            const int folder = ::open(fixture.folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            check(::fsync(folder) == 0 && ::close(folder) == 0);
        });
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
