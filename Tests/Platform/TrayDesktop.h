#pragma once

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/StatusItemHost.h"
#include "Support/EndWithTest.h"
#include "Support/EventLoop.h"
#include "Support/XServer.h"

#include <QtCore/QProcess>

#include <xcb/xcb.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace selvane::test {

/// A screen with a tray of the old kind that starts and ends when a test says so, a pointer and a camera.
class TrayDesktop {
public:
    ~TrayDesktop() {
        stopTray();
        if (_xcb != nullptr)
            xcb_disconnect(_xcb);
    }

    [[nodiscard]] const std::string& display() const { return _server.display(); }

    /// `tint` is the colour of the tray as 0xRRGGBB.
    void startTray(const QString& tint = QStringLiteral("0x000000")) {
        _tray = std::make_unique<QProcess>();
        endWithTest(*_tray);
        _tray->setProcessEnvironment(environment());
        // Aligned to the left it doesn't move when it grows, so that a place once asked for is still right.
        _tray->start(QStringLiteral("trayer"),
                     {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
                      QStringLiteral("left"), QStringLiteral("--widthtype"), QStringLiteral("request"),
                      QStringLiteral("--height"), QStringLiteral("32"), QStringLiteral("--transparent"),
                      QStringLiteral("true"), QStringLiteral("--alpha"), QStringLiteral("0"),
                      QStringLiteral("--tint"), tint});
    }

    void stopTray() {
        if (_tray == nullptr)
            return;
        _tray->kill();
        _tray->waitForFinished();
        _tray.reset();
    }

    /// Moves the tray sideways, also beyond the edge of the screen. Nothing else may be on the screen.
    void moveTray(int x) {
        connect();
        xcb_query_tree_reply_t* reply = xcb_query_tree_reply(_xcb, xcb_query_tree(_xcb, root()), nullptr);
        if (reply == nullptr)
            return;
        const auto* windows = xcb_query_tree_children(reply);
        for (int index = 0; index < xcb_query_tree_children_length(reply); ++index) {
            const auto position = static_cast<std::uint32_t>(x);
            xcb_configure_window(_xcb, windows[index], XCB_CONFIG_WINDOW_X, &position);
        }
        std::free(reply);
        xcb_flush(_xcb);
    }

    void stopServer() { _server.stop(); }
    /// The server answers nobody between the two.
    void freezeServer() const { _server.signal(SIGSTOP); }
    void thawServer() const { _server.signal(SIGCONT); }

    void click(const ScreenRect& area, int button) const {
        QProcess pointer;
        pointer.setProcessEnvironment(environment());
        pointer.start(QStringLiteral("xdotool"),
                      {QStringLiteral("mousemove"), QString::number(area.x + area.width / 2),
                       QString::number(area.y + area.height / 2), QStringLiteral("click"),
                       QString::number(button)});
        pointer.waitForFinished();
    }

    void movePointer(const ScreenRect& area) const {
        QProcess pointer;
        pointer.setProcessEnvironment(environment());
        pointer.start(QStringLiteral("xdotool"),
                      {QStringLiteral("mousemove"), QString::number(area.x + area.width / 2),
                       QString::number(area.y + area.height / 2)});
        pointer.waitForFinished();
    }

    /// Whether there is a window of just that name.
    [[nodiscard]] bool hasWindow(std::string_view name) {
        connect();
        return hasWindow(root(), X11Windows::atom(_xcb, "_NET_WM_NAME"), name);
    }

    /// What the screen shows in this area, as 0xRRGGBB.
    std::vector<std::uint32_t> photograph(const ScreenRect& area) {
        connect();
        xcb_get_image_reply_t* reply = xcb_get_image_reply(
            _xcb,
            xcb_get_image(_xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, root(), static_cast<std::int16_t>(area.x),
                          static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height), ~0U),
            nullptr);
        if (reply == nullptr)
            return {};
        const auto* data = reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(reply));
        std::vector<std::uint32_t> pixels(data, data + xcb_get_image_data_length(reply) / 4);
        std::free(reply);
        std::ranges::transform(pixels, pixels.begin(), [](std::uint32_t pixel) { return pixel & 0xffffffU; });
        return pixels;
    }

    bool shows(const ScreenRect& area, std::uint32_t color) {
        const auto pixels = photograph(area);
        return std::ranges::find(pixels, color) != pixels.end();
    }

private:
    [[nodiscard]] bool isNamed(xcb_window_t window, xcb_atom_t property, std::string_view name) const {
        xcb_get_property_reply_t* reply = xcb_get_property_reply(
            _xcb, xcb_get_property(_xcb, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 256), nullptr);
        if (reply == nullptr)
            return false;
        const std::string_view found(static_cast<const char*>(xcb_get_property_value(reply)),
                                     static_cast<std::size_t>(xcb_get_property_value_length(reply)));
        const bool isIt = found == name;
        std::free(reply);
        return isIt;
    }

    [[nodiscard]] bool hasWindow(xcb_window_t parent, xcb_atom_t property, std::string_view name) const {
        xcb_query_tree_reply_t* reply = xcb_query_tree_reply(_xcb, xcb_query_tree(_xcb, parent), nullptr);
        if (reply == nullptr)
            return false;
        const auto* const first = xcb_query_tree_children(reply);
        const bool has =
            std::any_of(first, first + xcb_query_tree_children_length(reply), [&](xcb_window_t window) {
                return isNamed(window, property, name) || hasWindow(window, property, name);
            });
        std::free(reply);
        return has;
    }

    void connect() {
        if (_xcb == nullptr)
            _xcb = xcb_connect(display().c_str(), nullptr);
    }

    [[nodiscard]] xcb_window_t root() const {
        return xcb_setup_roots_iterator(xcb_get_setup(_xcb)).data->root;
    }

    QProcessEnvironment environment() const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DISPLAY"), QString::fromStdString(display()));
        environment.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
        return environment;
    }

    XServer _server;
    std::unique_ptr<QProcess> _tray;
    xcb_connection_t* _xcb = nullptr;
};

} // namespace selvane::test
