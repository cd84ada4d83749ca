#include "Selvane/Platform/Linux/X11ActivationMonitor.h"

#include "Selvane/Platform/Linux/X11Windows.h"

#include <QtCore/QAbstractNativeEventFilter>
#include <QtGui/QGuiApplication>

#include <xcb/xcb.h>

#include <memory>
#include <optional>
#include <utility>

namespace selvane {

namespace {

class Watch final : public QAbstractNativeEventFilter {
public:
    Watch(xcb_connection_t* connection, xcb_atom_t activeWindow, std::function<void()> onOtherApplication)
        : _connection(connection),
          _activeWindow(activeWindow),
          _onOtherApplication(std::move(onOtherApplication)) {
        qGuiApp->installNativeEventFilter(this);
    }
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;
    // The base class takes the filter away.
    ~Watch() override = default;

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr*) override {
        if (type != "xcb_generic_event_t")
            return false;
        const auto& event = *static_cast<const xcb_generic_event_t*>(message);
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            return false;
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (_activeWindow != XCB_ATOM_NONE && change.atom == _activeWindow)
            activeWindowChanged(change.window);
        return false;
    }

private:
    void activeWindowChanged(xcb_window_t root) {
        const auto window = activeWindow(root);
        // None is nobody's: window managers pass through it.
        if (!window)
            return;
        if (X11Windows::isMadeOn(_connection, *window)) {
            _wasOwn = true;
            return;
        }
        if (!std::exchange(_wasOwn, false))
            return;
        // On a copy, since the listener may end this watch.
        const auto tell = _onOtherApplication;
        tell();
    }

    [[nodiscard]] std::optional<xcb_window_t> activeWindow(xcb_window_t root) const {
        const auto windows = X11Windows::numbers(
            _connection, xcb_get_property(_connection, 0, root, _activeWindow, XCB_ATOM_WINDOW, 0, 1));
        return windows.empty() || windows.front() == XCB_WINDOW_NONE ? std::nullopt
                                                                     : std::optional(windows.front());
    }

    xcb_connection_t* _connection;
    xcb_atom_t _activeWindow;
    std::function<void()> _onOtherApplication;
    /// A window of this process has become the active one, and no other since.
    bool _wasOwn = false;
};

} // namespace

Subscription X11ActivationMonitor::watch(std::function<void()> onOtherApplication) {
    xcb_connection_t* const connection = X11Windows::connection();
    if (!connection)
        return {};
    // The answer to this question would be waited for whenever the panel opens.
    if (_activeWindow == XCB_ATOM_NONE)
        _activeWindow = X11Windows::atom(connection, "_NET_ACTIVE_WINDOW");
    auto watch = std::make_shared<Watch>(connection, _activeWindow, std::move(onOtherApplication));
    return Subscription([watch = std::move(watch)]() mutable { watch.reset(); });
}

} // namespace selvane
