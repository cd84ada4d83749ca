#include "Selvane/Platform/Linux/X11ActivationMonitor.h"

#include "Selvane/Platform/Linux/X11Windows.h"
#include "Support/EventLoop.h"

#include <QtCore/QAbstractNativeEventFilter>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <string_view>

namespace selvane::test {
namespace {

/// Counts the changes of one property that this program was told of.
class Changes final : public QAbstractNativeEventFilter {
public:
    explicit Changes(xcb_atom_t property) : _property(property) { qGuiApp->installNativeEventFilter(this); }

    bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
        const auto& event = *static_cast<const xcb_generic_event_t*>(message);
        if ((event.response_type & 0x7f) == XCB_PROPERTY_NOTIFY &&
            reinterpret_cast<const xcb_property_notify_event_t&>(event).atom == _property)
            ++_count;
        return false;
    }

    [[nodiscard]] int count() const { return _count; }

private:
    xcb_atom_t _property;
    int _count = 0;
};

/// A screen whose window manager is the test.
class X11ActivationMonitorTest : public testing::Test {
protected:
    X11ActivationMonitorTest() : _manager(xcb_connect(nullptr, nullptr)) {}
    ~X11ActivationMonitorTest() override { xcb_disconnect(_manager); }

    void SetUp() override {
        ASSERT_NE(X11Windows::connection(), nullptr) << "these tests need an X server";
        ASSERT_EQ(xcb_connection_has_error(_manager), 0);
        // The server forgets what was active before.
        activate(XCB_WINDOW_NONE);
    }

    xcb_window_t ownWindow() {
        _window.create();
        return static_cast<xcb_window_t>(_window.winId());
    }
    xcb_window_t foreignWindow() { return xcb_generate_id(_manager); }

    /// Returns when this program was told of it.
    void activate(xcb_window_t window) { change("_NET_ACTIVE_WINDOW", window); }
    void change(std::string_view name, xcb_window_t window) {
        const xcb_atom_t property = X11Windows::atom(_manager, name);
        const Changes changes(property);
        xcb_change_property(_manager, XCB_PROP_MODE_REPLACE, X11Windows::screen(_manager, 0)->root, property,
                            XCB_ATOM_WINDOW, 32, 1, &window);
        xcb_flush(_manager);
        ASSERT_TRUE(waitUntil([&] { return changes.count() > 0; }));
    }

    Subscription watch() {
        return _monitor.watch([this] { ++_told; });
    }

    X11ActivationMonitor _monitor;
    int _told = 0;

private:
    xcb_connection_t* _manager;
    QWindow _window;
};

TEST_F(X11ActivationMonitorTest, TurningToAnotherApplicationIsTold) {
    const auto watching = watch();
    activate(ownWindow());
    EXPECT_EQ(_told, 0);
    activate(foreignWindow());
    EXPECT_EQ(_told, 1);
}

TEST_F(X11ActivationMonitorTest, ActivationThatWasUnderWayWhenThePanelOpenedDoesNotCloseIt) {
    const auto watching = watch();
    activate(foreignWindow());
    activate(XCB_WINDOW_NONE);
    activate(foreignWindow());
    EXPECT_EQ(_told, 0);
    activate(ownWindow());
    activate(foreignWindow());
    EXPECT_EQ(_told, 1) << "that is the user's turning away";
}

TEST_F(X11ActivationMonitorTest, ActivationOfThisProcessIsIgnored) {
    QWindow other;
    other.create();
    const auto watching = watch();
    activate(ownWindow());
    activate(static_cast<xcb_window_t>(other.winId()));
    EXPECT_EQ(_told, 0);
    activate(foreignWindow());
    EXPECT_EQ(_told, 1);
}

TEST_F(X11ActivationMonitorTest, NoWindowIsNobodys) {
    const auto watching = watch();
    activate(ownWindow());
    activate(XCB_WINDOW_NONE);
    EXPECT_EQ(_told, 0);
    activate(foreignWindow());
    EXPECT_EQ(_told, 1) << "the user came from a window of this process all the same";
}

TEST_F(X11ActivationMonitorTest, EachTurnIsToldOnce) {
    const auto watching = watch();
    activate(ownWindow());
    activate(foreignWindow());
    activate(foreignWindow());
    EXPECT_EQ(_told, 1);
    activate(ownWindow());
    activate(foreignWindow());
    EXPECT_EQ(_told, 2);
}

TEST_F(X11ActivationMonitorTest, OtherPropertiesAreNothing) {
    const auto watching = watch();
    activate(ownWindow());
    change("_NET_CLIENT_LIST", foreignWindow());
    EXPECT_EQ(_told, 0);
    activate(foreignWindow());
    EXPECT_EQ(_told, 1);
}

TEST_F(X11ActivationMonitorTest, EndedWatchHearsNothing) {
    auto ended = watch();
    int heard = 0;
    const auto watching = _monitor.watch([&] { ++heard; });
    activate(ownWindow());
    ended.end();
    activate(foreignWindow());
    EXPECT_EQ(_told, 0);
    EXPECT_EQ(heard, 1);
}

TEST_F(X11ActivationMonitorTest, ListenerMayEndItsWatch) {
    Subscription watching;
    watching = _monitor.watch([&] {
        ++_told;
        watching.end();
    });
    activate(ownWindow());
    activate(foreignWindow());
    activate(ownWindow());
    activate(foreignWindow());
    EXPECT_EQ(_told, 1);
}

} // namespace
} // namespace selvane::test
