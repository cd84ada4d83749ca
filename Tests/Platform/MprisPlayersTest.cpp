#include "Selvane/Platform/Linux/MprisPlayers.h"

#include "Platform/FakeMprisPlayer.h"
#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "SelvaneCore/Log.h"
#include "SelvaneCore/PosixFileSystem.h"
#include "Support/EnvironmentVariable.h"
#include "Support/EventLoop.h"
#include "Support/FakeJournal.h"
#include "Support/Players.h"
#include "Support/PrivateBus.h"
#include "Support/TemporaryFolder.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Habit = FakeMprisPlayer::Habit;

constexpr auto uri = "spotify:playlist:aaaaaaaaaaaaaaaaaaaaaa";
constexpr auto link = "https://open.spotify.com/intl-de/playlist/aaaaaaaaaaaaaaaaaaaaaa?si=x";

/// A desktop with a bus and applications of its own.
class MprisPlayersTest : public testing::Test {
protected:
    MprisPlayersTest() { Log::toJournal(log.path()); }
    ~MprisPlayersTest() override { Log::toStandardError(); }

    /// Makes an application that leaves a note when it is started.
    void install(const std::string& application, const std::string& more = "") const {
        folder.write("bin/" + application, "#!/bin/sh\n"
                                           "env > '" +
                                               noteOf(application) +
                                               ".new'\n"
                                               "echo \"arguments: $*\" >> '" +
                                               noteOf(application) +
                                               ".new'\n"
                                               "cat '" +
                                               noteOf(application) + ".new' >> '" + noteOf(application) +
                                               "'\n");
        const auto program = folder.path() / "bin" / application;
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        folder.write("data/applications/" + application, "[Desktop Entry]\nType=Application\nName=x\nExec=" +
                                                             program.string() + " --new %U\n" + more);
    }
    [[nodiscard]] std::string noteOf(const std::string& application) const {
        return (folder.path() / ("note-of-" + application)).string();
    }
    /// The environment and arguments of each start so far.
    [[nodiscard]] std::string starts(const std::string& application) const {
        return folder.read("note-of-" + application);
    }
    [[nodiscard]] bool waitForStart(const std::string& application) const {
        return waitUntil([&] { return starts(application).find("arguments") != std::string::npos; });
    }

    /// Once something that is started only now has left its note.
    [[nodiscard]] bool wasNotStarted(const std::string& application) const {
        install("later");
        std::filesystem::remove(noteOf("later"));
        return QProcess::startDetached(QString::fromStdString((folder.path() / "bin/later").string()), {}) &&
               waitForStart("later") && starts(application).empty();
    }

    [[nodiscard]] bool waitForRest() const {
        return waitUntil([this] { return players->isAtRest(); });
    }

    void makePlayers() {
        players.emplace(
            bus.connect(),
            MprisPlayers::Environment{
                .scheduler = &scheduler,
                .fileSystem = &files,
                .folders =
                    [this] {
                        return ApplicationFolders{{folder.path() / "data"}, {folder.path() / "settings"}};
                    },
                .desktops = [] { return std::vector<std::string>{"GNOME"}; },
                .chosenPlayer = [this] { return chosen; },
                .withheld = {"QT_QPA_UPDATE_IDLE_TIME", "QT_XCB_NO_MITSHM"},
                .patience = patience,
            });
    }

    TemporaryFolder folder;
    FakeJournal log;
    PrivateBus bus;
    LinuxScheduler scheduler;
    PosixFileSystem files;
    std::string chosen;
    // A look is long enough for a slow machine's player to begin.
    MprisPatience patience{
        .answer = Seconds{10}, .music = Seconds{1}, .start = Seconds{20}, .unwanted = Seconds{1}};
    std::optional<MprisPlayers> players;
};

/// The same with Spotify and Rhythmbox on the bus, paused.
class RunningMprisPlayersTest : public MprisPlayersTest {
protected:
    RunningMprisPlayersTest() {
        client.run();
        rhythmbox.run();
        makePlayers();
    }

    FakeMprisPlayer client{bus, "spotify"};
    FakeMprisPlayer rhythmbox{bus, "rhythmbox"};
};

