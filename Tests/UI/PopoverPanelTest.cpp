#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane {
namespace {

using testing::Contains;
using testing::Key;

/// The panel as a window of a real Qt platform, driven by keys and clicks.
class PopoverPanelTest : public testing::Test {
protected:
    PopoverPanelTest() : panel({&harness.launch(), &appearance}) {
        EXPECT_TRUE(panel.isReady());
        window = qobject_cast<QQuickView*>(QGuiApplication::topLevelWindows().constFirst());
        panel.onCancel = [this] { ++cancelled; };
        panel.onQuit = [this] { ++quits; };
        panel.onTurnedAway = [this] { ++turnedAway; };
        panel.show({});
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    }

    TimerEngine& engine() { return harness.model().engine(); }

    /// Names and roles of everything that assistive technology is told of.
    [[nodiscard]] std::map<std::string, QAccessible::Role> accessibleItems() const {
        std::map<std::string, QAccessible::Role> found;
        collect(QAccessible::queryAccessibleInterface(window), found);
        return found;
    }

    /// Does to the control of that name what a screen reader does to press it.
    void press(const QString& name) const {
        QAccessibleInterface* const control = find(QAccessible::queryAccessibleInterface(window), name);
        ASSERT_NE(control, nullptr) << name.toStdString();
        ASSERT_NE(control->actionInterface(), nullptr);
        control->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    /// Clicks the control of that name with the mouse.
    void click(const QString& name) const {
        QAccessibleInterface* const control = find(QAccessible::queryAccessibleInterface(window), name);
        ASSERT_NE(control, nullptr) << name.toStdString();
        QTest::mouseClick(window, Qt::LeftButton, {}, window->mapFromGlobal(control->rect().center()));
    }

    [[nodiscard]] QString focusedText() const {
        return window->activeFocusItem() ? window->activeFocusItem()->property("text").toString() : QString();
    }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    PopoverPanel panel;
    QQuickView* window = nullptr;
    int cancelled = 0;
    int quits = 0;
    int turnedAway = 0;

private:
    static void collect(QAccessibleInterface* item, std::map<std::string, QAccessible::Role>& found) {
        if (!item->text(QAccessible::Name).isEmpty())
            found[item->text(QAccessible::Name).toStdString()] = item->role();
        for (int index = 0; index < item->childCount(); ++index)
            collect(item->child(index), found);
    }

    static QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
        if (item->text(QAccessible::Name) == name)
            return item;
        for (int index = 0; index < item->childCount(); ++index) {
            if (QAccessibleInterface* const found = find(item->child(index), name))
                return found;
        }
        return nullptr;
    }
};

TEST_F(PopoverPanelTest, SpaceStartsPausesAndResumes) {
    EXPECT_EQ(focusedText(), QStringLiteral("Start"));
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isPaused());
    EXPECT_EQ(focusedText(), QStringLiteral("Resume"));
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_TRUE(engine().isRunning());
    QTest::keyClick(window, Qt::Key_Enter);
    EXPECT_TRUE(engine().isPaused());
}

TEST_F(PopoverPanelTest, TabVisitsEveryControlThatApplies) {
    engine().start();
    QStringList visited;
    for (int step = 0; step < 4; ++step) {
        visited << focusedText();
        QTest::keyClick(window, Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(u' ').toStdString(), "Pause Skip Quit Reset");
    EXPECT_EQ(focusedText(), QStringLiteral("Pause")) << "and round again";
}

TEST_F(PopoverPanelTest, TabPassesOverADisabledReset) {
    QTest::keyClick(window, Qt::Key_Tab);
    QTest::keyClick(window, Qt::Key_Tab);
    EXPECT_EQ(focusedText(), QStringLiteral("Quit"));
    QTest::keyClick(window, Qt::Key_Tab);
    EXPECT_EQ(focusedText(), QStringLiteral("Start"));
}

TEST_F(PopoverPanelTest, KeyboardReachesSkipAndReset) {
    QTest::keyClick(window, Qt::Key_Tab);
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_EQ(engine().phase(), Phase::shortBreak);
    engine().start();
    QTest::keyClick(window, Qt::Key_Backtab);
    QTest::keyClick(window, Qt::Key_Backtab);
    EXPECT_EQ(focusedText(), QStringLiteral("Reset"));
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isIdle());
}

