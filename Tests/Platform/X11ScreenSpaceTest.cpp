#include "Selvane/Platform/Linux/X11ScreenSpace.h"

#include "Selvane/Platform/Linux/X11Windows.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <vector>

namespace selvane::test {
namespace {

/// A screen of 640 by 480 whose window manager and bars are the test.
class X11ScreenSpaceTest : public testing::Test {
protected:
    X11ScreenSpaceTest() : _manager(xcb_connect(nullptr, nullptr)) {}
    ~X11ScreenSpaceTest() override { xcb_disconnect(_manager); }

    void SetUp() override {
        ASSERT_EQ(xcb_connection_has_error(_manager), 0);
        listWindows();
    }

    using Values = std::array<std::uint32_t, 12>;

    xcb_window_t openBar(const Values& strut) {
        const xcb_window_t window = openWindow({100, 100, 10, 10});
        change(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, strut.data(), strut.size());
        return window;
    }

    void openDock(const ScreenRect& area) {
        const xcb_atom_t dock = X11Windows::atom(_manager, "_NET_WM_WINDOW_TYPE_DOCK");
        change(openWindow(area), "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, &dock, 1);
    }

    xcb_window_t openWindow(const ScreenRect& area) {
        const xcb_window_t window = xcb_generate_id(_manager);
        xcb_create_window(_manager, XCB_COPY_FROM_PARENT, window, root(), static_cast<std::int16_t>(area.x),
                          static_cast<std::int16_t>(area.y), static_cast<std::uint16_t>(area.width),
                          static_cast<std::uint16_t>(area.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        _windows.push_back(window);
        listWindows();
        return window;
    }

    void closeBehindTheManagersBack(xcb_window_t window) {
        xcb_destroy_window(_manager, window);
        wait();
    }

    X11ScreenSpace _space;

private:
    [[nodiscard]] xcb_window_t root() const { return X11Windows::screen(_manager, 0)->root; }

    void listWindows() {
        change(root(), "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, _windows.data(), _windows.size());
    }

    void change(xcb_window_t window, const char* name, xcb_atom_t type, const std::uint32_t* values,
                std::size_t count) {
        xcb_change_property(_manager, XCB_PROP_MODE_REPLACE, window, X11Windows::atom(_manager, name), type,
                            32, static_cast<std::uint32_t>(count), values);
        wait();
    }

    /// Until the server has done it.
    void wait() { (void)X11Windows::atom(_manager, "_NET_CLIENT_LIST"); }

    xcb_connection_t* _manager;
    std::vector<xcb_window_t> _windows;
};

constexpr ScreenRect whole{0, 0, 640, 480};

TEST_F(X11ScreenSpaceTest, WithoutBarsItIsTheMonitor) {
    EXPECT_EQ(_space.available(whole), whole);
}

TEST_F(X11ScreenSpaceTest, BarsOfAllProgramsCount) {
    openBar({0, 0, 28, 0, 0, 0, 0, 0, 0, 639, 0, 0});
    openBar({0, 0, 0, 30, 0, 0, 0, 0, 0, 0, 0, 639});
    EXPECT_EQ(_space.available(whole), (ScreenRect{0, 28, 640, 422}));
    EXPECT_EQ(_space.available({0, 100, 640, 380}), (ScreenRect{0, 100, 640, 350}));
}

TEST_F(X11ScreenSpaceTest, DocksThatTellNothingCountAndOtherWindowsDoNot) {
    openDock({0, 452, 640, 28});
    openWindow({0, 0, 640, 28});
    EXPECT_EQ(_space.available(whole), (ScreenRect{0, 0, 640, 452}));
}

TEST_F(X11ScreenSpaceTest, WindowThatHasGoneIsNoBar) {
    const xcb_window_t bar = openBar({0, 0, 28, 0, 0, 0, 0, 0, 0, 639, 0, 0});
    openBar({0, 0, 0, 30, 0, 0, 0, 0, 0, 0, 0, 639});
    closeBehindTheManagersBack(bar);
    EXPECT_EQ(_space.available(whole), (ScreenRect{0, 0, 640, 450}));
}

} // namespace
} // namespace selvane::test
