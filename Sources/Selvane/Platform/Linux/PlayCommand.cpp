#include "Selvane/Platform/Linux/PlayCommand.h"

#include "Selvane/Platform/Linux/KnownPlayers.h"
#include "SelvaneCore/SpotifyLink.h"
#include "SelvaneCore/Text.h"

#include <QtDBus/QDBusObjectPath>
#include <QtDBus/QDBusVariant>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace selvane {

namespace {

constexpr std::size_t longestName = 300;

/// Between two questions to a player that may not be ready, or may not tell of its changes.
constexpr Seconds pulse{0.25};

/// One that was just started may play for so long and stop by itself. Who stops what was heard for longer is
/// the user.
constexpr Seconds longestHiccup{1};

} // namespace

PlayCommand::PlayCommand(const MprisDesk& desk, ExternalPlayer player, std::string text, std::string last)
    : PlayerCommand(desk),
      _player(player),
      _text(std::move(text)),
      _search(desk, player, std::move(last),
              [this](const std::optional<PlayerSearch::Found>& program) { found(program); }) {}

void PlayCommand::begin() {
    // Before the search, so that no player can come in between.
    watchNames();
    _search.begin();
}

void PlayCommand::found(const std::optional<PlayerSearch::Found>& player) {
    if (isOver())
        return;
    if (!player)
        return fail("there is no music player that could be driven");
    if (!player->busName.empty())
        return address(player->busName);
    _awaited = player->name;
    if (!start(*player))
        return end();
    // Signals may overtake answers.
    const auto came = std::ranges::find_if(
        _names, [this](const std::string& name) { return KnownPlayers::isNamed(name, _awaited); });
    if (came != _names.end())
        return address(std::string(*came));
    after(desk().patience.start, [this, application = player->application] {
        fail(application + " was started, but doesn't come up as a music player");
    });
}

void PlayCommand::onName(const std::string& busName) {
    _names.push_back(busName);
    if (!_awaited.empty() && KnownPlayers::isNamed(busName, _awaited))
        address(busName);
}

void PlayCommand::address(const std::string& busName) {
    _awaited.clear();
    stopWaiting();
    _busName = busName;
    _readyBy = onAddress(busName);
    waitUntilReady();
}

void PlayCommand::waitUntilReady() {
    const auto answered = [this](const QDBusMessage& reply) {
        const Mpris::Outcome outcome = Mpris::outcome(reply);
        // Some have their name before they have what it stands for, or before they have time to answer.
        if (outcome != Mpris::Outcome::answered && mayNotBeReady())
            return after(pulse, [this] { waitUntilReady(); });
        if (outcome == Mpris::Outcome::silent)
            return failSilent(_busName);
        _wasPlaying = Mpris::isPlaying(reply);
        act();
    };
    ask(Mpris::get(_busName, Mpris::player, "PlaybackStatus"), answered, Silence::isAnAnswer);
}

void PlayCommand::act() {
    const std::string_view text = Text::trimmed(_text);
    switch (_player) {
    case ExternalPlayer::spotify:
        if (const auto uri = SpotifyLink::uri(text))
            return openLink(*uri);
        return resume();
    case ExternalPlayer::appleMusic:
        return text.empty() ? resume() : findPlaylist();
    }
}

void PlayCommand::openLink(const std::string& uri) {
    tell(Mpris::call(_busName, Mpris::player, "OpenUri", {QString::fromStdString(uri)}));
}

void PlayCommand::findPlaylist() {
    ask(Mpris::getPlaylists(_busName), [this](const QDBusMessage& reply) {
        const std::string_view name = Text::prefix(Text::trimmed(_text), longestName);
        if (const auto playlist = Mpris::playlist(reply, name))
            return activate(*playlist);
        if (!_listsBy)
            _listsBy = std::min(_readyBy, now() + desk().patience.music);
        // One that was just started may still be reading its lists.
        if (Mpris::outcome(reply) == Mpris::Outcome::answered && now() < *_listsBy)
            return after(pulse, [this] { findPlaylist(); });
        resume();
    });
}

void PlayCommand::activate(const QString& playlist) {
    if (!_wasPlaying)
        return beginPlaylist(playlist);
    ask(Mpris::get(_busName, Mpris::playlists, "ActivePlaylist"),
        [this, playlist](const QDBusMessage& reply) {
            // Activated again, it would begin anew in one player and stop in another.
            if (Mpris::activePlaylist(reply) == playlist)
                return resume();
            // Rhythmbox stops what plays when it is given another list, and then plays nothing.
            ask(Mpris::call(_busName, Mpris::player, "Pause"), [this, playlist](const QDBusMessage&) {
                _wasPlaying = false;
                beginPlaylist(playlist);
            });
        });
}

void PlayCommand::beginPlaylist(const QString& playlist) {
    tell(Mpris::call(_busName, Mpris::playlists, "ActivatePlaylist",
                     {QVariant::fromValue(QDBusObjectPath(playlist))}));
}

void PlayCommand::resume() {
    if (_wasPlaying && !mayNotBeReady()) {
        onPlaysAlready();
        return end();
    }
    onOrder();
    // One that was just started may still stop again, before it has been told anything.
    if (_wasPlaying)
        return look();
    ask(Mpris::call(_busName, Mpris::player, "Play"), [this](const QDBusMessage&) { look(); });
}

void PlayCommand::tell(const QDBusMessage& order) {
    onOrder();
    _order = order;
    ask(order, [this](const QDBusMessage&) { look(); });
}

void PlayCommand::look() {
    _lookUntil = now() + desk().patience.music;
    watchChanges();
    readStatus();
}

void PlayCommand::onChange() {
    if (_lookUntil)
        readStatus();
}

void PlayCommand::readStatus() {
    ask(Mpris::get(_busName, Mpris::player, "PlaybackStatus"), [this](const QDBusMessage& reply) {
        if (!_lookUntil)
            return;
        const bool plays = Mpris::isPlaying(reply);
        if (wasStopped(plays))
            return end();
        const bool isOver = now() >= *_lookUntil;
        // What played before may be about to stop, and so may one that was just started; then only the last
        // look counts.
        const bool mayStop = _wasPlaying || mayNotBeReady();
        if (plays && (isOver || !mayStop))
            return end();
        if (isOver)
            return insist();
        after(std::min(pulse, std::max(Seconds{0}, *_lookUntil - now())), [this] { readStatus(); });
    });
}

/// Whether somebody else has stopped what it was told to play.
bool PlayCommand::wasStopped(bool plays) {
    if (_wasPlaying)
        return false;
    const auto since = _playsSince;
    if (!plays)
        _playsSince.reset();
    else if (!since)
        _playsSince = now();
    return !plays && since && now() - *since >= longestHiccup;
}

void PlayCommand::insist() {
    _lookUntil.reset();
    // What it was told first it may have heeded but for playing; if that wasn't it, it may have forgotten.
    if (std::exchange(_wasInsistedOn, true) && _order)
        return ask(*_order, [this](const QDBusMessage&) { play(); });
    play();
}

void PlayCommand::play() {
    _wasPlaying = false;
    ask(Mpris::call(_busName, Mpris::player, "Play"), [this](const QDBusMessage& reply) {
        // One that was just started may not have found yet what it is to play.
        if (mayNotBeReady())
            return look();
        if (Mpris::outcome(reply) == Mpris::Outcome::refused)
            return fail(_busName + " doesn't play: " + reply.errorMessage().toStdString());
        end();
    });
}

} // namespace selvane
