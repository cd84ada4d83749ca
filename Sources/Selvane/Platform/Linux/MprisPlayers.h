#pragma once

#include "Selvane/Platform/ExternalPlayers.h"
#include "Selvane/Platform/Linux/ApplicationFolders.h"
#include "Selvane/Platform/Linux/ApplicationLauncher.h"
#include "Selvane/Platform/Linux/CurrentDesktop.h"
#include "Selvane/Platform/Linux/MprisDesk.h"
#include "Selvane/Platform/Linux/PlayerSearch.h"
#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/FileSystem.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

class PauseCommand;
class PlayCommand;
class PlayerCommand;

/// The players of a freedesktop desktop, driven over the session bus by MPRIS 2: Spotify's client, and as the
/// other the user's own music player, as `PlayerSearch` finds it. Between two commands nothing is watched and
/// nothing is remembered but the name of the player that was driven, whether it was told to play, what it
/// could not be told yet, and for a while that it was started. A pause is for a player that plays because
/// `play` told it to, or started it.
class MprisPlayers final : public QObject, public ExternalPlayers {
    Q_OBJECT
public:
    struct Environment {
        /// Outlive this object.
        Scheduler* scheduler;
        FileSystem* fileSystem;
        std::function<ApplicationFolders()> folders = ApplicationFolders::current;
        std::function<std::vector<std::string>()> desktops = currentDesktops;
        /// The name of the desktop entry of the music player that the user chose; empty if none.
        std::function<std::string()> chosenPlayer = [] { return std::string(); };
        /// Variables of the environment that this program set for itself.
        std::vector<std::string> withheld = {};
        MprisPatience patience = {};
    };

    MprisPlayers(const QDBusConnection& sessionBus, const Environment& environment);
    ~MprisPlayers() override;

    [[nodiscard]] bool isInstalled(ExternalPlayer player) const override;
    void play(ExternalPlayer player, std::string_view playlist) override;
    void pause(ExternalPlayer player) override;
    void open(ExternalPlayer player) override;

    /// Whether no command is under way.
    [[nodiscard]] bool isAtRest() const;

private:
    /// A player that was started.
    struct Started {
        std::string application;
        /// It may not be ready.
        Seconds until;
        bool hasCome = false;
        /// Not only to be opened: what it plays may then be the user's own will.
        bool isToPlay = false;
    };
    struct Driven {
        /// The play that is under way.
        PlayCommand* play = nullptr;
        /// The other command that is.
        PlayerCommand* command = nullptr;
        /// On the bus; empty before the first play.
        std::string busName;
        /// Whether our last command to it was to play, or it was started for that and plays by itself.
        bool isOurs = false;
        /// What it was to play when it was paused before it could be told.
        std::string unsaid;
        std::optional<Started> started;
    };

    [[nodiscard]] Driven& driven(ExternalPlayer player);
    static void drop(PlayerCommand* command);
    /// Until when the player of that name may not be ready; a moment that has passed unless it was started to
    /// play.
    [[nodiscard]] static Seconds readyBy(const Driven& driven, const std::string& busName);
    /// Starts the application unless it is coming already. False if it isn't there any more.
    [[nodiscard]] bool start(Driven& driven, const std::string& application);
    void launch(Driven& driven, const std::string& application, const DesktopEntry& entry);

    ApplicationLauncher _launcher;
    MprisDesk _desk;
    std::array<Driven, 2> _driven;
    PlayerCommand* _opening = nullptr;
};

} // namespace selvane
