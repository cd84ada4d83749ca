#include "Selvane/Platform/macOS/ScriptedPlayers.h"

#include "Selvane/Platform/macOS/PlayerScripts.h"

#include <utility>

namespace selvane {

ScriptedPlayers::ScriptedPlayers(Applications applications, Osascript osascript)
    : _applications(std::move(applications)), _osascript(std::move(osascript)) {}

std::optional<std::filesystem::path> ScriptedPlayers::location(ExternalPlayer player) const {
    return _applications.location(PlayerScripts::bundleIdentifier(player));
}

bool ScriptedPlayers::isInstalled(ExternalPlayer player) const {
    return location(player).has_value();
}

void ScriptedPlayers::play(ExternalPlayer player, std::string_view playlist) {
    _osascript.run(PlayerScripts::play(player, playlist));
}

void ScriptedPlayers::pause(ExternalPlayer player) {
    if (isInstalled(player))
        _osascript.run(PlayerScripts::pause(player));
}

void ScriptedPlayers::open(ExternalPlayer player) {
    if (const auto application = location(player))
        _applications.open(*application);
}

} // namespace selvane
