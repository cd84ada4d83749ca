#pragma once

#include "Selvane/Platform/ActivationMonitor.h"

#include <cstdint>

namespace selvane {

/// Follows the property _NET_ACTIVE_WINDOW, in which the window manager of an X11 screen names the active
/// window. It listens on the connection of this program's windows, which is told of it anyway, and waits for
/// the server to answer which window it is: once for each change, only while it is watched. Without an X11
/// session nothing is heard.
class X11ActivationMonitor final : public ActivationMonitor {
public:
    Subscription watch(std::function<void()> onOtherApplication) override;

private:
    /// An atom of the X server, 0 until it was asked.
    std::uint32_t _activeWindow = 0;
};

} // namespace selvane
