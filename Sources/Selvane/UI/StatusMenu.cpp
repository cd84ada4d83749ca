#include "Selvane/UI/StatusMenu.h"

#include "Selvane/UI/Commands.h"

#include <string>
#include <string_view>

namespace selvane::StatusMenu {

namespace {

StatusMenuEntry line(Command command, std::string_view label, bool isEnabled = true) {
    return {static_cast<int>(command), std::string(label), isEnabled};
}

StatusMenuEntry separator(int number) {
    return {100 + number, {}};
}

} // namespace

std::vector<StatusMenuEntry> entries(const TimerEngine& engine) {
    return {
        line(Command::open, "Open Selvane"),
        separator(1),
        line(Command::toggle, Commands::primaryLabel(engine)),
        line(Command::reset, Commands::resetLabel, Commands::canReset(engine)),
        line(Command::skip, Commands::skipLabel),
        separator(2),
        line(Command::quit, Commands::quitLabel),
    };
}

} // namespace selvane::StatusMenu
