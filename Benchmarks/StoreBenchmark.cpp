#include "PeakMemory.h"
#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/PosixFileSystem.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <simdjson.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>
#include <vector>

namespace {

using namespace selvane;
using benchmarks::PeakMemory;
using History = std::vector<FocusSession>;
using Milliseconds = std::chrono::duration<double, std::milli>;

/// Rounds of each measurement; what is reported are medians.
constexpr int rounds = 11;

/// Years of use: focus sessions with up to two applications each.
History generatedHistory(std::size_t count) {
    std::mt19937_64 random(42);
    const auto below = [&random](std::uint64_t end) { return random() % end; };
    const auto uuid = [&random] {
        UUID::Bytes bytes{};
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
        return UUID(bytes);
    };
    const std::vector<AppUsage> apps{
        {"org.gnome.TextEditor", "Text Editor", {}},       {"org.mozilla.firefox", "Firefox", {}},
        {"site:news.example.org", "news.example.org", {}}, {"org.gnome.Nautilus", "Files", {}},
        {"com.example.Größe", "Größe/Länge", {}},          {"away", "Away", {}}};
    const std::vector<UUID> tasks{uuid(), uuid(), uuid(), uuid()};

    History history;
    history.reserve(count);
    Date start = std::chrono::sys_days{std::chrono::year{2015} / 1 / 5};
    while (history.size() < count) {
        start += std::chrono::seconds{1800 + below(3600)};
        const auto length = std::chrono::microseconds{60'000'000 + below(1'440'000'000)};
        FocusSession session{uuid(),
                             start,
                             start + length,
                             Phase::focus,
                             Seconds{1500},
                             Seconds{length},
                             below(4) != 0,
                             tasks[below(tasks.size())],
                             std::vector<AppUsage>{}};
        for (auto left = below(3); left > 0; --left) {
            AppUsage usage = apps[below(apps.size())];
            usage.seconds = std::chrono::microseconds{below(600'000'000)};
            session.apps->push_back(std::move(usage));
        }
        history.push_back(std::move(session));
    }
    return history;
}

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

    JSONStore<History> store() {
        return {folder / "sessions.json", {&files, [] { return Date{}; }, [] { return Calendar::utc(); }}};
    }

    PosixFileSystem files;
    History history;
    std::filesystem::path folder;
};

template <typename Action>
Milliseconds timed(Action action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - start;
}

Milliseconds median(std::vector<Milliseconds> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::ranges::nth_element(times, middle);
    return *middle;
}

/// Measures `action` and `floor` in turns, so that both see the same machine; what `tidy` does before each
/// action doesn't count.
template <typename Tidy, typename Action, typename Floor>
void measure(benchmark::State& state, Tidy tidy, Action action, Floor floor) {
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
        state.SetIterationTime(time.count() / 1000);
    }
}

/// Loading as the program loads, element by element, against the bare parse of the same bytes in memory by a
/// parser that has its buffers already.
void LoadHistory(benchmark::State& state) {
    Fixture fixture(static_cast<std::size_t>(state.range(0)));
    fixture.history = {};
    const simdjson::padded_string bytes =
        simdjson::padded_string::load((fixture.folder / "sessions.json").string());
    state.counters["file_mb"] = static_cast<double>(bytes.size()) / 1e6;
    simdjson::dom::parser parser;
    std::optional<History> history;
    measure(
        state, [&] { history.reset(); },
        [&] {
            auto result = fixture.store().readLossy();
            history = std::move(std::get<JSONStore<History>::Loaded>(result).value);
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
        state, [] {}, [&] { check(fixture.store().save(fixture.history).has_value()); },
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
