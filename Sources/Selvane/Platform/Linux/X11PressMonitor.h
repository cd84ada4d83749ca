#pragma once

#include "Selvane/Platform/PressMonitor.h"

#include <memory>

namespace selvane {

/// Listens to the raw presses of an X11 screen, which come whatever window they belong to and take nothing
/// away from it. Without an X11 session nothing is heard.
class X11PressMonitor final : public PressMonitor {
public:
    X11PressMonitor();
    ~X11PressMonitor() override;

    /// The first watch connects to the X server, and the connection is kept, since that takes a while. The
    /// server tells nothing while nobody watches.
    Subscription watch(Listener listener) override;

private:
    class Connection;
    std::unique_ptr<Connection> _connection;
};

} // namespace selvane
