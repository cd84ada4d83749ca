#include "SelvaneCore/SpotifyLink.h"

#include "Support/RowName.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>

namespace selvane {
namespace {

using namespace std::string_literals;

/// Letters of both cases and digits, 22 of them.
const std::string id = "0aZ9bY8cX7dW6eV5fU4gT3";
const std::string playlist = "spotify:playlist:" + id;

struct LinkRow {
    const char* name;
    std::string text;
    /// Absent where the text is refused.
    std::optional<std::string> uri;
};

class SpotifyLinks : public testing::TestWithParam<LinkRow> {};

TEST_P(SpotifyLinks, GiveURIs) {
    EXPECT_EQ(SpotifyLink::uri(GetParam().text), GetParam().uri);
}

/// A link to the playlist, with `piece` in front of its kind.
std::string link(std::string_view piece = "") {
    return "https://open.spotify.com/" + std::string(piece) + "playlist/" + id;
}

/// A link of exactly that many characters.
std::string linkOfLength(std::size_t length) {
    const std::string start = link() + "?si=";
    return start + std::string(length - start.size(), 'a');
}

INSTANTIATE_TEST_SUITE_P(
    Accepted, SpotifyLinks,
    testing::Values(
        LinkRow{"uri", playlist, playlist}, LinkRow{"link", link(), playlist},
        LinkRow{"whiteSpaceAround", "\u3000\n " + link() + " \r\n\u00a0", playlist},
        LinkRow{"whiteSpaceAroundAURI", "\t" + playlist + "\n", playlist},
        LinkRow{"shareToken", link() + "?si=0123456789abcdef&nd=1", playlist},
        LinkRow{"numberSign", link() + "#a", playlist}, LinkRow{"locale", link("intl-de/"), playlist},
        LinkRow{"severalPiecesBefore", link("a/b/c/"), playlist},
        LinkRow{"piecesBehind", link() + "/a/b", playlist}, LinkRow{"slashAtTheEnd", link() + "/", playlist},
        LinkRow{"doubledSlashes", link("/"), playlist},
        LinkRow{"slashesBeforeTheIdentifier", "https://open.spotify.com/playlist//" + id, playlist},
        LinkRow{"onlyTheFirstKindCounts", link() + "/album/" + id, playlist},
        LinkRow{"hostInUpperCase", "https://OPEN.Spotify.com/playlist/" + id, playlist},
        LinkRow{"port", "https://open.spotify.com:443/playlist/" + id, playlist},
        LinkRow{"emptyPort", "https://open.spotify.com:/playlist/" + id, playlist},
        LinkRow{"user", "https://me@open.spotify.com/playlist/" + id, playlist},
        LinkRow{"percentSigns", "https://open.spotify.com/%70laylist/%30" + id.substr(1), playlist},
        LinkRow{"of300Characters", linkOfLength(300), playlist},
        LinkRow{"whiteSpaceIsNotCounted", std::string(400, ' ') + linkOfLength(300), playlist}),
    test::rowName);

INSTANTIATE_TEST_SUITE_P(
    Refused, SpotifyLinks,
    testing::Values(
        LinkRow{"nothing", "", {}}, LinkRow{"whiteSpaceAlone", " \n\u3000", {}},
        LinkRow{"identifierAlone", id, {}}, LinkRow{"schemeAlone", "spotify:", {}},
        LinkRow{"uriWithOnePiece", "spotify:" + id, {}}, LinkRow{"uriWithThreePieces", playlist + ":a", {}},
        LinkRow{"uriWithAColonBehind", playlist + ":", {}},
        LinkRow{"uriWithAColonBefore", "spotify::playlist:" + id, {}},
        LinkRow{"uriOfAUser", "spotify:user:me:playlist:" + id, {}},
        LinkRow{"uriWithAKindLast", "spotify:" + id + ":playlist", {}},
        LinkRow{"uriOfAnotherKind", "spotify:user:" + id, {}},
        LinkRow{"uriWithAKindInUpperCase", "spotify:Playlist:" + id, {}},
        LinkRow{"uriWithASchemeInUpperCase", "Spotify:playlist:" + id, {}},
        LinkRow{"uriWithAShareToken", playlist + "?si=1", {}},
        LinkRow{"uriWithSlashes", "spotify://playlist/" + id, {}},
        LinkRow{"uriWithABlank", "spotify: playlist:" + id, {}},
        LinkRow{"uriWithAPercentSign", "spotify:playlist:%30" + id.substr(1), {}},
        LinkRow{"http", "http://open.spotify.com/playlist/" + id, {}},
        LinkRow{"schemeInUpperCase", "HTTPS://open.spotify.com/playlist/" + id, {}},
        LinkRow{"noScheme", "open.spotify.com/playlist/" + id, {}},
        LinkRow{"relativeToTheScheme", "//open.spotify.com/playlist/" + id, {}},
        LinkRow{"otherHost", "https://example.com/playlist/" + id, {}},
        LinkRow{"subdomain", "https://a.open.spotify.com/playlist/" + id, {}},
        LinkRow{"parentDomain", "https://spotify.com/playlist/" + id, {}},
        LinkRow{"hostEndingInADot", "https://open.spotify.com./playlist/" + id, {}},
        LinkRow{"hostAsUser", "https://open.spotify.com@example.com/playlist/" + id, {}},
        LinkRow{"hostAlone", "https://open.spotify.com", {}},
        LinkRow{"kindAlone", "https://open.spotify.com/playlist", {}},
        LinkRow{"kindAndASlash", "https://open.spotify.com/playlist/", {}},
        LinkRow{"noKind", "https://open.spotify.com/" + id, {}},
        LinkRow{"otherKind", "https://open.spotify.com/user/" + id, {}},
        LinkRow{"kindInUpperCase", "https://open.spotify.com/PLAYLIST/" + id, {}},
        LinkRow{"kindInTheQuery", "https://open.spotify.com/?a=/playlist/" + id, {}},
        LinkRow{"noLaterPieceIsTried", "https://open.spotify.com/playlist/a/" + id, {}},
        LinkRow{"noLaterKindIsTried", "https://open.spotify.com/playlist/a/album/" + id, {}},
        LinkRow{"kindTwice", "https://open.spotify.com/playlist/playlist/" + id, {}},
        LinkRow{"encodedSlash", "https://open.spotify.com/playlist%2F" + id, {}},
        LinkRow{"blankInside", link() + " a", {}}, LinkRow{"umlautInTheQuery", link() + "?a=ü", {}},
        LinkRow{"portTooLarge", "https://open.spotify.com:65536/playlist/" + id, {}},
        LinkRow{"of301Characters", linkOfLength(301), {}}, LinkRow{"nulByte", link() + "\0"s, {}},
        LinkRow{"wrongBytes", link() + "\xff", {}}, LinkRow{"wrongBytesInAURI", playlist + "\xff", {}}),
    test::rowName);

TEST(SpotifyLink, EveryKindGivesAURI) {
    for (const std::string kind : {"playlist", "album", "track", "artist", "show", "episode"}) {
        const std::string uri = "spotify:" + kind + ":" + id;
        EXPECT_EQ(SpotifyLink::uri(uri), uri);
        EXPECT_EQ(SpotifyLink::uri("https://open.spotify.com/" + kind + "/" + id), uri);
    }
    EXPECT_EQ(SpotifyLink::kinds.size(), 6U);
}

TEST(SpotifyLink, IdentifiersHave22LettersAndDigits) {
    const std::string start = id.substr(1);
    for (const std::string& wrong :
         {start, id + "a", ""s, start + "-", start + "_", start + " ", start + "\u00e9", start + "\u0661",
          id + "\u0301", start + "\0"s, start + "%"}) {
        EXPECT_EQ(SpotifyLink::uri("spotify:track:" + wrong), std::nullopt) << wrong;
        EXPECT_EQ(SpotifyLink::uri("https://open.spotify.com/track/" + wrong), std::nullopt) << wrong;
    }
    // Decoded bytes of a path are no letters either.
    for (const std::string wrong : {"%C3%A9", "%00", "%2F", "%FF"})
        EXPECT_EQ(SpotifyLink::uri("https://open.spotify.com/track/" + start + wrong), std::nullopt) << wrong;
}

TEST(SpotifyLink, LengthIsCountedInCharacters) {
    // Long in bytes and short in characters, it is refused for what it is.
    std::string text = "spotify:track:";
    for (int mark = 0; mark < 100'000; ++mark)
        text += "\u0301";
    EXPECT_EQ(SpotifyLink::uri(text), std::nullopt);
    EXPECT_EQ(SpotifyLink::uri(std::string(1'000'000, 'a')), std::nullopt);
}

} // namespace
} // namespace selvane
