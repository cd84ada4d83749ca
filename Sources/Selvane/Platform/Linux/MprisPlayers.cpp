#include "Selvane/Platform/Linux/MprisPlayers.h"

#include "Selvane/Platform/Linux/KnownPlayers.h"
#include "Selvane/Platform/Linux/OpenCommand.h"
#include "Selvane/Platform/Linux/PauseCommand.h"
#include "Selvane/Platform/Linux/PlayCommand.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace selvane {

MprisPlayers::MprisPlayers(const QDBusConnection& sessionBus, const Environment& environment)
    : _launcher(sessionBus, environment.withheld),
      _desk{
          .bus = sessionBus,
          .scheduler = *environment.scheduler,
          .applications = InstalledApplications(*environment.fileSystem, environment.folders),
          .defaults = DefaultApplications(*environment.fileSystem, environment.folders, environment.desktops),
          .chosenPlayer = environment.chosenPlayer,
          .launcher = _launcher,
          .patience = environment.patience,
      } {}

MprisPlayers::~MprisPlayers() {
    // They refer to the other members.
    const QObjectList commands = children();
    qDeleteAll(commands);
}

MprisPlayers::Driven& MprisPlayers::driven(ExternalPlayer player) {
    return _driven[static_cast<std::size_t>(player)];
}

/// A command may be dropped while it is at work.
void MprisPlayers::drop(PlayerCommand* command) {
    if (!command)
        return;
    command->abandon();
    command->deleteLater();
}

bool MprisPlayers::isInstalled(ExternalPlayer player) const {
    return !PlayerSearch::installed(_desk, player, PlayerSearch::Order::asListed).empty();
}

bool MprisPlayers::isAtRest() const {
    return !_opening &&
           std::ranges::all_of(_driven, [](const Driven& driven) { return !driven.play && !driven.command; });
}

bool MprisPlayers::start(Driven& driven, const std::string& application) {
    // Started twice, some run twice.
    const auto& started = driven.started;
    const bool isComing = started && !started->hasCome && started->application == application &&
                          _desk.scheduler.now() < started->until;
    if (!isComing) {
        const auto entry = _desk.applications.find(application);
        if (!entry)
            return false;
        launch(driven, application, *entry);
    }
    driven.started->isToPlay = true;
    return true;
}

void MprisPlayers::launch(Driven& driven, const std::string& application, const DesktopEntry& entry) {
    driven.started = Started{application, _desk.scheduler.now() + _desk.patience.start};
    _launcher.launch(application, entry);
}

Seconds MprisPlayers::readyBy(const Driven& driven, const std::string& busName) {
    const auto& started = driven.started;
    return started && started->isToPlay &&
                   KnownPlayers::isNamed(busName, KnownPlayers::name(started->application))
               ? started->until
               : Seconds{0};
}

void MprisPlayers::play(ExternalPlayer player, std::string_view playlist) {
    Driven& driven = this->driven(player);
    drop(std::exchange(driven.play, nullptr));
    drop(std::exchange(driven.command, nullptr));

    // Otherwise what was chosen would be lost by a pause that comes while the player is starting.
    if (!playlist.empty())
        driven.unsaid = playlist;
    auto* const command = new PlayCommand(_desk, player, driven.unsaid, driven.busName);
    command->setParent(this);
    driven.play = command;
    command->start = [this, &driven](const PlayerSearch::Found& program) {
        return start(driven, program.application);
    };
    command->onAddress = [this, &driven](const std::string& busName) {
        if (driven.busName != busName)
            driven.isOurs = false;
        driven.busName = busName;
        const Seconds by = readyBy(driven, busName);
        if (by > Seconds{0})
            driven.started->hasCome = true;
        return by;
    };
    command->onOrder = [&driven] {
        driven.isOurs = true;
        driven.unsaid.clear();
    };
    command->onPlaysAlready = [&driven] { driven.unsaid.clear(); };
    command->onEnd = [&driven] { drop(std::exchange(driven.play, nullptr)); };
    command->begin();
}

void MprisPlayers::pause(ExternalPlayer player) {
    Driven& driven = this->driven(player);
    PlayCommand* const interrupted = std::exchange(driven.play, nullptr);
    const std::string awaited = interrupted ? interrupted->awaited() : std::string();
    drop(interrupted);
    // It may play by itself before it was told to.
    const bool isComing = interrupted && _desk.scheduler.now() < readyBy(driven, driven.busName);
    const bool isOurs = std::exchange(driven.isOurs, false) || isComing;
    if (!isOurs && awaited.empty())
        return;
    drop(std::exchange(driven.command, nullptr));

    auto* const command = new PauseCommand(
        _desk, {.busName = awaited.empty() ? driven.busName : std::string(), .awaited = awaited},
        interrupted ? PauseCommand::Music::mayBegin : PauseCommand::Music::plays);
    command->setParent(this);
    driven.command = command;
    command->onEnd = [&driven] { drop(std::exchange(driven.command, nullptr)); };
    command->begin();
}

void MprisPlayers::open(ExternalPlayer player) {
    if (!isInstalled(player))
        return;
    drop(std::exchange(_opening, nullptr));
    Driven& driven = this->driven(player);
    auto* const command = new OpenCommand(_desk, player, driven.busName);
    command->setParent(this);
    _opening = command;
    command->start = [this, &driven](const std::string& application) {
        if (const auto entry = _desk.applications.find(application))
            launch(driven, application, *entry);
    };
    command->onEnd = [this] { drop(std::exchange(_opening, nullptr)); };
    command->begin();
}

} // namespace selvane
