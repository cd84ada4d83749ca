#pragma once

#include "SelvaneCore/Signal.h"

namespace selvane {

/// Tells when the machine comes back from sleep. Main thread.
class AwayMonitor {
public:
    virtual ~AwayMonitor() = default;

    /// Emitted once after each sleep. Never emitted where the platform can't tell.
    Signal<> didWake;
};

} // namespace selvane
