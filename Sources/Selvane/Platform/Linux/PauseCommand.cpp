#include "Selvane/Platform/Linux/PauseCommand.h"

#include "Selvane/Platform/Linux/KnownPlayers.h"

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

/// Between two questions to a player that may not tell of its changes.
constexpr Seconds pulse{0.25};

} // namespace

PauseCommand::PauseCommand(const MprisDesk& desk, Player player, Music music)
    : PlayerCommand(desk), _player(std::move(player)), _music(music) {}

void PauseCommand::begin() {
    if (!_player.busName.empty())
        return pause();
    watchNames();
    after(desk().patience.start, [this] { end(); });
    // It may have come unseen.
    ask(Mpris::listNames(), [this](const QDBusMessage& reply) {
        for (const std::string& busName : Mpris::players(reply))
            onName(busName);
    });
}

void PauseCommand::onName(const std::string& busName) {
    if (!_player.busName.empty() || !KnownPlayers::isNamed(busName, _player.awaited))
        return;
    stopWaiting();
    _player.busName = busName;
    pause();
}

void PauseCommand::pause() {
    _watchUntil = now() + desk().patience.unwanted;
    ask(Mpris::call(_player.busName, Mpris::player, "Pause"), [this](const QDBusMessage& reply) {
        switch (_music) {
        case Music::mayBegin:
            watchChanges();
            return readStatus();
        case Music::plays:
            break;
        }
        if (Mpris::outcome(reply) == Mpris::Outcome::refused)
            return fail(_player.busName + " doesn't pause: " + reply.errorMessage().toStdString());
        end();
    });
}

void PauseCommand::onChange() {
    readStatus();
}

void PauseCommand::readStatus() {
    ask(Mpris::get(_player.busName, Mpris::player, "PlaybackStatus"), [this](const QDBusMessage& reply) {
        // Once: what plays after that is the user's own will, or a player that heeds nobody.
        if (Mpris::isPlaying(reply))
            return ask(Mpris::call(_player.busName, Mpris::player, "Pause"),
                       [this](const QDBusMessage&) { end(); });
        if (now() >= _watchUntil)
            return end();
        after(pulse, [this] { readStatus(); });
    });
}

} // namespace selvane
