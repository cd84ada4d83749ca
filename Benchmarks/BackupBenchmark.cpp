#include "GeneratedBackup.h"
#include "Measure.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/SelvaneBackup.h"

#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <cstddef>
#include <cstdlib>
#include <optional>
#include <utility>

namespace {

using namespace selvane;
using namespace selvane::benchmarks;

/// Reading and validating a document of as many bytes, against the bare parse of the same bytes by a
/// parser that has its buffers already.
void DecodeBackup(benchmark::State& state) {
    const FileContents contents =
        FileContents::copy(generatedBackup(static_cast<std::size_t>(state.range(0))));
    const simdjson::padded_string bytes(contents.bytes());
    state.counters["file_mb"] = static_cast<double>(bytes.size()) / 1e6;
    simdjson::dom::parser parser;
    std::optional<SelvaneBackup> backup;
    measure(
        state, Limit{.ratio = 9}, [&] { backup.reset(); },
        [&] {
            auto decoded = SelvaneBackup::decode(contents, afterAll);
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