/// A desktop where Rhythmbox is installed and doesn't run yet.
class StartedMprisPlayersTest : public MprisPlayersTest {
protected:
    /// Has it play, and come to the bus once it was started for that.
    [[nodiscard]] bool comesUpToPlay(std::string_view playlist = "") {
        install("org.gnome.Rhythmbox3.desktop");
        makePlayers();
        players->play(music, playlist);
        if (!waitForStart("org.gnome.Rhythmbox3.desktop"))
            return false;
        rhythmbox.run();
        return true;
    }
    void stopAfter(std::chrono::milliseconds delay) {
        QTimer::singleShot(delay, &rhythmbox, [this] { rhythmbox.setPlaying(false); });
    }

    FakeMprisPlayer rhythmbox{bus, "rhythmbox"};
};

TEST_F(RunningMprisPlayersTest, EmptyTextResumes) {
    players->play(music, " \n");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
    players->play(spotify, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre("Play"));
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(RunningMprisPlayersTest, WhatPlaysIsNotToldToPlay) {
    rhythmbox.isPlaying = true;
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(rhythmbox.isPlaying) << "it played before";
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, APlaylistIsFoundByItsName) {
    players->play(music, "  Focus ");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Focus"));
    rhythmbox.journal.clear();
    players->play(music, "focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Pause", "ActivatePlaylist focus"))
        << "exactly, if it is there";
}

TEST_F(RunningMprisPlayersTest, CapitalsOfAPlaylistDoNotMatterIfNoneIsCalledExactlySo) {
    players->play(music, "CAF\xc3\x89");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Caf\xc3\xa9"));
}

TEST_F(RunningMprisPlayersTest, APlaylistThatIsNotThereResumes) {
    players->play(music, "Sleep");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
}

TEST_F(RunningMprisPlayersTest, APlayerWithoutPlaylistsResumes) {
    rhythmbox.hasPlaylists = false;
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(RunningMprisPlayersTest, APlaylistThatPlaysIsNotActivatedAgain) {
    rhythmbox.active = 1;
    rhythmbox.isPlaying = true;
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
    rhythmbox.isPlaying = false;
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Focus"));
}

TEST_F(RunningMprisPlayersTest, WhatPlaysIsPausedBeforeAnotherPlaylistIsActivated) {
    rhythmbox.onPlaylist = Habit::toggles;
    rhythmbox.isPlaying = true;
    rhythmbox.active = 0;
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Pause", "ActivatePlaylist Focus"));
    EXPECT_TRUE(rhythmbox.isPlaying);
}

TEST_F(RunningMprisPlayersTest, APlaylistThatStaysPausedIsPlayed) {
    rhythmbox.onPlaylist = Habit::staysPaused;
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Focus", "Play"));
    EXPECT_TRUE(rhythmbox.isPlaying);
}

TEST_F(RunningMprisPlayersTest, SpotifyOpensTheURIOfALink) {
    players->play(spotify, link);
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri));
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, SpotifyResumesForABadLink) {
    players->play(spotify, "http://open.spotify.com/playlist/aaaaaaaaaaaaaaaaaaaaaa");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre("Play"));
}

TEST_F(RunningMprisPlayersTest, ALinkThatStaysPausedIsPlayed) {
    client.onLink = Habit::staysPaused;
    players->play(spotify, link);
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri, "Play"));
}

TEST_F(RunningMprisPlayersTest, ALinkThatStopsWhatPlayedBeforeIsPlayed) {
    patience.music = Seconds{3};
    makePlayers();
    client.isPlaying = true;
    client.onLink = Habit::stopsLate;
    client.tellsChanges = false;
    players->play(spotify, link);
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri, "Play"));
}

TEST_F(RunningMprisPlayersTest, APlayerThatDoesNotTellItsChangesIsAsked) {
    patience.music = Seconds{10};
    makePlayers();
    client.tellsChanges = false;
    client.onLink = Habit::startsLate;
    players->play(spotify, link);
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri));
    EXPECT_TRUE(client.isPlaying);
}

