#pragma once

#include "Selvane/Platform/ExternalPlayers.h"
#include "Selvane/Platform/Linux/PlayerCommand.h"
#include "Selvane/Platform/Linux/PlayerSearch.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// Has a player play: finds it, starts it if it has to, tells it what to play, looks whether it does, and
/// asks it once more if not; one that was just started, again and again for a while, but not any more once
/// its music was heard. Players differ in what they make of each call, so nothing is believed but what they
/// say they do then.
class PlayCommand final : public PlayerCommand {
    Q_OBJECT
public:
    /// `text` as `ExternalPlayers::play` has it. `last` as `PlayerSearch` has it.
    PlayCommand(const MprisDesk& desk, ExternalPlayer player, std::string text, std::string last);

    void begin() override;

    /// Called with the desktop entry and the name of a player that has to be started first. Gives whether it
    /// is coming.
    std::function<bool(const PlayerSearch::Found& player)> start;
    /// Called with the name on the bus of the player to which everything from now on is said. Gives until
    /// when that player, just started, may not be ready; a moment that has passed for any other.
    std::function<Seconds(const std::string& busName)> onAddress;

    /// Called when the player is about to be told to play, and what; or plays it already, since it was just
    /// started.
    std::function<void()> onOrder;
    /// Called instead if a player that has run for longer plays that already.
    std::function<void()> onPlaysAlready;

    /// What was done so far: the name that a started player will have, as long as it hasn't come.
    [[nodiscard]] const std::string& awaited() const { return _awaited; }

private:
    void found(const std::optional<PlayerSearch::Found>& player);
    void onName(const std::string& busName) override;
    void address(const std::string& busName);
    void waitUntilReady();
    void act();
    void openLink(const std::string& uri);
    void findPlaylist();
    void activate(const QString& playlist);
    void beginPlaylist(const QString& playlist);
    void resume();
    void tell(const QDBusMessage& order);
    void look();
    void onChange() override;
    void readStatus();
    [[nodiscard]] bool wasStopped(bool plays);
    void insist();
    void play();
    [[nodiscard]] bool mayNotBeReady() const { return now() < _readyBy; }

    ExternalPlayer _player;
    std::string _text;
    PlayerSearch _search;
    /// Those that came to the bus meanwhile.
    std::vector<std::string> _names;
    std::string _awaited;
    std::string _busName;
    /// Until then a player that was just started may neither answer nor heed what it is told.
    Seconds _readyBy{0};
    /// Until then it may be reading its playlists; absent until it was asked for them.
    std::optional<Seconds> _listsBy;
    bool _wasPlaying = false;
    /// What it was told to play; absent if it is to resume.
    std::optional<QDBusMessage> _order;
    bool _wasInsistedOn = false;
    /// Since when it plays what it was told to.
    std::optional<Seconds> _playsSince;
    /// When the looking ends; absent unless somebody looks.
    std::optional<Seconds> _lookUntil;
};

} // namespace selvane
