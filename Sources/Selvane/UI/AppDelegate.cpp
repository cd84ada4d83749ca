#include "Selvane/UI/AppDelegate.h"

#include <utility>

namespace selvane {

AppDelegate::AppDelegate(AppEnvironment environment)
    : _scheduler(*environment.scheduler), _model(std::move(environment)) {}

void AppDelegate::applicationDidFinishLaunching(Desktop desktop) {
    _statusItem = std::make_unique<StatusItemController>(
        _model, *desktop.statusItem, _scheduler, *desktop.presses,
        [make = std::move(desktop.makePanel),
         context = PanelContext{&_model, desktop.appearance, &_scheduler, desktop.windows}] {
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
}

void AppDelegate::applicationShouldHandleReopen() {
    if (_statusItem)
        _statusItem->open();
}

} // namespace selvane
