#include "Selvane/Music/NoiseSynth.h"
#include "Support/CallDetector.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace selvane::test {
namespace {

class NoiseRealTimeTest : public testing::TestWithParam<NoiseKind> {};

TEST_P(NoiseRealTimeTest, TenMinutesAllocateNothingLockNothingAndCallNoSystem) {
    constexpr std::size_t rate = 48'000;
    NoiseSynth synth(rate);
    std::array<float, 9600> left{};
    std::array<float, 9600> right{};
    const std::array buffers{left.data(), right.data()};
    EXPECT_EQ(outcomeOf([&] {
                  synth.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
                  // A server asks for pieces of any length, and the sound changes at times.
                  std::size_t length = 1;
                  for (std::size_t frame = 0; frame < 600 * rate; frame += length) {
                      const bool isOtherKind = frame / rate % 60 == 59;
                      synth.kindRaw = static_cast<int>(GetParam()) + (isOtherKind ? 1 : 0);
                      length = length * 3 % left.size() + 1;
                      synth.render(length, buffers);
                  }
              }),
              Outcome::harmless);
}

TEST(NoiseRealTimeChannelsTest, MonoAndNoChannelAreAsHarmless) {
    NoiseSynth synth(48'000);
    std::array<float, 480> left{};
    EXPECT_EQ(outcomeOf([&] {
                  synth.render(left.size(), std::array{left.data()});
                  synth.render(left.size(), {});
                  synth.render(0, {});
              }),
              Outcome::harmless);
}

std::string nameOf(const testing::TestParamInfo<NoiseKind>& kind) {
    constexpr std::array names{"Rain", "White", "Pink", "Brown"};
    return names.at(static_cast<std::size_t>(kind.param));
}

INSTANTIATE_TEST_SUITE_P(Kinds, NoiseRealTimeTest,
                         testing::Values(NoiseKind::rain, NoiseKind::white, NoiseKind::pink,
                                         NoiseKind::brown),
                         nameOf);

} // namespace
} // namespace selvane::test
