#include "Selvane/Platform/Linux/XSettings.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>
#include <QtGui/QGuiApplication>

#include <xcb/xcb.h>

#include <cstdint>
#include <utility>

namespace selvane {

namespace {

/// The longest property that is read, in units of four bytes. Those of real desktops are about 2 KB.
constexpr std::uint32_t longestProperty = 1U << 16U;

/// Stands for the window and the atom that there isn't.
constexpr std::uint32_t nothing = XCB_NONE;

} // namespace

class XSettings::Connection final : public QObject {
public:
    Connection(XSettings& owner, const std::string& displayName) : _owner(owner) {
        int screenNumber = 0;
        _xcb = xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
        if (xcb_connection_has_error(_xcb) != 0)
            return;
        const xcb_screen_t* const screen = X11Windows::screen(_xcb, screenNumber);
        if (!screen)
            return;
        _manager = X11Windows::atom(_xcb, "MANAGER");
        _selection = X11Windows::atom(_xcb, "_XSETTINGS_S" + std::to_string(screenNumber));
        _property = X11Windows::atom(_xcb, "_XSETTINGS_SETTINGS");
        // The root window tells of new managers by the message MANAGER.
        listen(screen->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        _notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(_xcb), QSocketNotifier::Read);
        connect(_notifier.get(), &QSocketNotifier::activated, this, [this] { handleEvents(); });
        findManager();
        _values = read();
        handleLater();
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    ~Connection() override {
        _notifier.reset();
        xcb_disconnect(_xcb);
    }

    [[nodiscard]] const XSettingValues& values() const { return _values; }

private:
    void listen(xcb_window_t window, std::uint32_t mask) const {
        xcb_change_window_attributes(_xcb, window, XCB_CW_EVENT_MASK, &mask);
    }

    void findManager() {
        // The grab makes sure that the manager's window still exists when its end is asked to be told.
        xcb_grab_server(_xcb);
        const XcbReply<xcb_get_selection_owner_reply_t> owner(
            xcb_get_selection_owner_reply(_xcb, xcb_get_selection_owner(_xcb, _selection), nullptr));
        _window = owner == nullptr ? nothing : owner->owner;
        if (_window != nothing)
            listen(_window, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
        xcb_ungrab_server(_xcb);
        xcb_flush(_xcb);
    }

    [[nodiscard]] XSettingValues read() const {
        if (_window == nothing)
            return {};
        const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            _xcb, xcb_get_property(_xcb, 0, _window, _property, _property, 0, longestProperty), nullptr));
        if (reply == nullptr || reply->format != 8)
            return {};
        const auto* const bytes = static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get()));
        const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
        return parseXSettings({bytes, length}).value_or(XSettingValues());
    }

    /// A reply that was waited for may have brought events into memory, where the socket no longer shows
    /// them.
    void handleLater() {
        QMetaObject::invokeMethod(
            this, [this] { handleEvents(); }, Qt::QueuedConnection);
    }

    void handleEvents() {
        // What follows from the events is done once, however many there are.
        bool managerChanged = false;
        bool valuesChanged = false;
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(_xcb)}) {
            managerChanged = managerChanged || isOfNewManager(*event);
            valuesChanged = valuesChanged || isOfNewValues(*event);
        }
        if (xcb_connection_has_error(_xcb) != 0) {
            lose();
            return;
        }
        if (managerChanged)
            findManager();
        if (!managerChanged && !valuesChanged)
            return;
        XSettingValues values = read();
        handleLater();
        take(std::move(values));
    }

    /// Nothing comes through a lost connection any more, not even its end a second time.
    void lose() {
        if (_notifier != nullptr)
            _notifier->setEnabled(false);
        _window = nothing;
        take({});
    }

    void take(XSettingValues values) {
        if (std::exchange(_values, std::move(values)) != _values && _owner.onChange)
            _owner.onChange();
    }

    [[nodiscard]] bool isOfNewManager(const xcb_generic_event_t& event) const {
        switch (event.response_type & 0x7f) {
        case XCB_CLIENT_MESSAGE: {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            return message.type == _manager && message.data.data32[1] == _selection;
        }
        case XCB_DESTROY_NOTIFY:
            return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == _window;
        default:
            return false;
        }
    }

    [[nodiscard]] bool isOfNewValues(const xcb_generic_event_t& event) const {
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            return false;
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        return change.window == _window && change.atom == _property;
    }

    XSettings& _owner;
    xcb_connection_t* _xcb = nullptr;
    std::unique_ptr<QSocketNotifier> _notifier;
    xcb_atom_t _manager = nothing;
    xcb_atom_t _selection = nothing;
    xcb_atom_t _property = nothing;
    /// The manager's window.
    xcb_window_t _window = nothing;
    XSettingValues _values;
};

XSettings::XSettings(const std::string& displayName)
    : _connection(std::make_unique<Connection>(*this, displayName)) {}

XSettings::~XSettings() = default;

std::unique_ptr<XSettings> XSettings::ofSession() {
    const bool isX11 = qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
                       QGuiApplication::platformName() == QLatin1String("xcb");
    return isX11 ? std::make_unique<XSettings>() : nullptr;
}

const XSettingValues& XSettings::values() const {
    return _connection->values();
}

} // namespace selvane
