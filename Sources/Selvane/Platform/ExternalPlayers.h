#pragma once

#include <string_view>

namespace selvane {

/// The two players of others that the program can drive. What the values stand for is the desktop's to say:
/// where there is no Apple Music, that value is the user's own music player.
enum class ExternalPlayer { appleMusic, spotify };

/// Players that are programs of their own, driven from outside. Main thread; everything returns at once, and
/// whether music really plays is not told: what fails is in the log only.
class ExternalPlayers {
public:
    virtual ~ExternalPlayers() = default;

    /// Whether the player is there to be started. Looks anew each time.
    [[nodiscard]] virtual bool isInstalled(ExternalPlayer player) const = 0;

    /// Plays what `playlist` names, and starts the player for that if it has to. For Spotify that is a share
    /// link or a URI, otherwise the name of a playlist, in the user's own words: white space around it
    /// doesn't count, nor does what follows the first 300 characters of a name. Empty text, and text that
    /// names nothing that the player has, resume what it played last; empty text after a call that was ended
    /// before the player could be told is that call's text.
    virtual void play(ExternalPlayer player, std::string_view playlist) = 0;

    /// Pauses the player if it runs; never starts it. Where it can be known that `play` has not made it play,
    /// it goes on.
    virtual void pause(ExternalPlayer player) = 0;

    /// Shows the player's window, and starts the player for that if it has to. Does nothing if it isn't
    /// installed.
    virtual void open(ExternalPlayer player) = 0;
};

} // namespace selvane