TEST_F(RunningMprisPlayersTest, OnlyWhatWasStartedIsPaused) {
    rhythmbox.isPlaying = true;
    players->pause(music);
    players->pause(spotify);
    EXPECT_TRUE(players->isAtRest());
    rhythmbox.isPlaying = false;
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(rhythmbox.isPlaying);
    rhythmbox.isPlaying = true;
    players->pause(music);
    EXPECT_TRUE(players->isAtRest()) << "it was paused already, and what plays now is somebody else's";
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play", "Pause"));
    EXPECT_THAT(client.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, AfterAPauseThePlaceIsResumed) {
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Focus", "Pause", "Play"));
}

TEST_F(RunningMprisPlayersTest, APlayerThatWasQuitIsNotStartedByAPause) {
    install("org.gnome.Rhythmbox3.desktop");
    install("spotify.desktop");
    players->play(music, "");
    players->play(spotify, "");
    ASSERT_TRUE(waitForRest());
    rhythmbox.quit();
    client.quit();
    players->pause(music);
    players->pause(spotify);
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(wasNotStarted("org.gnome.Rhythmbox3.desktop"));
    EXPECT_TRUE(wasNotStarted("spotify.desktop"));
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(RunningMprisPlayersTest, APlayerThatQuitsInBetweenEndsTheMatter) {
    rhythmbox.onPlaylist = Habit::staysPaused;
    players->play(music, "Focus");
    ASSERT_TRUE(waitUntil([&] { return rhythmbox.journal.has("ActivatePlaylist Focus"); }));
    rhythmbox.quit();
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Focus"));
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(RunningMprisPlayersTest, APauseRightAfterAPlayLeavesSilence) {
    for (const Habit habit : {Habit::asToldByMpris, Habit::staysPaused, Habit::startsLate}) {
        client.onLink = habit;
        client.onPlay = habit;
        rhythmbox.onPlaylist = habit;
        rhythmbox.onPlay = habit;
        players->play(spotify, link);
        players->play(music, "Focus");
        players->pause(spotify);
        players->pause(music);
        ASSERT_TRUE(waitForRest());
        EXPECT_FALSE(client.isPlaying);
        EXPECT_FALSE(rhythmbox.isPlaying);
    }
}

TEST_F(RunningMprisPlayersTest, WhatBeginsOnlyAfterThePauseIsPausedToo) {
    patience.unwanted = Seconds{10};
    makePlayers();
    client.onLink = Habit::startsLate;
    players->play(spotify, link);
    ASSERT_TRUE(waitUntil([&] { return !client.journal.entries().empty(); }));
    players->pause(spotify);
    ASSERT_TRUE(waitUntil([&] { return client.journal.count("Pause") >= 2; })) << "it was never paused again";
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(client.isPlaying);
}

TEST_F(RunningMprisPlayersTest, APlayerThatIgnoresAPauseIsGivenUp) {
    patience.unwanted = Seconds{10};
    makePlayers();
    client.onLink = Habit::startsLate;
    client.pauses = false;
    players->play(spotify, link);
    ASSERT_TRUE(waitUntil([&] { return !client.journal.entries().empty(); }));
    players->pause(spotify);
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(client.journal.count("Pause"), 2);
}

TEST_F(RunningMprisPlayersTest, ANewerPlayEndsAnOlderOne) {
    client.onLink = Habit::staysPaused;
    players->play(spotify, link);
    ASSERT_TRUE(waitUntil([&] { return client.journal.entries().size() == 1; }));
    client.onLink = Habit::asToldByMpris;
    players->play(spotify, "spotify:track:bbbbbbbbbbbbbbbbbbbbbb");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(),
                ElementsAre(std::string("OpenUri ") + uri, "OpenUri spotify:track:bbbbbbbbbbbbbbbbbbbbbb"));
}

TEST_F(RunningMprisPlayersTest, ThePlayerThatPlaysNowIsMeant) {
    install("org.gnome.Rhythmbox3.desktop");
    FakeMprisPlayer vlc(bus, "vlc.instance77");
    vlc.isPlaying = true;
    vlc.run();
    players->play(music, "Work");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(vlc.journal.entries(), ElementsAre("Pause", "ActivatePlaylist Work"));
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(vlc.isPlaying);
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(vlc.isPlaying) << "the one that was driven last goes on";
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, BrowsersAndOthersWithoutMusicOfTheirOwnAreNeverMeant) {
    std::vector<std::unique_ptr<FakeMprisPlayer>> others;
    for (const char* const name : {"playerctld", "firefox.instance_1_84", "chromium.instance7",
                                   "kdeconnect.mpris_000001", "spotifyd"}) {
        others.push_back(std::make_unique<FakeMprisPlayer>(bus, name));
        others.back()->isPlaying = true;
        others.back()->run();
    }
    client.isPlaying = true;
    players->play(music, "Work");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Work"));
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    for (const auto& other : others)
        EXPECT_THAT(other->journal.entries(), IsEmpty());
    EXPECT_THAT(client.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, TheChosenPlayerIsMeantWhateverPlays) {
    FakeMprisPlayer other(bus, "org.example.Player");
    other.run();
    install("org.example.Player.desktop");
    chosen = "org.example.Player.desktop";
    rhythmbox.isPlaying = true;
    players->play(music, "Work");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(other.journal.entries(), ElementsAre("ActivatePlaylist Work"));
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, AChosenPlayerThatWasRemovedIsForgotten) {
    chosen = "org.example.Player.desktop";
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
}

TEST_F(RunningMprisPlayersTest, OpenRaisesAWindowOfThePlayer) {
    install("org.gnome.Rhythmbox3.desktop");
    players->open(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Raise"));
    EXPECT_TRUE(wasNotStarted("org.gnome.Rhythmbox3.desktop"));
}

TEST_F(RunningMprisPlayersTest, APlayerThatCanNotRaiseItselfIsOpenedByAStart) {
    install("org.gnome.Rhythmbox3.desktop");
    rhythmbox.canRaise = false;
    players->open(music);
    EXPECT_TRUE(waitForStart("org.gnome.Rhythmbox3.desktop"));
    EXPECT_THAT(rhythmbox.journal.entries(), IsEmpty());
}

TEST_F(RunningMprisPlayersTest, OpenDoesNothingWithoutAnInstalledPlayer) {
    players->open(spotify);
    EXPECT_TRUE(players->isAtRest());
}

TEST_F(RunningMprisPlayersTest, AHungPlayerIsToldInTheLogOnceAndHoldsNobodyUp) {
    patience = {.answer = Seconds{3}};
    makePlayers();
    client.answers = false;
    QElapsedTimer turn;
    qint64 longest = 0;
    turn.start();
    players->play(spotify, link);
    ASSERT_TRUE(waitUntil([&] {
        longest = std::max(longest, turn.restart());
        return players->isAtRest();
    }));
    EXPECT_LT(longest, 2500) << "something waited for the answer";
    EXPECT_EQ(log.receiveLine(), "org.mpris.MediaPlayer2.spotify doesn't answer");
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(RunningMprisPlayersTest, APlayerThatHangsLaterIsTold) {
    patience.answer = Seconds{1};
    makePlayers();
    client.onLink = Habit::neverAnswers;
    players->play(spotify, link);
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(log.receiveLine(), "org.mpris.MediaPlayer2.spotify doesn't answer");
    players->pause(spotify);
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(log.receiveLine(), "org.mpris.MediaPlayer2.spotify doesn't answer");
}

TEST_F(RunningMprisPlayersTest, AHungPlayerDoesNotHideAnotherOne) {
    patience.answer = Seconds{1};
    makePlayers();
    FakeMprisPlayer vlc(bus, "vlc");
    vlc.isPlaying = true;
    vlc.run();
    rhythmbox.answers = false;
    players->play(music, "Work");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(vlc.journal.entries(), ElementsAre("Pause", "ActivatePlaylist Work"));
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(RunningMprisPlayersTest, TheEndOfTheProgramEndsWhatIsUnderWay) {
    client.onLink = Habit::staysPaused;
    players->play(spotify, link);
    players->play(music, "Focus");
    players->open(music);
    ASSERT_TRUE(waitUntil([&] { return !client.journal.entries().empty(); }));
    players->pause(spotify);
    players.reset();
    EXPECT_TRUE(waitUntil([&] { return client.journal.has("Pause"); })) << "what was said stays said";
}

TEST_F(MprisPlayersTest, APlayerThatDoesNotRunIsStartedAndThenPlays) {
    const EnvironmentVariable ours("QT_XCB_NO_MITSHM", "1");
    const EnvironmentVariable token("XDG_ACTIVATION_TOKEN", "ours");
    const EnvironmentVariable other("SELVANE_TEST", "kept");
    install("spotify.desktop");
    makePlayers();
    FakeMprisPlayer client(bus, "spotify");
    players->play(spotify, link);
    ASSERT_TRUE(waitForStart("spotify.desktop"));
    EXPECT_THAT(starts("spotify.desktop"), HasSubstr("SELVANE_TEST=kept\n"));
    EXPECT_THAT(starts("spotify.desktop"), testing::Not(HasSubstr("QT_XCB_NO_MITSHM")));
    EXPECT_THAT(starts("spotify.desktop"), testing::Not(HasSubstr("XDG_ACTIVATION_TOKEN")));
    EXPECT_THAT(starts("spotify.desktop"), HasSubstr("arguments: --new\n"));
    client.run();
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri));
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(MprisPlayersTest, APlayerThatHasItsNameBeforeItsObjectsIsWaitedFor) {
    install("org.gnome.Rhythmbox3.desktop");
    makePlayers();
    FakeMprisPlayer rhythmbox(bus, "rhythmbox.instance5");
    rhythmbox.isReady = false;
    rhythmbox.playlists = {};
    players->play(music, "Focus");
    ASSERT_TRUE(waitForStart("org.gnome.Rhythmbox3.desktop"));
    rhythmbox.run();
    QTimer::singleShot(std::chrono::milliseconds{400}, &rhythmbox,
                       [&rhythmbox] { rhythmbox.isReady = true; });
    QTimer::singleShot(std::chrono::milliseconds{800}, &rhythmbox,
                       [&rhythmbox] { rhythmbox.playlists = {"Focus"}; });
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("ActivatePlaylist Focus"));
}

TEST_F(StartedMprisPlayersTest, APlayerThatWasStartedIsAskedUntilItPlays) {
    rhythmbox.hasPlaylists = false;
    rhythmbox.forgets = 3;
    ASSERT_TRUE(comesUpToPlay("Focus"));
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play", "Play", "Play", "Play"));
    EXPECT_TRUE(rhythmbox.isPlaying);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(StartedMprisPlayersTest, APlayerThatPlaysWhenItComesAndThenStopsIsAskedToPlay) {
    patience.music = Seconds{3};
    rhythmbox.isPlaying = true;
    ASSERT_TRUE(comesUpToPlay());
    stopAfter(std::chrono::milliseconds{300});
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
    EXPECT_TRUE(rhythmbox.isPlaying);
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(rhythmbox.isPlaying);
}

TEST_F(StartedMprisPlayersTest, APlayerThatWasStartedAndHasNothingToPlayIsLeftInTheEnd) {
    patience.start = Seconds{6};
    rhythmbox.onPlay = Habit::staysPaused;
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitForRest());
    EXPECT_GE(rhythmbox.journal.count("Play"), 2);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(StartedMprisPlayersTest, APlayerThatWasStartedAndRefusesAtFirstIsAskedAgain) {
    rhythmbox.refusals = 2;
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play", "Play", "Play"));
    EXPECT_TRUE(rhythmbox.isPlaying);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(MprisPlayersTest, ALinkThatAPlayerForgetsWhileItStartsIsToldAgain) {
    install("spotify.desktop");
    makePlayers();
    FakeMprisPlayer client(bus, "spotify");
    client.forgets = 2;
    players->play(spotify, link);
    ASSERT_TRUE(waitForStart("spotify.desktop"));
    client.run();
    ASSERT_TRUE(waitForRest());
    const std::string order = std::string("OpenUri ") + uri;
    EXPECT_THAT(client.journal.entries(), ElementsAre(order, "Play", order, "Play"));
    EXPECT_TRUE(client.isPlaying);
}

TEST_F(StartedMprisPlayersTest, AListThatPlaysWhenItsPlayerComesAndThenStopsIsPlayed) {
    patience.music = Seconds{3};
    rhythmbox.active = 1;
    rhythmbox.isPlaying = true;
    ASSERT_TRUE(comesUpToPlay("Focus"));
    stopAfter(std::chrono::milliseconds{300});
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play", "Pause", "Play")) << "it keeps its place";
}

TEST_F(StartedMprisPlayersTest, APlayerThatComesPlayingIsPausedBeforeItWasToldAnything) {
    rhythmbox.isPlaying = true;
    rhythmbox.isReady = false;
    ASSERT_TRUE(comesUpToPlay("Focus"));
    ASSERT_TRUE(waitUntil([&] { return rhythmbox.messages > 0; }));
    players->pause(music);
    rhythmbox.isReady = true;
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(rhythmbox.isPlaying);
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(rhythmbox.journal.has("ActivatePlaylist Focus")) << "what was chosen isn't lost";
}

TEST_F(StartedMprisPlayersTest, WhoPausesAPlayerThatHasJustBegunIsNotOverruled) {
    patience.music = Seconds{6};
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitUntil([&] { return rhythmbox.isPlaying; }));
    stopAfter(std::chrono::seconds{3});
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(rhythmbox.isPlaying);
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play"));
}

TEST_F(StartedMprisPlayersTest, APauseWhileAPlayerThatWasStartedIsAskedEndsTheAsking) {
    rhythmbox.onPlay = Habit::staysPaused;
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitUntil([&] { return rhythmbox.journal.count("Play") == 2; }));
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Play", "Play", "Pause"));
}

TEST_F(StartedMprisPlayersTest, APlayAfterAPauseStillKnowsThatThePlayerWasStarted) {
    rhythmbox.forgets = 4;
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitUntil([&] { return rhythmbox.journal.has("Play"); }));
    players->pause(music);
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(rhythmbox.isPlaying);
}

TEST_F(StartedMprisPlayersTest, APlayerThatWasStartedMayBeSilentForAWhile) {
    patience.answer = Seconds{3};
    rhythmbox.answers = false;
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitUntil([&] { return rhythmbox.messages >= 2; })) << "it was asked once only";
    rhythmbox.answers = true;
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(rhythmbox.isPlaying);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(StartedMprisPlayersTest, APlayerThatIsStartedAndStaysSilentIsToldInTheLog) {
    patience.answer = Seconds{2};
    patience.start = Seconds{4};
    rhythmbox.answers = false;
    ASSERT_TRUE(comesUpToPlay());
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(log.receiveLine(), "org.mpris.MediaPlayer2.rhythmbox doesn't answer");
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_F(MprisPlayersTest, APlayerThatDoesNotComeIsToldInTheLog) {
    patience.start = Seconds{0.5};
    install("org.gnome.Rhythmbox3.desktop");
    makePlayers();
    players->play(music, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(log.receiveLine(),
              "org.gnome.Rhythmbox3.desktop was started, but doesn't come up as a music player");
    players->pause(music);
    EXPECT_TRUE(players->isAtRest());
}

TEST_F(MprisPlayersTest, APlayerThatIsComingIsNotStartedAgain) {
    install("spotify.desktop");
    makePlayers();
    FakeMprisPlayer client(bus, "spotify");
    players->play(spotify, "");
    ASSERT_TRUE(waitForStart("spotify.desktop"));
    std::filesystem::remove(noteOf("spotify.desktop"));
    players->pause(spotify);
    players->play(spotify, link);
    client.run();
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri));
    EXPECT_TRUE(wasNotStarted("spotify.desktop"));
}

TEST_F(MprisPlayersTest, APauseWhileAPlayerComesDoesNotLoseWhatWasChosen) {
    install("spotify.desktop");
    makePlayers();
    FakeMprisPlayer client(bus, "spotify");
    players->play(spotify, link);
    ASSERT_TRUE(waitForStart("spotify.desktop"));
    players->pause(spotify);
    players->play(spotify, "");
    client.run();
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri));
    players->pause(spotify);
    ASSERT_TRUE(waitForRest());
    players->play(spotify, "");
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(client.journal.entries(), ElementsAre(std::string("OpenUri ") + uri, "Pause", "Play"))
        << "told once";
}

TEST_F(MprisPlayersTest, ADesktopsChoiceThatNobodyKnowsIsTheLastResort) {
    install("org.example.Player.desktop");
    makePlayers();
    EXPECT_FALSE(players->isInstalled(music));
    folder.write("settings/mimeapps.list",
                 "[Default Applications]\naudio/mpeg=org.example.Player.desktop;\n");
    EXPECT_TRUE(players->isInstalled(music));
    install("vlc.desktop");
    players->play(music, "");
    EXPECT_TRUE(waitForStart("vlc.desktop"));
}

TEST_F(MprisPlayersTest, APlayerThatComesAfterThePauseStaysSilent) {
    install("org.gnome.Rhythmbox3.desktop");
    makePlayers();
    FakeMprisPlayer rhythmbox(bus, "rhythmbox");
    rhythmbox.isPlaying = true;
    players->play(music, "Focus");
    ASSERT_TRUE(waitForStart("org.gnome.Rhythmbox3.desktop"));
    players->pause(music);
    rhythmbox.run();
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(rhythmbox.journal.entries(), ElementsAre("Pause"));
}

TEST_F(MprisPlayersTest, AnApplicationThatTheBusCanActivateIsActivated) {
    install("org.example.Player.desktop", "DBusActivatable=true\n");
    chosen = "org.example.Player.desktop";
    makePlayers();
    // The application is there, without a window or music yet.
    class Application final : public QDBusVirtualObject {
    public:
        [[nodiscard]] QString introspect(const QString&) const override { return {}; }
        bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
            activations += message.interface() == QLatin1String("org.freedesktop.Application") &&
                           message.member() == QLatin1String("Activate") &&
                           message.signature() == QLatin1String("a{sv}");
            connection.send(message.createReply());
            return true;
        }
        int activations = 0;
    } application;
    QDBusConnection theirs = bus.connect();
    theirs.registerVirtualObject(QStringLiteral("/org/example/Player"), &application);
    theirs.registerService(QStringLiteral("org.example.Player"));
    FakeMprisPlayer player(bus, "Player");
    players->play(music, "");
    ASSERT_TRUE(waitUntil([&] { return application.activations == 1; }));
    player.run();
    ASSERT_TRUE(waitForRest());
    EXPECT_THAT(player.journal.entries(), ElementsAre("Play"));
    EXPECT_TRUE(wasNotStarted("org.example.Player.desktop"));
}

