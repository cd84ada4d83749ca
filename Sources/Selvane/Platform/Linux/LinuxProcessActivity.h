#pragma once

#include "Selvane/Platform/ProcessActivity.h"

namespace selvane {

/// Linux doesn't slow the timers of programs without a window: a timer of the kernel that was set for a
/// moment goes off at that moment, whoever set it. So there is nothing to ask for, and the handles hold
/// nothing.
class LinuxProcessActivity final : public ProcessActivity {
public:
    Subscription begin(std::string_view reason) override;
};

} // namespace selvane
