#include "Selvane/Platform/Linux/X11UnmanagedWindows.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"
#include "Support/EnvironmentVariable.h"
#include "Support/EventLoop.h"

#include <QtGui/QRasterWindow>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace selvane::test {
namespace {

/// A screen with windows of another program. Its window manager is the test.
class X11UnmanagedWindowsTest : public testing::Test {
protected:
    void SetUp() override {
        other = xcb_connect(nullptr, nullptr);
        ASSERT_EQ(xcb_connection_has_error(other), 0);
        screen = X11Windows::screen(other, 0);
        windows = X11UnmanagedWindows::make();
        ASSERT_NE(windows, nullptr);
        editor = foreignWindow();
        focus(editor);
        panel.setFlags(Qt::Tool | Qt::BypassWindowManagerHint);
        panel.setGeometry(10, 10, 100, 100);
        panel.show();
    }
    ~X11UnmanagedWindowsTest() override {
        windows.reset();
        xcb_delete_property(other, screen->root, X11Windows::atom(other, "_NET_SUPPORTING_WM_CHECK"));
        (void)focused();
        xcb_disconnect(other);
    }

    xcb_window_t foreignWindow() {
        const xcb_window_t window = xcb_generate_id(other);
        const std::uint32_t unmanaged = 1;
        xcb_create_window(other, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 50, 50, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                          &unmanaged);
        xcb_map_window(other, window);
        return window;
    }
    /// Returns when the server has done it.
    void focus(xcb_window_t window, xcb_timestamp_t time = XCB_CURRENT_TIME) {
        xcb_set_input_focus(other, XCB_INPUT_FOCUS_POINTER_ROOT, window, time);
        (void)focused();
    }
    [[nodiscard]] xcb_window_t focused() const {
        const XcbReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(other, xcb_get_input_focus(other), nullptr));
        constexpr xcb_window_t none = XCB_WINDOW_NONE;
        return reply ? reply->focus : none;
    }
    [[nodiscard]] xcb_window_t number() const { return static_cast<xcb_window_t>(panel.winId()); }

    void lend() {
        windows->lendKeyboard(panel.winId(), [this] { ++given; });
    }
    void lendAndWait() {
        lend();
        ASSERT_TRUE(waitUntil([this] { return given == 1; }));
        ASSERT_EQ(focused(), number());
    }
    /// Has no loss of the keyboard be taken for a late window manager's, or each.
    void defendNever() { windows = X11UnmanagedWindows::make(std::chrono::milliseconds{0}); }
    void defendAlways() { windows = X11UnmanagedWindows::make(std::chrono::hours{1}); }

    void runManager(std::string_view name) {
        const xcb_window_t window = foreignWindow();
        xcb_change_property(other, XCB_PROP_MODE_REPLACE, screen->root,
                            X11Windows::atom(other, "_NET_SUPPORTING_WM_CHECK"), XCB_ATOM_WINDOW, 32, 1,
                            &window);
        xcb_change_property(other, XCB_PROP_MODE_REPLACE, window, X11Windows::atom(other, "_NET_WM_NAME"),
                            X11Windows::atom(other, "UTF8_STRING"), 8,
                            static_cast<std::uint32_t>(name.size()), name.data());
        (void)focused();
    }

    /// The children of the root, from the lowest to the highest.
    [[nodiscard]] std::vector<xcb_window_t> stack() const {
        const XcbReply<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(other, xcb_query_tree(other, screen->root), nullptr));
        const xcb_window_t* const first = xcb_query_tree_children(reply.get());
        return {first, first + xcb_query_tree_children_length(reply.get())};
    }

    xcb_connection_t* other = nullptr;
    xcb_screen_t* screen = nullptr;
    std::unique_ptr<X11UnmanagedWindows> windows;
    xcb_window_t editor = XCB_WINDOW_NONE;
    QRasterWindow panel;
    int given = 0;
};

TEST_F(X11UnmanagedWindowsTest, AreWelcomeUnderWindowManagersThatAreKnown) {
    EXPECT_FALSE(windows->areWelcome());
    runManager("Xfwm4");
    EXPECT_TRUE(windows->areWelcome());
    runManager("Openbox");
    EXPECT_FALSE(windows->areWelcome());
}

TEST_F(X11UnmanagedWindowsTest, KeyboardGoesBackToWhoHadIt) {
    lendAndWait();
    windows->returnKeyboard();
    EXPECT_TRUE(waitUntil([this] { return focused() == editor; }));
    EXPECT_EQ(given, 1);
}

TEST_F(X11UnmanagedWindowsTest, KeyboardLentTwiceGoesBackToWhoHadItFirst) {
    defendNever();
    lendAndWait();
    lend();
    EXPECT_EQ(focused(), number());
    windows->returnKeyboard();
    EXPECT_TRUE(waitUntil([this] { return focused() == editor; }));
}

