#pragma once

#include "Selvane/Platform/UnmanagedWindows.h"

#include <QtCore/QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace selvane {

/// Sets the input focus of an X11 screen, on the connection of this program's windows.
///
/// Giving the keyboard back carries the time at which it was lent. So the server ignores it if the focus was
/// set since, and no click that is on its way to the window manager comes too late after it.
class X11UnmanagedWindows final : public UnmanagedWindows, private QAbstractNativeEventFilter {
public:
    /// Null without an X11 session, and on the X server of a Wayland desktop, which gives the keys to managed
    /// windows only.
    [[nodiscard]] static std::unique_ptr<X11UnmanagedWindows> make();

    ~X11UnmanagedWindows() override;

    /// Under window managers that are known to leave the keyboard with the window that has it, and their own
    /// keys to nobody meanwhile: others close the window before when the user presses Alt+F4. Waits for the
    /// server.
    [[nodiscard]] bool areWelcome() const override;
    void lendKeyboard(Window window, std::function<void()> onGiven) override;
    void returnKeyboard() override;
    void putBehind(Window window, Window other) override;

private:
    struct Loan {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::function<void()> onGiven;
        /// Who had the keyboard, asked without waiting for the answer.
        xcb_get_input_focus_cookie_t holder{};
        std::chrono::steady_clock::time_point begin;
        /// When the window was last given the keyboard, by the server's clock.
        std::optional<xcb_timestamp_t> time;
        int tries = 0;
        bool isGiven = false;
    };

    explicit X11UnmanagedWindows(xcb_connection_t* connection);

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void askForTime(xcb_window_t window);
    void timeTold(const xcb_property_notify_event_t& change);
    void focusGot(const xcb_focus_in_event_t& event);
    void focusLost(const xcb_focus_out_event_t& event);
    /// Whether nobody has the keyboard but the window manager, which holds it for nobody.
    [[nodiscard]] bool isFocusIdle() const;
    void setFocus(xcb_window_t window, xcb_timestamp_t time);

    xcb_connection_t* _connection;
    /// A property of windows, changed for nothing but the time that the server gives the change.
    xcb_atom_t _clock;
    std::optional<Loan> _loan;
};

} // namespace selvane
