#include "Selvane/Platform/Linux/OpenCommand.h"

#include "Selvane/Platform/Linux/KnownPlayers.h"

#include <utility>

namespace selvane {

OpenCommand::OpenCommand(const MprisDesk& desk, ExternalPlayer player, std::string last)
    : PlayerCommand(desk),
      _player(player),
      _search(desk, player, std::move(last),
              [this](const std::optional<PlayerSearch::Found>& program) { found(program); }) {}

void OpenCommand::begin() {
    _search.begin();
}

void OpenCommand::found(const std::optional<PlayerSearch::Found>& program) {
    if (isOver())
        return;
    if (!program)
        return fail("there is no music player that could be opened");
    if (program->busName.empty()) {
        start(program->application);
        return end();
    }
    _busName = program->busName;
    ask(Mpris::get(_busName, Mpris::root, "CanRaise"), [this](const QDBusMessage& canRaise) {
        if (!Mpris::isTrue(canRaise))
            return startIt();
        ask(Mpris::call(_busName, Mpris::root, "Raise"), [this](const QDBusMessage&) { end(); });
    });
}

void OpenCommand::startIt() {
    const std::string application =
        PlayerSearch::installed(desk(), _player, PlayerSearch::Order::desktopsChoiceFirst);
    // Another one than that which runs would be a surprise.
    if (!application.empty() && KnownPlayers::isNamed(_busName, KnownPlayers::name(application)))
        start(application);
    end();
}

} // namespace selvane
