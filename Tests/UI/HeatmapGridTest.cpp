#include "Selvane/UI/Progress/HeatmapGrid.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace selvane {
namespace {

using Outline = HeatmapGrid::Outline;
using Step = HeatmapGrid::Step;

const QLocale american(QStringLiteral("en_US"));

/// A Thursday.
constexpr DayKey thursday{2026, 3, 5};

class HeatmapGridTest : public testing::Test {
protected:
    [[nodiscard]] HeatmapGrid grid(int weeks = 18) const { return HeatmapGrid(days, weeks, american); }
    [[nodiscard]] HeatmapGrid gridOf(DayKey today, int weeks = 18) {
        days.today = today;
        return grid(weeks);
    }
    [[nodiscard]] std::string tooltipOfToday() const {
        return HeatmapGrid::tooltip(grid().squares().back(), american).toStdString();
    }

    /// As in "0:Feb 4:Mar".
    [[nodiscard]] std::string months(DayKey today, int weeks) {
        std::string text;
        const HeatmapGrid made = gridOf(today, weeks);
        for (const HeatmapGrid::MonthLabel& label : made.monthLabels())
            text += (text.empty() ? "" : " ") + std::to_string(label.column) + ":" + label.name.toStdString();
        return text;
    }

    HeatmapDays days{{}, {}, 60, thursday, Calendar::utc()};
};

TEST_F(HeatmapGridTest, BeginsOnTheSundayOfTheOldestWeekAndEndsToday) {
    for (int day = 1; day <= 28; ++day) {
        const DayKey today{2026, 2, day};
        const HeatmapGrid made = gridOf(today);
        const int count = static_cast<int>(made.squares().size());
        EXPECT_EQ(made.squares().front().day.weekday(days.calendar), 1) << day;
        EXPECT_EQ(made.squares().back().day, today);
        EXPECT_GE(count, 18 * 7 - 6) << day;
        EXPECT_LE(count, 18 * 7) << day;
        EXPECT_EQ(made.columns(), 18);
    }
}

TEST_F(HeatmapGridTest, LastColumnIsCutOffAtToday) {
    EXPECT_EQ(gridOf({2026, 3, 1}).squares().size(), 17U * 7 + 1) << "a Sunday";
    EXPECT_EQ(gridOf(thursday).squares().size(), 17U * 7 + 5);
    EXPECT_EQ(gridOf({2026, 3, 7}).squares().size(), 18U * 7) << "a Saturday";
}

TEST_F(HeatmapGridTest, VisitsEveryDateOnce) {
    const HeatmapGrid made = gridOf({2026, 12, 31}, 53);
    for (std::size_t index = 1; index < made.squares().size(); ++index)
        EXPECT_EQ(made.squares()[index].day, made.squares()[index - 1].day.adding(1, days.calendar));
}

TEST_F(HeatmapGridTest, VisitsEveryDateOnceAcrossClockChanges) {
    days.calendar = test::zone("Europe/Berlin");
    const HeatmapGrid made = gridOf({2026, 12, 31}, 53);
    EXPECT_EQ(made.squares().front().day, (DayKey{2025, 12, 28}));
    EXPECT_EQ(made.squares().size(), 52U * 7 + 5);
    for (std::size_t index = 1; index < made.squares().size(); ++index)
        EXPECT_LT(made.squares()[index - 1].day, made.squares()[index].day);
}

TEST_F(HeatmapGridTest, SingleWeekBeginsOnItsSunday) {
    const HeatmapGrid made = gridOf(thursday, 1);
    EXPECT_EQ(made.squares().front().day, (DayKey{2026, 3, 1}));
    EXPECT_EQ(made.squares().size(), 5U);
}

TEST_F(HeatmapGridTest, NoWeeksHaveNoDays) {
    EXPECT_TRUE(gridOf(thursday, 0).squares().empty());
    EXPECT_TRUE(gridOf(thursday, -3).squares().empty());
    EXPECT_TRUE(HeatmapGrid().squares().empty());
}

TEST_F(HeatmapGridTest, DaysAreGradedAgainstTheGoal) {
    days.minutesByDay = {{{2026, 3, 2}, 29}, {{2026, 3, 3}, 30}, {{2026, 3, 4}, 60}, {thursday, 120}};
    const HeatmapGrid made = gridOf(thursday, 1);
    std::vector<int> levels;
    for (const HeatmapGrid::Square& square : made.squares())
        levels.push_back(square.level);
    EXPECT_EQ(levels, (std::vector<int>{0, 1, 2, 3, 4}));
    EXPECT_EQ(made.squares()[1].minutes, 29);
    EXPECT_EQ(made.squares()[0].minutes, 0) << "a day without an entry";
}

TEST_F(HeatmapGridTest, DayAfterTodayIsEmptyWhateverItsMinutes) {
    days.minutesByDay = {{{2026, 3, 6}, 120}};
    EXPECT_EQ(grid().squares().back().day, thursday);
}

TEST_F(HeatmapGridTest, TodayAndFrozenDaysAreOutlined) {
    days.frozenDays = {{2026, 3, 3}};
    const HeatmapGrid made = gridOf(thursday, 1);
    EXPECT_EQ(made.squares()[1].outline, Outline::none);
    EXPECT_EQ(made.squares()[2].outline, Outline::frozen);
    EXPECT_EQ(made.squares()[4].outline, Outline::today);
}

TEST_F(HeatmapGridTest, FrozenTodayHasTheFrozenOutline) {
    days.frozenDays = {thursday};
    EXPECT_EQ(grid().squares().back().outline, Outline::frozen);
}

TEST_F(HeatmapGridTest, TooltipTellsTheMinutesAndAFreeze) {
    EXPECT_EQ(tooltipOfToday(), "Mar 5 · no focus");
    days.minutesByDay = {{thursday, 90}};
    EXPECT_EQ(tooltipOfToday(), "Mar 5 · 1h 30m");
    days.frozenDays = {thursday};
    EXPECT_EQ(tooltipOfToday(), "Mar 5 · 1h 30m · streak freeze used");
    days.minutesByDay = {{thursday, 0}};
    EXPECT_EQ(tooltipOfToday(), "Mar 5 · streak freeze used") << "less than a minute";
    days.minutesByDay.clear();
    EXPECT_EQ(tooltipOfToday(), "Mar 5 · streak freeze used");
}

TEST_F(HeatmapGridTest, TooltipHasTheDateOfTheLocale) {
    EXPECT_EQ(HeatmapGrid::tooltip(grid().squares().back(), QLocale(QStringLiteral("de_DE"))).toStdString(),
              "5. März · no focus");
}

TEST_F(HeatmapGridTest, WeekdaysAreNamedInEveryOtherRow) {
    std::string labels;
    for (const std::string_view label : HeatmapGrid::weekdayLabels)
        labels += std::string(label) + "|";
    EXPECT_EQ(labels, "|Mon||Wed||Fri||");
}

TEST_F(HeatmapGridTest, MonthIsNamedAtTheFirstColumnThatBeginsInIt) {
    // Sundays: Nov 2 (0), 30 (4), Dec 7 (5), Jan 4 (9), Feb 1 (13), Mar 1 (17).
    EXPECT_EQ(months(thursday, 18), "0:Nov 5:Dec 9:Jan 13:Feb");
}

TEST_F(HeatmapGridTest, MonthThatBeginsInOneOfTheLastTwoColumnsHasNoLabel) {
    // Sundays: Jan 25 (0), Feb 1 (1), Mar 1 (5), Mar 8 (6), Mar 15 (7).
    EXPECT_EQ(months({2026, 3, 1}, 6), "1:Feb") << "in the last";
    EXPECT_EQ(months({2026, 3, 8}, 7), "1:Feb") << "in the second from the end";
    EXPECT_EQ(months({2026, 3, 15}, 8), "1:Feb 5:Mar") << "in the third from the end";
}

TEST_F(HeatmapGridTest, StubOfAMonthAtTheLeftEdgeMakesWay) {
    // Sundays: Jan 11, 18, 25, Feb 1.
    EXPECT_EQ(months({2026, 2, 28}, 5), "1:Feb");
    EXPECT_EQ(months({2026, 2, 28}, 6), "2:Feb");
    EXPECT_EQ(months({2026, 2, 28}, 7), "0:Jan 3:Feb") << "there is room for both";
}

TEST_F(HeatmapGridTest, OnlyMonthKeepsItsLabelWhereverItBegins) {
    EXPECT_EQ(months(thursday, 1), "0:Mar");
    EXPECT_EQ(months(thursday, 2), "0:Feb");
}

TEST_F(HeatmapGridTest, MonthsAreNamedInTheLocalesShortForm) {
    const HeatmapGrid made(days, 18, QLocale(QStringLiteral("de_DE")));
    EXPECT_EQ(made.monthLabels()[1].name.toStdString(), "Dez.");
}

TEST_F(HeatmapGridTest, StepsGoByDaysAndWeeksAndEndWithTheGrid) {
    const HeatmapGrid made = gridOf(thursday, 2); // 12 days
    EXPECT_EQ(made.stepped(5, Step::dayBack), 4);
    EXPECT_EQ(made.stepped(6, Step::dayForth), 7) << "on to the next column";
    EXPECT_EQ(made.stepped(9, Step::weekBack), 2);
    EXPECT_EQ(made.stepped(4, Step::weekForth), 11);
    EXPECT_EQ(made.stepped(5, Step::weekForth), 5) << "there is no such day yet";
    EXPECT_EQ(made.stepped(3, Step::weekBack), 3);
    EXPECT_EQ(made.stepped(0, Step::dayBack), 0);
    EXPECT_EQ(made.stepped(11, Step::dayForth), 11);
    EXPECT_EQ(made.stepped(5, Step::first), 0);
    EXPECT_EQ(made.stepped(5, Step::last), 11);
}

TEST_F(HeatmapGridTest, SummaryCountsDaysWithFocusAndDaysAtTheGoal) {
    days.minutesByDay = {
        {{2026, 3, 1}, 0}, {{2026, 3, 2}, 1}, {{2026, 3, 3}, 59}, {{2026, 3, 4}, 60}, {thursday, 500}};
    EXPECT_EQ(grid().summary(), QStringLiteral("Last 18 weeks: focus on 4 days, goal met on 2"));
    days.minutesByDay = {{thursday, 30}};
    EXPECT_EQ(grid(1).summary(), QStringLiteral("Last 1 week: focus on 1 day, goal met on 0"));
}

} // namespace
} // namespace selvane
