#pragma once

#include "Selvane/Platform/StatusItemHost.h"
#include "SelvaneCore/Subscription.h"

#include <functional>
#include <string>

namespace selvane {

/// Moves windows of this process on a desktop that lets no window choose its own place. Main thread.
class WindowPlacer {
public:
    /// A screen in the units of windows, and what of it is free of panels.
    struct Screen {
        ScreenRect whole;
        ScreenRect available;
    };
    /// The top left corner of the window on that screen.
    using Choose = std::function<ScreenPoint(const Screen& screen)>;

    virtual ~WindowPlacer() = default;

    /// When a window of this process with this title appears, it goes to the place that `choose` gives for
    /// the screen that the user looks at. Once, and only as long as the handle lives. If the desktop can't do
    /// that the window stays where the desktop put it.
    virtual Subscription placeNext(const std::string& title, Choose choose) = 0;
};

} // namespace selvane
