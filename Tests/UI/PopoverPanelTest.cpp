#include "Selvane/UI/Popover/PopoverPanel.h"

#include "Selvane/UI/Commands.h"
#include "Selvane/UI/PanelPlacement.h"
#include "Support/FakeAppearance.h"
#include "Support/ModelHarness.h"
#include "Support/RecordingWindows.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QQuickItem>
#include <QScreen>
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
using testing::ElementsAre;
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
        window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
        panel.onCancel = [this] { ++cancelled; };
        panel.onQuit = [this] { ++quits; };
        panel.onTurnedAway = [this] { ++turnedAway; };
        panel.show({});
        EXPECT_TRUE(QTest::qWaitForWindowActive(window));
        // The page comes with the second frame.
        EXPECT_TRUE(QTest::qWaitFor([this] { return shows(QStringLiteral("Add a task…")); }));
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

    /// The keyboard goes to another program, which the platform of these tests doesn't know.
    static void loseKeyboard() {
        Q_EMIT qGuiApp->focusWindowChanged(nullptr);
        QCoreApplication::sendPostedEvents();
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

    [[nodiscard]] QQuickItem* view() const {
        return window->contentItem()->childItems().constFirst()->childItems().constLast();
    }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    test::RecordingWindows windows{harness.journal};
    PopoverPanel panel;
    QQuickWindow* window = nullptr;
    int cancelled = 0;
    int quits = 0;
    int turnedAway = 0;

    static QAccessibleInterface* find(QAccessibleInterface* item, const QString& name,
                                      QAccessible::Role role = QAccessible::NoRole) {
        if (item->text(QAccessible::Name) == name && (role == QAccessible::NoRole || item->role() == role))
            return item;
        for (int index = 0; index < item->childCount(); ++index) {
            if (QAccessibleInterface* const found = find(item->child(index), name, role))
                return found;
        }
        return nullptr;
    }

    /// The rows of the open menu of that title from top to bottom; a separator is a dash.
    [[nodiscard]] std::vector<std::string> menuRows(const QString& title) const {
        const QQuickItem* const menu = openMenu(title);
        std::vector<const QQuickItem*> rows;
        if (menu)
            collectRows(menu, rows);
        std::ranges::sort(rows, {}, [](const QQuickItem* row) { return row->mapToScene({}).y(); });
        std::vector<std::string> texts;
        for (const QQuickItem* const row : rows)
            texts.push_back(isSeparator(row) ? "—" : row->property("text").toString().toStdString());
        return texts;
    }

    /// The open menu of that title, without its shadow, as an item of the window; null if there is none.
    [[nodiscard]] const QQuickItem* openMenu(const QString& title) const {
        QAccessibleInterface* const menu =
            find(QAccessible::queryAccessibleInterface(window), title, QAccessible::PopupMenu);
        const auto* const background = menu ? qobject_cast<QQuickItem*>(menu->object()) : nullptr;
        return background && background->isVisible() ? background->parentItem() : nullptr;
    }

    /// A row of an open menu.
    [[nodiscard]] const QQuickItem* menuRow(const QString& title, const QString& text) const {
        std::vector<const QQuickItem*> rows;
        if (const QQuickItem* const menu = openMenu(title))
            collectRows(menu, rows);
        const auto row = std::ranges::find_if(
            rows, [&](const QQuickItem* candidate) { return candidate->property("text") == text; });
        return row == rows.end() ? nullptr : *row;
    }

    static bool isSeparator(const QQuickItem* item) { return item->inherits("QQuickMenuSeparator"); }

    static void collectRows(const QQuickItem* item, std::vector<const QQuickItem*>& rows) {
        for (const QQuickItem* const child : item->childItems()) {
            if (!child->isVisible())
                continue;
            if (child->inherits("QQuickMenuItem") || isSeparator(child))
                rows.push_back(child);
            else
                collectRows(child, rows);
        }
    }

    /// What of that class lies in an item.
    static void collectItems(const QQuickItem* item, const char* name,
                             std::vector<const QQuickItem*>& found) {
        for (const QQuickItem* const child : item->childItems()) {
            if (child->inherits(name))
                found.push_back(child);
            collectItems(child, name, found);
        }
    }

    /// Gives the keyboard to the control of that name, as Tab does.
    void tabTo(const std::string& name) {
        for (int stop = 0; stop < 40 && focusedName() != name; ++stop)
            QTest::keyClick(window, Qt::Key_Tab);
        ASSERT_EQ(focusedName(), name);
    }

    void typeMinutes() {
        click(QStringLiteral("25:00 remaining"));
        ASSERT_TRUE(QTest::qWaitFor([this] { return focusedName() == "Minutes"; }));
        QTest::keyClick(window, Qt::Key_4);
        QTest::keyClick(window, Qt::Key_0);
    }

    void showInAClearMargin(const StatusItemAnchor& anchor = {}) {
        appearance.setComposited(true);
        panel.hide();
        panel.show(anchor);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
    }

    /// The card, in the window.
    [[nodiscard]] QRectF card() const { return view()->mapRectToScene({{}, view()->size()}); }

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

TEST_F(PopoverPanelTest, WindowThatSomebodyElseClosesCancels) {
    window->close();
    EXPECT_EQ(cancelled, 1);
    panel.hide();
    panel.show({});
    panel.hide();
    EXPECT_EQ(cancelled, 1);
}

TEST_F(PopoverPanelTest, IsAClearToolWindowInFrontOfEverything) {
    EXPECT_EQ(window->type(), Qt::Tool) << "it gets the keyboard, but is no main window";
    EXPECT_TRUE(window->flags() & Qt::FramelessWindowHint);
    EXPECT_TRUE(window->flags() & Qt::WindowStaysOnTopHint);
    EXPECT_EQ(window->color(), QColor(Qt::transparent));
    EXPECT_EQ(window->requestedFormat().alphaBufferSize(), 8);
}

TEST_F(PopoverPanelTest, LevelIsThatOfOtherWindowsOrAboveThem) {
    panel.setLevel(PanelLevel::normal);
    EXPECT_FALSE(window->flags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(panel.isVisible());
    panel.setLevel(PanelLevel::floating);
    EXPECT_TRUE(window->flags() & Qt::WindowStaysOnTopHint);
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(PopoverPanelTest, FrameIsThatOfTheCard) {
    const auto expectCardOf = [this](QRect frame) {
        EXPECT_EQ(panel.frame(), (ScreenRect{frame.x(), frame.y(), frame.width(), frame.height()}));
    };
    expectCardOf(window->geometry());
    showInAClearMargin();
    const int margin = PanelPlacement::shadowMargin;
    expectCardOf(window->geometry().adjusted(margin, margin, -margin, -margin));
}

TEST_F(PopoverPanelTest, LosingTheKeyboardTurnsAway) {
    loseKeyboard();
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(PopoverPanelTest, KeyboardInAnotherWindowOfTheProgramIsNoTurningAway) {
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(turnedAway, 0);
    loseKeyboard();
    EXPECT_EQ(turnedAway, 1) << "from there to another program";
}

TEST_F(PopoverPanelTest, TakesTheKeyboardBackWhenAsked) {
    QWindow other;
    other.show();
    other.requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    panel.activate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_EQ(turnedAway, 0);
}

TEST_F(PopoverPanelTest, HidingIsNoTurningAway) {
    panel.hide();
    QCoreApplication::processEvents();
    EXPECT_EQ(turnedAway, 0);
    EXPECT_FALSE(panel.isVisible());
}

TEST_F(PopoverPanelTest, ScreenReaderFindsEveryControlAndTheTimer) {
    EXPECT_THAT(accessibleItems(),
                testing::IsSupersetOf(
                    {std::pair<std::string, QAccessible::Role>{"Start", QAccessible::Button},
                     {"Reset", QAccessible::Button},
                     {"Skip", QAccessible::Button},
                     {"Phase: Focus", QAccessible::Button},
                     {"More", QAccessible::Button},
                     {"Focus icon", QAccessible::Button},
                     {"25:00 remaining", QAccessible::Button},
                     {"Choose a task…", QAccessible::Button},
                     {"Rain", QAccessible::Button},
                     {"Volume", QAccessible::Slider},
                     {"Turn sound on", QAccessible::Button},
                     {"Progress", QAccessible::PageTab},
                     {"Add a task…", QAccessible::EditableText},
                     {"0-day streak. Hit today's goal to keep it going.", QAccessible::StaticText}}));
}

TEST_F(PopoverPanelTest, ScreenReaderFollowsTheTimer) {
    engine().start();
    harness.pass(Seconds{61});
    EXPECT_THAT(accessibleItems(), Contains(std::pair<std::string, QAccessible::Role>(
                                       "23:59 remaining", QAccessible::StaticText)));
    engine().pause();
    EXPECT_TRUE(shows(QStringLiteral("Session 1 of 4 · paused")));
}

TEST_F(PopoverPanelTest, ScreenReaderFindsTheCycleInWordsAndInDashes) {
    const auto descriptions = [this] {
        std::vector<std::string> found;
        std::vector<QAccessibleInterface*> left{QAccessible::queryAccessibleInterface(window)};
        while (!left.empty()) {
            QAccessibleInterface* const item = left.back();
            left.pop_back();
            if (item->text(QAccessible::Name) == QStringLiteral("Session 1 of 4"))
                found.push_back(item->text(QAccessible::Description).toStdString());
            for (int index = 0; index < item->childCount(); ++index)
                left.push_back(item->child(index));
        }
        return found;
    };
    EXPECT_THAT(descriptions(), testing::UnorderedElementsAre("", "Session 1 of 4 before a long break"));
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

TEST_F(PopoverPanelTest, SoundsSymbolGivesWayToTheOther) {
    const auto* const button = qobject_cast<QQuickItem*>(
        find(QAccessible::queryAccessibleInterface(window), QStringLiteral("Turn sound on"))->object());
    std::vector<const QQuickItem*> symbols;
    collectItems(button, "selvane::Symbol", symbols);
    ASSERT_EQ(symbols.size(), 1U);
    harness.answers.isMusicPlaying = true;
    harness.model().music().changed.emit();
    EXPECT_EQ(symbols.front()->property("shown").toString(), QStringLiteral("speaker.slash"));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        return symbols.front()->property("shown").toString() == QStringLiteral("speaker.wave.2.fill");
    }));
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

TEST_F(PopoverPanelTest, ScreenReaderSetsTheVolume) {
    QAccessibleInterface* const slider =
        find(QAccessible::queryAccessibleInterface(window), QStringLiteral("Volume"), QAccessible::Slider);
    ASSERT_NE(slider, nullptr);
    slider->valueInterface()->setCurrentValue(0.25);
    EXPECT_DOUBLE_EQ(harness.model().settings().musicVolume(), 0.25);
    slider->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    EXPECT_DOUBLE_EQ(harness.model().settings().musicVolume(), 0.3);
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
                                       "Selvane restored your tasks.", QAccessible::Button)))
        << "a note that does something is a button, also one that warns";
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

TEST_F(PopoverPanelTest, ClickOnResetLeavesTheKeyboardWhereSomethingIsTyped) {
    engine().start();
    tabTo("Add a task…");
    QTest::keyClick(window, Qt::Key_A);
    click(QStringLiteral("Reset"));
    EXPECT_TRUE(engine().isIdle());
    EXPECT_EQ(focusedName(), "Add a task…");
    QTest::keyClick(window, Qt::Key_B);
    EXPECT_EQ(focusedText(), QStringLiteral("ab"));
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
    loseKeyboard();
    EXPECT_EQ(turnedAway, 1);
}

TEST_F(PopoverPanelTest, SizeIsFixed) {
    EXPECT_EQ(window->minimumSize(), window->size());
    EXPECT_EQ(window->maximumSize(), window->size());
}

TEST_F(PopoverPanelTest, KeepsItsWidth) {
    EXPECT_EQ(window->width(), 348);
}

const QString picker = QStringLiteral("The task this focus session counts toward");

TEST_F(PopoverPanelTest, RowsOfThePickerKeepTheirOrderWhenTasksChange) {
    harness.model().addTask("One");
    harness.model().setCurrentTaskID(harness.model().tasks().items.at(0).id);
    click(QStringLiteral("One"));
    EXPECT_THAT(menuRows(picker), ElementsAre("One", "—", "No task"));
    harness.model().addTask("Two");
    EXPECT_TRUE(QTest::qWaitFor([this] { return menuRows(picker).size() == 4; }));
    EXPECT_THAT(menuRows(picker), ElementsAre("One", "Two", "—", "No task")) << "while it is open";
    QTest::keyClick(window, Qt::Key_Escape);
    harness.model().addTask("Three");
    press(QStringLiteral("One"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return menuRows(picker).size() == 5; }));
    EXPECT_THAT(menuRows(picker), ElementsAre("One", "Two", "Three", "—", "No task"));
    QTest::keyClick(window, Qt::Key_Escape);
    harness.model().setCurrentTaskID(std::nullopt);
    press(QStringLiteral("Choose a task…"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return menuRows(picker).size() == 3; }));
    EXPECT_THAT(menuRows(picker), ElementsAre("One", "Two", "Three"));
}

