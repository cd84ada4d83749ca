#include "Selvane/Platform/Linux/X11Windows.h"

#include "Selvane/Platform/Linux/XcbReply.h"

#include <QtGui/QGuiApplication>

#include <cstdint>
#include <cstdlib>

namespace selvane::X11Windows {

xcb_connection_t* connection() {
    const auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const auto* const x11 =
        application ? application->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

int screenNumber() {
    char* host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) == 0)
        return 0;
    std::free(host);
    return screen;
}

bool isMadeOn(xcb_connection_t* connection, xcb_window_t window) {
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

xcb_screen_t* screen(xcb_connection_t* connection, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; number > 0 && screens.rem > 0; --number)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
    // As a value, which can't be had of the macro without a conversion.
    constexpr xcb_atom_t none = XCB_ATOM_NONE;
    return reply ? reply->atom : none;
}

std::vector<std::uint32_t> numbers(xcb_connection_t* connection, xcb_get_property_cookie_t cookie) {
    const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

std::optional<ScreenPoint> pointer(xcb_connection_t* connection) {
    const xcb_screen_t* const own = screen(connection, screenNumber());
    if (!own)
        return std::nullopt;
    const XcbReply<xcb_query_pointer_reply_t> reply(
        xcb_query_pointer_reply(connection, xcb_query_pointer(connection, own->root), nullptr));
    return reply && reply->same_screen ? std::optional(ScreenPoint{reply->root_x, reply->root_y})
                                       : std::nullopt;
}

} // namespace selvane::X11Windows
