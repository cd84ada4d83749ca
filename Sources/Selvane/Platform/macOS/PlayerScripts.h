#pragma once

#include "Selvane/Platform/ExternalPlayers.h"

#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// A program for osascript.
struct PlayerScript {
    std::vector<std::string> lines;
    /// What the program finds in `argv`. All that users wrote is here and never in a line, where it could say
    /// something else than a name.
    std::vector<std::string> arguments;

    friend bool operator==(const PlayerScript&, const PlayerScript&) = default;
};

/// What the players of a Mac are told. Any thread; nothing fails.
namespace PlayerScripts {

/// By which the system knows the player's application.
[[nodiscard]] std::string_view bundleIdentifier(ExternalPlayer player);

/// `playlist` as `ExternalPlayers::play` has it. A name that Apple Music doesn't know resumes it.
[[nodiscard]] PlayerScript play(ExternalPlayer player, std::string_view playlist);

/// Does nothing with a player that doesn't run.
[[nodiscard]] PlayerScript pause(ExternalPlayer player);

} // namespace PlayerScripts

} // namespace selvane
