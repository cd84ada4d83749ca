#include "Selvane/UI/StatusItemController.h"

#include "Selvane/UI/MenuBarLabel.h"

#include <utility>

namespace selvane {

namespace {

/// A click on the item is first a press outside the panel, which closes it; the click itself comes with the
/// press or with the release, as the desktop likes. Up to this long after them it means "close", not "open".
constexpr Seconds dismissalGuard{0.2};

} // namespace

StatusItemController::StatusItemController(AppModel& model, const Desktop& desktop, MakePanel makePanel)
    : _model(model),
      _item(*desktop.item),
      _scheduler(*desktop.scheduler),
      _presses(*desktop.presses),
      _activations(*desktop.activations),
      _programWindows(*desktop.programWindows),
      _windows(desktop.windows),
      _makePanel(std::move(makePanel)) {
    if (_windows)
        _windows->popoverFrame = [this] { return visibleFrame(); };
    observeWindows();
    _item.onActivate = _lifetime.guard([this](const StatusItemAnchor& anchor) { toggle(anchor); });
    _item.onSecondaryActivate = _lifetime.guard([this] { _model.engine().toggle(); });
    _item.onMenuEntry = _lifetime.guard([this](int id) { perform(static_cast<StatusMenu::Command>(id)); });
    observeModel();
    update();
}

StatusItemController::~StatusItemController() {
    if (_windows)
        _windows->popoverFrame = [] { return std::nullopt; };
}

void StatusItemController::observeModel() {
    const auto follow = [this](Signal<>& signal) {
        _subscriptions.push_back(signal.subscribe([this] { scheduleUpdate(); }));
    };
    follow(_model.engine().changed);
    follow(_model.settings().changed);
    follow(_model.focusGuard().changed);
}

// Showing the state

void StatusItemController::scheduleUpdate() {
    if (std::exchange(_updatePending, true))
        return;
    _scheduler.post(_lifetime.guard([this] {
        _updatePending = false;
        update();
    }));
}

void StatusItemController::update() {
    render(MenuBarLabel::content(_model, _glyph), MenuBarLabel::accessibilityLabel(_model));
}

void StatusItemController::render(const StatusItemContent& content, const std::string& label) {
    // Told in one go, which wakes those less often who hear it.
    const std::string tooltip = MenuBarLabel::tooltip(_model, QLocale()).toStdString();
    const std::vector<StatusMenuEntry> menu = StatusMenu::entries(_model.engine());
    _item.setAccessibilityLabel(label);
    _item.setTooltip(tooltip);
    _item.setMenu(menu);
    if (content == _lastContent)
        return;
    _lastContent = content;
    _item.setContent(content);
}

void StatusItemController::giveBackMemory() {
    if (_model.engine().isIdle())
        _glyph.forgetUnused();
}

// The panel

void StatusItemController::open() {
    open(_item.anchor());
}

void StatusItemController::open(const StatusItemAnchor& anchor) {
    if (!_panel) {
        _panel = _makePanel();
        if (!_panel)
            return;
        _panel->onCancel = _lifetime.guard([this] { close(); });
        _panel->onTurnedAway = _lifetime.guard([this] { turnedAway(); });
        _panel->onQuit = _lifetime.guard([this] { perform(StatusMenu::Command::quit); });
    }
    _model.refreshForDisplay();
    if (!_panel->isVisible())
        stopWatchingForDismissal();
    setLevel(PanelLevel::floating);
    _panel->show(anchor);
    _isOpen = true;
    _item.setHighlighted(true);
    startWatchingForDismissal();
}

void StatusItemController::close() {
    if (!std::exchange(_isOpen, false))
        return;
    stopWatchingForDismissal();
    _panel->hide();
    _item.setHighlighted(false);
}

void StatusItemController::toggle(const StatusItemAnchor& anchor) {
    if (_panel && _panel->isVisible()) {
        close();
        return;
    }
    const auto dismissedAt = std::exchange(_dismissedAt, std::nullopt);
    if (std::exchange(_isPressHeld, false) ||
        (dismissedAt && _scheduler.now() - *dismissedAt < dismissalGuard))
        return;
    open(anchor);
}

void StatusItemController::startWatchingForDismissal() {
    _mouseMonitor.end();
    _isPressHeld = false;
    _mouseMonitor = _presses.watch({.onPress = _lifetime.guard([this] { pressedOutside(); }),
                                    .onRelease = _lifetime.guard([this] { released(); })});
    // For a panel that is open already it goes on: it knows which windows were active since the opening.
    if (!_activationObserver)
        _activationObserver = _activations.watch(_lifetime.guard([this] { turnedAway(); }));
}

void StatusItemController::stopWatchingForDismissal() {
    _mouseMonitor.end();
    _activationObserver.end();
    _isPressHeld = false;
}

void StatusItemController::pressedOutside() {
    if (!_panel->isVisible())
        return;
    // The release is still of interest.
    auto monitor = std::exchange(_mouseMonitor, {});
    turnedAway();
    _mouseMonitor = std::move(monitor);
    _isPressHeld = true;
}

void StatusItemController::released() {
    if (_panel->isVisible())
        return;
    if (std::exchange(_isPressHeld, false))
        _dismissedAt = _scheduler.now();
    _mouseMonitor.end();
}

void StatusItemController::turnedAway() {
    _dismissedAt = _scheduler.now();
    close();
}

// The level

void StatusItemController::observeWindows() {
    _windowObservers.push_back(_programWindows.keyChanged.subscribe([this] { updateLevel(std::nullopt); }));
    _windowObservers.push_back(
        _programWindows.willClose.subscribe([this](ProgramWindow window) { willClose(window); }));
}

void StatusItemController::willClose(ProgramWindow window) {
    updateLevel(window);
    // Before the desktop gives the keyboard to another program, which would close the panel.
    // Other windows give it back to their parents.
    if (_panel && _panel->isVisible() && window == ProgramWindow::main)
        _panel->activate();
}

void StatusItemController::updateLevel(std::optional<ProgramWindow> closing) {
    if (_panel)
        setLevel(panelLevel(_programWindows.key(), closing));
}

void StatusItemController::setLevel(PanelLevel level) {
    if (std::exchange(_level, level) != level)
        _panel->setLevel(level);
}

std::optional<ScreenRect> StatusItemController::visibleFrame() const {
    if (!_panel || !_panel->isVisible())
        return std::nullopt;
    return _panel->frame();
}

// The menu

void StatusItemController::perform(StatusMenu::Command command) {
    switch (command) {
    case StatusMenu::Command::open:
        open();
        return;
    case StatusMenu::Command::toggle:
        _model.engine().toggle();
        return;
    case StatusMenu::Command::reset:
        _model.engine().reset();
        return;
    case StatusMenu::Command::skip:
        _model.engine().skip();
        return;
    case StatusMenu::Command::quit:
        if (onQuit)
            onQuit();
        return;
    }
}

} // namespace selvane