TEST_F(PopoverPanelTest, RowsOfAPickerThatScrollsKeepTheirOrderToo) {
    harness.model().addTask("0");
    harness.model().setCurrentTaskID(harness.model().tasks().items.at(0).id);
    click(QStringLiteral("0"));
    const QQuickItem* const row = menuRow(picker, QStringLiteral("0"));
    ASSERT_NE(row, nullptr);
    auto* const menu = row->property("menu").value<QObject*>();
    ASSERT_NE(menu, nullptr);
    std::vector<std::string> expected{"0"};
    for (int task = 1; task < 14; ++task) {
        if (task % 3 == 0)
            QMetaObject::invokeMethod(menu, task % 2 == 0 ? "open" : "close");
        QTest::qWait(20);
        harness.model().addTask(std::to_string(task));
        QTest::qWait(20);
        expected.push_back(std::to_string(task));
        std::vector<std::string> rows;
        for (int index = 0; index < menu->property("count").toInt(); ++index) {
            QQuickItem* item = nullptr;
            QMetaObject::invokeMethod(menu, "itemAt", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, index));
            rows.push_back(isSeparator(item) ? "—" : item->property("text").toString().toStdString());
        }
        std::vector<std::string> all = expected;
        all.insert(all.end(), {"—", "No task"});
        EXPECT_EQ(rows, all);
    }
}

