#include "GeneratedHistory.h"
#include "Measure.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/SelvaneBackup.h"

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace {

using namespace selvane;
using namespace selvane::benchmarks;

/// After every session of a generated history.
constexpr Date now = std::chrono::sys_days{std::chrono::year{2100} / 1 / 1};

/// The bytes of a document of that size, nearly all of them sessions.
std::string documentOf(std::size_t size) {
    const auto textOf = [](std::size_t count) {
        const SelvaneBackup backup("1.0", now, {}, generatedHistory(count), std::nullopt, {});
        auto text = backup.encoded();
        if (!text)
            std::abort();
        return std::move(*text);
    };
    constexpr std::size_t sample = 10'000;
    const double bytesPerSession = static_cast<double>(textOf(sample).size()) / sample;
    const auto count = static_cast<std::size_t>(0.99 * static_cast<double>(size) / bytesPerSession);
    std::string text = textOf(count);
    if (text.size() > size)
        std::abort();
    // White space makes up the rest.
    text.resize(size, ' ');
    return text;
}

/// Reading and validating a document of as many bytes, against the bare parse of the same bytes by a
/// parser that has its buffers already.
void DecodeBackup(benchmark::State& state) {
    const FileContents contents = FileContents::copy(documentOf(static_cast<std::size_t>(state.range(0))));
    const simdjson::padded_string bytes(contents.bytes());
    state.counters["file_mb"] = static_cast<double>(bytes.size()) / 1e6;
    simdjson::dom::parser parser;
    std::optional<SelvaneBackup> backup;
    measure(
        state, Limit{.ratio = 9}, [&] { backup.reset(); },
        [&] {
            auto decoded = SelvaneBackup::decode(contents, now);
            if (!decoded)
                std::abort();
            backup = std::move(*decoded);
        },
        [&] {
            if (parser.parse(bytes).error() != simdjson::SUCCESS)
                std::abort();
        });
    state.counters["sessions"] = static_cast<double>(backup->sessions.size());
}

BENCHMARK(DecodeBackup)
    ->Arg(SelvaneBackup::maxFileSize)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
