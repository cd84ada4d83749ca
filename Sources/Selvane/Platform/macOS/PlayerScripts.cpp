#include "Selvane/Platform/macOS/PlayerScripts.h"

#include "SelvaneCore/SpotifyLink.h"
#include "SelvaneCore/Text.h"

#include <cstddef>
#include <optional>
#include <utility>

namespace selvane::PlayerScripts {

namespace {

constexpr std::size_t longestName = 300;

/// Names the player's application in a script.
std::string application(ExternalPlayer player) {
    return "application id \"" + std::string(bundleIdentifier(player)) + "\"";
}

PlayerScript resume(ExternalPlayer player) {
    return {{"tell " + application(player) + " to play"}, {}};
}

PlayerScript playPlaylist(std::string_view name) {
    return {{"on run argv", "tell " + application(ExternalPlayer::appleMusic), "try",
             "play playlist (item 1 of argv)", "on error", "play", "end try", "end tell", "end run"},
            {std::string(Text::prefix(name, longestName))}};
}

PlayerScript playTrack(std::string uri) {
    return {{"on run argv",
             "tell " + application(ExternalPlayer::spotify) + " to play track (item 1 of argv)", "end run"},
            {std::move(uri)}};
}

} // namespace

std::string_view bundleIdentifier(ExternalPlayer player) {
    switch (player) {
    case ExternalPlayer::appleMusic:
        return "com.apple.Music";
    case ExternalPlayer::spotify:
        return "com.spotify.client";
    }
    return {};
}

PlayerScript play(ExternalPlayer player, std::string_view playlist) {
    // 1.
    const std::string_view text = Text::trimmed(playlist);
    switch (player) {
    case ExternalPlayer::appleMusic:
        // 2. and 3.
        return text.empty() ? resume(player) : playPlaylist(text);
    case ExternalPlayer::spotify:
        // 4. and 5.
        if (std::optional<std::string> uri = SpotifyLink::uri(text))
            return playTrack(*std::move(uri));
        return resume(player);
    }
    return {};
}

PlayerScript pause(ExternalPlayer player) {
    const std::string name = application(player);
    return {{"if " + name + " is running then tell " + name + " to pause"}, {}};
}

} // namespace selvane::PlayerScripts
