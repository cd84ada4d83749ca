#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "Selvane/Platform/Linux/Mpris.h"
#include "Selvane/Platform/Linux/MprisPlayers.h"
#include "SelvaneCore/Log.h"
#include "SelvaneCore/PosixFileSystem.h"
#include "Support/EventLoop.h"
#include "Support/FakeJournal.h"
#include "Support/Players.h"
#include "Support/PrivateBus.h"
#include "Support/SoundServer.h"
#include "Support/TemporaryFolder.h"
#include "Support/XServer.h"

#include <QtCore/QDataStream>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtDBus/QDBusVariant>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace selvane::test {
namespace {

enum class Needs { nothing, soundAndScreen };
enum class Refuses { nobody, root };

/// A music player of others, whose package is installed.
struct Program {
    const char* title;
    const char* application;
    const char* busName;
    /// What starts it with the tone, paused and unheard; "TONE" stands for the file.
    const char* command;
    Needs needs = Needs::nothing;
    Refuses refuses = Refuses::nobody;
};

void PrintTo(const Program& program, std::ostream* stream) {
    *stream << program.title;
}

constexpr Program mpv{"Mpv", "mpv.desktop", "org.mpris.MediaPlayer2.mpv",
                      "mpv --no-config --script=/etc/mpv/scripts/mpris.so --ao=null --pause --loop TONE"};
constexpr Program vlc{
    .title = "Vlc",
    .application = "vlc.desktop",
    .busName = "org.mpris.MediaPlayer2.vlc",
    .command = "vlc -I dummy --control dbus --aout=dummy --no-video --start-paused --loop TONE",
    .refuses = Refuses::root,
};
constexpr Program rhythmbox{
    .title = "Rhythmbox",
    .application = "org.gnome.Rhythmbox3.desktop",
    .busName = "org.mpris.MediaPlayer2.rhythmbox",
    .command = "rhythmbox",
    .needs = Needs::soundAndScreen,
};

/// A desktop on which one real player is installed, with a tone to play and a home of its own.
class RealPlayers : public testing::TestWithParam<Program> {
protected:
    RealPlayers() { Log::toJournal(log.path()); }
    ~RealPlayers() override {
        players.reset();
        for (const pid_t process : processes)
            ::kill(process, SIGKILL);
        // They write to their home until then.
        waitUntil([this] {
            return std::ranges::all_of(processes, [](pid_t process) { return ::kill(process, 0) != 0; });
        });
        Log::toStandardError();
    }

    void SetUp() override {
        std::filesystem::permissions(folder.path(), static_cast<std::filesystem::perms>(0755));
        bus.letOthersIn();
        makeTone();
        if (GetParam().needs == Needs::soundAndScreen) {
            server.emplace(SoundSystem::pulseAudio);
            ASSERT_TRUE(server->start());
            screen.emplace();
            ASSERT_FALSE(screen->display().empty());
        }
        install();
        const ApplicationFolders folders{{folder.path() / "data"}, {folder.path() / "settings"}};
        players.emplace(eye, MprisPlayers::Environment{
                                 .scheduler = &scheduler,
                                 .fileSystem = &files,
                                 .folders = [folders] { return folders; },
                                 .desktops = [] { return std::vector<std::string>(); },
                                 .patience = {.start = Seconds{60}, .unwanted = Seconds{2}},
                             });
    }

