#include "Selvane/Music/ChosenMusicController.h"

#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/FakeAudioOutput.h"
#include "Support/FakeExternalPlayers.h"
#include "Support/ManualScheduler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ChosenMusicControllerTest : public testing::Test {
protected:
    ChosenMusicControllerTest() {
        // As the model connects them.
        _settings.onMusicSettingsChange = [this] { _music.syncSettings(); };
        _changes = _music.changed.subscribe([this] { _told.push_back(_music.isPlaying()); });
        _players.install(ExternalPlayer::appleMusic);
        _players.install(ExternalPlayer::spotify);
    }

    void choose(MusicSource source) { _settings.musicSource.set(source); }

    /// What the players were asked since the last question.
    std::vector<std::string> asked() {
        std::vector<std::string> entries = _players.journal.entries();
        _players.journal.clear();
        return entries;
    }

    /// The stream of the noise; none before noise is first asked for.
    FakeAudioStream* noise() { return _output.streams.empty() ? nullptr : _output.streams.back(); }

    /// The root of the mean square of the next tenth of a second.
    double loudness() {
        double sum = 0;
        const std::vector<AudioFrame> frames = noise()->hear(4'800);
        for (const AudioFrame& frame : frames)
            sum += double{frame.left} * double{frame.left} + double{frame.right} * double{frame.right};
        return std::sqrt(sum / static_cast<double>(2 * frames.size()));
    }

    MemoryDefaultsStore _store;
    AppSettings _settings{_store};
    FakeAudioOutput _output;
    ManualScheduler _scheduler;
    FakeExternalPlayers _players;
    ChosenMusicController _music{_settings, _output, _scheduler, _players};
    /// What listeners saw at each change.
    std::vector<bool> _told;
    Subscription _changes;
};

// Noise

TEST_F(ChosenMusicControllerTest, NothingIsMadeBeforeNoiseIsAskedFor) {
    _settings.musicVolume.set(0.3);
    _settings.ambientSound.set(AmbientSound::pink);
    _music.pause();
    EXPECT_EQ(noise(), nullptr);
    EXPECT_THAT(_told, IsEmpty());
    _music.play();
    ASSERT_NE(noise(), nullptr);
    EXPECT_TRUE(noise()->isRunning());
    EXPECT_FLOAT_EQ(noise()->volume(), 0.3F);
}

