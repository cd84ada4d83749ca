#include "PopoverFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

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

    void addTasks() {
        for (const char* const title : {"Write", "Read"})
            model().addTask(title);
        settle();
    }
};

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomWhileIdle) {
    EXPECT_THAT(stops(),
                ElementsAre("Phase: Focus", "More", "Focus icon", "25:00 remaining", "Choose a task…",
                            "Start", "Skip", "Rain", "Volume", "Turn sound on", "Tasks", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomWhileRunning) {
    engine().start();
    settle();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", "More", "Focus icon", "Choose a task…", "Reset", "Pause",
                                     "Skip", "Rain", "Volume", "Turn sound on", "Tasks", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabStopsOnceAtTheListOfTasks) {
    addTasks();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", "More", "Focus icon", "25:00 remaining",
                                     "Choose a task…", "Start", "Skip", "Rain", "Volume", "Turn sound on",
                                     "Tasks", "Write", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabStopsAtClearDoneOnceATaskIsDone) {
    addTasks();
    model().toggleTask(model().tasks().items.at(0).id);
    settle();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", "More", "Focus icon", "25:00 remaining",
                                     "Choose a task…", "Start", "Skip", "Rain", "Volume", "Turn sound on",
                                     "Tasks", "Clear done", "Write", "Add a task…"));
}

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomOfTheProgress) {
    addTasks();
    key(Qt::Key_2, Qt::ControlModifier);
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", "More", "Focus icon", "25:00 remaining",
                                     "Choose a task…", "Start", "Skip", "Rain", "Volume", "Turn sound on",
                                     "Progress", "0 day streak", "Today: 0m of your 50m goal", "0 freezes",
                                     "Last 18 weeks: focus on 0 days, goal met on 0"));
}

TEST_F(PopoverKeyboardTest, TabGoesFromTopToBottomOfTheProgressWhileRunning) {
    key(Qt::Key_2, Qt::ControlModifier);
    engine().start();
    settle();
    EXPECT_THAT(stops(), ElementsAre("Phase: Focus", "More", "Focus icon", "Choose a task…", "Reset", "Pause",
                                     "Skip", "Rain", "Volume", "Turn sound on", "Progress", "0 day streak",
                                     "Today: 0m of your 50m goal", "0 freezes",
                                     "Last 18 weeks: focus on 0 days, goal met on 0"));
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
    EXPECT_EQ(focused(), "Choose a task…");
}

} // namespace
} // namespace selvane
