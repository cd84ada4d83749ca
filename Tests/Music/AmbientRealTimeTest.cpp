#include "Selvane/Music/AmbientPlayer.h"
#include "Support/CallDetector.h"
#include "Support/FakeAudioOutput.h"
#include "Support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace selvane::test {
namespace {

// What the output's thread calls is the player's source, not the synth itself.
TEST(AmbientRealTimeTest, MinutesOfEachSoundAllocateNothingLockNothingAndCallNoSystem) {
    constexpr std::size_t minute = std::size_t{60} * AudioOutput::framesPerSecond;
    FakeAudioOutput output;
    ManualScheduler scheduler;
    AmbientPlayer player(output, scheduler);
    player.play();
    AudioSource& source = output.streams.back()->source();
    std::vector<AudioFrame> room(AudioSource::longestPiece);
    for (const NoiseKind kind :
         std::array{NoiseKind::rain, NoiseKind::white, NoiseKind::pink, NoiseKind::brown}) {
        player.setSound(kind);
        EXPECT_EQ(outcomeOf([&] {
                      std::size_t length = 1;
                      for (std::size_t frame = 0; frame < minute; frame += length) {
                          length = length * 3 % room.size() + 1;
                          static_cast<void>(source.render(std::span(room).first(length)));
                      }
                      static_cast<void>(source.render(room));
                  }),
                  Outcome::harmless);
    }
}

} // namespace
} // namespace selvane::test
