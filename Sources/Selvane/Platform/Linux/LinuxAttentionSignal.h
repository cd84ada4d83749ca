#pragma once

#include "Selvane/Platform/AttentionSignal.h"
#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/Subscription.h"

namespace selvane {

class LinuxStatusItem;

/// The status item asks for attention for a moment, or until it is clicked: panels then show an item that
/// they hide otherwise, or make it stand out in their own way.
class LinuxAttentionSignal final : public AttentionSignal {
public:
    /// Both outlive the signal.
    LinuxAttentionSignal(LinuxStatusItem& item, Scheduler& scheduler) : _item(item), _scheduler(scheduler) {}

    void perform() override;

private:
    LinuxStatusItem& _item;
    Scheduler& _scheduler;
    Subscription _end;
};

} // namespace selvane
