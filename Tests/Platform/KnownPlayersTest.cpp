#include "Selvane/Platform/Linux/KnownPlayers.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

namespace selvane::test {
namespace {

std::string onBus(std::string_view name) {
    return std::string(KnownPlayers::prefix) + std::string(name);
}

TEST(KnownPlayers, EachApplicationStandsInOneListOnce) {
    std::set<std::string_view> seen;
    for (const auto players : {KnownPlayers::ownMusic(), KnownPlayers::spotify()}) {
        for (const auto& player : players) {
            EXPECT_TRUE(seen.insert(player.application).second) << player.application;
            EXPECT_TRUE(player.application.ends_with(".desktop")) << player.application;
            EXPECT_EQ(KnownPlayers::name(player.application), player.name);
        }
    }
}

TEST(KnownPlayers, TheUsersOwnPlayersAreNotAmongTheOthers) {
    for (const auto& player : KnownPlayers::ownMusic())
        EXPECT_TRUE(KnownPlayers::playsOwnMusic(onBus(player.name))) << player.name;
    for (const auto& player : KnownPlayers::spotify())
        EXPECT_FALSE(KnownPlayers::playsOwnMusic(onBus(player.name))) << player.name;
}

TEST(KnownPlayers, AnUnknownApplicationIsCalledAfterItsEntry) {
    EXPECT_EQ(KnownPlayers::name("org.example.Player.desktop"), "org.example.Player");
    EXPECT_EQ(KnownPlayers::name("player.desktop"), "player");
    EXPECT_EQ(KnownPlayers::name("player"), "player");
    EXPECT_EQ(KnownPlayers::name(""), "");
}

TEST(KnownPlayers, AProcessOfAPlayerHasItsName) {
    EXPECT_TRUE(KnownPlayers::isNamed(onBus("vlc"), "vlc"));
    EXPECT_TRUE(KnownPlayers::isNamed(onBus("vlc.instance1234"), "vlc"));
    EXPECT_TRUE(KnownPlayers::isNamed(onBus("VLC"), "vlc"));
    EXPECT_TRUE(KnownPlayers::isNamed(onBus("org.example.Player"), "org.example.Player"));
    EXPECT_TRUE(KnownPlayers::isNamed(onBus("player.instance_1_2"), "org.example.Player"));
    EXPECT_FALSE(KnownPlayers::isNamed(onBus("vlcx"), "vlc"));
    EXPECT_FALSE(KnownPlayers::isNamed(onBus("x.vlc"), "vlc"));
    EXPECT_FALSE(KnownPlayers::isNamed("org.example.vlc", "vlc"));
    EXPECT_FALSE(KnownPlayers::isNamed(onBus("vlc"), ""));
}

TEST(KnownPlayers, OthersAreKnownByTheirNameWithAndWithoutAProcess) {
    for (const char* const name : {"playerctld", "firefox.instance_1_8", "chromium.instance12",
                                   "plasma-browser-integration", "kdeconnect.mpris_a", "spotify.instance7"})
        EXPECT_FALSE(KnownPlayers::playsOwnMusic(onBus(name))) << name;
    EXPECT_TRUE(KnownPlayers::playsOwnMusic(onBus("somebody.unknown")));
    EXPECT_FALSE(KnownPlayers::playsOwnMusic("org.mpris.MediaPlayer2"));
    EXPECT_FALSE(KnownPlayers::playsOwnMusic("org.freedesktop.Notifications"));
}

} // namespace
} // namespace selvane::test
