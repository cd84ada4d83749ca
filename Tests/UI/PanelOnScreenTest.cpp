#include "Selvane/Platform/Linux/X11Windows.h"
#include "Selvane/Platform/Linux/XcbReply.h"
#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/EndWithTest.h"
#include "Support/EventLoop.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QRasterWindow>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

/// The panel and another window of the program, as a window manager shows them.
class PanelOnScreenTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        // Also for repetitions: a window manager that takes the place of another isn't noticed at once.
        if (manager)
            return;
        PopoverPanel::prepare();
        manager = new QProcess;
        test::endWithTest(*manager);
        // The windows are to go by its own rules, not by a user's.
        static const QTemporaryDir home;
        writeRules(home.path());
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char* const folder : {"HOME", "XDG_CONFIG_HOME"})
            environment.insert(QLatin1String(folder), home.path());
        manager->setProcessEnvironment(environment);
        manager->start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
        ASSERT_TRUE(test::waitUntil([] { return !property(root(), "_NET_SUPPORTING_WM_CHECK").empty(); }))
            << "these tests need openbox";
    }

    /// It puts windows like the panel where it likes.
    static void writeRules(const QString& settings) {
        const QDir folder(settings);
        ASSERT_TRUE(folder.mkpath(QStringLiteral("openbox")));
        QFile file(folder.filePath(QStringLiteral("openbox/rc.xml")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(
            QStringLiteral("<openbox_config xmlns='http://openbox.org/3.4/rc'><applications>"
                           "<application type='utility'><position force='yes'><x>%1</x><y>%2</y></position>"
                           "</application></applications></openbox_config>")
                .arg(chosenByManager.x())
                .arg(chosenByManager.y())
                .toUtf8());
    }

    PanelOnScreenTest() : panel({&harness.launch(), &appearance, &harness.scheduler, nullptr}) {
        panelWindow = QGuiApplication::topLevelWindows().constFirst();
        mainWindow.setTitle(QStringLiteral("Main"));
        mainWindow.setGeometry(40, 40, 300, 300);
    }

    void SetUp() override {
        mainWindow.show();
        // A window manager that has only just begun leaves the keyboard where it is.
        ASSERT_TRUE(test::waitUntil([this] {
            mainWindow.requestActivate();
            return isActive(mainWindow);
        }));
        panel.setLevel(PanelLevel::floating);
        panel.show({});
        ASSERT_TRUE(test::waitUntil([this] { return isActive(*panelWindow); }));
    }

    static xcb_window_t root() { return X11Windows::screen(X11Windows::connection(), 0)->root; }
    static xcb_window_t number(const QWindow& window) { return static_cast<xcb_window_t>(window.winId()); }

    /// The numbers that a property holds.
    static std::vector<std::uint32_t> property(xcb_window_t window, std::string_view name) {
        xcb_connection_t* const connection = X11Windows::connection();
        return X11Windows::numbers(connection,
                                   xcb_get_property(connection, 0, window, X11Windows::atom(connection, name),
                                                    XCB_GET_PROPERTY_TYPE_ANY, 0, 1000));
    }

    /// On the server.
    static QSize size(const QWindow& window) {
        xcb_connection_t* const connection = X11Windows::connection();
        const XcbReply<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, number(window)), nullptr));
        return reply ? QSize(reply->width, reply->height) : QSize();
    }

    /// On the screen.
    static QPoint place(const QWindow& window) {
        xcb_connection_t* const connection = X11Windows::connection();
        const XcbReply<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, number(window), root(), 0, 0), nullptr));
        return reply ? QPoint(reply->dst_x, reply->dst_y) : QPoint();
    }

    /// As window managers do when the user wants it.
    static void askToClose(const QWindow& window) {
        xcb_connection_t* const connection = X11Windows::connection();
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = number(window);
        message.type = X11Windows::atom(connection, "WM_PROTOCOLS");
        message.data.data32[0] = X11Windows::atom(connection, "WM_DELETE_WINDOW");
        xcb_send_event(connection, 0, message.window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(connection);
    }

    /// From the lowest to the highest.
    static std::vector<std::uint32_t> stack() { return property(root(), "_NET_CLIENT_LIST_STACKING"); }

    static bool isActive(const QWindow& window) {
        return property(root(), "_NET_ACTIVE_WINDOW") == std::vector{number(window)};
    }

    [[nodiscard]] bool isPanelHigher() const {
        const auto windows = stack();
        return std::ranges::find(windows, number(mainWindow)) <
               std::ranges::find(windows, number(*panelWindow));
    }

    [[nodiscard]] bool isPanelKeptAbove() const {
        const auto above = X11Windows::atom(X11Windows::connection(), "_NET_WM_STATE_ABOVE");
        return std::ranges::count(property(number(*panelWindow), "_NET_WM_STATE"), above) == 1;
    }

    /// The user turns to it; window managers raise it then.
    void turnToMainWindow() {
        mainWindow.requestActivate();
        mainWindow.raise();
        ASSERT_TRUE(test::waitUntil([this] { return isActive(mainWindow); }));
    }

    static constexpr QPoint chosenByManager{33, 44};
    static inline QProcess* manager = nullptr;
    test::ModelHarness harness;
    test::FakeAppearance appearance;
    PopoverPanel panel;
    QWindow* panelWindow = nullptr;
    QRasterWindow mainWindow;
};