TEST_F(PopoverPanelTest, EscapeCancelsAndControlQQuits) {
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
    QTest::keyClick(window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 1);
}

TEST_F(PopoverPanelTest, LosingTheKeyboardTurnsAway) {
    QWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(PopoverPanelTest, HidingIsNoTurningAway) {
    panel.hide();
    QCoreApplication::processEvents();
    EXPECT_EQ(turnedAway, 0);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(PopoverPanelTest, ScreenReaderFindsEveryControlAndTheTimer) {
    EXPECT_THAT(
        accessibleItems(),
        testing::IsSupersetOf({std::pair<std::string, QAccessible::Role>{"Start", QAccessible::Button},
                               {"Reset", QAccessible::Button},
                               {"Skip", QAccessible::Button},
                               {"Quit Selvane", QAccessible::Button},
                               {"Focus", QAccessible::StaticText},
                               {"Session 1 of 4", QAccessible::StaticText},
                               {"Today: 0m of your 50m goal", QAccessible::StaticText},
                               {"25:00 remaining", QAccessible::StaticText}}));
}

TEST_F(PopoverPanelTest, ScreenReaderPressesTheControls) {
    press(QStringLiteral("Start"));
    EXPECT_TRUE(engine().isRunning());
    press(QStringLiteral("Pause"));
    EXPECT_TRUE(engine().isPaused());
    press(QStringLiteral("Reset"));
    EXPECT_TRUE(engine().isIdle());
    press(QStringLiteral("Skip"));
    EXPECT_EQ(engine().phase(), Phase::shortBreak);
    press(QStringLiteral("Quit Selvane"));
    EXPECT_EQ(quits, 1);
}

TEST_F(PopoverPanelTest, FailureToSaveIsShownAndThePanelKeepsItsHeight) {
    const int height = window->height();
    harness.folder.write("Selvane", "a file where the folder should be");
    engine().start();
    harness.pass(Seconds{61});
    engine().reset();
    ASSERT_TRUE(harness.model().saveError());
    QCoreApplication::processEvents();
    EXPECT_EQ(window->height(), height);
    EXPECT_THAT(accessibleItems(), Contains(std::pair<std::string, QAccessible::Role>(
                                       *harness.model().saveError(), QAccessible::AlertMessage)));
}

TEST_F(PopoverPanelTest, KeyboardGoesBackToTheMainButtonAfterReset) {
    engine().start();
    QTest::keyClick(window, Qt::Key_Backtab);
    EXPECT_EQ(focusedText(), QStringLiteral("Reset"));
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isIdle());
    EXPECT_EQ(focusedText(), QStringLiteral("Start"));
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
}

TEST_F(PopoverPanelTest, ClickOnAControlLeavesTheKeyboardWithTheMainButton) {
    click(QStringLiteral("Skip"));
    EXPECT_EQ(engine().phase(), Phase::shortBreak);
    EXPECT_EQ(focusedText(), QStringLiteral("Start"));
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
    click(QStringLiteral("Reset"));
    EXPECT_TRUE(engine().isIdle());
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
}

TEST_F(PopoverPanelTest, EveryOpeningGivesTheKeyboardToTheMainButton) {
    QTest::keyClick(window, Qt::Key_Tab);
    EXPECT_EQ(focusedText(), QStringLiteral("Skip"));
    panel.hide();
    panel.show({});
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(focusedText(), QStringLiteral("Start"));
}

TEST_F(PopoverPanelTest, PanelThatIsShownTwiceStillHearsThatItLostTheKeyboard) {
    panel.show({});
    QWindow other;
    other.show();
    other.requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(PopoverPanelTest, SizeIsFixed) {
    EXPECT_EQ(window->minimumSize(), window->size());
    EXPECT_EQ(window->maximumSize(), window->size());
}

TEST_F(PopoverPanelTest, KeepsItsWidth) {
    EXPECT_EQ(window->width(), 348);
}

} // namespace
} // namespace selvane
