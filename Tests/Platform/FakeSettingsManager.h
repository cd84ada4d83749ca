#pragma once

#include "Selvane/Platform/Linux/X11Windows.h"

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace selvane::test {

/// The settings manager of an X11 screen, as far as programs see it. Ends with the object.
///
///     FakeSettingsManager manager(server.display());
///     manager.tell(XSettingsBytes(std::endian::little).integer("Gtk/EnableAnimations", 0).bytes());
///     manager.appear();
class FakeSettingsManager {
public:
    explicit FakeSettingsManager(const std::string& display) : _xcb(xcb_connect(display.c_str(), nullptr)) {
        _root = xcb_setup_roots_iterator(xcb_get_setup(_xcb)).data->root;
        _window = xcb_generate_id(_xcb);
        xcb_create_window(_xcb, XCB_COPY_FROM_PARENT, _window, _root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    }
    FakeSettingsManager(const FakeSettingsManager&) = delete;
    FakeSettingsManager& operator=(const FakeSettingsManager&) = delete;
    ~FakeSettingsManager() { xcb_disconnect(_xcb); }

    void tell(const std::vector<std::uint8_t>& bytes) {
        const xcb_atom_t property = X11Windows::atom(_xcb, "_XSETTINGS_SETTINGS");
        xcb_change_property(_xcb, XCB_PROP_MODE_REPLACE, _window, property, property, 8,
                            static_cast<std::uint32_t>(bytes.size()), bytes.data());
        finish();
    }

    void appear() {
        xcb_set_selection_owner(_xcb, _window, X11Windows::atom(_xcb, "_XSETTINGS_S0"), XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = _root;
        message.type = X11Windows::atom(_xcb, "MANAGER");
        message.data.data32[1] = X11Windows::atom(_xcb, "_XSETTINGS_S0");
        message.data.data32[2] = _window;
        xcb_send_event(_xcb, 0, _root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        finish();
    }

private:
    /// The server has done all that it was asked to when this returns.
    void finish() { std::free(xcb_get_input_focus_reply(_xcb, xcb_get_input_focus(_xcb), nullptr)); }

    xcb_connection_t* _xcb;
    xcb_window_t _root;
    xcb_window_t _window;
};

} // namespace selvane::test