TEST_F(PopoverPanelTest, MusicMenuHasTheHeadingAmbient) {
    press(QStringLiteral("Rain"));
    EXPECT_THAT(menuRows(QStringLiteral("Ambient")),
                ElementsAre("Ambient", "Rain", "White noise", "Pink noise", "Brown noise", "—", testing::_,
                            "Spotify", "No music"));
    click(QStringLiteral("Ambient"));
    EXPECT_EQ(harness.model().settings().ambientSound(), AmbientSound::rain);
}

TEST_F(PopoverPanelTest, TitlesOfTasksAreNoMarkup) {
    harness.model().addTask("<b>Bold</b>");
    press(QStringLiteral("Choose a task…"));
    std::vector<const QQuickItem*> texts;
    ASSERT_NE(openMenu(picker), nullptr);
    collectItems(openMenu(picker), "QQuickText", texts);
    const auto title = std::ranges::find_if(texts, [](const QQuickItem* text) {
        return text->property("text") == QStringLiteral("<b>Bold</b>");
    });
    ASSERT_NE(title, texts.end());
    EXPECT_EQ((*title)->property("textFormat").toInt(), Qt::PlainText);
}

TEST_F(PopoverPanelTest, LongPickerIsLimitedAndCentredBelowItsLabel) {
    for (int task = 0; task < 40; ++task)
        harness.model().addTask("Task " + std::to_string(task));
    QAccessibleInterface* const label =
        find(QAccessible::queryAccessibleInterface(window), QStringLiteral("Choose a task…"));
    click(QStringLiteral("Choose a task…"));
    ASSERT_NE(openMenu(picker), nullptr);
    const QRectF menu = openMenu(picker)->mapRectToScene(openMenu(picker)->boundingRect());
    EXPECT_NEAR(menu.center().x(), window->width() / 2.0, 1);
    EXPECT_GE(menu.top(), window->mapFromGlobal(label->rect().bottomLeft()).y()) << "its label stays in view";
    EXPECT_LE(menu.height(), 280);
    std::vector<const QQuickItem*> marks;
    collectItems(openMenu(picker), "QQuickScrollIndicator", marks);
    ASSERT_EQ(marks.size(), 1U);
    const auto* const thumb = marks.front()->property("contentItem").value<QQuickItem*>();
    EXPECT_TRUE(thumb->isVisible() && thumb->width() == 3 && thumb->height() < marks.front()->height())
        << "it says that more rows follow";
}

