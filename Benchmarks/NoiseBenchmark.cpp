#include "Measure.h"
#include "Selvane/Music/NoiseSynth.h"

#include <benchmark/benchmark.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace {

using namespace selvane;
using namespace selvane::benchmarks;

constexpr std::size_t framesPerSecond = 48'000;
/// Twenty milliseconds.
constexpr std::size_t piece = framesPerSecond / 50;

/// The next random number from 0 up to 1.
float uniform(std::uint64_t& state) {
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return static_cast<float>(static_cast<std::int32_t>(state >> 40)) / 16'777'216.0F;
}

/// The random numbers that as many samples of rain are made of: four for each.
void drawNumbers(std::uint64_t& state, std::uint64_t& otherState, std::span<float> samples,
                 std::span<float> otherSamples) {
    std::uint64_t x = state;
    std::uint64_t y = otherState;
    for (std::size_t frame = 0; frame < samples.size(); ++frame) {
        float sum = 0;
        float otherSum = 0;
        for (int draw = 0; draw < 4; ++draw) {
            sum += uniform(x);
            otherSum += uniform(y);
        }
        samples[frame] = sum;
        otherSamples[frame] = otherSum;
    }
    state = x;
    otherState = y;
}

/// Seconds of rain in stereo, against its random numbers alone.
void RenderRain(benchmark::State& state) {
    const auto pieces = static_cast<std::size_t>(state.range(0)) * framesPerSecond / piece;
    NoiseSynth synth(framesPerSecond);
    synth.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
    std::array<float, piece> left{};
    std::array<float, piece> right{};
    std::uint64_t leftState = synth.left().rng;
    std::uint64_t rightState = synth.right().rng;
    // 0.06 % of a core.
    const Limit limit{.ratio = 1.6, .milliseconds = 0.6 * static_cast<double>(state.range(0))};
    measure(
        state, limit, [] {},
        [&] {
            for (std::size_t done = 0; done < pieces; ++done) {
                synth.render(piece, std::array{left.data(), right.data()});
                benchmark::DoNotOptimize(left);
                benchmark::DoNotOptimize(right);
            }
        },
        [&] {
            for (std::size_t done = 0; done < pieces; ++done) {
                drawNumbers(leftState, rightState, left, right);
                benchmark::DoNotOptimize(left);
                benchmark::DoNotOptimize(right);
            }
        });
}

BENCHMARK(RenderRain)->Arg(60)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
