#include "Selvane/Platform/Linux/X11PressMonitor.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"
#include "SelvaneCore/Lifetime.h"

#include <QtCore/QSocketNotifier>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace selvane {

namespace {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// The root window of the connection's screen, if the server can tell of raw presses.
std::optional<xcb_window_t> watchableRoot(xcb_connection_t* connection, int screenNumber) {
    const auto version = xcb_input_xi_query_version(connection, 2, 2);
    const XcbReply<xcb_input_xi_query_version_reply_t> reply(
        xcb_input_xi_query_version_reply(connection, version, nullptr));
    if (!reply || reply->major_version < 2)
        return std::nullopt;
    const xcb_screen_t* const screen = X11Windows::screen(connection, screenNumber);
    return screen ? std::optional(screen->root) : std::nullopt;
}

} // namespace

/// A connection of its own to the X server, since on the one of the windows Qt reads the events.
class X11PressMonitor::Connection {
public:
    /// Null if the server can't be asked or can't tell of raw presses.
    static std::unique_ptr<Connection> open() {
        if (!X11Windows::connection())
            return nullptr;
        int screenNumber = 0;
        std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, &screenNumber));
        if (xcb_connection_has_error(connection.get()))
            return nullptr;
        const auto root = watchableRoot(connection.get(), screenNumber);
        if (!root)
            return nullptr;
        return std::unique_ptr<Connection>(new Connection(std::move(connection), *root));
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() {
        // Later, since this may be the notifier's own call.
        _notifier->setEnabled(false);
        _notifier->disconnect();
        _notifier->deleteLater();
    }

    [[nodiscard]] bool isLost() const { return xcb_connection_has_error(_connection.get()) != 0; }

    Subscription add(Listener listener) {
        if (_listeners.empty()) {
            // What happened before is no news.
            while (XcbReply<xcb_generic_event_t>(xcb_poll_for_event(_connection.get()))) {
            }
            select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_RELEASE);
        }
        const auto place =
            _listeners.insert(_listeners.end(), std::make_shared<const Listener>(std::move(listener)));
        return Subscription(_lifetime.guard([this, place] {
            _listeners.erase(place);
            if (_listeners.empty())
                select(0);
        }));
    }

private:
    Connection(std::unique_ptr<xcb_connection_t, Disconnect> connection, xcb_window_t root)
        : _connection(std::move(connection)),
          _root(root),
          _notifier(new QSocketNotifier(xcb_get_file_descriptor(_connection.get()), QSocketNotifier::Read)) {
        QObject::connect(_notifier, &QSocketNotifier::activated, _notifier, [this] { readEvents(); });
    }

    void select(std::uint32_t events) {
        struct {
            xcb_input_event_mask_t head;
            std::uint32_t mask;
        } const selection{{XCB_INPUT_DEVICE_ALL_MASTER, 1}, events};
        xcb_input_xi_select_events(_connection.get(), _root, 1, &selection.head);
        xcb_flush(_connection.get());
    }

    enum class Use { press, release };

    void readEvents() {
        std::vector<Use> uses;
        while (const auto event = XcbReply<xcb_generic_event_t>(xcb_poll_for_event(_connection.get()))) {
            const auto type = buttonEvent(*event);
            if (type == XCB_INPUT_RAW_BUTTON_RELEASE)
                uses.push_back(Use::release);
            else if (type == XCB_INPUT_RAW_BUTTON_PRESS && !isPointerOverOwnWindow())
                uses.push_back(Use::press);
        }
        if (isLost())
            _notifier->setEnabled(false);
        // Last, since a listener may end this watch or another.
        const std::vector<std::weak_ptr<const Listener>> listeners(_listeners.begin(), _listeners.end());
        for (const Use use : uses) {
            for (const auto& each : listeners) {
                const auto listener = each.lock();
                if (!listener)
                    continue;
                const auto& tell = use == Use::press ? listener->onPress : listener->onRelease;
                if (tell)
                    tell();
            }
        }
    }

    /// The kind of a raw event of a button; 0 for anything else. The steps of a wheel come as buttons 4 to 7.
    static int buttonEvent(const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != XCB_GE_GENERIC)
            return 0;
        const auto& raw = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
        const bool isWheel = raw.detail >= 4 && raw.detail <= 7;
        return isWheel ? 0 : raw.event_type;
    }

    /// Goes down from the root to the innermost window under the pointer.
    [[nodiscard]] bool isPointerOverOwnWindow() const {
        xcb_connection_t* const own = X11Windows::connection();
        xcb_window_t window = _root;
        while (window != XCB_NONE) {
            if (X11Windows::isMadeOn(own, window))
                return true;
            const auto cookie = xcb_query_pointer(_connection.get(), window);
            const XcbReply<xcb_query_pointer_reply_t> reply(
                xcb_query_pointer_reply(_connection.get(), cookie, nullptr));
            window = reply ? reply->child : XCB_NONE;
        }
        return false;
    }

    std::unique_ptr<xcb_connection_t, Disconnect> _connection;
    xcb_window_t _root;
    QSocketNotifier* _notifier;
    std::list<std::shared_ptr<const Listener>> _listeners;
    Lifetime _lifetime;
};

X11PressMonitor::X11PressMonitor() = default;

X11PressMonitor::~X11PressMonitor() = default;

Subscription X11PressMonitor::watch(Listener listener) {
    if (!_connection || _connection->isLost())
        _connection = Connection::open();
    return _connection ? _connection->add(std::move(listener)) : Subscription();
}

} // namespace selvane
