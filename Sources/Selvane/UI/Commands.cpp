#include "Selvane/UI/Commands.h"

#include "Selvane/UI/WindowCoordinator.h"

namespace selvane::Commands {

std::string_view primaryLabel(const TimerEngine& engine) {
    if (engine.isRunning())
        return "Pause";
    return engine.isPaused() ? "Resume" : "Start";
}

std::string_view skipTooltip(const TimerEngine& engine) {
    return isBreak(engine.phase()) ? "Skip the break" : "Skip to the break";
}

std::string_view updateLabel(const Updater& updater) {
    return updater.updateAvailable() ? "Update Available…" : "Check for Updates…";
}

bool canReset(const TimerEngine& engine) {
    return !engine.isIdle();
}

void resetFromPopover(AppModel& model) {
    model.engine().reset();
    if (model.settings().autoPlayMusic())
        model.music().pause();
}

void openPane(AppModel& model, WindowCoordinator* windows, Pane pane) {
    if (!windows)
        return;
    model.setWindowPane(pane);
    windows->bringForward();
}

} // namespace selvane::Commands
