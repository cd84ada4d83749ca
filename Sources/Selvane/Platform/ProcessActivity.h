#pragma once

#include "SelvaneCore/Subscription.h"

#include <string_view>

namespace selvane {

/// Keeps the system from slowing this process down while the user relies on its timers. The machine may still
/// sleep. Main thread; never fails.
class ProcessActivity {
public:
    virtual ~ProcessActivity() = default;

    /// Holds until the handle ends. `reason` is a short text for the system's own lists.
    virtual Subscription begin(std::string_view reason) = 0;
};

} // namespace selvane
