#include "Music/GoldenNoise.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>

namespace {

using namespace selvane::test;

/// How many of them a synth doesn't give.
int differences(std::span<const GoldenNoise> golden) {
    int count = 0;
    for (const GoldenNoise& expected : golden) {
        const GoldenNoise samples = rendered(expected.kind, expected.rate, expected.frames, 960);
        if (samples.hash == expected.hash && samples.spots == expected.spots)
            continue;
        std::fprintf(stderr, "kind %d at %.0f Hz, %zu frames: other samples\n",
                     static_cast<int>(expected.kind), static_cast<double>(expected.rate), expected.frames);
        ++count;
    }
    return count;
}

} // namespace

/// Fails unless this compiler's synth gives the golden samples. Needs no library, so that it can be compiled
/// with any compiler.
///
///     noise-samples LONG_ROWS VARIANT
///
/// LONG_ROWS: how many rows of ten minutes are rendered too. VARIANT: FMA where the processor must be able to
/// do that; 77 tells that this one isn't.
int main(int, char** arguments) {
#ifdef __x86_64__
    if (std::string_view(arguments[2]) == "FMA" && !__builtin_cpu_supports("fma"))
        return 77;
#endif
    const std::span longRows(longGoldenNoise);
    const auto count = static_cast<std::size_t>(std::atoi(arguments[1]));
    return differences(goldenNoise) + differences(longRows.first(count)) == 0 ? 0 : 1;
}
