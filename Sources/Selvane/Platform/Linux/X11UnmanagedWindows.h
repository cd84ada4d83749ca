#pragma once

#include "Selvane/Platform/UnmanagedWindows.h"

#include <QtCore/QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace selvane {

/// Sets the input focus of an X11 screen, on the connection of this program's windows.
///
/// Giving the keyboard back carries the time at which it was lent. So the server ignores it if the focus was
/// set since, and no click that is on its way to the window manager comes too late after it. Giving it back
/// and putting a window behind another wait for the server, lending does not.
class X11UnmanagedWindows final : public UnmanagedWindows, private QAbstractNativeEventFilter {
public:
    /// Null without an X11 session, and on the X server of a Wayland desktop, which gives the keys to managed
    /// windows only.
    ///
    /// A window manager that is late gives the keyboard to the window behind one that closed just before.
    /// Later than `defence` after a loan it is the user who turns to another window.
    [[nodiscard]] static std::unique_ptr<X11UnmanagedWindows>
    make(std::chrono::milliseconds defence = std::chrono::milliseconds{250});

    ~X11UnmanagedWindows() override;

    /// Under window managers that were seen to leave the keyboard with a window that isn't theirs, and to
    /// close none of theirs meanwhile: others apply Alt+F4 to the one that was active last. Waits for the
    /// server.
    [[nodiscard]] bool areWelcome() const override;
    void lendKeyboard(Window window, std::function<void()> onGiven) override;
    void returnKeyboard() override;
    void putBehind(Window window, Window other) override;

private:
    struct Loan {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::function<void()> onGiven;
        /// Who had the keyboard, asked without waiting for the answer. Absent once `holder` is known.
        std::optional<xcb_get_input_focus_cookie_t> question;
        std::optional<xcb_window_t> holder;
        std::chrono::steady_clock::time_point begin;
        /// When the window was last given the keyboard, by the server's clock.
        std::optional<xcb_timestamp_t> time;
        /// Since the last moment in which nobody contended for it.
        int tries = 0;
        std::chrono::steady_clock::time_point lastLoss;
        bool isGiven = false;
    };

    X11UnmanagedWindows(xcb_connection_t* connection, std::chrono::milliseconds defence);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void askForTime(xcb_window_t window);
    void timeTold(const xcb_property_notify_event_t& change);
    void focusGot(const xcb_focus_in_event_t& event);
    void focusLost(const xcb_focus_out_event_t& event);
    /// A window of the window manager's own, if one runs.
    [[nodiscard]] std::optional<xcb_window_t> managerWindow() const;
    [[nodiscard]] std::string managerName() const;
    [[nodiscard]] std::optional<xcb_window_t> focus() const;
    /// Whether who has the keyboard has no use for it: nobody, or the window manager itself.
    [[nodiscard]] bool isIdle(xcb_window_t holder) const;
    void discardQuestion();
    void setFocus(xcb_window_t window, xcb_timestamp_t time);

    xcb_connection_t* _connection;
    std::chrono::milliseconds _defence;
    /// A property of windows, changed for nothing but the time that the server gives the change.
    xcb_atom_t _clock;
    /// In which the root names a window of the window manager's, and windows their names.
    xcb_atom_t _manager;
    xcb_atom_t _name;
    std::optional<Loan> _loan;
};

} // namespace selvane
