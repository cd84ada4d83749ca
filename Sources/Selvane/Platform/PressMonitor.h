#pragma once

#include "SelvaneCore/Subscription.h"

#include <functional>

namespace selvane {

/// Tells when a mouse button is pressed outside this program's windows. Main thread.
class PressMonitor {
public:
    virtual ~PressMonitor() = default;

    /// Calls `onPress` at each such press for as long as the handle lives. Where the desktop keeps presses to
    /// the window that they belong to, nothing is ever heard.
    virtual Subscription watch(std::function<void()> onPress) = 0;
};

} // namespace selvane
