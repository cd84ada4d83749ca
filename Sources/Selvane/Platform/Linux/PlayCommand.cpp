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
    _readyBy = now() + desk().patience.start;
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
    onAddress(busName);
    waitUntilReady();
}

void PlayCommand::waitUntilReady() {
    ask(Mpris::get(_busName, Mpris::player, "PlaybackStatus"), [this](const QDBusMessage& reply) {
        // Some have their name before they have what it stands for.
        if (Mpris::outcome(reply) == Mpris::Outcome::refused && now() < _readyBy)
            return after(pulse, [this] { waitUntilReady(); });
        _wasPlaying = Mpris::isPlaying(reply);
        act();
    });
}

void PlayCommand::act() {
    const std::string_view text = Text::trimmed(_text);
    switch (_player) {
    case ExternalPlayer::spotify:
        if (const auto uri = SpotifyLink::uri(text))
            return openLink(*uri);
        return resume();
    case ExternalPlayer::appleMusic:
        _listsBy = now() + desk().patience.music;
        return text.empty() ? resume() : findPlaylist();
    }
}

void PlayCommand::openLink(const std::string& uri) {
    onOrder();
    ask(Mpris::call(_busName, Mpris::player, "OpenUri", {QString::fromStdString(uri)}),
        [this](const QDBusMessage&) { look(); });
}

void PlayCommand::findPlaylist() {
    ask(Mpris::getPlaylists(_busName), [this](const QDBusMessage& reply) {
        const std::string_view name = Text::prefix(Text::trimmed(_text), longestName);
        if (const auto playlist = Mpris::playlist(reply, name))
            return activate(*playlist);
        // One that was just started may still be reading its lists.
        if (Mpris::outcome(reply) == Mpris::Outcome::answered && now() < std::min(_readyBy, _listsBy))
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
                return end();
            // Rhythmbox stops what plays when it is given another list, and then plays nothing.
            ask(Mpris::call(_busName, Mpris::player, "Pause"), [this, playlist](const QDBusMessage&) {
                _wasPlaying = false;
                beginPlaylist(playlist);
            });
        });
}

void PlayCommand::beginPlaylist(const QString& playlist) {
    onOrder();
    ask(Mpris::call(_busName, Mpris::playlists, "ActivatePlaylist",
                    {QVariant::fromValue(QDBusObjectPath(playlist))}),
        [this](const QDBusMessage&) { look(); });
}

void PlayCommand::resume() {
    // One that was just started may still stop again, before it has been told anything.
    if (_wasPlaying && now() >= _readyBy)
        return end();
    onOrder();
    if (_wasPlaying)
        return look();
    ask(Mpris::call(_busName, Mpris::player, "Play"), [this](const QDBusMessage&) { look(); });
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
        const bool isOver = now() >= *_lookUntil;
        // What played before may be about to stop, and so may one that was just started; then only the last
        // look counts.
        const bool mayStop = _wasPlaying || now() < _readyBy;
        if (Mpris::isPlaying(reply) && (isOver || !mayStop))
            return end();
        if (isOver)
            return play();
        after(std::min(pulse, std::max(Seconds{0}, *_lookUntil - now())), [this] { readStatus(); });
    });
}

void PlayCommand::play() {
    _lookUntil.reset();
    ask(Mpris::call(_busName, Mpris::player, "Play"), [this](const QDBusMessage& reply) {
        // One that was just started may not have found yet what it is to play.
        if (now() < _readyBy)
            return look();
        if (Mpris::outcome(reply) == Mpris::Outcome::refused)
            return fail(_busName + " doesn't play: " + reply.errorMessage().toStdString());
        end();
    });
}

} // namespace selvane
