#pragma once

#include "SelvaneCore/Subscription.h"

#include <functional>

namespace selvane {

/// Tells when a mouse button is used outside this program's windows. Turning the wheel is no use of a button.
/// Main thread.
class PressMonitor {
public:
    /// Either may be absent.
    struct Listener {
        /// A button was pressed outside.
        std::function<void()> onPress;
        /// A button was released, wherever that was.
        std::function<void()> onRelease;
    };

    virtual ~PressMonitor() = default;

    /// Holds as long as the handle lives. Where the desktop keeps presses to the window that they belong to,
    /// nothing is ever heard.
    virtual Subscription watch(Listener listener) = 0;
};

} // namespace selvane
