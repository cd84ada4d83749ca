#include "Music/GoldenNoise.h"
#include "Music/NoiseFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace selvane::test {
namespace {

class NoiseMinutesTest : public NoiseFixture {};

TEST_F(NoiseMinutesTest, NoKindIsLouderThanADeviceCanPlay) {
    aimAt(1);
    for (const NoiseKind kind : allKinds) {
        choose(kind);
        renderSeconds(60);
        EXPECT_LT(std::ranges::max(_left), 1.0F) << nameOf(kind);
        EXPECT_GT(std::ranges::min(_left), -1.0F) << nameOf(kind);
        EXPECT_GT(std::ranges::max(_left), 0.1F) << nameOf(kind);
    }
}

class LongGoldenNoiseTest : public testing::TestWithParam<GoldenNoise> {};

TEST_P(LongGoldenNoiseTest, SamplesAreThoseOfTheReference) {
    const GoldenNoise& expected = GetParam();
    const GoldenNoise samples = rendered(expected.kind, expected.rate, expected.frames, 4096);
    EXPECT_EQ(samples.spots, expected.spots);
    EXPECT_EQ(samples.hash, expected.hash);
}

INSTANTIATE_TEST_SUITE_P(TenMinutes, LongGoldenNoiseTest, testing::ValuesIn(longGoldenNoise),
                         [](const auto& row) { return nameOf(row.param.kind); });

} // namespace
} // namespace selvane::test
