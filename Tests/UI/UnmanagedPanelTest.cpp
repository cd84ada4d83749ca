#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/FakeAppearance.h"
#include "Support/FakeUnmanagedWindows.h"
#include "Support/ModelHarness.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace selvane {
namespace {

/// The panel where no window manager has a part in it.
class UnmanagedPanelTest : public testing::Test {
protected:
    UnmanagedPanelTest() { make(); }

    void make() {
        panel = std::make_unique<PopoverPanel>(context());
        panel->onTurnedAway = [this] { ++turnedAway; };
        window = QGuiApplication::topLevelWindows().constFirst();
        panel->show({});
    }

    PanelContext context() {
        return {&harness.launch(), &appearance, &harness.scheduler, nullptr, nullptr, nullptr, &windows};
    }

    static void moveKeyboard(QWindow* to) { Q_EMIT qGuiApp->focusWindowChanged(to); }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    test::FakeUnmanagedWindows windows;
    std::unique_ptr<PopoverPanel> panel;
    QWindow* window = nullptr;
    int turnedAway = 0;
};

TEST_F(UnmanagedPanelTest, IsAsAnyOtherWhereSuchWindowsAreNotWelcome) {
    EXPECT_TRUE(window->flags() & Qt::BypassWindowManagerHint);
    panel.reset();
    windows = {};
    windows.isFriendly = false;
    make();
    EXPECT_FALSE(window->flags() & Qt::BypassWindowManagerHint);
    EXPECT_EQ(windows.loans, 0);
}

TEST_F(UnmanagedPanelTest, BorrowsTheKeyboardWhileItIsOpen) {
    EXPECT_EQ(windows.borrower, window->winId());
    panel->hide();
    EXPECT_FALSE(windows.borrower);
    panel->show({});
    EXPECT_EQ(windows.loans, 2);
    EXPECT_TRUE(windows.borrower);
    panel.reset();
    EXPECT_FALSE(windows.borrower) << "a program that ends has given it back";
}

TEST_F(UnmanagedPanelTest, IsDrawnForTheFirstTimeBeforeItAsksForTheKeyboard) {
    panel.reset();
    windows = {};
    std::optional<int> loansWhenDrawn;
    panel = std::make_unique<PopoverPanel>(context());
    auto* const view = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
    ASSERT_NE(view, nullptr);
    QObject::connect(view, &QQuickWindow::afterRendering, view, [&] {
        if (!loansWhenDrawn)
            loansWhenDrawn = windows.loans;
    });
    panel->show({});
    EXPECT_EQ(loansWhenDrawn, 0);
    EXPECT_EQ(windows.loans, 1);
}

TEST_F(UnmanagedPanelTest, TakesTheKeyboardAgainWhenAskedAndWhenPressed) {
    panel->activate();
    EXPECT_EQ(windows.loans, 2);
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    QTest::mousePress(window, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(windows.loans, 3) << "no window manager does it";
    QTest::mouseRelease(window, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(windows.loans, 3);
}

TEST_F(UnmanagedPanelTest, OpenedAgainAtOnceItStillHearsThatItLostTheKeyboard) {
    panel->hide();
    panel->show({});
    // What Qt believes to have the keyboard already it tells nobody of.
    windows.give();
    moveKeyboard(nullptr);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(UnmanagedPanelTest, LossOfAnEarlierOpeningIsNone) {
    windows.give();
    moveKeyboard(nullptr);
    moveKeyboard(window);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(turnedAway, 0);
    moveKeyboard(nullptr);
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(UnmanagedPanelTest, LossBeforeItIsShownOnceMoreIsNone) {
    windows.give();
    moveKeyboard(nullptr);
    panel->show({});
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(turnedAway, 0);
}

TEST_F(UnmanagedPanelTest, NormalLevelIsRightBehindTheWindowWithTheKeyboard) {
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    panel->setLevel(PanelLevel::floating);
    EXPECT_FALSE(windows.lowered);
    panel->setLevel(PanelLevel::normal);
    ASSERT_TRUE(windows.lowered);
    EXPECT_EQ(windows.lowered->first, window->winId());
    EXPECT_EQ(windows.lowered->second, other.winId());
    EXPECT_TRUE(panel->isVisible());
}

} // namespace
} // namespace selvane
