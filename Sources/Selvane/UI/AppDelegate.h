#pragma once

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/ActivationMonitor.h"
#include "Selvane/Platform/Appearance.h"
#include "Selvane/Platform/PressMonitor.h"
#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/UI/Panel.h"
#include "Selvane/UI/ProgramWindows.h"
#include "Selvane/UI/StatusItemController.h"
#include "Selvane/UI/WindowCoordinator.h"
#include "SelvaneCore/Lifetime.h"

#include <functional>
#include <memory>

namespace selvane {

/// Builds the program: the model at once, and what the user sees when the application has started. Main
/// thread.
class AppDelegate {
public:
    explicit AppDelegate(AppEnvironment environment);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// What the launch sequence needs of the desktop. Outlives the delegate.
    struct Desktop {
        StatusItemHost* statusItem;
        Appearance* appearance;
        PressMonitor* presses;
        ActivationMonitor* activations;
        ProgramWindows* programWindows;
        std::function<std::unique_ptr<Panel>(const PanelContext&)> makePanel;
        /// May be null.
        WindowCoordinator* windows = nullptr;
        /// Called when the start is over, unless the panel is made before: what makes that quicker and costs
        /// little can be done.
        std::function<void()> prepareToMakePanel = [] {};
        /// Called when the start, the first opening of the panel or a phase is over: what memory only they
        /// needed can go.
        std::function<void()> giveBackMemory = [] {};
        /// Null where windows choose their own place.
        WindowPlacer* placer = nullptr;
        /// Null where it is known already what bars leave of each screen.
        const ScreenSpace* space = nullptr;
        /// Null where every window is the window manager's.
        UnmanagedWindows* unmanagedWindows = nullptr;
    };

    /// The launch sequence.
    void applicationDidFinishLaunching(Desktop desktop);

    /// The user started the program again while it runs.
    void applicationShouldHandleReopen();

    [[nodiscard]] AppModel& model() { return _model; }

    /// The user asked to end the program.
    std::function<void()> onQuit;

private:
    void followPhases();
    void giveBackMemory();

    Scheduler& _scheduler;
    AppModel _model;
    std::unique_ptr<StatusItemController> _statusItem;
    std::function<void()> _giveBackMemory;
    /// Of the start, or of the first opening that came before it or after.
    Subscription _startEnd;
    Subscription _engineObserver;
    bool _isIdle = true;
    /// Of the last phase.
    Subscription _phaseEnd;
    Lifetime _lifetime;
};

} // namespace selvane