TEST_F(PopoverPanelTest, MenusKeepWithinTheCardNotWithinItsShadow) {
    harness.model().addTask("A task whose title is so long that its menu is as wide as a menu may become");
    showInAClearMargin();
    const auto expectInside = [this](const QString& title) {
        const QQuickItem* const menu = openMenu(title);
        ASSERT_NE(menu, nullptr) << title.toStdString();
        const QRectF place = menu->mapRectToScene(menu->boundingRect());
        EXPECT_TRUE(card().adjusted(8, 8, -8, -8).contains(place)) << title.toStdString();
        QTest::keyClick(window, Qt::Key_Escape);
    };
    click(QStringLiteral("More"));
    expectInside(QStringLiteral("More"));
    click(QStringLiteral("Phase: Focus"));
    expectInside(QStringLiteral("Phase"));
    click(QStringLiteral("Choose a task…"));
    expectInside(picker);
    click(QStringLiteral("Rain"));
    expectInside(QStringLiteral("Ambient"));
}

TEST_F(PopoverPanelTest, KeysThatTheMoreMenuPrintsWorkWhileItIsOpen) {
    const auto choose = [this](Qt::Key key) {
        click(QStringLiteral("More"));
        ASSERT_TRUE(QTest::qWaitFor([this] { return isMenuOpen(); }));
        QTest::keyClick(window, key, Qt::ControlModifier);
        EXPECT_TRUE(QTest::qWaitFor([this] { return !isMenuOpen(); })) << "the choice is made";
    };
    choose(Qt::Key_S);
    EXPECT_EQ(harness.model().windowPane(), Pane::statistics);
    EXPECT_EQ(harness.journal.count("windows.forward"), 1);
    choose(Qt::Key_Comma);
    EXPECT_EQ(harness.journal.count("windows.settings"), 1);
    choose(Qt::Key_Q);
    EXPECT_EQ(quits, 1);
    QTest::keyClick(window, Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(quits, 2) << "and still do when it is closed again";
}

TEST_F(PopoverPanelTest, UpdateIsToldBesideTheMenuThatHoldsIt) {
    const auto description = [this] {
        return find(QAccessible::queryAccessibleInterface(window), QStringLiteral("More"))
            ->text(QAccessible::Description)
            .toStdString();
    };
    EXPECT_EQ(description(), "");
    harness.answers.updateAvailable = true;
    harness.model().updater().changed.emit();
    EXPECT_EQ(description(), Commands::updateLabel(harness.model().updater()));
}

TEST_F(PopoverPanelTest, MenuThatIsOpenWhenThePanelIsHiddenIsClosed) {
    click(QStringLiteral("More"));
    ASSERT_TRUE(QTest::qWaitFor([this] { return isMenuOpen(); }));
    panel.hide();
    panel.show({});
    EXPECT_TRUE(QTest::qWaitForWindowActive(window));
    EXPECT_FALSE(isMenuOpen());
    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedName() == "Start"; }));
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
}

