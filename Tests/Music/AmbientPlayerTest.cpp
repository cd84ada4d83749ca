#include "Selvane/Music/AmbientPlayer.h"

#include "Support/FakeAudioOutput.h"
#include "Support/ManualScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace selvane {

void PrintTo(const AudioFrame& frame, std::ostream* stream) {
    *stream << "(" << frame.left << ", " << frame.right << ")";
}

} // namespace selvane

namespace selvane::test {
namespace {

using testing::Each;
using testing::Eq;
using testing::Not;

constexpr std::size_t rate = 48'000;
constexpr AudioFrame silence{0, 0};

class AmbientPlayerTest : public testing::Test {
protected:
    void SetUp() override { make(double{rate}); }

    void make(double sampleRate) {
        _output.rate = sampleRate;
        _player.emplace(_output, _scheduler);
        _stream = _output.streams.back();
    }

    std::vector<AudioFrame> hear(double seconds) {
        return _stream->hear(static_cast<std::size_t>(seconds * double{rate}));
    }

    /// Time passes for the player and for what it plays.
    void pass(double seconds) {
        static_cast<void>(hear(seconds));
        _scheduler.advance(Seconds{seconds});
    }

    /// The root of the mean square of the next tenth of a second.
    double loudness() {
        const std::vector<AudioFrame> frames = hear(0.1);
        double sum = 0;
        for (const AudioFrame& frame : frames)
            sum += double{frame.left} * double{frame.left} + double{frame.right} * double{frame.right};
        return frames.empty() ? 0 : std::sqrt(sum / static_cast<double>(2 * frames.size()));
    }

    /// What the log gets meanwhile.
    template <typename Action>
    std::string logOf(Action action) {
        testing::internal::CaptureStderr();
        action();
        return testing::internal::GetCapturedStderr();
    }

