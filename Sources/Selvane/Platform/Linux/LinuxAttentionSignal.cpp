#include "Selvane/Platform/Linux/LinuxAttentionSignal.h"

#include "Selvane/Platform/Linux/LinuxStatusItem.h"

namespace selvane {

namespace {

/// Long enough for a glance at the panel, and for panels that let the item appear and go.
constexpr Seconds moment{4};

} // namespace

void LinuxAttentionSignal::perform() {
    _item.setNeedsAttention(true);
    _end = _scheduler.after(moment, [this] { _item.setNeedsAttention(false); });
}

} // namespace selvane