TEST_F(PopoverPanelTest, SymbolsThatAreOfferedWhenThePanelIsHiddenAreGone) {
    click(QStringLiteral("Focus icon"));
    const auto offers = [this] {
        QAccessibleInterface* const card = find(QAccessible::queryAccessibleInterface(window),
                                                QStringLiteral("FOCUS ICON"), QAccessible::Dialog);
        return card && !card->state().invisible;
    };
    ASSERT_TRUE(QTest::qWaitFor(offers));
    panel.hide();
    panel.show({});
    EXPECT_FALSE(offers());
}

TEST_F(PopoverPanelTest, KeyboardGoesToTheMainButtonWhenTheMinutesAreTyped) {
    typeMinutes();
    QTest::keyClick(window, Qt::Key_Return);
    EXPECT_EQ(harness.model().settings().focusMinutes(), 40);
    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedName() == "Start"; })) << focusedName();
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
}

TEST_F(PopoverPanelTest, KeyboardGoesToTheMainButtonWhenTheTypingIsCancelled) {
    typeMinutes();
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_EQ(harness.model().settings().focusMinutes(), 25);
    EXPECT_EQ(cancelled, 0);
    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedName() == "Start"; })) << focusedName();
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
}

TEST_F(PopoverPanelTest, MinutesCountWhenThePanelIsHiddenWhileTheyAreTyped) {
    typeMinutes();
    panel.hide();
    EXPECT_EQ(harness.model().settings().focusMinutes(), 40);
}