    ManualScheduler _scheduler;
    FakeAudioOutput _output;
    FakeAudioStream* _stream = nullptr;
    std::optional<AmbientPlayer> _player;
};

TEST_F(AmbientPlayerTest, MakingItStartsNothingAndSetsTheVolume) {
    EXPECT_EQ(_output.streams.size(), 1);
    EXPECT_TRUE(_output.sources.empty());
    EXPECT_EQ(_stream->starts(), 0);
    EXPECT_FALSE(_player->wantsPlayback());
    EXPECT_EQ(_player->sound(), NoiseKind::rain);
    EXPECT_EQ(_player->volume(), 0.6F);
    EXPECT_EQ(_stream->volume(), 0.6F);
    _scheduler.advance(Seconds{100});
    EXPECT_EQ(_stream->pauses(), 0);
}

TEST_F(AmbientPlayerTest, PlaysWhatTheSynthMakesAtTheRateOfTheStream) {
    for (const double sampleRate : {48'000.0, 44'100.0}) {
        make(sampleRate);
        EXPECT_EQ(_stream->framesPerSecond(), sampleRate);
        _player->setSound(NoiseKind::pink);
        _player->play();
        NoiseSynth synth(static_cast<float>(sampleRate));
        synth.kindRaw = static_cast<int>(NoiseKind::pink);
        synth.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
        std::vector<float> left(1000);
        std::vector<float> right(1000);
        synth.render(left.size(), std::array{left.data(), right.data()});
        const std::vector<AudioFrame> heard = _stream->hear(left.size());
        ASSERT_EQ(heard.size(), left.size());
        for (std::size_t index = 0; index < left.size(); ++index)
            ASSERT_EQ(heard[index], (AudioFrame{left[index], right[index]})) << index;
    }
}

TEST_F(AmbientPlayerTest, RateThatIsNotKnownIs44100) {
    for (const double unknown : {0.0, -1.0}) {
        make(44'100);
        _player->play();
        const std::vector<AudioFrame> known = _stream->hear(1000);
        make(unknown);
        _player->play();
        EXPECT_EQ(_stream->hear(1000), known);
        EXPECT_EQ(_stream->framesPerSecond(), 44'100);
    }
}

TEST_F(AmbientPlayerTest, RateStaysWhenTheDeviceChanges) {
    make(44'100);
    _player->play();
    std::vector<AudioFrame> expected = _stream->hear(1000);
    const std::vector<AudioFrame> rest = _stream->hear(1000);

    make(44'100);
    _player->play();
    EXPECT_EQ(_stream->hear(1000), expected);
    _output.rate = 96'000;
    _stream->changeDevice();
    EXPECT_EQ(_output.streams.back(), _stream);
    EXPECT_EQ(_stream->hear(1000), rest);
}

TEST_F(AmbientPlayerTest, EachPieceIsOfOneKind) {
    _player->setSound(NoiseKind::brown);
    _player->play();
    pass(5);
    std::vector<AudioFrame> piece(AudioSource::longestPiece);
    _player->setSound(NoiseKind::white);
    ASSERT_EQ(_stream->source().render(piece), piece.size());
    // Brown noise moves slowly from one frame to the next, white noise hardly ever for so long.
    const auto roughness = [&piece](std::size_t from, std::size_t to) {
        double sum = 0;
        for (std::size_t index = from + 1; index < to; ++index)
            sum += std::abs(double{piece[index].left} - double{piece[index - 1].left});
        return sum / static_cast<double>(to - from - 1);
    };
    for (std::size_t from = 0; from + 100 <= piece.size(); from += 100)
        EXPECT_GT(roughness(from, from + 100), 0.05) << from;
}

TEST_F(AmbientPlayerTest, SoundNeverEnds) {
    _player->play();
    EXPECT_EQ(hear(2).size(), 2 * rate);
}

TEST_F(AmbientPlayerTest, FadesIn) {
    _player->play();
    EXPECT_TRUE(_player->wantsPlayback());
    EXPECT_TRUE(_stream->isRunning());
    const double first = loudness();
    pass(5);
    EXPECT_GT(first, 0.0);
    EXPECT_GT(loudness(), 5 * first);
}

TEST_F(AmbientPlayerTest, FadesOutAndPausesTheStreamAfterThreeSeconds) {
    _player->setSound(NoiseKind::white);
    _player->play();
    pass(10);
    const double full = loudness();
    _player->pause();
    EXPECT_FALSE(_player->wantsPlayback());
    pass(2.9);
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_NEAR(loudness() / full, 0.0028, 0.0004);
    pass(0.1);
    EXPECT_FALSE(_stream->isRunning());
    EXPECT_EQ(_stream->pauses(), 1);
}

TEST_F(AmbientPlayerTest, SecondPauseWithinThreeSecondsRestartsTheWait) {
    _player->play();
    _player->pause();
    _scheduler.advance(Seconds{2});
    _player->pause();
    _scheduler.advance(Seconds{2.9});
    EXPECT_TRUE(_stream->isRunning());
    _scheduler.advance(Seconds{0.1});
    EXPECT_FALSE(_stream->isRunning());
    EXPECT_EQ(_stream->pauses(), 1);
}

TEST_F(AmbientPlayerTest, PlayWithinThreeSecondsGoesOnFromWhereTheFadeStands) {
    _player->setSound(NoiseKind::white);
    _player->play();
    pass(10);
    const double full = loudness();
    _player->pause();
    pass(0.5);
    _player->play();
    const double resumed = loudness();
    EXPECT_GT(resumed, 0.35 * full);
    EXPECT_LT(resumed, 0.6 * full);
    pass(10);
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_EQ(_stream->starts(), 1);
    EXPECT_EQ(_stream->pauses(), 0);
    EXPECT_NEAR(loudness(), full, 0.02 * full);
}

TEST_F(AmbientPlayerTest, PlayAfterAPauseStartsTheStreamAgainAndFadesIn) {
    _player->setSound(NoiseKind::white);
    _player->play();
    pass(10);
    const double full = loudness();
    _player->pause();
    pass(3);
    _player->play();
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_LT(loudness(), 0.2 * full);
    pass(10);
    EXPECT_NEAR(loudness(), full, 0.02 * full);
}

TEST_F(AmbientPlayerTest, NoiseGoesOnAfterAPauseWhereItStood) {
    _player->setSound(NoiseKind::white);
    _player->play();
    pass(1);
    _player->pause();
    pass(3);
    _player->play();
    const std::vector<AudioFrame> heard = hear(0.1);

    NoiseSynth synth(static_cast<float>(rate));
    synth.kindRaw = static_cast<int>(NoiseKind::white);
    const auto render = [&synth](float target, std::size_t frames) {
        std::vector<float> left(frames);
        std::vector<float> right(frames);
        synth.targetGainBits = std::bit_cast<std::uint32_t>(target);
        synth.render(frames, std::array{left.data(), right.data()});
        return left;
    };
    render(1, rate);
    render(0, 3 * rate);
    const std::vector<float> left = render(1, heard.size());
    for (std::size_t index = 0; index < heard.size(); ++index)
        ASSERT_EQ(heard[index].left, left[index]) << index;
}

TEST_F(AmbientPlayerTest, PauseBeforeAnyPlayStartsNothingAndHarmsNothing) {
    _player->pause();
    _scheduler.advance(Seconds{10});
    EXPECT_EQ(_stream->starts(), 0);
    EXPECT_FALSE(_player->wantsPlayback());
    _player->play();
    EXPECT_TRUE(_stream->isRunning());
    pass(1);
    EXPECT_GT(loudness(), 0.0);
}

TEST_F(AmbientPlayerTest, PlayWhilePlayingStartsNothing) {
    _player->play();
    _player->play();
    EXPECT_EQ(_stream->starts(), 1);
}

TEST_F(AmbientPlayerTest, SoundChangesAtOnceAndWithoutAFade) {
    _player->play();
    pass(10);
    _player->setSound(NoiseKind::white);
    EXPECT_EQ(_player->sound(), NoiseKind::white);
    const std::vector<AudioFrame> heard = hear(1);
    EXPECT_TRUE(
        std::ranges::all_of(heard, [](const AudioFrame& frame) { return std::abs(frame.left) <= 0.16F; }));
    EXPECT_NEAR(loudness(), 0.16 / std::sqrt(3), 0.003);
}

TEST_F(AmbientPlayerTest, VolumeIsTheStreamsAlsoWhilePaused) {
    _player->setVolume(0.3F);
    EXPECT_EQ(_stream->volume(), 0.3F);
    EXPECT_EQ(_player->volume(), 0.3F);
    EXPECT_EQ(_stream->starts(), 0);
    _player->play();
    EXPECT_EQ(_stream->volume(), 0.3F);
    _player->setVolume(0.9F);
    EXPECT_EQ(_stream->volume(), 0.9F);
    _stream->changeDevice();
    EXPECT_EQ(_stream->volume(), 0.9F);
}

TEST_F(AmbientPlayerTest, ChangeOfDeviceStartsTheStreamAgain) {
    _player->setSound(NoiseKind::white);
    _player->play();
    pass(10);
    const double full = loudness();
    _stream->changeDevice();
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_EQ(_stream->starts(), 2);
    EXPECT_NEAR(loudness(), full, 0.02 * full);
}

TEST_F(AmbientPlayerTest, ChangeOfDeviceStartsNothingThatWasNotAskedFor) {
    _stream->changeDevice();
    EXPECT_EQ(_stream->starts(), 0);
    _player->play();
    _player->pause();
    _stream->changeDevice();
    EXPECT_EQ(_stream->starts(), 1);
    EXPECT_FALSE(_stream->isRunning());
}

TEST_F(AmbientPlayerTest, PlayAfterAChangeOfDeviceDuringTheFadeOutStartsAgainAndStays) {
    _player->setSound(NoiseKind::white);
    _player->play();
    pass(10);
    const double full = loudness();
    _player->pause();
    pass(1);
    _stream->changeDevice();
    EXPECT_FALSE(_stream->isRunning());
    pass(1);
    _player->play();
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_EQ(_stream->starts(), 2);
    pass(10);
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_EQ(_stream->pauses(), 0);
    EXPECT_NEAR(loudness(), full, 0.02 * full);
}

constexpr const char* noDevice = "Selvane: couldn't start audio engine: no device\n";

TEST_F(AmbientPlayerTest, StartThatIsRefusedIsInTheLogAndTriedAgainWithTheNextPlay) {
    _stream->refuseStarts("no device");
    EXPECT_EQ(logOf([&] { _player->play(); }), noDevice);
    EXPECT_TRUE(_player->wantsPlayback());
    EXPECT_FALSE(_stream->isRunning());
    _stream->allowStarts();
    EXPECT_EQ(logOf([&] { _player->play(); }), "");
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_GT(loudness(), 0.0);
}

TEST_F(AmbientPlayerTest, StartThatIsRefusedIsTriedAgainAndHeardWhenTheDeviceChanges) {
    _stream->refuseStarts("no device");
    static_cast<void>(logOf([&] { _player->play(); }));
    EXPECT_EQ(logOf([&] { _stream->changeDevice(); }), noDevice);
    _stream->allowStarts();
    _stream->changeDevice();
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_THAT(hear(0.1), Not(Each(Eq(silence))));
}

TEST_F(AmbientPlayerTest, StartThatIsRefusedLeavesTheFadeAsItWas) {
    _player->play();
    pass(10);
    _player->pause();
    pass(3);
    _stream->refuseStarts("no device");
    static_cast<void>(logOf([&] { _player->play(); }));
    _stream->allowStarts();
    // Whoever starts the stream now hears the rest of the fade, not a new sound.
    ASSERT_TRUE(_stream->start());
    pass(10);
    EXPECT_LT(loudness(), 1e-6);
}

TEST_F(AmbientPlayerTest, StartThatFailsLaterIsInTheLogAndHeardFromItsBeginningWhenThereIsADevice) {
    _player->setSound(NoiseKind::white);
    _player->play();
    EXPECT_EQ(logOf([&] { _stream->failLater("no device"); }), noDevice);
    EXPECT_TRUE(_player->wantsPlayback());
    EXPECT_EQ(_stream->starts(), 1) << "the stream says when there is a device";
    _scheduler.advance(Seconds{100});
    EXPECT_EQ(logOf([&] { _stream->changeDevice(); }), "");
    EXPECT_TRUE(_stream->isRunning());
    const double first = loudness();
    pass(10);
    EXPECT_GT(loudness(), 5 * first);
}

TEST_F(AmbientPlayerTest, StartThatFailsLaterIsTriedAgainWithTheNextPlay) {
    _player->play();
    static_cast<void>(logOf([&] { _stream->failLater("no device"); }));
    _player->play();
    EXPECT_TRUE(_stream->isRunning());
    EXPECT_EQ(_stream->starts(), 2);
}

TEST_F(AmbientPlayerTest, NothingStartsAfterAPauseThatFollowsAFailedPlay) {
    _stream->refuseStarts("no device");
    static_cast<void>(logOf([&] { _player->play(); }));
    _player->pause();
    _stream->allowStarts();
    _stream->changeDevice();
    EXPECT_EQ(_stream->starts(), 1);

    _player->play();
    static_cast<void>(logOf([&] { _stream->failLater("no device"); }));
    _player->pause();
    _stream->changeDevice();
    _scheduler.advance(Seconds{10});
    EXPECT_EQ(_stream->starts(), 2);
    EXPECT_FALSE(_stream->isRunning());
    EXPECT_EQ(_stream->pauses(), 1) << "or it would go on looking for a device";
}

TEST_F(AmbientPlayerTest, ItsEndIsTheStreamsEnd) {
    bool isOver = false;
    _stream->onEnd = [&] { isOver = true; };
    _player->play();
    _player->pause();
    _player.reset();
    EXPECT_TRUE(isOver);
    EXPECT_EQ(_scheduler.waiting(), 0) << "the pause that was due";
}

} // namespace
} // namespace selvane::test
