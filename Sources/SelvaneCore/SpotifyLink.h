#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

/// Links to what Spotify can play. Any thread.
namespace selvane::SpotifyLink {

/// What can be played, as links and URIs name it.
inline constexpr std::array<std::string_view, 6> kinds{"playlist", "album", "track",
                                                       "artist",   "show",  "episode"};

/// The URI, as in "spotify:album:" and 22 letters and digits, of a share link or a URI that a user pasted.
/// Of a link only the host and the path count: the first kind in it, and the identifier right behind. Absent
/// for anything else, and for text of more than 300 characters.
[[nodiscard]] std::optional<std::string> uri(std::string_view from);

} // namespace selvane::SpotifyLink
