#include "Selvane/UI/Commands.h"

namespace selvane::Commands {

std::string_view primaryLabel(const TimerEngine& engine) {
    if (engine.isRunning())
        return "Pause";
    return engine.isPaused() ? "Resume" : "Start";
}

std::string_view skipTooltip(const TimerEngine& engine) {
    return isBreak(engine.phase()) ? "Skip the break" : "Skip to the break";
}

bool canReset(const TimerEngine& engine) {
    return !engine.isIdle();
}

void resetFromPopover(AppModel& model) {
    model.engine().reset();
    if (model.settings().autoPlayMusic())
        model.music().pause();
}

} // namespace selvane::Commands
