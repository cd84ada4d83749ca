#include "Music/NoiseFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace selvane::test {
namespace {

/// What the rain of a voice does, seen frame by frame.
class RainTest : public NoiseFixture,
                 public testing::WithParamInterface<const NoiseVoice& (NoiseSynth::*)() const> {
protected:
    [[nodiscard]] const NoiseVoice& voice() const { return (_synth.*GetParam())(); }
};

TEST_P(RainTest, AboutFortyDropsFallASecondAndTheyLastTwoToTwelveMilliseconds) {
    constexpr int seconds = 100;
    int drops = 0;
    double expected = 0;
    double shortest = 1e9;
    double longest = 0;
    float previous = voice().dropDecay;
    for (std::size_t frame = 0; frame < seconds * 48'000; ++frame) {
        render(1);
        expected += 40 / double{rate} * double{voice().intensity};
        if (voice().dropDecay == previous)
            continue;
        previous = voice().dropDecay;
        ++drops;
        const double length = -1 / std::log(double{previous});
        shortest = std::min(shortest, length);
        longest = std::max(longest, length);
    }
    EXPECT_NEAR(drops, expected, expected * 0.04);
    EXPECT_NEAR(drops / double{seconds}, 40, 2);
    EXPECT_GE(shortest, 95.9);
    EXPECT_LE(shortest, 97);
    EXPECT_LE(longest, 576.1);
    EXPECT_GE(longest, 575);
}

TEST_P(RainTest, DropStartsBetweenThreeTenthsAndOne) {
    float weakest = 2;
    float strongest = 0;
    float previous = voice().dropDecay;
    int drops = 0;
    for (std::size_t frame = 0; frame < 60 * 48'000 && drops < 1000; ++frame) {
        render(1);
        if (voice().dropDecay == previous)
            continue;
        previous = voice().dropDecay;
        ++drops;
        const float amplitude = voice().dropEnvelope / voice().dropDecay;
        weakest = std::min(weakest, amplitude);
        strongest = std::max(strongest, amplitude);
    }
    EXPECT_EQ(drops, 1000);
    EXPECT_GE(weakest, 0.2999F);
    EXPECT_LE(weakest, 0.31F);
    EXPECT_LE(strongest, 1.0001F);
    EXPECT_GE(strongest, 0.99F);
}

TEST_P(RainTest, SwellsTowardsAnotherStrengthEveryFewSeconds) {
    std::vector<float> targets;
    std::vector<std::int64_t> lengths;
    for (std::size_t frame = 0; frame < 600 * 48'000;) {
        render(1);
        targets.push_back(voice().intensityTarget);
        lengths.push_back(voice().intensityCountdown);
        ASSERT_GT(lengths.back(), 0);
        // As many frames as it takes until the next draw is due.
        const auto rest = static_cast<std::size_t>(lengths.back()) - 1;
        render(rest);
        EXPECT_EQ(voice().intensityTarget, targets.back());
        EXPECT_EQ(voice().intensityCountdown, 1);
        frame += rest + 1;
    }
    EXPECT_GT(targets.size(), 200U);
    EXPECT_GE(std::ranges::min(targets), 0.75F);
    EXPECT_LT(std::ranges::min(targets), 0.76F);
    EXPECT_LE(std::ranges::max(targets), 1.2F);
    EXPECT_GT(std::ranges::max(targets), 1.19F);
    EXPECT_GE(std::ranges::min(lengths), 72'000);
    EXPECT_LT(std::ranges::min(lengths), 74'000);
    EXPECT_LE(std::ranges::max(lengths), 168'000);
    EXPECT_GT(std::ranges::max(lengths), 166'000);
}

TEST_P(RainTest, StrengthFollowsItsTargetInOnePointTwoSeconds) {
    render(1);
    const float target = voice().intensityTarget;
    ASSERT_GT(voice().intensityCountdown, 57'600);
    const double distance = double{voice().intensity} - double{target};
    render(57'600);
    EXPECT_NEAR((double{voice().intensity} - double{target}) / distance, std::exp(-1.0), 0.04);
}

INSTANTIATE_TEST_SUITE_P(Left, RainTest, testing::Values(&NoiseSynth::left));
INSTANTIATE_TEST_SUITE_P(Right, RainTest, testing::Values(&NoiseSynth::right));

} // namespace
} // namespace selvane::test
