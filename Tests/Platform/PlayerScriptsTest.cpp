#include "Selvane/Platform/macOS/PlayerScripts.h"

#include "Selvane/Platform/macOS/Osascript.h"
#include "Support/Players.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace selvane::test {
namespace {

using testing::ElementsAre;

TEST(PlayerScripts, EmptyTextResumesAppleMusic) {
    const PlayerScript plain{{R"(tell application id "com.apple.Music" to play)"}, {}};
    EXPECT_EQ(PlayerScripts::play(music, ""), plain);
    EXPECT_EQ(PlayerScripts::play(music, " \n\t "), plain) << "white space is no name";
}

TEST(PlayerScripts, APlaylistOfAppleMusicIsAnArgumentAndResumesIfItDoesNotExist) {
    const PlayerScript script = PlayerScripts::play(music, "  Deep Focus\n");
    EXPECT_THAT(script.lines, ElementsAre("on run argv", R"(tell application id "com.apple.Music")", "try",
                                          "play playlist (item 1 of argv)", "on error", "play", "end try",
                                          "end tell", "end run"));
    EXPECT_THAT(script.arguments, ElementsAre("Deep Focus"));
}

TEST(PlayerScripts, WhatUsersWriteIsNeverPartOfALine) {
    const PlayerScript plain = PlayerScripts::play(music, "x");
    for (const std::string name : {"\" & (do shell script \"id\") & \"", "end run\non run", "-e", "--",
                                   "\\\"", "Caf\xc3\xa9 \xf0\x9f\x8e\xb5"}) {
        const PlayerScript script = PlayerScripts::play(music, name);
        EXPECT_EQ(script.lines, plain.lines) << name;
        EXPECT_THAT(script.arguments, ElementsAre(name));
    }
}

TEST(PlayerScripts, ANameHasAtMostThreeHundredCharacters) {
    std::string name;
    for (int count = 0; count < 301; ++count)
        name += "e\xcc\x81";
    EXPECT_THAT(PlayerScripts::play(music, "  " + name).arguments,
                ElementsAre(name.substr(0, std::string::size_type{300} * 3)))
        << "as readers count them, after the white space has gone";
    EXPECT_THAT(PlayerScripts::play(music, std::string(300, 'x')).arguments,
                ElementsAre(std::string(300, 'x')));
}

TEST(PlayerScripts, SpotifyGetsTheURIOfALink) {
    for (const char* const text :
         {"spotify:playlist:aaaaaaaaaaaaaaaaaaaaaa",
          " https://open.spotify.com/intl-de/playlist/aaaaaaaaaaaaaaaaaaaaaa?si=secret\n"}) {
        const PlayerScript script = PlayerScripts::play(spotify, text);
        EXPECT_THAT(script.lines,
                    ElementsAre("on run argv",
                                R"(tell application id "com.spotify.client" to play track (item 1 of argv))",
                                "end run"))
            << text;
        EXPECT_THAT(script.arguments, ElementsAre("spotify:playlist:aaaaaaaaaaaaaaaaaaaaaa")) << text;
    }
}

TEST(PlayerScripts, ABadLinkAndNoneResumeSpotify) {
    const PlayerScript plain{{R"(tell application id "com.spotify.client" to play)"}, {}};
    for (const char* const text :
         {"", " \n", "Deep Focus", "http://open.spotify.com/playlist/aaaaaaaaaaaaaaaaaaaaaa",
          "https://open.spotify.com/playlist/tooshort", "spotify:playlist:aaaaaaaaaaaaaaaaaaaaaab",
          "spotify:user:somebody:playlist:aaaaaaaaaaaaaaaaaaaaaa", "\" to quit"})
        EXPECT_EQ(PlayerScripts::play(spotify, text), plain) << text;
}

TEST(PlayerScripts, APauseAsksFirstWhetherThePlayerRuns) {
    EXPECT_EQ(PlayerScripts::pause(music),
              (PlayerScript{{R"(if application id "com.apple.Music" is running then tell application id )"
                             R"("com.apple.Music" to pause)"},
                            {}}));
    EXPECT_EQ(PlayerScripts::pause(spotify),
              (PlayerScript{{R"(if application id "com.spotify.client" is running then tell application id )"
                             R"("com.spotify.client" to pause)"},
                            {}}));
}

TEST(PlayerScripts, EachLineFollowsAnOptionAndTheArgumentsTheEndOfOptions) {
    EXPECT_THAT(Osascript::arguments({{"one", "two"}, {"-e"}}),
                ElementsAre("-e", "one", "-e", "two", "--", "-e"));
    EXPECT_THAT(Osascript::arguments({{"one"}, {}}), ElementsAre("-e", "one"));
}

} // namespace
} // namespace selvane::test
