#include "Selvane/Platform/Linux/X11ScreenSpace.h"

#include "Selvane/Platform/Linux/Struts.h"
#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace selvane {

namespace {

/// More windows than a desktop has.
constexpr std::uint32_t mostWindows = 4096;

/// What an X11 screen shows along its edges.
struct Bars {
    std::vector<Strut> struts;
    std::vector<ScreenRect> docks;
};

/// The answers that are awaited about one window.
struct Question {
    xcb_get_property_cookie_t strut;
    xcb_get_property_cookie_t type;
    xcb_get_geometry_cookie_t size;
    xcb_translate_coordinates_cookie_t corner;
};

/// Where the window lies on the screen; nothing if it has gone.
std::optional<ScreenRect> place(xcb_connection_t* connection, const Question& question) {
    const XcbReply<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(connection, question.size, nullptr));
    const XcbReply<xcb_translate_coordinates_reply_t> corner(
        xcb_translate_coordinates_reply(connection, question.corner, nullptr));
    if (!size || !corner)
        return std::nullopt;
    return ScreenRect{corner->dst_x, corner->dst_y, size->width, size->height};
}

Bars readBars(xcb_connection_t* connection, xcb_window_t root) {
    const xcb_atom_t strut = X11Windows::atom(connection, "_NET_WM_STRUT_PARTIAL");
    const xcb_atom_t type = X11Windows::atom(connection, "_NET_WM_WINDOW_TYPE");
    const xcb_atom_t dock = X11Windows::atom(connection, "_NET_WM_WINDOW_TYPE_DOCK");
    const auto windows = X11Windows::numbers(
        connection, xcb_get_property(connection, 0, root, X11Windows::atom(connection, "_NET_CLIENT_LIST"),
                                     XCB_ATOM_WINDOW, 0, mostWindows));
    std::vector<Question> questions;
    questions.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        questions.push_back({xcb_get_property(connection, 0, window, strut, XCB_ATOM_CARDINAL, 0, 12),
                             xcb_get_property(connection, 0, window, type, XCB_ATOM_ATOM, 0, 1),
                             xcb_get_geometry(connection, window),
                             xcb_translate_coordinates(connection, window, root, 0, 0)});
    }
    Bars bars;
    for (const Question& question : questions) {
        if (const auto told = strutsOf(X11Windows::numbers(connection, question.strut)))
            bars.struts.insert(bars.struts.end(), told->begin(), told->end());
        const auto types = X11Windows::numbers(connection, question.type);
        const auto area = place(connection, question);
        if (area && !types.empty() && types.front() == dock)
            bars.docks.push_back(*area);
    }
    return bars;
}

} // namespace

std::optional<ScreenRect> X11ScreenSpace::available(const ScreenRect& monitor) const {
    xcb_connection_t* const connection = X11Windows::connection();
    const xcb_screen_t* const screen =
        connection ? X11Windows::screen(connection, X11Windows::screenNumber()) : nullptr;
    if (!screen)
        return std::nullopt;
    // What the connection was told of the screen's size at its start may be wrong by now.
    const XcbReply<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, screen->root), nullptr));
    if (!size)
        return std::nullopt;
    const Bars bars = readBars(connection, screen->root);
    return withoutDocks(withoutStruts(monitor, bars.struts, size->width, size->height), monitor, bars.docks);
}

} // namespace selvane
