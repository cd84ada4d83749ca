#pragma once

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/ActivationMonitor.h"
#include "Selvane/Platform/PressMonitor.h"
#include "Selvane/Platform/Scheduler.h"
#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/UI/DialGlyph.h"
#include "Selvane/UI/Panel.h"
#include "Selvane/UI/PanelLevel.h"
#include "Selvane/UI/ProgramWindows.h"
#include "Selvane/UI/StatusMenu.h"
#include "Selvane/UI/WindowCoordinator.h"
#include "SelvaneCore/Lifetime.h"
#include "SelvaneCore/Subscription.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace selvane {

/// Owns the panel and keeps the status item in step with the model. Follows the model's changes; has no timer
/// of its own. Main thread.
class StatusItemController {
public:
    /// Makes the panel, at its first opening; null if that can't be done.
    using MakePanel = std::function<std::unique_ptr<Panel>()>;

    /// What the controller works with. Outlives it.
    struct Desktop {
        StatusItemHost* item;
        Scheduler* scheduler;
        PressMonitor* presses;
        ActivationMonitor* activations;
        ProgramWindows* programWindows;
        /// May be null.
        WindowCoordinator* windows = nullptr;
    };

    StatusItemController(AppModel& model, const Desktop& desktop, MakePanel makePanel);
    StatusItemController(const StatusItemController&) = delete;
    StatusItemController& operator=(const StatusItemController&) = delete;
    ~StatusItemController();

    /// Brings the model up to date and shows the panel, beside the status item if there is one.
    void open();
    void open(const StatusItemAnchor& anchor);
    void close();
    /// Closes the panel if it is visible, otherwise opens it.
    void toggle(const StatusItemAnchor& anchor);

    /// Lets go of the pictures of a phase that is over. While one is under way it needs them.
    void giveBackMemory();

    /// The user asked to end the program.
    std::function<void()> onQuit;

private:
    void observeModel();
    void observeWindows();
    void scheduleUpdate();
    void update();
    void render(const StatusItemContent& content, const std::string& label);
    void startWatchingForDismissal();
    void stopWatchingForDismissal();
    void pressedOutside();
    void released();
    void turnedAway();
    void willClose(ProgramWindow window);
    void updateLevel(std::optional<ProgramWindow> closing);
    void setLevel(PanelLevel level);
    [[nodiscard]] std::optional<ScreenRect> visibleFrame() const;
    void perform(StatusMenu::Command command);

    AppModel& _model;
    StatusItemHost& _item;
    Scheduler& _scheduler;
    PressMonitor& _presses;
    ActivationMonitor& _activations;
    ProgramWindows& _programWindows;
    WindowCoordinator* _windows;
    MakePanel _makePanel;
    std::unique_ptr<Panel> _panel;
    bool _isOpen = false;
    PanelLevel _level = PanelLevel::floating;
    DialGlyph _glyph;
    std::optional<StatusItemContent> _lastContent;
    /// Held while the panel is open, and until the button that closed it is released.
    Subscription _mouseMonitor;
    /// Held while the panel is open.
    Subscription _activationObserver;
    /// The button that closed the panel is still down.
    bool _isPressHeld = false;
    std::optional<Seconds> _dismissedAt;
    bool _updatePending = false;
    std::vector<Subscription> _subscriptions;
    std::vector<Subscription> _windowObservers;
    Lifetime _lifetime;
};

} // namespace selvane
