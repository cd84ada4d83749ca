#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/UI/PanelPlacement.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

namespace selvane {
namespace {

using testing::Contains;
using testing::Not;

/// The names stand in that order, with others between them.
MATCHER_P(IsSupersetInOrder, names, "") {
    auto place = arg.begin();
    for (const char* const name : names) {
        place = std::find(place, arg.end(), name);
        if (place == arg.end()) {
            *result_listener << "misses " << name;
            return false;
        }
    }
    return true;
}

using Names = std::vector<const char*>;

/// The panel as a window of a real Qt platform, driven by keys and clicks.
class PopoverPanelTest : public testing::Test {
protected:
    PopoverPanelTest() : panel({&harness.launch(), &appearance, &harness.scheduler, &windows}) {
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

    /// The name of what has the keyboard.
    [[nodiscard]] std::string focusedName() const {
        QAccessibleInterface* const focused =
            QAccessible::queryAccessibleInterface(window->activeFocusItem());
        return focused ? focused->text(QAccessible::Name).toStdString() : "nothing";
    }

    /// Where Tab goes, beginning with the stop after the main button and ending with it, rotated so that the
    /// phase is first.
    [[nodiscard]] std::vector<std::string> namesOnTheWayRound() const {
        std::vector<std::string> names;
        const std::string start = focusedName();
        do {
            QTest::keyClick(window, Qt::Key_Tab);
            names.push_back(focusedName());
        } while (names.back() != start && names.size() < 40);
        const auto first =
            std::ranges::find_if(names, [](const std::string& name) { return name.starts_with("Phase: "); });
        std::ranges::rotate(names, first);
        return names;
    }

    void showDrift() {
        harness.answers.driftAppName = "News";
        harness.model().focusGuard().changed.emit();
    }

    void showFocusModeProblem() {
        harness.model().settings().focusModeEnabled.set(true);
        harness.answers.focusModeProblem = "No shortcut.";
        harness.model().focusMode().changed.emit();
    }

    /// Whether a control of that name is to be seen.
    [[nodiscard]] bool shows(const QString& name) const {
        QAccessibleInterface* const control = find(QAccessible::queryAccessibleInterface(window), name);
        return control != nullptr && !control->state().invisible;
    }

    [[nodiscard]] QQuickItem* view() const { return window->rootObject()->childItems().constLast(); }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    test::RecordingWindows windows{harness.journal};
    PopoverPanel panel;
    QQuickView* window = nullptr;
    int cancelled = 0;
    int quits = 0;
    int turnedAway = 0;

    static QAccessibleInterface* find(QAccessibleInterface* item, const QString& name) {
        if (item->text(QAccessible::Name) == name)
            return item;
        for (int index = 0; index < item->childCount(); ++index) {
            if (QAccessibleInterface* const found = find(item->child(index), name))
                return found;
        }
        return nullptr;
    }

    [[nodiscard]] bool isMenuOpen() const {
        QAccessibleInterface* const item =
            find(QAccessible::queryAccessibleInterface(window), QStringLiteral("Quit Selvane"));
        return item && !item->state().invisible;
    }

private:
    static void collect(QAccessibleInterface* item, std::map<std::string, QAccessible::Role>& found) {
        if (!item->text(QAccessible::Name).isEmpty())
            found[item->text(QAccessible::Name).toStdString()] = item->role();
        for (int index = 0; index < item->childCount(); ++index)
            collect(item->child(index), found);
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

TEST_F(PopoverPanelTest, TabPassesOverWhatDoesNotApply) {
    harness.model().settings().musicSource.set(MusicSource::none);
    const auto names = namesOnTheWayRound();
    EXPECT_THAT(names, Contains("No music"));
    for (const char* const name : {"Reset", "Volume", "Turn sound on"})
        EXPECT_THAT(names, Not(Contains(name))) << name;
}

TEST_F(PopoverPanelTest, NoteIsAStopOnlyIfItDoesSomething) {
    showDrift();
    EXPECT_THAT(namesOnTheWayRound(), Not(Contains("News is on your distractions list")));
    harness.answers.driftAppName.reset();
    harness.model().focusGuard().changed.emit();
    showFocusModeProblem();
    EXPECT_THAT(namesOnTheWayRound(),
                IsSupersetInOrder(Names{"Choose a task…", "Do Not Disturb isn't set up · Fix", "Start"}));
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
                               {"Phase: Focus", QAccessible::Button},
                               {"More", QAccessible::Button},
                               {"Choose a task…", QAccessible::Button},
                               {"Rain", QAccessible::Button},
                               {"Volume", QAccessible::Slider},
                               {"Turn sound on", QAccessible::Button},
                               {"0-day streak. Hit today's goal to keep it going.", QAccessible::StaticText},
                               {"Session 1 of 4", QAccessible::StaticText}}));
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
}

TEST_F(PopoverPanelTest, MoreMenuHoldsTheRestOfTheProgram) {
    harness.answers.canCheckForUpdates = true;
    harness.model().updater().changed.emit();
    EXPECT_FALSE(shows(QStringLiteral("Quit Selvane"))) << "menus are made when they are first opened";
    const auto choose = [this](const QString& entry) {
        press(QStringLiteral("More"));
        press(entry);
    };
    choose(QStringLiteral("Settings"));
    EXPECT_EQ(harness.journal.count("windows.settings"), 1);
    choose(QStringLiteral("Statistics"));
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
    choose(QStringLiteral("What's New"));
    EXPECT_EQ(harness.model().windowPane(), Pane::whatsNew);
    choose(QStringLiteral("Check for Updates…"));
    EXPECT_EQ(harness.journal.count("updater.check"), 1);
    choose(QStringLiteral("Quit Selvane"));
    EXPECT_EQ(quits, 1);
}

TEST_F(PopoverPanelTest, PhaseMenuSelectsAPhaseWhileIdle) {
    press(QStringLiteral("Phase: Focus"));
    press(QStringLiteral("Long Break"));
    EXPECT_EQ(engine().phase(), Phase::longBreak);
    EXPECT_TRUE(shows(QStringLiteral("Phase: Long Break")));
    EXPECT_FALSE(shows(QStringLiteral("Reset the timer to switch")));
}

TEST_F(PopoverPanelTest, PhaseMenuOpensWhileRunningButOnlyGivesTheReason) {
    engine().start();
    press(QStringLiteral("Phase: Focus"));
    EXPECT_TRUE(shows(QStringLiteral("Reset the timer to switch")));
}

TEST_F(PopoverPanelTest, TaskPickerChoosesAndClearsTheCurrentTask) {
    harness.model().addTask("Write");
    harness.model().addTask("Read");
    press(QStringLiteral("Choose a task…"));
    EXPECT_FALSE(shows(QStringLiteral("No task")));
    EXPECT_FALSE(shows(QStringLiteral("Add tasks below to focus on one")));
    press(QStringLiteral("Read"));
    ASSERT_TRUE(harness.model().currentTask());
    EXPECT_EQ(harness.model().currentTask()->title, "Read");
    press(QStringLiteral("Read"));
    press(QStringLiteral("No task"));
    EXPECT_FALSE(harness.model().currentTaskID());
}

TEST_F(PopoverPanelTest, TaskPickerWithoutTasksHoldsOnlyTheHint) {
    press(QStringLiteral("Choose a task…"));
    EXPECT_TRUE(shows(QStringLiteral("Add tasks below to focus on one")));
    EXPECT_FALSE(shows(QStringLiteral("No task")));
}

TEST_F(PopoverPanelTest, MusicMenuChoosesSoundsAndSources) {
    press(QStringLiteral("Rain"));
    press(QStringLiteral("Pink noise"));
    EXPECT_EQ(harness.model().settings().ambientSound(), AmbientSound::pink);
    press(QStringLiteral("Pink noise"));
    press(QStringLiteral("Spotify"));
    EXPECT_EQ(harness.model().settings().musicSource(), MusicSource::spotify);
    press(QStringLiteral("Open Spotify"));
    EXPECT_EQ(harness.journal.count("music.open"), 1);
    press(QStringLiteral("Turn sound on"));
    EXPECT_EQ(harness.journal.count("music.play"), 1);
}

TEST_F(PopoverPanelTest, VolumeSliderIsThereForAmbientSoundAlone) {
    EXPECT_TRUE(shows(QStringLiteral("Volume")));
    for (const MusicSource source : {MusicSource::appleMusic, MusicSource::spotify, MusicSource::none}) {
        harness.model().settings().musicSource.set(source);
        EXPECT_FALSE(shows(QStringLiteral("Volume"))) << rawValue(source);
    }
}

TEST_F(PopoverPanelTest, ArrowsOfTheVolumeSliderSetTheVolume) {
    while (focusedName() != "Volume")
        QTest::keyClick(window, Qt::Key_Tab);
    QTest::keyClick(window, Qt::Key_Right);
    EXPECT_DOUBLE_EQ(harness.model().settings().musicVolume(), 0.65);
}

TEST_F(PopoverPanelTest, KeysSelectTheTabs) {
    EXPECT_EQ(view()->property("tab"), QVariant(PopoverModel::Tasks));
    QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(view()->property("tab"), QVariant(PopoverModel::Progress));
    QTest::keyClick(window, Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(view()->property("tab"), QVariant(PopoverModel::Tasks));
}

TEST_F(PopoverPanelTest, ClickSelectsATab) {
    click(QStringLiteral("Progress"));
    EXPECT_EQ(view()->property("tab"), QVariant(PopoverModel::Progress));
}

TEST_F(PopoverPanelTest, KeysOpenStatisticsAndSettings) {
    harness.model().setWindowPane(Pane::music);
    QTest::keyClick(window, Qt::Key_S, Qt::ControlModifier);
    EXPECT_EQ(harness.model().windowPane(), Pane::statistics);
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
    QTest::keyClick(window, Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_EQ(harness.journal.count("windows.settings"), 1);
}

TEST_F(PopoverPanelTest, EscapeClosesAnOpenMenuAndNothingElse) {
    click(QStringLiteral("More"));
    ASSERT_TRUE(shows(QStringLiteral("Quit Selvane")));
    ASSERT_TRUE(QTest::qWaitFor([this] { return isMenuOpen(); }));
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !isMenuOpen(); }));
    EXPECT_EQ(cancelled, 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedName() == "Start"; }))
        << "the keyboard is back where it was";
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
}

