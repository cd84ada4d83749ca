#pragma once

#include "Selvane/Platform/Linux/PlayerCommand.h"

#include <optional>
#include <string>

namespace selvane {

/// Has a player pause; never starts one. What it was about to play, since it was told so a moment ago, may
/// begin only after that, and is paused too.
class PauseCommand final : public PlayerCommand {
    Q_OBJECT
public:
    /// Who is meant: the name on the bus, or, of a player that was started and hasn't come yet, the one that
    /// it will have.
    struct Player {
        std::string busName;
        std::string awaited;
    };
    /// `mayBegin` says that something was under way.
    enum class Music { plays, mayBegin };

    PauseCommand(const MprisDesk& desk, Player player, Music music);

    void begin() override;

private:
    void onName(const std::string& busName) override;
    void pause();
    void onChange() override;
    void readStatus();

    Player _player;
    Music _music;
    Seconds _watchUntil{0};
};

} // namespace selvane
