#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

/// What several parts ask of an X11 server, each on the thread that the connection belongs to.
namespace selvane::X11Windows {

/// The connection that this program's windows are made on, which belongs to the main thread; null without an
/// X11 session, and in a program that makes no windows.
[[nodiscard]] xcb_connection_t* connection();

/// The number of the screen that they are made on, which DISPLAY names.
[[nodiscard]] int screenNumber();

/// Whether a window was made on `connection`: windows are told by their numbers, of which the server gives
/// each connection a range.
[[nodiscard]] bool isMadeOn(xcb_connection_t* connection, xcb_window_t window);

/// Null if the server has no screen of that number.
[[nodiscard]] xcb_screen_t* screen(xcb_connection_t* connection, int number);

/// Waits for the server. XCB_ATOM_NONE if it doesn't answer.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t* connection, std::string_view name);

/// The numbers that a property of 32 bits each holds; none if it has another form or isn't there. Waits for
/// the server's answer.
[[nodiscard]] std::vector<std::uint32_t> numbers(xcb_connection_t* connection,
                                                 xcb_get_property_cookie_t cookie);

/// Where the pointer is, in pixels of the windows' screen; nothing while it is on another one. Waits for the
/// server.
[[nodiscard]] std::optional<ScreenPoint> pointer(xcb_connection_t* connection);

} // namespace selvane::X11Windows
