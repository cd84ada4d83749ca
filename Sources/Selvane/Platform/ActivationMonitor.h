#pragma once

#include "SelvaneCore/Subscription.h"

#include <functional>

namespace selvane {

/// Tells when the user turns to another application. Main thread.
class ActivationMonitor {
public:
    virtual ~ActivationMonitor() = default;

    /// Holds as long as the handle lives. `onOtherApplication` is called each time when the active window is
    /// another process's after it was, while watched, one of this process. So what the desktop activates
    /// before the window that was just opened is not told, and neither is a window of this process. Where
    /// the desktop doesn't say which window is active, nothing is ever heard.
    virtual Subscription watch(std::function<void()> onOtherApplication) = 0;
};

} // namespace selvane