TEST_F(PopoverPanelTest, ClickOnTheNoteDoesWhatItOffers) {
    const auto name = QStringLiteral("Do Not Disturb isn't set up · Fix");
    showFocusModeProblem();
    QAccessibleInterface* const note = find(QAccessible::queryAccessibleInterface(window), name);
    // An item without a size of its own tells its parent's.
    ASSERT_TRUE(QTest::qWaitFor([&] { return note->rect().height() == 16; })) << "the words have faded in";
    click(name);
    EXPECT_EQ(harness.model().windowPane(), Pane::focus);
    EXPECT_EQ(focusedText(), QStringLiteral("Start")) << "a click leaves the keyboard where it is";
}

TEST_F(PopoverPanelTest, HeightIsTheSameWhateverItShows) {
    const QSize size = window->size();
    const auto expectSame = [&](const char* what) {
        QTest::qWait(0);
        EXPECT_EQ(window->size(), size) << what;
        EXPECT_EQ(view()->height(), view()->implicitHeight()) << what;
    };
    QTest::keyClick(window, Qt::Key_2, Qt::ControlModifier);
    expectSame("progress");
    showDrift();
    expectSame("a note");
    harness.model().addTask("Write");
    expectSame("a task");
    engine().start();
    expectSame("running");
    harness.model().settings().musicSource.set(MusicSource::none);
    expectSame("no music");
    for (const TimerStyle style : allCases<TimerStyle>) {
        harness.model().settings().timerStyle.set(style);
        panel.hide();
        panel.show({});
        EXPECT_EQ(window->minimumSize(), window->maximumSize()) << rawValue(style);
    }
}