TEST_F(PanelOnScreenTest, FloatingPanelStaysOverTheMainWindow) {
    EXPECT_TRUE(test::waitUntil([this] { return isPanelKeptAbove(); }));
    turnToMainWindow();
    EXPECT_TRUE(isPanelHigher());
}

TEST_F(PanelOnScreenTest, NormalPanelSinksUnderTheMainWindow) {
    panel.setLevel(PanelLevel::normal);
    EXPECT_TRUE(test::waitUntil([this] { return !isPanelKeptAbove(); }));
    turnToMainWindow();
    EXPECT_TRUE(test::waitUntil([this] { return !isPanelHigher(); }));
}

TEST_F(PanelOnScreenTest, PanelThatFloatsAgainRises) {
    panel.setLevel(PanelLevel::normal);
    turnToMainWindow();
    ASSERT_TRUE(test::waitUntil([this] { return !isPanelHigher(); }));
    panel.setLevel(PanelLevel::floating);
    EXPECT_TRUE(test::waitUntil([this] { return isPanelHigher() && isPanelKeptAbove(); }));
    EXPECT_TRUE(panelWindow->isVisible());
}

TEST_F(PanelOnScreenTest, PanelOfAnotherStyleHasItsNewSizeOnTheServer) {
    const QSize before = size(*panelWindow);
    harness.model().settings().timerStyle.set(TimerStyle::bar);
    ASSERT_TRUE(test::waitUntil([&] { return size(*panelWindow) != before; }));
    EXPECT_TRUE(test::waitUntil([&] { return size(*panelWindow) == panelWindow->minimumSize(); }));
}

TEST_F(PanelOnScreenTest, PanelThatTheWindowManagerClosesComesBackWithItsCorners) {
    int cancelled = 0;
    panel.onCancel = [&] {
        ++cancelled;
        panel.hide();
    };
    const auto corners = panelWindow->mask();
    ASSERT_FALSE(corners.isEmpty());
    askToClose(*panelWindow);
    ASSERT_TRUE(test::waitUntil([&] { return cancelled == 1; }));
    EXPECT_FALSE(panel.isVisible());
    panelWindow->setMask({});
    panel.show({});
    EXPECT_EQ(panelWindow->mask(), corners);
    panel.hide();
    EXPECT_EQ(cancelled, 1) << "nobody else has closed it this time";
}

TEST_F(PanelOnScreenTest, PanelStandsAtItsPlaceWhateverTheWindowManagerChose) {
    const auto standsThere = [this] {
        const ScreenRect frame = panel.frame();
        return place(*panelWindow) == QPoint(frame.x, frame.y) && place(*panelWindow) != chosenByManager;
    };
    EXPECT_TRUE(test::waitUntil(standsThere));
    panel.hide();
    ASSERT_TRUE(test::waitUntil([this] { return isActive(mainWindow); }));
    panel.show({});
    ASSERT_TRUE(test::waitUntil([this] { return isActive(*panelWindow); }));
    EXPECT_TRUE(test::waitUntil(standsThere)) << "when it is opened again";
}

} // namespace
} // namespace selvane
