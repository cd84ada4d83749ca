#include "PopoverFixture.h"
#include "Selvane/UI/Controls/HoverTip.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

const std::string streak = "0-day streak. Hit today's goal to keep it going.";

class PopoverKeyboardTest : public test::PopoverFixture {
protected:
    /// Where that key goes until it is back where it began, with the phase first.
    [[nodiscard]] std::vector<std::string> stops(Qt::Key next = Qt::Key_Tab) const {
        std::vector<std::string> names;
        const QQuickItem* const start = window->activeFocusItem();
        do {
            key(next);
            names.push_back(focused());
        } while (window->activeFocusItem() != start && names.size() < 40);
        const auto first =
            std::ranges::find_if(names, [](const std::string& name) { return name.starts_with("Phase: "); });
        std::ranges::rotate(names, first);
        return names;
    }

    void tabTo(const std::string& name) const {
        for (int stop = 0; stop < 40 && focused() != name; ++stop)
            key(Qt::Key_Tab);
        ASSERT_EQ(focused(), name);
    }

    void addTasks() {
        for (const char* const title : {"Write", "Read"})
            model().addTask(title);
        settle();
    }
};

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomWhileIdle) {
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", streak, "More", "Focus icon", "25:00 remaining",
                                     "Session 1 of 4", "Choose a task…", "Start", "Skip", "Rain", "Volume",
                                     "Turn sound on", "Tasks", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomWhileRunning) {
    engine().start();
    settle();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", streak, "More", "Focus icon", "Session 1 of 4",
                                     "Choose a task…", "Reset", "Pause", "Skip", "Rain", "Volume",
                                     "Turn sound on", "Tasks", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabStopsAtTheCycleOfEveryStyle) {
    for (const TimerStyle style : {TimerStyle::bar, TimerStyle::minimal}) {
        model().settings().timerStyle.set(style);
        settle();
        EXPECT_THAT(stops(), testing::Contains("Session 1 of 4").Times(1)) << rawValue(style);
    }
}

TEST_F(PopoverKeyboardTest, TabStopsOnceAtTheListOfTasks) {
    addTasks();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", streak, "More", "Focus icon", "25:00 remaining",
                                     "Session 1 of 4", "Choose a task…", "Start", "Skip", "Rain", "Volume",
                                     "Turn sound on", "Tasks", "Write", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabStopsAtClearDoneOnceATaskIsDone) {
    addTasks();
    model().toggleTask(model().tasks().items.at(0).id);
    settle();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", streak, "More", "Focus icon", "25:00 remaining",
                                     "Session 1 of 4", "Choose a task…", "Start", "Skip", "Rain", "Volume",
                                     "Turn sound on", "Tasks", "Clear done", "Write", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomOfTheProgress) {
    addTasks();
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_THAT(stops(),
                ElementsAre("Phase: Focus", streak, "More", "Focus icon", "25:00 remaining", "Session 1 of 4",
                            "Choose a task…", "Start", "Skip", "Rain", "Volume", "Turn sound on", "Progress",
                            "0 day streak", "Today: 0m of your 50m goal", "0 freezes",
                            "Last 18 weeks: focus on 0 days, goal met on 0"));
}

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomOfTheProgressWhileRunning) {
    key(Qt::Key_2, Qt::ControlModifier);
    engine().start();
    settle();
    EXPECT_THAT(stops(),
                ElementsAre("Phase: Focus", streak, "More", "Focus icon", "Session 1 of 4", "Choose a task…",
                            "Reset", "Pause", "Skip", "Rain", "Volume", "Turn sound on", "Progress",
                            "0 day streak", "Today: 0m of your 50m goal", "0 freezes",
                            "Last 18 weeks: focus on 0 days, goal met on 0"));
}

TEST_F(PopoverKeyboardTest, KeyboardBringsUpTheWordsOfTheStreakAndOfTheCycle) {
    const auto words = [this] {
        const auto* const tip = window->activeFocusItem()->findChild<HoverTip*>();
        return tip && tip->isVisible() ? tip->text().toStdString() : std::string();
    };
    tabTo(streak);
    EXPECT_EQ(words(), streak);
    const auto* const tip = window->activeFocusItem()->findChild<HoverTip*>();
    tabTo("Session 1 of 4");
    EXPECT_EQ(words(), "Session 1 of 4 before a long break");
    EXPECT_FALSE(tip->isVisible()) << "the words go with the keyboard";
}

TEST_F(PopoverKeyboardTest, BacktabGoesTheSameWayBack) {
    addTasks();
    std::vector<std::string> there = stops();
    std::ranges::reverse(there);
    std::ranges::rotate(there, there.end() - 1);
    EXPECT_THAT(stops(Qt::Key_Backtab), ElementsAreArray(there));
}

TEST_F(PopoverKeyboardTest, MinutesBeingTypedAreAStopInPlaceOfTheTime) {
    press(QStringLiteral("25:00 remaining"));
    EXPECT_EQ(focused(), "Minutes");
    key(Qt::Key_Tab);
    EXPECT_EQ(focused(), "Session 1 of 4");
}

} // namespace
} // namespace selvane
