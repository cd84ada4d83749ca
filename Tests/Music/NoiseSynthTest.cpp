#include "Music/GoldenNoise.h"
#include "Music/NoiseFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <climits>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <string>
#include <thread>
#include <vector>

namespace selvane::test {
namespace {

constexpr std::uint64_t leftSeed = 0x9E37'79B9'7F4A'7C15;
constexpr std::uint64_t rightSeed = 0xD1B5'4A32'D192'ED03;
std::uint64_t next(std::uint64_t state) {
    state ^= state << 13;
    state ^= state >> 7;
    return state ^ state << 17;
}

float whiteNoise(std::uint64_t state) {
    return 2 * (static_cast<float>(state >> 40) / 16'777'216.0F) - 1;
}

/// What a new synth makes, and the voices that it has then.
struct Rendered {
    Rendered(int kindRaw, float gain, std::size_t frames) : left(frames), right(frames) {
        NoiseSynth synth(48'000);
        synth.kindRaw = kindRaw;
        synth.targetGainBits = std::bit_cast<std::uint32_t>(gain);
        synth.render(frames, std::array{left.data(), right.data()});
        leftVoice = synth.left();
        rightVoice = synth.right();
    }

    std::vector<float> left;
    std::vector<float> right;
    NoiseVoice leftVoice{};
    NoiseVoice rightVoice{};
};

class NoiseSynthTest : public NoiseFixture {};

TEST_F(NoiseSynthTest, StartsSilentWithTheSeedsAndRain) {
    EXPECT_EQ(_synth.kindRaw, 0);
    EXPECT_EQ(_synth.targetGainBits, 0U);
    EXPECT_EQ(_synth.sampleRate(), rate);
    EXPECT_EQ(_synth.gain(), 0.0F);
    EXPECT_EQ(_synth.left(), NoiseVoice{.rng = leftSeed});
    EXPECT_EQ(_synth.right(), NoiseVoice{.rng = rightSeed});
    EXPECT_EQ(_synth.left().intensity, 1.0F);
    EXPECT_EQ(_synth.left().intensityTarget, 1.0F);
    render(100);
    EXPECT_THAT(_left, testing::Each(0.0F));
    EXPECT_THAT(_right, testing::Each(0.0F));
}

TEST_F(NoiseSynthTest, ZeroFramesChangeNothing) {
    aimAt(1);
    for (const NoiseKind kind : allKinds) {
        choose(kind);
        render(10);
        const float gain = _synth.gain();
        const NoiseVoice left = _synth.left();
        const NoiseVoice right = _synth.right();
        render(0);
        EXPECT_EQ(_synth.gain(), gain);
        EXPECT_EQ(_synth.left(), left);
        EXPECT_EQ(_synth.right(), right);
    }
}

TEST_F(NoiseSynthTest, FirstSampleFollowsFromOneStepOfTheSeed) {
    choose(NoiseKind::white);
    aimAt(1);
    render(1);
    const float step = 1 / (rate * 0.5F);
    EXPECT_EQ(_synth.left().rng, next(leftSeed));
    EXPECT_EQ(_synth.right().rng, next(rightSeed));
    EXPECT_EQ(_left[0], 0.16F * whiteNoise(next(leftSeed)) * step);
    EXPECT_EQ(_right[0], 0.16F * whiteNoise(next(rightSeed)) * step);
}

TEST_F(NoiseSynthTest, NumbersThatAreNoKindRenderRain) {
    const Rendered rain(static_cast<int>(NoiseKind::rain), 1, 100);
    for (const int raw : {4, 5, 256, INT_MAX, -1, -4, INT_MIN}) {
        const Rendered other(raw, 1, 100);
        EXPECT_EQ(other.left, rain.left) << raw;
        EXPECT_EQ(other.right, rain.right) << raw;
        EXPECT_EQ(other.leftVoice, rain.leftVoice) << raw;
        EXPECT_EQ(other.rightVoice, rain.rightVoice) << raw;
    }
}

TEST_F(NoiseSynthTest, EachKindHasASoundOfItsOwn) {
    std::vector<std::vector<float>> heard;
    for (const NoiseKind kind : allKinds) {
        const Rendered sound(static_cast<int>(kind), 1, 100);
        EXPECT_THAT(heard, testing::Not(testing::Contains(sound.left))) << nameOf(kind);
        heard.push_back(sound.left);
    }
}

TEST_F(NoiseSynthTest, ChangeOfKindSwitchesAtTheNextCallAndKeepsTheGain) {
    aimAt(1);
    renderSeconds(0.1);
    const float before = _synth.gain();
    const std::uint64_t state = next(_synth.left().rng);
    choose(NoiseKind::white);
    render(1);
    const float gain = before + (1 - before) * (1 / (rate * 0.5F));
    EXPECT_EQ(_synth.gain(), gain);
    EXPECT_EQ(_left[0], 0.16F * whiteNoise(state) * gain);
}

TEST_F(NoiseSynthTest, VoicesOfOtherKindsStandStillMeanwhile) {
    choose(NoiseKind::pink);
    render(1000);
    const NoiseVoice pink = _synth.left();
    choose(NoiseKind::brown);
    render(1000);
    NoiseVoice expected = pink;
    expected.rng = _synth.left().rng;
    expected.brown = _synth.left().brown;
    EXPECT_EQ(_synth.left(), expected);
    EXPECT_NE(_synth.left().brown, 0.0F);
}

TEST_F(NoiseSynthTest, MonoIsTheLeftVoiceAndLeavesTheRightOneAlone) {
    for (const NoiseKind kind : allKinds) {
        NoiseSynth mono(rate);
        NoiseSynth stereo(rate);
        for (NoiseSynth* const synth : {&mono, &stereo}) {
            synth->kindRaw = static_cast<int>(kind);
            synth->targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
        }
        std::vector<float> alone(5000);
        std::vector<float> left(5000);
        std::vector<float> right(5000);
        mono.render(alone.size(), std::array{alone.data()});
        stereo.render(left.size(), std::array{left.data(), right.data()});
        EXPECT_EQ(alone, left) << nameOf(kind);
        EXPECT_EQ(mono.left(), stereo.left()) << nameOf(kind);
        EXPECT_EQ(mono.right(), NoiseVoice{.rng = rightSeed}) << nameOf(kind);
    }
}

TEST_F(NoiseSynthTest, BufferThatIsNullStandsForNoChannel) {
    aimAt(1);
    std::vector<float> right(5000);
    _synth.render(right.size(), std::array<float*, 2>{nullptr, right.data()});
    EXPECT_EQ(_synth.left(), NoiseVoice{.rng = leftSeed});
    EXPECT_NE(_synth.right(), NoiseVoice{.rng = rightSeed});
    EXPECT_NE(right.back(), 0.0F);
}

TEST_F(NoiseSynthTest, FadeGoesOnWithoutAnyChannel) {
    aimAt(1);
    _synth.render(24'000, {});
    EXPECT_NEAR(_synth.gain(), 1 - 1 / std::numbers::e, 1e-3);
    EXPECT_EQ(_synth.left(), NoiseVoice{.rng = leftSeed});
}

TEST_F(NoiseSynthTest, ThirdBufferStaysAsItIs) {
    aimAt(1);
    std::vector<float> left(100);
    std::vector<float> right(100);
    std::vector<float> third(100, 7);
    _synth.render(100, std::array{left.data(), right.data(), third.data()});
    EXPECT_THAT(third, testing::Each(7.0F));
}

TEST_F(NoiseSynthTest, WritesAsManyFramesAsItIsAskedFor) {
    aimAt(1);
    for (const NoiseKind kind : allKinds) {
        choose(kind);
        std::vector<float> left(12, 7);
        std::vector<float> right(12, 7);
        _synth.render(10, std::array{left.data(), right.data()});
        EXPECT_THAT(std::vector(left.begin(), left.begin() + 10), testing::Each(testing::Ne(7.0F)));
        EXPECT_THAT(std::vector(right.begin(), right.begin() + 10), testing::Each(testing::Ne(7.0F)));
        EXPECT_THAT(std::vector(left.begin() + 10, left.end()), testing::Each(7.0F));
        EXPECT_THAT(std::vector(right.begin() + 10, right.end()), testing::Each(7.0F));
    }
}

TEST_F(NoiseSynthTest, FadeHasATimeConstantOfHalfASecond) {
    aimAt(1);
    renderSeconds(0.5);
    EXPECT_NEAR(_synth.gain(), 1 - std::exp(-1.0), 1e-4);
    renderSeconds(0.5);
    EXPECT_NEAR(_synth.gain(), 1 - std::exp(-2.0), 1e-4);
    NoiseSynth slower(24'000);
    slower.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
    slower.render(12'000, {});
    EXPECT_NEAR(slower.gain(), 1 - std::exp(-1.0), 1e-4);
}

TEST_F(NoiseSynthTest, QuarterOfAPercentIsLeftAfterThreeSecondsOfFadingOut) {
    aimAt(1);
    renderSeconds(10);
    EXPECT_NEAR(_synth.gain(), 1.0, 1e-3);
    aimAt(0);
    renderSeconds(3);
    EXPECT_NEAR(_synth.gain(), 0.0025, 0.0001);
}

TEST_F(NoiseSynthTest, StartDuringAFadeGoesOnFromWhereItStands) {
    aimAt(1);
    renderSeconds(10);
    aimAt(0);
    renderSeconds(0.5);
    const float before = _synth.gain();
    aimAt(1);
    render(1);
    EXPECT_EQ(_synth.gain(), before + (1 - before) * (1 / (rate * 0.5F)));
}

TEST_F(NoiseSynthTest, FadeScalesTheSamplesAndNothingElse) {
    for (const NoiseKind kind : allKinds) {
        const Rendered loud(static_cast<int>(kind), 1, 5000);
        // A power of two rounds nothing.
        const Rendered quiet(static_cast<int>(kind), 0.25F, 5000);
        const Rendered silent(static_cast<int>(kind), 0, 5000);
        for (std::size_t frame = 0; frame < loud.left.size(); ++frame) {
            ASSERT_EQ(quiet.left[frame], loud.left[frame] / 4) << nameOf(kind) << ", frame " << frame;
            ASSERT_EQ(quiet.right[frame], loud.right[frame] / 4) << nameOf(kind) << ", frame " << frame;
        }
        EXPECT_THAT(loud.left, testing::Contains(testing::Ne(0.0F))) << nameOf(kind);
        EXPECT_THAT(silent.left, testing::Each(0.0F)) << nameOf(kind);
        EXPECT_THAT(silent.right, testing::Each(0.0F)) << nameOf(kind);
        for (const Rendered* const other : {&quiet, &silent}) {
            EXPECT_EQ(other->leftVoice, loud.leftVoice) << nameOf(kind);
            EXPECT_EQ(other->rightVoice, loud.rightVoice) << nameOf(kind);
        }
    }
}

TEST_F(NoiseSynthTest, ChannelsAreIndependent) {
    aimAt(1);
    for (const NoiseKind kind : allKinds) {
        choose(kind);
        renderSeconds(5);
        double both = 0;
        double left = 0;
        double right = 0;
        for (std::size_t index = 0; index < _left.size(); ++index) {
            both += double{_left[index]} * double{_right[index]};
            left += double{_left[index]} * double{_left[index]};
            right += double{_right[index]} * double{_right[index]};
        }
        EXPECT_LT(std::abs(both) / std::sqrt(left * right), 0.05) << nameOf(kind);
    }
}

TEST_F(NoiseSynthTest, IsSteeredWhileAnotherThreadRenders) {
    std::atomic<int> calls = 0;
    std::atomic<bool> isOver = false;
    std::thread audio([&] {
        while (!isOver) {
            render(480);
            ++calls;
            calls.notify_one();
        }
    });
    calls.wait(0);
    for (int turn = 0; turn < 10'000; ++turn) {
        choose(turn % 5);
        aimAt(turn % 2 == 0 ? 1.0F : 0.5F);
    }
    // One call may have begun before the last turn, the next one began after it.
    const int before = calls;
    calls.wait(before);
    calls.wait(before + 1);
    isOver = true;
    audio.join();
    choose(NoiseKind::white);
    aimAt(0.75F);
    renderSeconds(10);
    EXPECT_NEAR(_synth.gain(), 0.75, 1e-3);
    EXPECT_LE(std::ranges::max(_left), 0.75F * 0.16F + 1e-3F);
    EXPECT_GT(std::ranges::max(_left), 0.74F * 0.16F);
}

class GoldenNoiseTest : public testing::TestWithParam<GoldenNoise> {};

TEST_P(GoldenNoiseTest, SamplesAreThoseOfTheReference) {
    const GoldenNoise& expected = GetParam();
    // The length of the calls makes no difference.
    for (const std::size_t piece : {std::size_t{4096}, std::size_t{960}, std::size_t{1}}) {
        const GoldenNoise samples = rendered(expected.kind, expected.rate, expected.frames, piece);
        EXPECT_EQ(samples.spots, expected.spots) << "in pieces of " << piece;
        EXPECT_EQ(samples.hash, expected.hash) << "in pieces of " << piece;
    }
}

std::string goldenName(const testing::TestParamInfo<GoldenNoise>& info) {
    return nameOf(info.param.kind) + "At" + std::to_string(std::lround(info.param.rate)) + "For" +
           std::to_string(info.param.frames);
}

INSTANTIATE_TEST_SUITE_P(Beginning, GoldenNoiseTest, testing::ValuesIn(goldenNoise), goldenName);

} // namespace
} // namespace selvane::test