    /// Ten minutes of silence.
    void makeTone() const {
        constexpr quint32 rate = 8000;
        constexpr quint32 size = rate * 600;
        QFile file(QString::fromStdString((folder.path() / "tone.wav").string()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        QDataStream stream(&file);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream.writeRawData("RIFF", 4);
        stream << quint32{36 + size};
        stream.writeRawData("WAVEfmt ", 8);
        stream << quint32{16} << quint16{1} << quint16{1} << rate << rate << quint16{1} << quint16{8};
        stream.writeRawData("data", 4);
        stream << size;
        const QByteArray silence(static_cast<int>(size), static_cast<char>(0x80));
        stream.writeRawData(silence.constData(), static_cast<int>(silence.size()));
    }

    /// The player's entry starts it on the test's bus and with the test's home.
    void install() const {
        const Program& program = GetParam();
        const std::string home = (folder.path() / "home").string();
        const std::string tone = (folder.path() / "tone.wav").string();
        folder.write("home/.local/share/rhythmbox/playlists.xml",
                     "<?xml version=\"1.0\"?><rhythmdb-playlists>"
                     "<playlist name=\"Focus\" type=\"static\"><location>file://" +
                         tone +
                         "</location></playlist>"
                         "<playlist name=\"Rest\" type=\"static\"><location>file://" +
                         tone +
                         "</location></playlist>"
                         "</rhythmdb-playlists>\n");
        struct stat status {};
        ::stat(tone.c_str(), &status);
        folder.write(
            "home/.local/share/rhythmbox/rhythmdb.xml",
            "<?xml version=\"1.0\" standalone=\"yes\"?><rhythmdb version=\"2.0\"><entry type=\"song\">"
            "<title>Tone</title><genre>None</genre><artist>Nobody</artist><album>None</album>"
            "<duration>600</duration><file-size>" +
                std::to_string(status.st_size) + "</file-size><location>file://" + tone +
                "</location><mtime>" + std::to_string(status.st_mtime) +
                "</mtime><first-seen>1</first-seen><last-seen>1</last-seen><bitrate>64</bitrate><date>0</"
                "date>"
                "<media-type>audio/x-wav</media-type></entry></rhythmdb>\n");
        folder.write("settings/mpv/scripts/mpris.so", "");
        if (program.refuses == Refuses::root && ::geteuid() == 0) {
            EXPECT_EQ(::chown(home.c_str(), nobody, nobody), 0);
        }

        std::string command = program.command;
        if (const std::size_t place = command.find("TONE"); place != std::string::npos)
            command.replace(place, 4, "'" + tone + "'");
        std::string environment = "env -u XDG_DATA_HOME -u XDG_CONFIG_HOME -u XDG_CACHE_HOME NO_AT_BRIDGE=1 "
                                  "GSETTINGS_BACKEND=memory HOME='" +
                                  home + "' DBUS_SESSION_BUS_ADDRESS='" + bus.address().toStdString() + "' ";
        if (screen)
            environment += "DISPLAY=" + screen->display() + " ";
        if (!server)
            environment += "XDG_RUNTIME_DIR='" + home + "' ";
        if (program.refuses == Refuses::root && ::geteuid() == 0)
            environment += "setpriv --reuid=65534 --regid=65534 --clear-groups ";
        // If the test is killed, nobody else ends the player.
        folder.write("start", "#!/bin/sh\necho started >> '" + (folder.path() / "starts").string() +
                                  "'\nexec timeout -s KILL 200 " + environment + command + "\n");
        std::filesystem::permissions(folder.path() / "start", static_cast<std::filesystem::perms>(0755));
        folder.write(std::string("data/applications/") + program.application,
                     "[Desktop Entry]\nType=Application\nName=x\nExec=" + (folder.path() / "start").string() +
                         " %U\n");
    }

    [[nodiscard]] auto starts() const { return std::ranges::count(folder.read("starts"), '\n'); }

    /// Whether the player comes to say that it does so.
    [[nodiscard]] bool waitForStatus(const char* wanted) const {
        return waitUntil([&] { return status() == wanted; });
    }
    [[nodiscard]] std::string status() const {
        return ask(eye, Mpris::get(GetParam().busName, Mpris::player, "PlaybackStatus"))
            .arguments()
            .value(0)
            .value<QDBusVariant>()
            .variant()
            .toString()
            .toStdString();
    }
    [[nodiscard]] bool isThere() const { return hasOwner(eye, QString::fromLatin1(GetParam().busName)); }
    [[nodiscard]] bool waitForRest() const {
        return waitUntil([this] { return players->isAtRest(); }, std::chrono::seconds{90});
    }

    /// Has the player come up and play.
    [[nodiscard]] bool play(const char* playlist = "") {
        players->play(music, playlist);
        if (!waitForRest() || !isThere())
            return false;
        const auto process =
            ask(eye, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetConnectionUnixProcessID"),
                {QString::fromLatin1(GetParam().busName)});
        processes.push_back(static_cast<pid_t>(process.arguments().value(0).toUInt()));
        return processes.back() > 1 && waitForStatus("Playing");
    }

    /// Stops the process, and waits until each of its threads stands still.
    [[nodiscard]] static bool freeze(pid_t process) {
        ::kill(process, SIGSTOP);
        const auto stands = [](const std::filesystem::path& thread) {
            std::ifstream file(thread / "stat");
            const std::string stat{std::istreambuf_iterator<char>(file), {}};
            return stat.find(") T ") != std::string::npos;
        };
        return waitUntil([&] {
            const std::filesystem::directory_iterator threads("/proc/" + std::to_string(process) + "/task");
            return std::all_of(begin(threads), end(threads),
                               [&](const auto& thread) { return stands(thread.path()); });
        });
    }

    static constexpr unsigned nobody = 65534;

    TemporaryFolder folder;
    FakeJournal log;
    PrivateBus bus;
    QDBusConnection eye = bus.connect();
    std::optional<SoundServer> server;
    std::optional<XServer> screen;
    LinuxScheduler scheduler;
    PosixFileSystem files;
    std::optional<MprisPlayers> players;
    std::vector<pid_t> processes;
};

TEST_P(RealPlayers, IsStartedPlaysPausesAndResumes) {
    EXPECT_TRUE(players->isInstalled(music));
    EXPECT_FALSE(players->isInstalled(ExternalPlayer::spotify));
    // Rhythmbox has nothing to resume before it has played something.
    ASSERT_TRUE(play("Focus"));
    players->pause(music);
    EXPECT_TRUE(waitForStatus("Paused"));
    ASSERT_TRUE(waitForRest());
    EXPECT_TRUE(play());
    EXPECT_EQ(starts(), 1);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

TEST_P(RealPlayers, QuitInBetweenIsNotStartedByAPauseButByAPlay) {
    ASSERT_TRUE(play("Focus"));
    ::kill(processes.back(), SIGKILL);
    ASSERT_TRUE(waitUntil([this] { return !isThere(); }));
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    EXPECT_FALSE(isThere());
    EXPECT_EQ(starts(), 1);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
    EXPECT_TRUE(play("Focus"));
    EXPECT_EQ(starts(), 2);
}

TEST_P(RealPlayers, HungItHoldsNobodyUpAndPausesWhenItCan) {
    ASSERT_TRUE(play("Focus"));
    ASSERT_TRUE(freeze(processes.back()));
    QElapsedTimer turn;
    qint64 longest = 0;
    turn.start();
    players->pause(music);
    ASSERT_TRUE(waitUntil([&] {
        longest = std::max(longest, turn.restart());
        return players->isAtRest();
    }));
    EXPECT_LT(longest, 2500) << "something waited for the answer";
    EXPECT_EQ(log.receiveLine(), std::string(GetParam().busName) + " doesn't answer");
    EXPECT_EQ(log.receiveLine(), std::nullopt);
    ::kill(processes.back(), SIGCONT);
    EXPECT_TRUE(waitForStatus("Paused"));
}

TEST_P(RealPlayers, PausedWhileItStartsItStaysSilent) {
    players->play(music, "Focus");
    ASSERT_TRUE(waitUntil([this] { return starts() == 1; }));
    players->pause(music);
    ASSERT_TRUE(waitForRest());
    ASSERT_TRUE(isThere());
    EXPECT_NE(status(), "Playing");
    EXPECT_TRUE(play("Focus")) << "until somebody wants it again";
    EXPECT_EQ(starts(), 1);
}

TEST_P(RealPlayers, RemovedItIsNotInstalled) {
    std::filesystem::remove(folder.path() / "start");
    EXPECT_FALSE(players->isInstalled(music));
    players->play(music, "Focus");
    ASSERT_TRUE(waitForRest());
    EXPECT_EQ(log.receiveLine(), "there is no music player that could be driven");
}

INSTANTIATE_TEST_SUITE_P(All, RealPlayers, testing::Values(mpv, vlc, rhythmbox),
                         [](const auto& test) { return test.param.title; });

class RealPlaylists : public RealPlayers {
protected:
    /// The name of the playlist that is active.
    [[nodiscard]] std::string active() const {
        const auto list = ask(eye, Mpris::getPlaylists(GetParam().busName));
        const auto reply = ask(eye, Mpris::get(GetParam().busName, Mpris::playlists, "ActivePlaylist"));
        for (const char* const name : {"Focus", "Rest"}) {
            if (Mpris::playlist(list, name) == Mpris::activePlaylist(reply))
                return name;
        }
        return {};
    }
};

TEST_P(RealPlaylists, ArePlayedByTheirName) {
    ASSERT_TRUE(play("focus"));
    EXPECT_EQ(active(), "Focus");
    EXPECT_TRUE(play("Rest")) << "another one takes its place";
    EXPECT_EQ(active(), "Rest");
    EXPECT_TRUE(play("Rest")) << "once more changes nothing";
    EXPECT_EQ(active(), "Rest");
    EXPECT_TRUE(play("Nobody knows")) << "what isn't there resumes";
    EXPECT_EQ(active(), "Rest");
    players->pause(music);
    ASSERT_TRUE(waitForStatus("Paused"));
    EXPECT_TRUE(play("Rest"));
    EXPECT_EQ(starts(), 1);
    EXPECT_EQ(log.receiveLine(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(All, RealPlaylists, testing::Values(rhythmbox),
                         [](const auto& test) { return test.param.title; });

TEST(RealEntries, OfTheSystemAreFound) {
    PosixFileSystem files;
    const InstalledApplications applications(files, [] {
        return ApplicationFolders{{"/usr/share"}, {"/etc"}};
    });
    EXPECT_TRUE(applications.find("org.gnome.Rhythmbox3.desktop"));
    EXPECT_TRUE(applications.find("mpv.desktop"));
    EXPECT_TRUE(applications.hasFile("mpv/scripts/mpris.so"));
}

} // namespace
} // namespace selvane::test