TEST_F(X11UnmanagedWindowsTest, WhoGotItSinceKeepsIt) {
    defendNever();
    lendAndWait();
    const xcb_window_t clicked = foreignWindow();
    focus(clicked);
    windows->returnKeyboard();
    EXPECT_FALSE(waitUntil([&] { return focused() != clicked; }, std::chrono::milliseconds(200)));
}

TEST_F(X11UnmanagedWindowsTest, ClickOnItsWayComesAfterTheReturn) {
    defendNever();
    lendAndWait();
    const xcb_window_t clicked = foreignWindow();
    // The server's time of now is told by the change of a property, as for a click.
    const std::uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(other, clicked, XCB_CW_EVENT_MASK, &wanted);
    xcb_change_property(other, XCB_PROP_MODE_APPEND, clicked, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(other);
    const XcbReply<xcb_generic_event_t> event(xcb_wait_for_event(other));
    const auto time = reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
    windows->returnKeyboard();
    ASSERT_TRUE(waitUntil([this] { return focused() == editor; }));
    focus(clicked, time);
    EXPECT_EQ(focused(), clicked);
}

TEST_F(X11UnmanagedWindowsTest, WhomALateWindowManagerChoseGetsItWhenItIsReturned) {
    defendAlways();
    lendAndWait();
    const xcb_window_t behind = foreignWindow();
    focus(behind);
    EXPECT_TRUE(waitUntil([this] { return focused() == number(); }));
    windows->returnKeyboard();
    EXPECT_TRUE(waitUntil([&] { return focused() == behind; }));
}

TEST_F(X11UnmanagedWindowsTest, SecondLoanIsKeptFromALateWindowManagerToo) {
    defendAlways();
    lendAndWait();
    lend();
    EXPECT_EQ(given, 2) << "it has it already";
    focus(foreignWindow());
    EXPECT_TRUE(waitUntil([this] { return focused() == number(); }));
}

TEST_F(X11UnmanagedWindowsTest, LateWindowManagerIsOverruledForAMoment) {
    bool isOverruled = false;
    // A machine that is held up may miss it.
    for (int attempt = 0; attempt < 20 && !isOverruled; ++attempt) {
        const int before = given;
        lend();
        ASSERT_TRUE(waitUntil([&] { return given > before; }));
        focus(foreignWindow());
        isOverruled = waitUntil([this] { return focused() == number(); }, std::chrono::milliseconds(200));
        windows->returnKeyboard();
    }
    EXPECT_TRUE(isOverruled);
}

TEST_F(X11UnmanagedWindowsTest, QuarrelEnds) {
    defendAlways();
    lendAndWait();
    const xcb_window_t stubborn = foreignWindow();
    const auto wins = [&] {
        focus(stubborn);
        return !waitUntil([this] { return focused() == number(); }, std::chrono::milliseconds(200));
    };
    int times = 1;
    while (!wins())
        ASSERT_LT(++times, 100);
}

TEST_F(X11UnmanagedWindowsTest, LoanThatEndsBeforeItBeganMovesNothing) {
    lend();
    windows->returnKeyboard();
    EXPECT_FALSE(waitUntil([this] { return focused() != editor; }, std::chrono::milliseconds(200)));
    EXPECT_EQ(given, 0);
}

TEST_F(X11UnmanagedWindowsTest, GuestOfAWaylandDesktopHasNone) {
    const EnvironmentVariable wayland("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(X11UnmanagedWindows::make(), nullptr);
}

TEST_F(X11UnmanagedWindowsTest, KeyboardThatNobodyGetsComesBack) {
    defendNever();
    runManager("Xfwm4");
    lendAndWait();
    focus(XCB_INPUT_FOCUS_POINTER_ROOT);
    EXPECT_TRUE(waitUntil([this] { return focused() == number(); }));
}

TEST_F(X11UnmanagedWindowsTest, WindowThatHasGoneGetsNothingBack) {
    lendAndWait();
    xcb_destroy_window(other, editor);
    (void)focused();
    windows->returnKeyboard();
    panel.hide();
    EXPECT_TRUE(waitUntil([this] { return focused() == XCB_INPUT_FOCUS_NONE; }))
        << "which window managers see to";
}

TEST_F(X11UnmanagedWindowsTest, WindowIsPutBehindTheFrameOfAnother) {
    const xcb_window_t frame = foreignWindow();
    const xcb_window_t framed = foreignWindow();
    xcb_reparent_window(other, framed, frame, 0, 0);
    const xcb_window_t highest = foreignWindow();
    panel.raise();
    ASSERT_TRUE(waitUntil([this] { return stack().back() == number(); }));
    windows->putBehind(panel.winId(), framed);
    ASSERT_TRUE(waitUntil([this] { return stack().back() != number(); }));
    const auto order = stack();
    EXPECT_EQ(std::ranges::find(order, frame) - std::ranges::find(order, number()), 1);
    EXPECT_EQ(order.back(), highest);
}

} // namespace
} // namespace selvane::test
