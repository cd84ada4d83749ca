#include "SelvaneCore/StreakCalculator.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace selvane {
namespace {

using test::zone;

constexpr int goal = 60;
const DayKey firstDay(2026, 3, 20);

/// Days told by a letter each: M is a met day, a dash a missed one; the last letter is today.
struct Days {
    MinutesByDay minutes;
    DayKey today = firstDay;

    explicit Days(std::string_view days, const Calendar& calendar = Calendar::utc()) {
        DayKey day = firstDay;
        for (const char letter : days) {
            if (letter == 'M')
                minutes[day] = goal;
            today = day;
            day = day.adding(1, calendar);
        }
    }

    [[nodiscard]] StreakResult compute(bool freezes = true,
                                       const Calendar& calendar = Calendar::utc()) const {
        return StreakCalculator::compute(minutes, goal, today, freezes, calendar);
    }
};

std::string met(int days) {
    return std::string(static_cast<std::size_t>(days), 'M');
}

struct StreakRow {
    const char* name;
    std::string days;
    bool freezes;
    int current;
    int longest;
    int freezesAvailable;
    /// Counted from 1.
    std::vector<int> frozen;
    bool todayMet;
};

class StreakTable : public testing::TestWithParam<StreakRow> {};

TEST_P(StreakTable, CountsTheRun) {
    const StreakRow& row = GetParam();
    for (const char* const name : {"UTC", "Europe/Berlin", "Asia/Kolkata", "Pacific/Apia"}) {
        const Calendar calendar = zone(name);
        StreakResult expected{row.current, row.longest, row.freezesAvailable, {}, row.todayMet};
        for (const int day : row.frozen)
            expected.frozenDays.insert(firstDay.adding(day - 1, calendar));
        EXPECT_EQ(Days(row.days, calendar).compute(row.freezes, calendar), expected) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(
    StreakCalculator, StreakTable,
    testing::Values(StreakRow{"firstDay", "M", true, 1, 1, 0, {}, true},
                    StreakRow{"todayStillOpen", "MMM-", true, 3, 3, 0, {}, false},
                    StreakRow{"missedWithoutFreeze", "MM--", true, 0, 2, 0, {}, false},
                    StreakRow{"sixDaysEarnNothing", "MMMMMM-M", true, 1, 6, 0, {}, true},
                    StreakRow{"sevenDaysEarnAFreeze", "MMMMMMM-", true, 7, 7, 1, {}, false},
                    StreakRow{"theFreezeIsSpent", "MMMMMMM--", true, 7, 7, 0, {8}, false},
                    StreakRow{"theRunGoesOnOverAFreeze", "MMMMMMM-M", true, 8, 8, 0, {8}, true},
                    StreakRow{"theSecondMissBreaks", "MMMMMMM--M", true, 1, 7, 0, {8}, true},
                    StreakRow{"aFrozenDayDoesNotCount", "MMMMMMM-MMMMMMM", true, 14, 14, 1, {8}, true},
                    StreakRow{"twoFreezesBridgeTwoDays", met(14) + "--M", true, 15, 15, 0, {15, 16}, true},
                    StreakRow{"theThirdMissBreaks", met(14) + "---M", true, 1, 14, 0, {15, 16}, true},
                    StreakRow{"noMoreThanTwoFreezes", met(21), true, 21, 21, 2, {}, true},
                    StreakRow{"freezesOff", "MMMMMMM-M", false, 1, 7, 0, {}, true},
                    StreakRow{"noMetDay", "-", true, 0, 0, 0, {}, false},
                    StreakRow{"fourteenDaysHoldTwo", met(14), true, 14, 14, 2, {}, true},
                    StreakRow{"todayEarnsAFreezeToo", met(7), true, 7, 7, 1, {}, true},
                    StreakRow{"missedDaysBeforeTheFirstSpendNothing", "---MMM", true, 3, 3, 0, {}, true},
                    StreakRow{"aRunOfZeroSpendsNothing", met(7) + "----" + met(7), true, 7, 7, 1, {8}, true},
                    StreakRow{"freezesOffEarnNothing", met(21), false, 21, 21, 0, {}, true},
                    StreakRow{
                        "theLostThirdFreezeStaysLost", met(21) + "---M", true, 1, 21, 0, {22, 23}, true}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(StreakCalculator, WithoutHistoryTheResultIsEmpty) {
    const StreakResult result = StreakCalculator::compute({}, goal, firstDay, true, Calendar::utc());
    EXPECT_EQ(result, StreakResult::empty());
    EXPECT_EQ(result, (StreakResult{0, 0, 0, {}, false}));
}

TEST(StreakCalculator, AGoalBelowOneAsksForAMinute) {
    for (const int lowGoal : {1, 0, -5}) {
        EXPECT_EQ(StreakCalculator::compute({{firstDay, 0}}, lowGoal, firstDay, true, Calendar::utc()),
                  StreakResult::empty());
        EXPECT_EQ(
            StreakCalculator::compute({{firstDay, 1}}, lowGoal, firstDay, true, Calendar::utc()).current, 1);
    }
}

TEST(StreakCalculator, ADayIsMetFromTheGoalOn) {
    EXPECT_FALSE(StreakCalculator::compute({{firstDay, 59}}, 60, firstDay, true, Calendar::utc()).todayMet);
    EXPECT_TRUE(StreakCalculator::compute({{firstDay, 60}}, 60, firstDay, true, Calendar::utc()).todayMet);
}

TEST(StreakCalculator, AHigherGoalRewritesThePast) {
    const Calendar calendar = Calendar::utc();
    const DayKey second = firstDay.adding(1, calendar);
    const DayKey third = firstDay.adding(2, calendar);
    const MinutesByDay minutes{{firstDay, 30}, {second, 60}, {third, 60}};
    EXPECT_EQ(StreakCalculator::compute(minutes, 30, third, true, calendar).current, 3);
    EXPECT_EQ(StreakCalculator::compute(minutes, 60, third, true, calendar).current, 2);
    EXPECT_EQ(StreakCalculator::compute(minutes, 61, third, true, calendar), StreakResult::empty());
}

TEST(StreakCalculator, DaysAfterTodayPlayNoPart) {
    Days days("MMM");
    days.minutes[days.today.adding(1, Calendar::utc())] = goal;
    days.minutes[days.today.adding(5, Calendar::utc())] = goal;
    EXPECT_EQ(days.compute(), (StreakResult{3, 3, 0, {}, true}));
    days.today = firstDay.adding(-1, Calendar::utc());
    EXPECT_EQ(days.compute(), StreakResult::empty());
}

TEST(StreakCalculator, ASkippedDayIsNoMiss) {
    const Calendar apia = zone("Pacific/Apia");
    const MinutesByDay minutes{{{2011, 12, 28}, 60}, {{2011, 12, 29}, 60}, {{2011, 12, 31}, 60}};
    EXPECT_EQ(StreakCalculator::compute(minutes, goal, DayKey(2011, 12, 31), true, apia).current, 3);
    EXPECT_EQ(StreakCalculator::compute(minutes, goal, DayKey(2011, 12, 31), true, Calendar::utc()).current,
              1);
}

TEST(StreakCalculator, EachDateOfAWinterIsVisitedOnce) {
    // Month ends of every length, a year end and, but for UTC, two clock changes lie between; a date that is
    // left out or visited twice changes the count.
    for (const char* const name : {"UTC", "Europe/Berlin", "America/New_York", "Australia/Lord_Howe"}) {
        const Calendar calendar = zone(name);
        MinutesByDay minutes;
        for (const auto& [year, month, last] :
             {std::array{2027, 10, 31}, std::array{2027, 11, 30}, std::array{2027, 12, 31},
              std::array{2028, 1, 31}, std::array{2028, 2, 29}, std::array{2028, 3, 31},
              std::array{2028, 4, 30}}) {
            for (int day = 1; day <= last; ++day)
                minutes[DayKey(year, month, day)] = goal;
        }
        EXPECT_EQ(StreakCalculator::compute(minutes, goal, DayKey(2028, 4, 30), true, calendar),
                  (StreakResult{213, 213, 2, {}, true}))
            << name;
    }
}

TEST(StreakCalculator, WithoutFreezesTheSameHistoryBreaksAtEachMiss) {
    const Days days(met(14) + "-MM-M");
    EXPECT_EQ(
        days.compute(true),
        (StreakResult{
            17, 17, 0, {firstDay.adding(14, Calendar::utc()), firstDay.adding(17, Calendar::utc())}, true}));
    EXPECT_EQ(days.compute(false), (StreakResult{1, 14, 0, {}, true}));
}

TEST(StreakCalculator, ADayThatTheZoneSkippedIsNotMetAfterAGapEither) {
    const Calendar apia = test::zone("Pacific/Apia");
    const MinutesByDay minutes{
        {DayKey(2011, 12, 20), 60}, {DayKey(2011, 12, 30), 60}, {DayKey(2011, 12, 31), 60}};
    const auto today = DayKey(2012, 1, 1);
    EXPECT_EQ(StreakCalculator::compute(minutes, 60, today, true, apia), (StreakResult{1, 1, 0, {}, false}));
    EXPECT_EQ(StreakCalculator::compute(minutes, 60, today, true, Calendar::utc()),
              (StreakResult{2, 2, 0, {}, false}));
}

TEST(StreakCalculator, TheResultDependsOnlyOnTheArguments) {
    const Days days(met(8) + "-MM");
    const StreakResult first = days.compute(true);
    EXPECT_NE(days.compute(false), first);
    EXPECT_EQ(days.compute(true), first) << "nothing stays from the call between";
}

} // namespace
} // namespace selvane
