#include "Selvane/Platform/Linux/StartupNotice.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace selvane::StartupNotice {

namespace {

/// The text of the message, with the zero byte that ends it.
std::string removal(std::string_view id) {
    std::string text = "remove: ID=\"";
    for (const char character : id) {
        if (character == '"' || character == '\\')
            text += '\\';
        text += character;
    }
    text += '"';
    text += '\0';
    return text;
}

void send(xcb_connection_t* xcb, xcb_window_t root, std::string_view text) {
    // The window only says which pieces belong together.
    const xcb_window_t window = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, root, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    const xcb_atom_t more = X11Windows::atom(xcb, "_NET_STARTUP_INFO");
    xcb_client_message_event_t piece{};
    piece.response_type = XCB_CLIENT_MESSAGE;
    piece.format = 8;
    piece.window = window;
    piece.type = X11Windows::atom(xcb, "_NET_STARTUP_INFO_BEGIN");
    while (!text.empty()) {
        const std::size_t size = std::min(text.size(), sizeof piece.data.data8);
        std::memset(piece.data.data8, 0, sizeof piece.data.data8);
        std::memcpy(piece.data.data8, text.data(), size);
        xcb_send_event(xcb, 0, root, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char*>(&piece));
        text.remove_prefix(size);
        piece.type = more;
    }
}

} // namespace

void complete(std::string_view id, const std::string& display) {
    if (id.empty())
        return;
    int screenNumber = 0;
    xcb_connection_t* const xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
    const xcb_screen_t* const screen =
        xcb_connection_has_error(xcb) == 0 ? X11Windows::screen(xcb, screenNumber) : nullptr;
    if (screen) {
        send(xcb, screen->root, removal(id));
        // An answer means that the server has seen all that came before the question.
        const XcbReply<xcb_get_input_focus_reply_t> seen(
            xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    }
    xcb_disconnect(xcb);
}

} // namespace selvane::StartupNotice
