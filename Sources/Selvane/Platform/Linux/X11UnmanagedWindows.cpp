#include "Selvane/Platform/Linux/X11UnmanagedWindows.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtGui/QGuiApplication>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace selvane {

namespace {

/// How often a window is given the keyboard until it keeps it, before others are left to it.
constexpr int mostTries = 10;

/// Losses that follow one another faster are of one quarrel.
constexpr std::chrono::seconds contention{1};

/// Whether the X server is a guest on a Wayland desktop.
bool isGuest(xcb_connection_t* connection) {
    // Older ones don't tell, and show in the environment alone.
    constexpr std::string_view extension = "XWAYLAND";
    const XcbReply<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(
        connection, xcb_query_extension(connection, extension.size(), extension.data()), nullptr));
    return (reply && reply->present != 0) || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

/// As window managers tell their names.
constexpr std::array<std::string_view, 4> friendlyManagers{"KWin", "Mutter", "Xfwm4", "Metacity"};

xcb_window_t number(UnmanagedWindows::Window window) {
    return static_cast<xcb_window_t>(window);
}

/// The window on the root that holds `window`; `window` itself where nothing holds it.
xcb_window_t frame(xcb_connection_t* connection, xcb_window_t window) {
    for (;;) {
        const XcbReply<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
        if (!reply || reply->parent == reply->root || reply->parent == XCB_WINDOW_NONE)
            return window;
        window = reply->parent;
    }
}

} // namespace

std::unique_ptr<X11UnmanagedWindows> X11UnmanagedWindows::make(std::chrono::milliseconds defence) {
    xcb_connection_t* const connection = X11Windows::connection();
    if (!connection || isGuest(connection))
        return nullptr;
    return std::unique_ptr<X11UnmanagedWindows>(new X11UnmanagedWindows(connection, defence));
}

X11UnmanagedWindows::X11UnmanagedWindows(xcb_connection_t* connection, std::chrono::milliseconds defence)
    : _connection(connection),
      _defence(defence),
      _clock(X11Windows::atom(connection, "_SELVANE_CLOCK")),
      _manager(X11Windows::atom(connection, "_NET_SUPPORTING_WM_CHECK")),
      _name(X11Windows::atom(connection, "_NET_WM_NAME")) {
    qGuiApp->installNativeEventFilter(this);
}

X11UnmanagedWindows::~X11UnmanagedWindows() {
    if (_loan)
        discardQuestion();
}

bool X11UnmanagedWindows::areWelcome() const {
    const std::string name = managerName();
    return std::ranges::find(friendlyManagers, name) != friendlyManagers.end();
}

void X11UnmanagedWindows::lendKeyboard(Window window, std::function<void()> onGiven) {
    if (!_loan)
        _loan.emplace().question = xcb_get_input_focus(_connection);
    _loan->begin = std::chrono::steady_clock::now();
    _loan->tries = 0;
    if (_loan->isGiven && _loan->window == number(window)) {
        onGiven();
        return;
    }
    _loan->window = number(window);
    _loan->onGiven = std::move(onGiven);
    _loan->isGiven = false;
    askForTime(_loan->window);
}

void X11UnmanagedWindows::returnKeyboard() {
    if (!_loan)
        return;
    if (const auto question = std::exchange(_loan->question, std::nullopt)) {
        const XcbReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(_connection, *question, nullptr));
        if (reply)
            _loan->holder = reply->focus;
    }
    const auto loan = std::exchange(_loan, std::nullopt);
    // Otherwise it is the window manager that finds it with nobody once the window is hidden.
    if (loan->holder && loan->time && !isIdle(*loan->holder))
        setFocus(*loan->holder, *loan->time);
}

void X11UnmanagedWindows::discardQuestion() {
    if (const auto question = std::exchange(_loan->question, std::nullopt))
        xcb_discard_reply(_connection, question->sequence);
}

bool X11UnmanagedWindows::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (!_loan || type != "xcb_generic_event_t")
        return false;
    switch (static_cast<const xcb_generic_event_t*>(message)->response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY:
        timeTold(*static_cast<const xcb_property_notify_event_t*>(message));
        break;
    case XCB_FOCUS_IN:
        focusGot(*static_cast<const xcb_focus_in_event_t*>(message));
        break;
    case XCB_FOCUS_OUT:
        focusLost(*static_cast<const xcb_focus_out_event_t*>(message));
        break;
    default:
        break;
    }
    return false;
}