TEST_F(PopoverPanelTest, ShadowHasAClearMarginWhereWindowsMayBeClear) {
    const QSize card = window->size();
    EXPECT_FALSE(window->mask().isEmpty()) << "its corners are cut off";
    EXPECT_FALSE(window->mask().contains(QPoint(1, 1)));
    EXPECT_TRUE(window->mask().contains(QPoint(card.width() / 2, 1)));
    appearance.setComposited(true);
    panel.hide();
    panel.show({});
    EXPECT_EQ(window->size(), card + QSize(2, 2) * PanelPlacement::shadowMargin);
    EXPECT_TRUE(window->mask().isEmpty());
    appearance.setComposited(false);
    panel.hide();
    panel.show({});
    EXPECT_EQ(window->size(), card);
    EXPECT_FALSE(window->mask().isEmpty());
}

TEST_F(PopoverPanelTest, CardStandsAtTheSamePlaceWithAndWithoutItsShadow) {
    StatusItemAnchor anchor;
    anchor.pointer = ScreenPoint{400, 10};
    panel.hide();
    panel.show(anchor);
    const QPoint card = window->position();
    appearance.setComposited(true);
    panel.hide();
    panel.show(anchor);
    EXPECT_EQ(window->position() + QPoint(1, 1) * PanelPlacement::shadowMargin, card);
}

TEST_F(PopoverPanelTest, ClickInTheClearMarginTurnsAwayOnceItIsReleased) {
    appearance.setComposited(true);
    panel.hide();
    panel.show({});
    ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(5, 200));
    EXPECT_EQ(turnedAway, 0);
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(5, 200));
    EXPECT_EQ(turnedAway, 1);
    QTest::mouseClick(window, Qt::LeftButton, {},
                      QPoint(PanelPlacement::shadowMargin + 5, PanelPlacement::shadowMargin + 5));
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(PopoverPanelTest, RecoveryIsToldUntilTheUserHasSeenIt) {
    harness.model().setRecoveryNotice("Selvane restored your tasks.", AppModel::Recovery::complete);
    EXPECT_THAT(accessibleItems(), Contains(std::pair<std::string, QAccessible::Role>(
                                       "Selvane restored your tasks.", QAccessible::AlertMessage)));
    press(QStringLiteral("Selvane restored your tasks."));
    EXPECT_FALSE(shows(QStringLiteral("Selvane restored your tasks.")));
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
