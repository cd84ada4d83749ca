#pragma once

#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/UI/PanelLevel.h"

#include <QtPlugin>

#include <functional>
#include <memory>

namespace selvane {

class AppModel;
class Appearance;
class Scheduler;
class ScreenSpace;
class UnmanagedWindows;
class WindowCoordinator;
class WindowPlacer;

/// The floating window that shows the popover. Main thread.
class Panel {
public:
    virtual ~Panel() = default;

    /// Shows the panel beside `anchor`, in front of everything and with the keyboard.
    virtual void show(const StatusItemAnchor& anchor) = 0;
    virtual void hide() = 0;
    [[nodiscard]] virtual bool isVisible() const = 0;

    /// Floating until told otherwise.
    virtual void setLevel(PanelLevel level) = 0;
    /// Gives the keyboard to a visible panel.
    virtual void activate() = 0;
    /// Where the panel is on the screen, without its shadow, in the units of windows. Where the desktop
    /// doesn't tell windows their place it is a guess.
    [[nodiscard]] virtual ScreenRect frame() const = 0;

    /// The user pressed Escape. The panel is still visible then.
    std::function<void()> onCancel;
    /// The user turned to something else: the keyboard left the windows of this program. The panel is still
    /// visible then.
    std::function<void()> onTurnedAway;
    /// The user asked to end the program.
    std::function<void()> onQuit;
};

/// What a panel shows and follows. Outlives the panel.
struct PanelContext {
    AppModel* model;
    Appearance* appearance;
    Scheduler* scheduler;
    /// May be null: what the main window would show is out of reach then.
    WindowCoordinator* windows = nullptr;
    /// Null where windows choose their own place.
    WindowPlacer* placer = nullptr;
    /// Null where it is known already what bars leave of each screen.
    const ScreenSpace* space = nullptr;
    /// Null where every window is the window manager's.
    UnmanagedWindows* unmanagedWindows = nullptr;
};

/// Makes panels. Implemented by the plugin that holds the views, so that the program at rest doesn't carry
/// them.
class PanelFactory {
public:
    virtual ~PanelFactory() = default;

    /// Null if the views can't be made; the log says why.
    [[nodiscard]] virtual std::unique_ptr<Panel> makePanel(const PanelContext& context) = 0;
};

} // namespace selvane

Q_DECLARE_INTERFACE(selvane::PanelFactory, "com.lorbin.selvane.PanelFactory/1")
