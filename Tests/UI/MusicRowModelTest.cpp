#include "Selvane/UI/Popover/MusicRowModel.h"

#include "Selvane/App/PlatformText.h"
#include "Selvane/UI/Symbols/Symbols.h"
#include "Support/ModelHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace selvane {
namespace {

using testing::ElementsAre;

std::vector<std::string> lines(const MenuChoices* menu) {
    std::vector<std::string> lines;
    for (const MenuChoices::Choice& choice : menu->choices())
        lines.push_back((choice.isChecked ? "✓ " : "") + choice.title.toStdString());
    return lines;
}

class MusicRowTest : public testing::Test {
protected:
    MusicRowTest() : row(harness.launch()) {}

    AppSettings& settings() { return harness.model().settings(); }
    void setPlaying(bool playing) {
        harness.answers.isMusicPlaying = playing;
        harness.model().music().changed.emit();
    }

    test::ModelHarness harness;
    MusicRowModel row;
};

TEST_F(MusicRowTest, EverySourceHasItsSymbolItsNameAndItsControl) {
    struct Case {
        MusicSource source;
        AmbientSound sound;
        const char* symbol;
        const char* title;
        MusicRowModel::Extra extra;
        const char* openTooltip;
        bool canPlay;
    };
    using enum MusicRowModel::Extra;
    const Case cases[] = {
        {MusicSource::ambient, AmbientSound::rain, "cloud.rain", "Rain", Volume, "", true},
        {MusicSource::ambient, AmbientSound::white, "waveform", "White noise", Volume, "", true},
        {MusicSource::ambient, AmbientSound::pink, "waveform", "Pink noise", Volume, "", true},
        {MusicSource::ambient, AmbientSound::brown, "waveform", "Brown noise", Volume, "", true},
        {MusicSource::appleMusic, AmbientSound::rain, "music.note", "Music player", OpenPlayer,
         "Open Music player", true},
        {MusicSource::spotify, AmbientSound::rain, "music.note", "Spotify", OpenPlayer, "Open Spotify", true},
        {MusicSource::none, AmbientSound::rain, "speaker.slash", "No music", Nothing, "", false},
    };
    for (const Case& expected : cases) {
        settings().ambientSound.set(expected.sound);
        settings().musicSource.set(expected.source);
        EXPECT_EQ(row.symbol().toStdString(), expected.symbol);
        EXPECT_TRUE(Symbols::contains(expected.symbol)) << expected.symbol;
        EXPECT_EQ(row.title().toStdString(), expected.title);
        EXPECT_EQ(row.extra(), expected.extra) << expected.title;
        EXPECT_EQ(row.openTooltip().toStdString(), expected.openTooltip);
        EXPECT_EQ(row.canPlay(), expected.canPlay) << expected.title;
    }
}

TEST(PlatformText, DesktopsPlayerHasAColumnPerPlatform) {
    EXPECT_EQ(PlatformText::musicPlayer.on(PlatformText::Platform::macOS), "Apple Music");
    EXPECT_EQ(PlatformText::musicPlayer.on(PlatformText::Platform::freedesktop), "Music player");
}

TEST_F(MusicRowTest, SoundButtonIsNamedAfterWhatItDoes) {
    EXPECT_EQ(row.soundSymbol(), QStringLiteral("speaker.slash"));
    EXPECT_TRUE(Symbols::contains(row.soundSymbol().toStdString()));
    EXPECT_EQ(row.soundTooltip(), QStringLiteral("Turn sound on"));
    row.toggleSound();
    EXPECT_EQ(harness.journal.count("music.play"), 1);
    setPlaying(true);
    EXPECT_TRUE(row.isPlaying());
    EXPECT_EQ(row.soundSymbol(), QStringLiteral("speaker.wave.2.fill"));
    EXPECT_TRUE(Symbols::contains(row.soundSymbol().toStdString()));
    EXPECT_EQ(row.soundTooltip(), QStringLiteral("Turn sound off"));
    row.toggleSound();
    EXPECT_EQ(harness.journal.count("music.pause"), 1);
    EXPECT_EQ(harness.journal.count("music.play"), 1);
}

TEST_F(MusicRowTest, ViewsHearOfThePlayerAndTheSettings) {
    int changes = 0;
    QObject::connect(&row, &MusicRowModel::changed, &row, [&] { ++changes; });
    setPlaying(true);
    EXPECT_EQ(changes, 1);
    settings().musicSource.set(MusicSource::spotify);
    EXPECT_EQ(changes, 2);
}

TEST_F(MusicRowTest, MenuMarksTheSoundInForce) {
    EXPECT_EQ(row.pickerLabel(), QStringLiteral("Ambient"));
    EXPECT_THAT(lines(row.sounds()), ElementsAre("✓ Rain", "White noise", "Pink noise", "Brown noise"));
    EXPECT_THAT(lines(row.sources()), ElementsAre("Music player", "Spotify", "No music"));
}

TEST_F(MusicRowTest, NoSoundIsMarkedWhileAnotherSourcePlays) {
    settings().musicSource.set(MusicSource::spotify);
    EXPECT_THAT(lines(row.sounds()), ElementsAre("Rain", "White noise", "Pink noise", "Brown noise"));
    EXPECT_THAT(lines(row.sources()), ElementsAre("Music player", "✓ Spotify", "No music"));
}

TEST_F(MusicRowTest, ChosenSoundIsSetBeforeItsSource) {
    settings().musicSource.set(MusicSource::none);
    std::vector<std::string> seen;
    const Subscription watch = settings().changed.subscribe([&] {
        seen.push_back(std::string(rawValue(settings().musicSource())) + " " +
                       std::string(rawValue(settings().ambientSound())));
    });
    row.chooseSound(3);
    EXPECT_THAT(seen, ElementsAre("none brown", "ambient brown"));
}

TEST_F(MusicRowTest, ChosenSourceIsSet) {
    row.chooseSource(0);
    EXPECT_EQ(settings().musicSource(), MusicSource::appleMusic);
    row.chooseSource(1);
    EXPECT_EQ(settings().musicSource(), MusicSource::spotify);
    row.chooseSource(2);
    EXPECT_EQ(settings().musicSource(), MusicSource::none);
}

TEST_F(MusicRowTest, RowsThatAreNotThereChooseNothing) {
    for (const int wrong : {-1, 4}) {
        row.chooseSound(wrong);
        row.chooseSource(wrong);
    }
    row.chooseSource(3);
    EXPECT_EQ(settings().musicSource(), MusicSource::ambient);
    EXPECT_EQ(settings().ambientSound(), AmbientSound::rain);
}

TEST_F(MusicRowTest, SliderSetsTheVolume) {
    EXPECT_EQ(row.volume(), 0.6);
    row.setVolume(0.25);
    EXPECT_EQ(settings().musicVolume(), 0.25);
    for (const double wrong : {-0.1, 1.1, std::numeric_limits<double>::quiet_NaN()})
        row.setVolume(wrong);
    EXPECT_EQ(row.volume(), 0.25);
    EXPECT_EQ(row.volumeLabel(), QStringLiteral("Volume"));
}

TEST_F(MusicRowTest, OpensThePlayer) {
    settings().musicSource.set(MusicSource::spotify);
    row.openPlayer();
    EXPECT_EQ(harness.journal.count("music.open"), 1);
}

} // namespace
} // namespace selvane
