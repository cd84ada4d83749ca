#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <functional>
#include <optional>

namespace selvane {

/// The main window, as the rest of the program commands it. Main thread.
class WindowCoordinator {
public:
    virtual ~WindowCoordinator() = default;

    /// Opens the window at the settings.
    virtual void showSettings() = 0;
    /// Opens the window at the model's pane, in front of everything and with the keyboard.
    virtual void bringForward() = 0;

    /// Where the panel is, in the units of windows; nothing while it is closed. Set by its owner.
    std::function<std::optional<ScreenRect>()> popoverFrame = [] { return std::nullopt; };
};

} // namespace selvane
