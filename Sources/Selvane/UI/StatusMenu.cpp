#include "Selvane/UI/StatusMenu.h"

#include "Selvane/UI/Controls.h"

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
        line(Command::toggle, Controls::primaryLabel(engine)),
        line(Command::reset, Controls::resetLabel, Controls::canReset(engine)),
        line(Command::skip, Controls::skipLabel),
        separator(2),
        line(Command::quit, Controls::quitDescription),
    };
}

} // namespace selvane::StatusMenu