void X11UnmanagedWindows::askForTime(xcb_window_t window) {
    xcb_change_property(_connection, XCB_PROP_MODE_APPEND, window, _clock, XCB_ATOM_INTEGER, 32, 0, nullptr);
    xcb_flush(_connection);
}

void X11UnmanagedWindows::timeTold(const xcb_property_notify_event_t& change) {
    if (change.atom != _clock || change.window != _loan->window)
        return;
    if (_loan->isGiven || _loan->tries == mostTries)
        return;
    ++_loan->tries;
    _loan->time = change.time;
    setFocus(_loan->window, change.time);
    // In vain if somebody has set the focus since that time. The next answer comes when this is known.
    askForTime(_loan->window);
}

void X11UnmanagedWindows::focusGot(const xcb_focus_in_event_t& event) {
    // With the pointer over it, a window hears of focus that isn't its own.
    if (event.event != _loan->window || event.detail == XCB_NOTIFY_DETAIL_POINTER)
        return;
    _loan->isGiven = true;
    // On a copy, since it may end the loan.
    if (const auto tell = std::exchange(_loan->onGiven, nullptr))
        tell();
}

void X11UnmanagedWindows::focusLost(const xcb_focus_out_event_t& event) {
    if (event.event != _loan->window || event.detail == XCB_NOTIFY_DETAIL_POINTER ||
        event.mode != XCB_NOTIFY_MODE_NORMAL)
        return;
    _loan->isGiven = false;
    const auto now = std::chrono::steady_clock::now();
    if (now - std::exchange(_loan->lastLoss, now) > contention)
        _loan->tries = 0;
    const auto holder = focus();
    if (!holder)
        return;
    // When a window closes elsewhere, some window managers take the keyboard and give it to nobody.
    if (!isIdle(*holder)) {
        if (now - _loan->begin >= _defence)
            return;
        // This is who would have it now without the loan.
        discardQuestion();
        _loan->holder = holder;
    }
    askForTime(_loan->window);
}

std::optional<xcb_window_t> X11UnmanagedWindows::managerWindow() const {
    const xcb_screen_t* const screen = X11Windows::screen(_connection, X11Windows::screenNumber());
    if (!screen)
        return std::nullopt;
    const auto windows = X11Windows::numbers(
        _connection, xcb_get_property(_connection, 0, screen->root, _manager, XCB_ATOM_WINDOW, 0, 1));
    return windows.empty() ? std::nullopt : std::optional(windows.front());
}

std::string X11UnmanagedWindows::managerName() const {
    const auto window = managerWindow();
    if (!window)
        return {};
    // In units of four bytes.
    constexpr std::uint32_t longest = 16;
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        _connection, xcb_get_property(_connection, 0, *window, _name, XCB_GET_PROPERTY_TYPE_ANY, 0, longest),
        nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(reply.get())), reply->value_len};
}

std::optional<xcb_window_t> X11UnmanagedWindows::focus() const {
    const XcbReply<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(_connection, xcb_get_input_focus(_connection), nullptr));
    return reply ? std::optional(reply->focus) : std::nullopt;
}

bool X11UnmanagedWindows::isIdle(xcb_window_t holder) const {
    if (holder == XCB_INPUT_FOCUS_NONE || holder == XCB_INPUT_FOCUS_POINTER_ROOT)
        return true;
    const xcb_screen_t* const screen = X11Windows::screen(_connection, X11Windows::screenNumber());
    if (screen && holder == screen->root)
        return true;
    const auto manager = managerWindow();
    const std::uint32_t owner = ~xcb_get_setup(_connection)->resource_id_mask;
    return manager && (*manager & owner) == (holder & owner);
}

void X11UnmanagedWindows::setFocus(xcb_window_t window, xcb_timestamp_t time) {
    // When a hidden window leaves the focus to nobody, more window managers see to it than when it is left to
    // the pointer.
    const auto request = xcb_set_input_focus_checked(_connection, XCB_INPUT_FOCUS_NONE, window, time);
    // A window that has gone can't have it.
    xcb_discard_reply(_connection, request.sequence);
    xcb_flush(_connection);
}

void X11UnmanagedWindows::putBehind(Window window, Window other) {
    const std::uint32_t values[] = {frame(_connection, number(other)), XCB_STACK_MODE_BELOW};
    const auto request = xcb_configure_window_checked(
        _connection, number(window), XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values);
    xcb_discard_reply(_connection, request.sequence);
    xcb_flush(_connection);
}

} // namespace selvane
