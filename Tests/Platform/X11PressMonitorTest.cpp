#include "Selvane/Platform/Linux/X11PressMonitor.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Support/EndWithTest.h"
#include "Support/EventLoop.h"

#include <QtCore/QProcess>
#include <QtGui/QWindow>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <string>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A screen without a window manager, with a window of this program in it and a mouse.
class X11PressMonitorTest : public testing::Test {
protected:
    X11PressMonitorTest() {
        _window.setFlags(Qt::FramelessWindowHint);
        _window.setGeometry(100, 100, 200, 200);
        _window.show();
    }

    void SetUp() override {
        ASSERT_NE(X11Windows::connection(), nullptr) << "these tests need an X server";
        ASSERT_TRUE(waitUntil([this] { return _window.isExposed(); }));
    }

    /// Does what xdotool calls by these words. It all has happened when this returns, and nothing of it was
    /// read here yet.
    static void use(const QString& words) {
        QProcess hand;
        endWithTest(hand);
        hand.start(QStringLiteral("xdotool"), words.split(QLatin1Char(' ')));
        ASSERT_TRUE(hand.waitForFinished());
        ASSERT_EQ(hand.exitCode(), 0) << hand.readAllStandardError().toStdString();
    }

    Subscription watch(std::vector<std::string>& heard) {
        return _monitor.watch({.onPress = [&heard] { heard.emplace_back("press"); },
                               .onRelease = [&heard] { heard.emplace_back("release"); }});
    }

    /// Returns what was heard until as many buttons were released.
    const std::vector<std::string>& heardAfter(int releases) {
        EXPECT_TRUE(waitUntil([&] { return std::ranges::count(_heard, "release") >= releases; }));
        return _heard;
    }

    const QString _inside = QStringLiteral("mousemove 200 200");
    const QString _outside = QStringLiteral("mousemove 500 400");
    X11PressMonitor _monitor;
    std::vector<std::string> _heard;
    QWindow _window;
};

class X11PressMonitorButtons : public X11PressMonitorTest, public testing::WithParamInterface<int> {};

TEST_P(X11PressMonitorButtons, PressOutsideIsToldWithItsRelease) {
    const auto watching = watch(_heard);
    use(_outside + QStringLiteral(" click %1").arg(GetParam()));
    EXPECT_THAT(heardAfter(1), ElementsAre("press", "release"));
}

TEST_P(X11PressMonitorButtons, PressOnAWindowOfThisProgramIsNot) {
    const auto watching = watch(_heard);
    use(_inside + QStringLiteral(" click %1").arg(GetParam()));
    EXPECT_THAT(heardAfter(1), ElementsAre("release"));
}

// The left, the middle and the right one, and the two at the side of a mouse.
INSTANTIATE_TEST_SUITE_P(Of, X11PressMonitorButtons, testing::Values(1, 2, 3, 8, 9));

TEST_F(X11PressMonitorTest, TurningTheWheelIsNoPress) {
    const auto watching = watch(_heard);
    use(_outside + QStringLiteral(" click 4 click 5 click 6 click 7 click 1"));
    EXPECT_THAT(heardAfter(1), ElementsAre("press", "release"));
}

TEST_F(X11PressMonitorTest, PressAfterAReleaseIsToldAfterIt) {
    use(_inside + QStringLiteral(" mousedown 1"));
    const auto watching = watch(_heard);
    use(QStringLiteral("mouseup 1 ") + _outside + QStringLiteral(" sleep 0.05 mousedown 1"));
    EXPECT_TRUE(waitUntil([this] { return _heard.size() == 2; }));
    EXPECT_THAT(_heard, ElementsAre("release", "press"));
    use(QStringLiteral("mouseup 1"));
    EXPECT_THAT(heardAfter(2), ElementsAre("release", "press", "release"));
}

TEST_F(X11PressMonitorTest, WindowInAFrameOfTheWindowManagerIsThisProgramsOwn) {
    xcb_connection_t* const manager = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = X11Windows::screen(manager, 0)->root;
    const xcb_window_t frame = xcb_generate_id(manager);
    const auto window = static_cast<xcb_window_t>(_window.winId());
    xcb_create_window(manager, XCB_COPY_FROM_PARENT, frame, root, 300, 200, 220, 230, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(manager, frame);
    // Does not return before the server has done it.
    EXPECT_EQ(xcb_request_check(manager, xcb_reparent_window_checked(manager, window, frame, 10, 20)),
              nullptr);
    const auto watching = watch(_heard);
    use(QStringLiteral("mousemove 400 300 click 1"));
    EXPECT_THAT(heardAfter(1), ElementsAre("release"));
    use(_inside + QStringLiteral(" click 1"));
    EXPECT_THAT(heardAfter(2), ElementsAre("release", "press", "release")) << "it isn't there any more";
    EXPECT_EQ(xcb_request_check(manager, xcb_reparent_window_checked(manager, window, root, 0, 0)), nullptr);
    xcb_disconnect(manager);
}

TEST_F(X11PressMonitorTest, EndedWatchHearsNothing) {
    std::vector<std::string> endedHeard;
    auto ended = watch(endedHeard);
    const auto watching = watch(_heard);
    ended.end();
    use(_outside + QStringLiteral(" click 1"));
    EXPECT_THAT(heardAfter(1), ElementsAre("press", "release"));
    EXPECT_THAT(endedHeard, IsEmpty());
}

TEST_F(X11PressMonitorTest, WhatHappenedBeforeTheWatchIsNoNews) {
    watch(_heard).end();
    auto watching = watch(_heard);
    use(_outside + QStringLiteral(" click 1"));
    watching.end();
    watching = watch(_heard);
    use(_inside + QStringLiteral(" click 3"));
    EXPECT_THAT(heardAfter(1), ElementsAre("release"));
    use(QStringLiteral("click 3"));
    EXPECT_THAT(heardAfter(2), ElementsAre("release", "release"));
}

TEST_F(X11PressMonitorTest, ListenerMayEndItsWatch) {
    int presses = 0;
    Subscription ending;
    ending = _monitor.watch({.onPress =
                                 [&] {
                                     ++presses;
                                     ending.end();
                                 },
                             .onRelease = nullptr});
    const auto watching = watch(_heard);
    use(_outside + QStringLiteral(" click 1 click 3"));
    heardAfter(2);
    EXPECT_EQ(presses, 1) << "also of what was read together";
}

} // namespace
} // namespace selvane::test
