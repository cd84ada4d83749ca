#pragma once

#include <QtCore/QString>
#include <QtCore/QVariantList>
#include <QtDBus/QDBusMessage>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The messages of MPRIS 2.2, by which music players are driven. A name is a player's on the bus. No message
/// makes the bus start a player. Any thread; nothing fails.
namespace selvane::Mpris {

inline constexpr auto path = "/org/mpris/MediaPlayer2";
inline constexpr auto root = "org.mpris.MediaPlayer2";
inline constexpr auto player = "org.mpris.MediaPlayer2.Player";
inline constexpr auto playlists = "org.mpris.MediaPlayer2.Playlists";

/// The call of a method of one of the interfaces above.
[[nodiscard]] QDBusMessage call(const std::string& name, const char* interface, const char* method,
                                const QVariantList& arguments = {});

/// Asks for a property of one of the interfaces above.
[[nodiscard]] QDBusMessage get(const std::string& name, const char* interface, const char* property);

/// Asks for the names on the bus.
[[nodiscard]] QDBusMessage listNames();

/// The players among the names that the bus answered.
[[nodiscard]] std::vector<std::string> players(const QDBusMessage& reply);

/// Whether the answer is the PlaybackStatus of a player that plays.
[[nodiscard]] bool isPlaying(const QDBusMessage& reply);

/// Whether the answer is a property that says yes.
[[nodiscard]] bool isTrue(const QDBusMessage& reply);

/// Asks for all playlists.
[[nodiscard]] QDBusMessage getPlaylists(const std::string& name);

/// The object path of the playlist that the user calls so, of those that the player answered: with exactly
/// that name, else with the first that differs in capitals only.
[[nodiscard]] std::optional<QString> playlist(const QDBusMessage& reply, std::string_view called);

/// The object path in the answer to a question for the ActivePlaylist; empty if none is active.
[[nodiscard]] QString activePlaylist(const QDBusMessage& reply);

/// What became of a call.
enum class Outcome {
    answered,
    /// The player refused, or doesn't know the call.
    refused,
    /// It didn't answer in time.
    silent,
    /// It isn't on the bus any more, or there is no bus.
    gone,
};
[[nodiscard]] Outcome outcome(const QDBusMessage& reply);

} // namespace selvane::Mpris
