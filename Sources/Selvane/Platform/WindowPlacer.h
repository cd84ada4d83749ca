#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <functional>
#include <memory>
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

    /// One window that is waited for and moved, as long as this lives.
    class Placement {
    public:
        virtual ~Placement() = default;

        /// Whether the window has appeared.
        [[nodiscard]] virtual bool hasWindow() const = 0;
        /// Asks for the place once more, for a window that has changed its size. Does nothing before the
        /// window has appeared.
        virtual void repeat() = 0;
    };

    virtual ~WindowPlacer() = default;

    /// When a window of this process with this title appears, it goes to the place that `choose` gives for
    /// the screen that the user looks at. Waiting costs a wake-up for each window of the desktop that
    /// changes. Null if the desktop can't do that: the window stays where the desktop puts it.
    [[nodiscard]] virtual std::unique_ptr<Placement> placeNext(const std::string& title, Choose choose) = 0;
};

} // namespace selvane
