#include "Selvane/Platform/Linux/X11ActivationMonitor.h"

#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtCore/QAbstractNativeEventFilter>
#include <QtGui/QGuiApplication>

#include <xcb/xcb.h>

#include <memory>
#include <string_view>
#include <utility>

namespace selvane {

namespace {

/// The connection that this program's windows were made on.
xcb_connection_t* windowConnection() {
    const auto* const x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

class Watch final : public QAbstractNativeEventFilter {
public:
    Watch(xcb_connection_t* connection, std::function<void()> onOtherApplication)
        : _connection(connection), _onOtherApplication(std::move(onOtherApplication)) {
        constexpr std::string_view name = "_NET_ACTIVE_WINDOW";
        const XcbReply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
            _connection, xcb_intern_atom(_connection, 0, name.size(), name.data()), nullptr));
        if (atom)
            _activeWindow = atom->atom;
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
        if (_activeWindow != XCB_ATOM_NONE && change.atom == _activeWindow && isOther(change.window)) {
            // On a copy, since the listener may end this watch.
            const auto tell = _onOtherApplication;
            tell();
        }
        return false;
    }

private:
    /// Whether the active window is another process's. Ours are told by their numbers, of which the server
    /// gives each connection a range. No window is nobody's: window managers pass through it.
    [[nodiscard]] bool isOther(xcb_window_t root) const {
        const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            _connection, xcb_get_property(_connection, 0, root, _activeWindow, XCB_ATOM_WINDOW, 0, 1),
            nullptr));
        if (!reply || reply->format != 32 || reply->value_len == 0)
            return false;
        const auto window = *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
        const xcb_setup_t* const own = xcb_get_setup(_connection);
        return window != XCB_WINDOW_NONE && (window & ~own->resource_id_mask) != own->resource_id_base;
    }

    xcb_connection_t* _connection;
    xcb_atom_t _activeWindow = XCB_ATOM_NONE;
    std::function<void()> _onOtherApplication;
};

} // namespace

Subscription X11ActivationMonitor::watch(std::function<void()> onOtherApplication) {
    xcb_connection_t* const connection = windowConnection();
    if (!connection)
        return {};
    auto watch = std::make_shared<Watch>(connection, std::move(onOtherApplication));
    return Subscription([watch = std::move(watch)]() mutable { watch.reset(); });
}

} // namespace selvane
