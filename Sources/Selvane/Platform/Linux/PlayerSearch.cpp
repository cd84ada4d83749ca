#include "Selvane/Platform/Linux/PlayerSearch.h"

#include "Selvane/Platform/Linux/DBusCall.h"
#include "Selvane/Platform/Linux/KnownPlayers.h"
#include "Selvane/Platform/Linux/Mpris.h"

#include <algorithm>
#include <span>
#include <utility>

namespace selvane {

namespace {

using KnownPlayers::Player;

std::chrono::milliseconds milliseconds(Seconds seconds) {
    return std::chrono::ceil<std::chrono::milliseconds>(seconds);
}

bool isInstalled(const InstalledApplications& applications, const Player& player) {
    return (player.plugin.empty() || applications.hasFile(player.plugin)) &&
           applications.find(player.application).has_value();
}

std::string firstInstalled(const InstalledApplications& applications, std::span<const Player> players) {
    const auto found = std::ranges::find_if(
        players, [&applications](const Player& player) { return isInstalled(applications, player); });
    return found == players.end() ? std::string() : std::string(found->application);
}

/// How far behind a running player stands in the list.
std::ptrdiff_t rank(const std::string& busName) {
    const auto players = KnownPlayers::ownMusic();
    return std::ranges::find_if(
               players,
               [&busName](const Player& player) { return KnownPlayers::isNamed(busName, player.name); }) -
           players.begin();
}

} // namespace

PlayerSearch::PlayerSearch(const MprisDesk& desk, ExternalPlayer player, std::string last,
                           std::function<void(std::optional<Found>)> onFound)
    : _desk(desk), _player(player), _last(std::move(last)), _onFound(std::move(onFound)) {}

std::string PlayerSearch::installed(const MprisDesk& desk, ExternalPlayer player, Order order) {
    switch (player) {
    case ExternalPlayer::spotify:
        return firstInstalled(desk.applications, KnownPlayers::spotify());
    case ExternalPlayer::appleMusic:
        break;
    }
    const std::string chosen = desk.chosenPlayer();
    if (!chosen.empty() && desk.applications.find(chosen))
        return chosen;
    const auto players = KnownPlayers::ownMusic();
    if (order == Order::desktopsChoiceFirst) {
        for (const std::string& application : desk.defaults.of("audio/mpeg")) {
            const auto known = std::ranges::find(players, application, &Player::application);
            if (known != players.end() && isInstalled(desk.applications, *known))
                return application;
        }
    }
    if (std::string known = firstInstalled(desk.applications, players); !known.empty())
        return known;
    // Whether these can be driven shows when they run.
    const std::vector<std::string> unknown = desk.defaults.of("audio/mpeg");
    const auto there = std::ranges::find_if(unknown, [&desk](const std::string& application) {
        return desk.applications.find(application).has_value();
    });
    return there == unknown.end() ? std::string() : *there;
}

void PlayerSearch::begin() {
    // Qt answers nothing then.
    if (!_desk.bus.isConnected())
        return _onFound(std::nullopt);
    callAsync(
        _desk.bus, Mpris::listNames(), this,
        [this](const QDBusMessage& reply) {
            if (Mpris::outcome(reply) == Mpris::Outcome::answered)
                choose(Mpris::players(reply));
            else
                _onFound(std::nullopt);
        },
        milliseconds(_desk.patience.answer));
}

void PlayerSearch::choose(std::vector<std::string> names) {
    switch (_player) {
    case ExternalPlayer::spotify:
        _wanted = "spotify";
        break;
    case ExternalPlayer::appleMusic:
        // One that is neither there nor runs was removed since it was chosen.
        if (const std::string chosen = _desk.chosenPlayer(); !chosen.empty()) {
            const std::string name = KnownPlayers::name(chosen);
            if (_desk.applications.find(chosen) ||
                std::ranges::any_of(names, [&name](const std::string& busName) {
                    return KnownPlayers::isNamed(busName, name);
                }))
                _wanted = name;
        }
        break;
    }
    std::erase_if(names, [this](const std::string& busName) {
        return _wanted.empty() ? !KnownPlayers::playsOwnMusic(busName)
                               : !KnownPlayers::isNamed(busName, _wanted);
    });
    std::ranges::sort(names, {},
                      [](const std::string& busName) { return std::pair(rank(busName), busName); });
    _candidates = std::move(names);
    _plays.assign(_candidates.size(), false);
    if (_candidates.empty() || (!_wanted.empty() && _candidates.size() == 1))
        finish();
    else
        askWhoPlays();
}

void PlayerSearch::askWhoPlays() {
    for (std::size_t index = 0; index < _candidates.size(); ++index) {
        callAsync(
            _desk.bus, Mpris::get(_candidates[index], Mpris::player, "PlaybackStatus"), this,
            [this, index](const QDBusMessage& reply) {
                _plays[index] = Mpris::isPlaying(reply);
                // Who doesn't answer doesn't play for us.
                if (++_answers == _candidates.size())
                    finish();
            },
            milliseconds(_desk.patience.answer));
    }
}

void PlayerSearch::finish() {
    const auto running = [](const std::string& busName) { return Found{.busName = busName}; };
    if (const auto plays = std::ranges::find(_plays, true); plays != _plays.end())
        return _onFound(running(_candidates[static_cast<std::size_t>(plays - _plays.begin())]));
    if (std::ranges::find(_candidates, _last) != _candidates.end())
        return _onFound(running(_last));
    if (!_wanted.empty() && !_candidates.empty())
        return _onFound(running(_candidates.front()));

    const std::string application = installed(_desk, _player, Order::desktopsChoiceFirst);
    const std::string name = KnownPlayers::name(application);
    const auto same = std::ranges::find_if(
        _candidates, [&name](const std::string& busName) { return KnownPlayers::isNamed(busName, name); });
    if (same != _candidates.end())
        return _onFound(running(*same));
    if (!application.empty())
        return _onFound(Found{.application = application, .name = name});
    if (!_candidates.empty())
        return _onFound(running(_candidates.front()));
    _onFound(std::nullopt);
}

} // namespace selvane
