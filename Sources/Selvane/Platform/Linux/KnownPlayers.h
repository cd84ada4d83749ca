#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Players of music that are driven by MPRIS 2, and by which names. Any thread; nothing fails.
namespace selvane::KnownPlayers {

/// What all names of players on the bus begin with.
inline constexpr std::string_view prefix = "org.mpris.MediaPlayer2.";

struct Player {
    /// The name of its desktop entry.
    std::string_view application;
    /// Its name on the bus behind the prefix. Further processes of it, and all of some players, add a dot and
    /// a name for the process.
    std::string_view name;
    /// A file in a folder of settings or data without which it doesn't speak MPRIS.
    std::string_view plugin = {};
};

/// Those that play the user's own music, the likelier choice first.
[[nodiscard]] std::span<const Player> ownMusic();

/// The ways to have Spotify's own client.
[[nodiscard]] std::span<const Player> spotify();

/// The name on the bus of an application: as the lists above have it, otherwise the one of its desktop entry.
[[nodiscard]] std::string name(std::string_view application);

/// Whether a name on the bus is that player's, or that of one of its processes. Some are called by the last
/// part of their name alone, as "Player" for "org.example.Player"; capitals make no difference.
[[nodiscard]] bool isNamed(std::string_view busName, std::string_view player);

/// Whether a name on the bus is that of somebody who plays the user's own music. Others that speak MPRIS are
/// Spotify, browsers, telephones, and programs that speak for another player.
[[nodiscard]] bool playsOwnMusic(std::string_view busName);

} // namespace selvane::KnownPlayers
