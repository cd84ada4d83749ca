#include "Selvane/UI/AppDelegate.h"

#include <utility>

namespace selvane {

namespace {

/// Before a user who starts the program by hand finds its icon.
constexpr Seconds startLength{1};
/// As long as the panel's first transitions.
constexpr Seconds firstOpeningLength{2};
/// As long as an open panel moves over to the next phase.
constexpr Seconds phaseEndLength{2};

} // namespace

AppDelegate::AppDelegate(AppEnvironment environment)
    : _scheduler(*environment.scheduler), _model(std::move(environment)) {}

void AppDelegate::applicationDidFinishLaunching(Desktop desktop) {
    _giveBackMemory = std::move(desktop.giveBackMemory);
    _statusItem = std::make_unique<StatusItemController>(
        _model,
        StatusItemController::Desktop{.item = desktop.statusItem,
                                      .scheduler = &_scheduler,
                                      .presses = desktop.presses,
                                      .activations = desktop.activations,
                                      .programWindows = desktop.programWindows,
                                      .windows = desktop.windows},
        [this, make = std::move(desktop.makePanel),
         context = PanelContext{&_model, desktop.appearance, &_scheduler, desktop.windows, desktop.placer,
                                desktop.space, desktop.unmanagedWindows}] {
            _startEnd = _scheduler.after(firstOpeningLength, [this] { giveBackMemory(); });
            return make(context);
        });
    _statusItem->onQuit = _lifetime.guard([this] {
        if (onQuit)
            onQuit();
    });
    _model.showWhatsNewAfterUpdate = _lifetime.guard([this, windows = desktop.windows] {
        _model.setWindowPane(Pane::whatsNew);
        if (windows)
            windows->bringForward();
    });
    _model.backUpDaily();
    _model.showWhatsNewIfUpdated();
    _model.announceRecovery();
    _startEnd = _scheduler.after(startLength, [this, prepare = std::move(desktop.prepareToMakePanel)] {
        prepare();
        giveBackMemory();
    });
    followPhases();
}

void AppDelegate::followPhases() {
    _engineObserver = _model.engine().changed.subscribe([this] {
        const bool isIdle = _model.engine().isIdle();
        if (std::exchange(_isIdle, isIdle) == isIdle)
            return;
        _phaseEnd.end();
        if (isIdle)
            _phaseEnd = _scheduler.after(phaseEndLength, [this] { giveBackMemory(); });
    });
}

void AppDelegate::giveBackMemory() {
    _statusItem->giveBackMemory();
    _giveBackMemory();
}

void AppDelegate::applicationShouldHandleReopen() {
    if (_statusItem)
        _statusItem->open();
}

} // namespace selvane
