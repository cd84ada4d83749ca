#include "Selvane/Platform/Linux/StartupNotice.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"
#include "Support/XServer.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace selvane::test {
namespace {

/// Listens to starts as a desktop does.
class StartupListener {
public:
    explicit StartupListener(const std::string& display) : _xcb(xcb_connect(display.c_str(), nullptr)) {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(_xcb)).data->root;
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(_xcb, root, XCB_CW_EVENT_MASK, &mask);
        _begin = X11Windows::atom(_xcb, "_NET_STARTUP_INFO_BEGIN");
        _more = X11Windows::atom(_xcb, "_NET_STARTUP_INFO");
    }
    StartupListener(const StartupListener&) = delete;
    StartupListener& operator=(const StartupListener&) = delete;
    ~StartupListener() { xcb_disconnect(_xcb); }

    /// The next message, put together; absent if none is whole.
    [[nodiscard]] std::optional<std::string> receive() const {
        std::string text;
        while (const auto event = next()) {
            if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
                continue;
            const auto& piece = *reinterpret_cast<const xcb_client_message_event_t*>(event.get());
            if (piece.type != (text.empty() ? _begin : _more) || piece.format != 8)
                return std::nullopt;
            const std::string_view bytes(reinterpret_cast<const char*>(piece.data.data8),
                                         sizeof piece.data.data8);
            const std::size_t end = bytes.find('\0');
            text += bytes.substr(0, end);
            if (end != std::string_view::npos)
                return text;
        }
        return std::nullopt;
    }

private:
    [[nodiscard]] XcbReply<xcb_generic_event_t> next() const {
        // The sender has waited for the server, so that whatever was sent is in the answer to a question.
        const XcbReply<xcb_get_input_focus_reply_t> seen(
            xcb_get_input_focus_reply(_xcb, xcb_get_input_focus(_xcb), nullptr));
        return XcbReply<xcb_generic_event_t>(xcb_poll_for_event(_xcb));
    }

    xcb_connection_t* _xcb;
    xcb_atom_t _begin;
    xcb_atom_t _more;
};

TEST(StartupNotice, TheDesktopHearsWhichStartIsOver) {
    const XServer server;
    ASSERT_FALSE(server.display().empty());
    const StartupListener desktop(server.display());
    StartupNotice::complete("a", server.display());
    EXPECT_EQ(desktop.receive(), "remove: ID=\"a\"");
    const std::string name = "launcher/com.lorbin.selvane/1234-5-host_TIME67890";
    StartupNotice::complete(name, server.display());
    EXPECT_EQ(desktop.receive(), "remove: ID=\"" + name + "\"");
}

TEST(StartupNotice, ANameMayHoldAnyCharacter) {
    const XServer server;
    ASSERT_FALSE(server.display().empty());
    const StartupListener desktop(server.display());
    StartupNotice::complete("a \"b\" \\c", server.display());
    EXPECT_EQ(desktop.receive(), "remove: ID=\"a \\\"b\\\" \\\\c\"");
}

TEST(StartupNotice, AStartWithoutANameIsNobodysBusiness) {
    const XServer server;
    ASSERT_FALSE(server.display().empty());
    const StartupListener desktop(server.display());
    StartupNotice::complete("", server.display());
    EXPECT_EQ(desktop.receive(), std::nullopt);
}

TEST(StartupNotice, WithoutAServerNothingHappens) {
    StartupNotice::complete("a", ":4711");
    StartupNotice::complete("a");
}

} // namespace
} // namespace selvane::test