TEST_F(PopoverPanelTest, MinutesCountForThePhaseThatAClickStarts) {
    typeMinutes();
    click(QStringLiteral("Start"));
    EXPECT_EQ(harness.model().settings().focusMinutes(), 40);
    EXPECT_TRUE(engine().isRunning());
    EXPECT_EQ(engine().currentDuration(), std::chrono::minutes{40});
    EXPECT_TRUE(QTest::qWaitFor([this] { return focusedName() == "Pause"; })) << focusedName();
}

TEST_F(PopoverPanelTest, MinutesCountForThePhaseThatAClickSkips) {
    typeMinutes();
    click(QStringLiteral("Skip"));
    EXPECT_EQ(harness.model().settings().focusMinutes(), 40);
    EXPECT_EQ(harness.model().settings().shortBreakMinutes(), 5);
    EXPECT_EQ(engine().phase(), Phase::shortBreak);
}

TEST_F(PopoverPanelTest, NoteThatGoesAwayLeavesTheKeyboardToTheMainButton) {
    harness.model().setRecoveryNotice("Selvane restored your tasks.", AppModel::Recovery::complete);
    tabTo("Selvane restored your tasks.");
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_EQ(focusedName(), "Start");
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_TRUE(engine().isRunning());
}

TEST_F(PopoverPanelTest, NoteWhoseProblemIsSolvedLeavesTheKeyboardToTheMainButton) {
    showFocusModeProblem();
    tabTo("Do Not Disturb isn't set up · Fix");
    harness.answers.focusModeProblem.reset();
    harness.model().focusMode().changed.emit();
    EXPECT_EQ(focusedName(), "Start");
}

TEST_F(PopoverPanelTest, NoteThatIsSolvedTakesNoKeyboardFromOthers) {
    showFocusModeProblem();
    tabTo("Skip");
    harness.answers.focusModeProblem.reset();
    harness.model().focusMode().changed.emit();
    EXPECT_EQ(focusedName(), "Skip");
}

TEST_F(PopoverPanelTest, PressOnANoteThatDoesNothingEndsTheTyping) {
    showDrift();
    QAccessibleInterface* const note = find(QAccessible::queryAccessibleInterface(window),
                                            QStringLiteral("News is on your distractions list"));
    ASSERT_TRUE(QTest::qWaitFor([&] { return note->rect().height() == 16; })) << "the words have faded in";
    typeMinutes();
    click(QStringLiteral("News is on your distractions list"));
    EXPECT_EQ(harness.model().settings().focusMinutes(), 40);
    EXPECT_EQ(focusedName(), "Start");
}

TEST_F(PopoverPanelTest, OtherStyleResizesThePanelOnceAndKeepsItsPlace) {
    StatusItemAnchor anchor;
    anchor.pointer = ScreenPoint{400, window->screen()->geometry().height() - 1};
    panel.hide();
    panel.show(anchor);
    const int bottom = window->geometry().bottom();
    const QSignalSpy heights(window, &QWindow::heightChanged);
    harness.model().settings().timerStyle.set(TimerStyle::bar);
    QTest::qWait(50);
    EXPECT_EQ(heights.count(), 1);
    EXPECT_EQ(window->geometry().bottom(), bottom) << "above a task bar it is the bottom that stays";
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
}

TEST_F(PopoverPanelTest, MainButtonStandsOnTheAxisOfTheDial) {
    const auto center = [this](const QString& name) {
        const auto* const item =
            qobject_cast<QQuickItem*>(find(QAccessible::queryAccessibleInterface(window), name)->object());
        return item->mapRectToScene(item->boundingRect()).center().x();
    };
    EXPECT_DOUBLE_EQ(center(QStringLiteral("Start")), window->width() / 2.0);
    engine().start();
    EXPECT_DOUBLE_EQ(center(QStringLiteral("Pause")), window->width() / 2.0);
}

} // namespace
} // namespace selvane