TEST_F(ChosenMusicControllerTest, EachSoundIsTheNoiseOfItsName) {
    const std::array kinds{NoiseKind::rain, NoiseKind::white, NoiseKind::pink, NoiseKind::brown};
    for (const AmbientSound sound : allCases<AmbientSound>) {
        _settings.ambientSound.set(sound);
        ChosenMusicController music(_settings, _output, _scheduler, _players);
        music.play();
        NoiseSynth synth(48'000);
        synth.kindRaw = static_cast<int>(kinds.at(static_cast<std::size_t>(sound)));
        synth.targetGainBits = std::bit_cast<std::uint32_t>(1.0F);
        std::array<float, 100> left{};
        std::array<float, 100> right{};
        synth.render(left.size(), std::array{left.data(), right.data()});
        const std::vector<AudioFrame> heard = noise()->hear(left.size());
        ASSERT_EQ(heard.size(), left.size());
        for (std::size_t index = 0; index < left.size(); ++index)
            ASSERT_EQ(heard[index], (AudioFrame{left[index], right[index]})) << index;
    }
}

TEST_F(ChosenMusicControllerTest, NoiseFadesOutAtAPause) {
    _music.play();
    EXPECT_TRUE(_music.isPlaying());
    _music.pause();
    EXPECT_FALSE(_music.isPlaying());
    EXPECT_TRUE(noise()->isRunning());
    _scheduler.advance(Seconds{3});
    EXPECT_FALSE(noise()->isRunning());
    EXPECT_THAT(_told, ElementsAre(true, false));
}

TEST_F(ChosenMusicControllerTest, VolumeWhilePausedIsHeardAtOnceAndByTheNextPlay) {
    _music.play();
    _music.pause();
    _settings.musicVolume.set(0.25);
    EXPECT_FLOAT_EQ(noise()->volume(), 0.25F);
    _music.play();
    EXPECT_FLOAT_EQ(noise()->volume(), 0.25F);
}

TEST_F(ChosenMusicControllerTest, SliderAndPickerWorkWhileItPlays) {
    _music.play();
    _settings.musicVolume.set(0.9);
    EXPECT_FLOAT_EQ(noise()->volume(), 0.9F);
    static_cast<void>(noise()->hear(5 * 48'000));
    // Each number between -0.16 and 0.16 is as likely as any other.
    const double white = 0.16 / std::sqrt(3.0);
    EXPECT_GT(loudness(), 1.3 * white) << "rain";
    _settings.ambientSound.set(AmbientSound::white);
    EXPECT_NEAR(loudness(), white, 0.05 * white);
    EXPECT_EQ(noise()->starts(), 1);
    EXPECT_EQ(noise()->pauses(), 0);
    EXPECT_THAT(_told, ElementsAre(true));
}

TEST_F(ChosenMusicControllerTest, NoiseThatCannotStartCountsAsPlayingAndIsTriedAgain) {
    _music.play();
    _music.pause();
    _scheduler.advance(Seconds{3});
    noise()->refuseStarts("no server");
    _music.play();
    EXPECT_TRUE(_music.isPlaying());
    EXPECT_FALSE(noise()->isRunning());
    noise()->allowStarts();
    _music.pause();
    _music.play();
    EXPECT_TRUE(noise()->isRunning());
}

// Another's player

TEST_F(ChosenMusicControllerTest, SecondPlayOfTheSameSourceDoesNothing) {
    choose(MusicSource::spotify);
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("play spotify: "));
    _music.play();
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(_told, ElementsAre(true));

    choose(MusicSource::ambient);
    asked();
    _music.play();
    EXPECT_EQ(noise()->starts(), 1);
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(ChosenMusicControllerTest, AnotherSourceEndsTheFirstAndStarts) {
    choose(MusicSource::appleMusic);
    _music.play();
    asked();
    choose(MusicSource::spotify);
    EXPECT_THAT(asked(), ElementsAre("pause appleMusic", "play spotify: "));
    choose(MusicSource::ambient);
    EXPECT_THAT(asked(), ElementsAre("pause spotify"));
    EXPECT_TRUE(noise()->isRunning());
    choose(MusicSource::appleMusic);
    EXPECT_THAT(asked(), ElementsAre("play appleMusic: "));
    _scheduler.advance(Seconds{3});
    EXPECT_FALSE(noise()->isRunning());
    EXPECT_THAT(_told, ElementsAre(true)) << "music plays all the time";
}

TEST_F(ChosenMusicControllerTest, ChangeOfSourceWhileNothingPlaysStartsNothing) {
    choose(MusicSource::spotify);
    choose(MusicSource::appleMusic);
    choose(MusicSource::ambient);
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_EQ(noise(), nullptr);
}

TEST_F(ChosenMusicControllerTest, NoSourcePlaysNothing) {
    choose(MusicSource::none);
    _music.play();
    EXPECT_FALSE(_music.isPlaying());
    EXPECT_THAT(_told, IsEmpty());
}

TEST_F(ChosenMusicControllerTest, NoSourceEndsWhatPlays) {
    choose(MusicSource::spotify);
    _music.play();
    asked();
    choose(MusicSource::none);
    EXPECT_THAT(asked(), ElementsAre("pause spotify"));
    EXPECT_FALSE(_music.isPlaying());
    EXPECT_THAT(_told, ElementsAre(true, false));
}

TEST_F(ChosenMusicControllerTest, PlayerThatIsNotInstalledPlaysNothing) {
    for (const auto& [source, player] : {std::pair{MusicSource::appleMusic, ExternalPlayer::appleMusic},
                                         std::pair{MusicSource::spotify, ExternalPlayer::spotify}}) {
        _players.uninstall(player);
        choose(source);
        _music.play();
        EXPECT_FALSE(_music.isPlaying());
        EXPECT_THAT(asked(), IsEmpty());
    }
    EXPECT_THAT(_told, IsEmpty());
}

TEST_F(ChosenMusicControllerTest, PlayerThatIsNotInstalledEndsWhatPlayedBefore) {
    _players.uninstall(ExternalPlayer::spotify);
    _music.play();
    choose(MusicSource::spotify);
    EXPECT_FALSE(_music.isPlaying());
    EXPECT_THAT(_told, ElementsAre(true, false));
}

TEST_F(ChosenMusicControllerTest, UnchangedPlaylistIsResumedAfterAPause) {
    const std::string link = "https://open.spotify.com/playlist/37i9dQZF1DX8Uebhn9wzrS";
    _settings.spotifyPlaylist.set(link);
    choose(MusicSource::spotify);
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("play spotify: " + link));
    _music.pause();
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("pause spotify", "play spotify: "));
    _music.pause();
    _settings.spotifyPlaylist.set(link + "?si=1");
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("pause spotify", "play spotify: " + link + "?si=1"));
}

TEST_F(ChosenMusicControllerTest, PlaylistThatWasEmptiedResumes) {
    _settings.appleMusicPlaylist.set("Lofi Study");
    choose(MusicSource::appleMusic);
    _music.play();
    _music.pause();
    _settings.appleMusicPlaylist.set("");
    asked();
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("play appleMusic: "));
    _music.pause();
    _settings.appleMusicPlaylist.set("Lofi Study");
    asked();
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("play appleMusic: Lofi Study")) << "the last one was the empty one";
}

TEST_F(ChosenMusicControllerTest, EachPlayerKeepsAPlaylistOfItsOwn) {
    _settings.appleMusicPlaylist.set("Lofi Study");
    _settings.spotifyPlaylist.set("spotify:album:0123456789012345678901");
    choose(MusicSource::appleMusic);
    _music.play();
    EXPECT_THAT(asked(), ElementsAre("play appleMusic: Lofi Study"));
    choose(MusicSource::spotify);
    EXPECT_THAT(asked(),
                ElementsAre("pause appleMusic", "play spotify: spotify:album:0123456789012345678901"));
    choose(MusicSource::appleMusic);
    EXPECT_THAT(asked(), ElementsAre("pause spotify", "play appleMusic: "));
}

TEST_F(ChosenMusicControllerTest, PauseOfNothingIsHarmless) {
    choose(MusicSource::spotify);
    _music.pause();
    EXPECT_THAT(asked(), IsEmpty());
    _music.play();
    _music.pause();
    asked();
    _music.pause();
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(_told, ElementsAre(true, false));
}

TEST_F(ChosenMusicControllerTest, ChosenPlayerIsOpenedAndNoiseHasNone) {
    for (const MusicSource source : allCases<MusicSource>) {
        choose(source);
        _music.openPlayer();
    }
    EXPECT_THAT(asked(), ElementsAre("open appleMusic", "open spotify"));
    EXPECT_FALSE(_music.isPlaying());
}

} // namespace
} // namespace selvane::test
