#include "Selvane/Platform/macOS/ScriptedPlayers.h"

#include "SelvaneCore/Log.h"
#include "Support/EventLoop.h"
#include "Support/FakeJournal.h"
#include "Support/Journal.h"
#include "Support/Players.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A Mac whose osascript is a shell script that keeps its arguments in a file.
class ScriptedPlayersTest : public testing::Test {
protected:
    ScriptedPlayersTest() { Log::toJournal(log.path()); }
    ~ScriptedPlayersTest() override { Log::toStandardError(); }

    /// Puts the stand-in there, which does `more` before anybody sees that it ran.
    void haveOsascript(const std::string& more = "") {
        folder.write("osascript", "#!/bin/sh\n"
                                  "cd '" +
                                      folder.path().string() +
                                      "'\n"
                                      "printf '%s\\0' \"$@\" > writing\n" +
                                      more +
                                      "\n"
                                      "mv writing arguments\n");
        std::filesystem::permissions(osascript(), std::filesystem::perms::owner_all);
    }
    [[nodiscard]] std::filesystem::path osascript() const { return folder.path() / "osascript"; }

    /// What the stand-in was started with since the last question; nothing if it doesn't come to that.
    [[nodiscard]] std::optional<std::vector<std::string>> nextArguments() const {
        const auto file = folder.path() / "arguments";
        if (!waitUntil([&file] { return std::filesystem::exists(file); }))
            return std::nullopt;
        std::vector<std::string> result;
        std::string rest = folder.read("arguments");
        std::filesystem::remove(file);
        while (!rest.empty()) {
            result.push_back(rest.substr(0, rest.find('\0')));
            rest.erase(0, result.back().size() + 1);
        }
        return result;
    }

    /// The next line in the log; nothing if none comes.
    [[nodiscard]] std::optional<std::string> nextLine() const {
        std::optional<std::string> line;
        waitUntil([&] { return (line = log.receiveLine()).has_value(); });
        return line;
    }

    TemporaryFolder folder;
    FakeJournal log;
    std::set<std::string, std::less<>> installed{"com.apple.Music", "com.spotify.client"};
    std::vector<std::filesystem::path> opened;
    ScriptedPlayers players{
        {
            .location = [this](std::string_view id) -> std::optional<std::filesystem::path> {
                if (!installed.contains(id))
                    return std::nullopt;
                return "/Applications/" + std::string(id);
            },
            .open = [this](const std::filesystem::path& place) { opened.push_back(place); },
        },
        Osascript(osascript())};
};

TEST_F(ScriptedPlayersTest, PlayRunsTheScriptWithTheUsersTextAsOneArgument) {
    haveOsascript();
    for (const std::string name : {"\"; rm -rf \"$HOME\" $(id) `id` 'x'", "two\nlines", "-e", "--", "*",
                                   "Caf\xc3\xa9 \xf0\x9f\x8e\xb5", "tab\there"}) {
        players.play(music, name);
        EXPECT_EQ(nextArguments(), Osascript::arguments(PlayerScripts::play(music, name)));
    }
    players.play(music, "-x");
    EXPECT_THAT(nextArguments().value(), testing::Contains("-x").Times(1));
    players.play(spotify, "");
    EXPECT_EQ(nextArguments(), Osascript::arguments(PlayerScripts::play(spotify, "")));
}

TEST_F(ScriptedPlayersTest, APauseRunsTheGuardedScriptIfThePlayerIsInstalled) {
    haveOsascript();
    installed.erase("com.apple.Music");
    players.pause(music);
    players.pause(spotify);
    EXPECT_EQ(nextArguments(), Osascript::arguments(PlayerScripts::pause(spotify)));
    installed.insert("com.apple.Music");
    players.pause(music);
    EXPECT_EQ(nextArguments(), Osascript::arguments(PlayerScripts::pause(music)));
}

TEST_F(ScriptedPlayersTest, WhatIsInstalledTheSystemTells) {
    EXPECT_TRUE(players.isInstalled(music));
    EXPECT_TRUE(players.isInstalled(spotify));
    installed = {"com.apple.Music"};
    EXPECT_TRUE(players.isInstalled(music));
    EXPECT_FALSE(players.isInstalled(spotify));
}

TEST_F(ScriptedPlayersTest, OpenOpensTheApplicationWhereItLies) {
    installed.erase("com.apple.Music");
    players.open(music);
    EXPECT_THAT(opened, IsEmpty());
    players.open(spotify);
    EXPECT_THAT(opened, ElementsAre("/Applications/com.spotify.client"));
}

TEST_F(ScriptedPlayersTest, ABadStatusIsToldInTheLog) {
    haveOsascript("mv writing arguments; exit 3");
    players.play(music, "");
    EXPECT_EQ(nextLine(), "osascript exited with status 3");
    // A process that was killed has no status of its own.
    haveOsascript("mv writing arguments; kill -TERM $$");
    players.pause(music);
    EXPECT_EQ(nextLine(), "osascript exited with status 15");
}

TEST_F(ScriptedPlayersTest, AGoodStatusIsNotWorthALine) {
    haveOsascript();
    players.play(music, "");
    ASSERT_TRUE(nextArguments());
    haveOsascript("mv writing arguments; exit 1");
    players.play(music, "");
    EXPECT_EQ(nextLine(), "osascript exited with status 1") << "the first line of both";
}

TEST_F(ScriptedPlayersTest, AMissingOsascriptIsToldInTheLog) {
    players.play(music, "");
    EXPECT_EQ(log.receiveLine(), "osascript failed: No such file or directory") << "at once";
}

TEST_F(ScriptedPlayersTest, WhatTheScriptSaysIsNotHeard) {
    haveOsascript("outputs=$(readlink /proc/$$/fd/1 /proc/$$/fd/2); echo \"$outputs\" > outputs");
    players.play(music, "");
    ASSERT_TRUE(nextArguments());
    EXPECT_EQ(folder.read("outputs"), "/dev/null\n/dev/null\n");
}

TEST_F(ScriptedPlayersTest, NobodyWaitsForTheScript) {
    ASSERT_EQ(::mkfifo((folder.path() / "gate").c_str(), 0600), 0);
    haveOsascript("read word < gate");
    players.play(music, "");
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "arguments")) << "it is still under way";
    folder.write("gate", "go\n");
    EXPECT_TRUE(nextArguments());
}

} // namespace
} // namespace selvane::test
