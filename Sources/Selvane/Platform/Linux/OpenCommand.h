#pragma once

#include "Selvane/Platform/ExternalPlayers.h"
#include "Selvane/Platform/Linux/PlayerCommand.h"
#include "Selvane/Platform/Linux/PlayerSearch.h"

#include <functional>
#include <optional>
#include <string>

namespace selvane {

/// Shows a player's window. One that runs and can't do that itself is started once more, which for most
/// programs means the same.
class OpenCommand final : public PlayerCommand {
    Q_OBJECT
public:
    /// `last` as `PlayerSearch` has it.
    OpenCommand(const MprisDesk& desk, ExternalPlayer player, std::string last);

    void begin() override;

    /// Called with the desktop entry of the player that is to be started.
    std::function<void(const std::string& application)> start;

private:
    void found(const std::optional<PlayerSearch::Found>& program);
    void startIt();

    ExternalPlayer _player;
    PlayerSearch _search;
    std::string _busName;
};

} // namespace selvane
