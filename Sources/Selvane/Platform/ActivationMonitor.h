#pragma once

#include "SelvaneCore/Subscription.h"

#include <functional>

namespace selvane {

/// Tells when the user turns to another application. Main thread.
class ActivationMonitor {
public:
    virtual ~ActivationMonitor() = default;

    /// Holds as long as the handle lives. `onOtherApplication` is called each time when a window of another
    /// process becomes the active one; a window of this process becoming active is not told. Where the
    /// desktop doesn't say which window is active, nothing is ever heard.
    virtual Subscription watch(std::function<void()> onOtherApplication) = 0;
};

} // namespace selvane
