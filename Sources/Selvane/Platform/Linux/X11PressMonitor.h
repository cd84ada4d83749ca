#pragma once

#include "Selvane/Platform/PressMonitor.h"

namespace selvane {

/// Listens to the raw presses of an X11 screen, which come whatever window they belong to and take nothing
/// away from it. Without an X11 session nothing is heard.
class X11PressMonitor final : public PressMonitor {
public:
    /// Each handle has a connection to the X server of its own, so that nothing is kept while nobody watches.
    Subscription watch(Listener listener) override;
};

} // namespace selvane