TEST_F(MprisPlayersTest, AnApplicationThatTheBusDoesNotKnowIsRun) {
    install("org.example.Player.desktop", "DBusActivatable=true\n");
    chosen = "org.example.Player.desktop";
    makePlayers();
    players->play(music, "");
    EXPECT_TRUE(waitForStart("org.example.Player.desktop"));
}

TEST_F(MprisPlayersTest, TheDesktopsChoiceForMusicIsStartedBeforeOthers) {
    install("org.gnome.Rhythmbox3.desktop");
    install("vlc.desktop");
    folder.write("settings/mimeapps.list", "[Default Applications]\naudio/mpeg=vlc.desktop;\n");
    makePlayers();
    players->play(music, "");
    EXPECT_TRUE(waitForStart("vlc.desktop"));
    EXPECT_TRUE(wasNotStarted("org.gnome.Rhythmbox3.desktop"));
}

TEST_F(MprisPlayersTest, WhatIsInstalledIsLookedUpEachTime) {
    makePlayers();
    EXPECT_FALSE(players->isInstalled(music));
    EXPECT_FALSE(players->isInstalled(spotify));
    install("com.spotify.Client.desktop");
    EXPECT_FALSE(players->isInstalled(music)) << "Spotify is not the user's own music";
    EXPECT_TRUE(players->isInstalled(spotify));
    install("vlc.desktop");
    EXPECT_TRUE(players->isInstalled(music));
    std::filesystem::remove(folder.path() / "bin/vlc.desktop");
    EXPECT_FALSE(players->isInstalled(music)) << "its program is gone";
    chosen = "org.example.Player.desktop";
    EXPECT_FALSE(players->isInstalled(music));
    install("org.example.Player.desktop");
    EXPECT_TRUE(players->isInstalled(music));
}

TEST_F(MprisPlayersTest, MpvIsAMusicPlayerWithItsPluginOnly) {
    makePlayers();
    install("mpv.desktop");
    EXPECT_FALSE(players->isInstalled(music));
    folder.write("settings/mpv/scripts/mpris.so", "");
    EXPECT_TRUE(players->isInstalled(music));
}

TEST_F(MprisPlayersTest, WithoutABusOnlyTheLogIsTold) {
    install("spotify.desktop");
    players.emplace(
        QDBusConnection(QStringLiteral("there is no such connection")),
        MprisPlayers::Environment{.scheduler = &scheduler, .fileSystem = &files, .folders = [this] {
                                      return ApplicationFolders{{folder.path() / "data"}, {}};
                                  }});
    EXPECT_TRUE(players->isInstalled(spotify));
    players->play(spotify, link);
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(log.receiveLine(), "there is no music player that could be driven");
    players->pause(spotify);
    EXPECT_TRUE(players->isAtRest());
}

} // namespace
} // namespace selvane::test
