#include "SelvaneCore/Stats.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace selvane {
namespace {

using test::local;
using test::utc;
using test::zone;
using Sessions = std::vector<FocusSession>;

FocusSession session(Date start, double seconds, Phase phase = Phase::focus, bool completed = true) {
    return {.id = UUID(),
            .start = start,
            .end = adding(Seconds{seconds}, start),
            .phase = phase,
            // Never the figure that counts.
            .plannedSeconds = Seconds{99999},
            .actualSeconds = Seconds{seconds},
            .completed = completed,
            .taskID = std::nullopt,
            .apps = std::nullopt};
}

FocusSession stopped(Date start, double seconds) {
    return session(start, seconds, Phase::focus, false);
}

FocusSession withApps(Date start, std::vector<AppUsage> apps, Phase phase = Phase::focus) {
    FocusSession result = session(start, 1500, phase);
    result.apps = std::move(apps);
    return result;
}

const Date morning = utc(2026, 3, 5, 9);

Sessions onlyBreaks() {
    FocusSession withUsage = session(morning, 300, Phase::longBreak);
    withUsage.apps = {{"a", "A", Seconds{300}}};
    return {session(morning, 300, Phase::shortBreak), withUsage};
}

TEST(Stats, AnEmptyHistoryHasNoFigures) {
    EXPECT_TRUE(Stats::focusMinutesByDay({}, 4, Calendar::utc()).empty());
    EXPECT_EQ(Stats::summary({}, Calendar::utc()), (Stats::Summary{0, 0, 0, std::nullopt}));
    EXPECT_TRUE(Stats::appTotals({}, distantPast).empty());
    EXPECT_EQ(Stats::averageFocusScore({}, {"a"}, distantPast), std::nullopt);
}

TEST(Stats, BreaksNeverCount) {
    const Sessions breaks = onlyBreaks();
    EXPECT_TRUE(Stats::focusMinutesByDay(breaks, 4, Calendar::utc()).empty());
    EXPECT_EQ(Stats::summary(breaks, Calendar::utc()), (Stats::Summary{0, 0, 0, std::nullopt}));
    EXPECT_TRUE(Stats::appTotals(breaks, distantPast).empty());
}

TEST(StatsMinutes, AreTruncatedAfterTheSum) {
    const DayKey day(2026, 3, 5);
    EXPECT_EQ(
        Stats::focusMinutesByDay(Sessions{session(morning, 90), session(morning, 90)}, 4, Calendar::utc()),
        (MinutesByDay{{day, 3}}));
    EXPECT_EQ(Stats::focusMinutesByDay(Sessions{session(morning, 119)}, 4, Calendar::utc()),
              (MinutesByDay{{day, 1}}));
}

TEST(StatsMinutes, ADayOfLessThanAMinuteHasAnEntryOfZero) {
    EXPECT_EQ(Stats::focusMinutesByDay(Sessions{session(morning, 59)}, 4, Calendar::utc()),
              (MinutesByDay{{{2026, 3, 5}, 0}}));
}

TEST(StatsMinutes, ASessionBelongsToTheDayOfItsStart) {
    for (const char* const name : {"UTC", "Europe/Berlin", "Asia/Kolkata", "America/New_York"}) {
        const Calendar calendar = zone(name);
        const Sessions overMidnight{session(local(calendar, 2026, 3, 5, 23, 50), 1500)};
        EXPECT_EQ(Stats::focusMinutesByDay(overMidnight, 0, calendar), (MinutesByDay{{{2026, 3, 5}, 25}}))
            << name;
        const Sessions atNight{session(local(calendar, 2026, 3, 5, 2), 1500)};
        EXPECT_EQ(Stats::focusMinutesByDay(atNight, 4, calendar), (MinutesByDay{{{2026, 3, 4}, 25}})) << name;
        EXPECT_EQ(Stats::summary(atNight, calendar).mostProductiveHour, 2) << name;
    }
}

TEST(StatsMinutes, StoppedSessionsCountWithTheTimeThatRan) {
    EXPECT_EQ(
        Stats::focusMinutesByDay(Sessions{session(morning, 1500), stopped(morning, 600)}, 4, Calendar::utc()),
        (MinutesByDay{{{2026, 3, 5}, 35}}));
}

TEST(StatsMinutes, DoNotDependOnTheOrderOfDays) {
    const Sessions sessions{session(utc(2026, 3, 6, 9), 600), session(utc(2026, 3, 5, 9), 60),
                            session(utc(2026, 3, 6, 10), 600)};
    EXPECT_EQ(Stats::focusMinutesByDay(sessions, 4, Calendar::utc()),
              (MinutesByDay{{{2026, 3, 5}, 1}, {{2026, 3, 6}, 20}}));
}

TEST(StatsMinutes, WhatDoesNotFitBecomesTheNearestNumber) {
    constexpr int most = std::numeric_limits<int>::max();
    constexpr int least = std::numeric_limits<int>::min();
    const DayKey day(2026, 3, 5);
    for (const double seconds : {1e300, 1e12, std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(Stats::focusMinutesByDay(Sessions{session(morning, seconds)}, 4, Calendar::utc()),
                  (MinutesByDay{{day, most}}));
        EXPECT_EQ(Stats::summary(Sessions{session(morning, seconds)}, Calendar::utc()),
                  (Stats::Summary{most, 1, most, 9}));
        EXPECT_EQ(Stats::focusMinutesByDay(Sessions{session(morning, -seconds)}, 4, Calendar::utc()),
                  (MinutesByDay{{day, least}}));
    }
    EXPECT_EQ(Stats::focusMinutesByDay(Sessions{session(morning, std::numeric_limits<double>::quiet_NaN())},
                                       4, Calendar::utc()),
              (MinutesByDay{{day, 0}}));
}

TEST(StatsMinutes, SumsBeyondAllMeasureSaturate) {
    constexpr int most = std::numeric_limits<int>::max();
    for (const double seconds : {1e300, 1e308}) {
        const Sessions sessions{session(morning, seconds), session(morning, seconds),
                                session(morning, seconds, Phase::longBreak)};
        EXPECT_EQ(Stats::focusMinutesByDay(sessions, 4, Calendar::utc()),
                  (MinutesByDay{{{2026, 3, 5}, most}}));
        EXPECT_EQ(Stats::summary(sessions, Calendar::utc()), (Stats::Summary{most, 2, most, 9}));
        EXPECT_EQ(Stats::heatLevel(most, 60), 4);
    }
}

struct HeatRow {
    const char* name;
    int minutes;
    int goal;
    int level;
};

class HeatTable : public testing::TestWithParam<HeatRow> {};

TEST_P(HeatTable, GradesTheDay) {
    EXPECT_EQ(Stats::heatLevel(GetParam().minutes, GetParam().goal), GetParam().level);
}

INSTANTIATE_TEST_SUITE_P(
    Stats, HeatTable,
    testing::Values(HeatRow{"nothing", 0, 60, 0}, HeatRow{"negative", -1, 60, 0},
                    HeatRow{"aMinute", 1, 60, 1}, HeatRow{"belowHalf", 29, 60, 1}, HeatRow{"half", 30, 60, 2},
                    HeatRow{"belowGoal", 59, 60, 2}, HeatRow{"goal", 60, 60, 3},
                    HeatRow{"belowTwice", 119, 60, 3}, HeatRow{"twice", 120, 60, 4},
                    HeatRow{"halfOfAnOddGoalIsAFraction", 7, 15, 1}, HeatRow{"aboveThatHalf", 8, 15, 2},
                    HeatRow{"goalOfOne", 1, 1, 3}, HeatRow{"twiceAGoalOfOne", 2, 1, 4},
                    HeatRow{"goalOfZeroIsOne", 1, 0, 3}, HeatRow{"negativeGoalIsOne", 2, -5, 4},
                    HeatRow{"nothingOfNoGoal", 0, 0, 0},
                    HeatRow{"largestGoal", std::numeric_limits<int>::max(), std::numeric_limits<int>::max(),
                            3}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(StatsSummary, AveragesOverStoppedSessionsToo) {
    const Sessions sessions{session(morning, 1500), stopped(morning, 600)};
    EXPECT_EQ(Stats::summary(sessions, Calendar::utc()), (Stats::Summary{35, 1, 17, 9}));
    EXPECT_EQ(Stats::summary(Sessions{sessions[0]}, Calendar::utc()), (Stats::Summary{25, 1, 25, 9}));
    EXPECT_EQ(Stats::summary(Sessions{sessions[1]}, Calendar::utc()), (Stats::Summary{10, 0, 10, 9}));
}

TEST(StatsSummary, IsTruncatedAfterTheSum) {
    const Sessions sessions{session(morning, 90), session(morning, 90), session(morning, 59)};
    EXPECT_EQ(Stats::summary(sessions, Calendar::utc()), (Stats::Summary{3, 3, 1, 9}));
}

TEST(StatsSummary, TheHourIsTheOneWithTheMostTime) {
    const Sessions sessions{session(utc(2026, 3, 5, 9), 1500), session(utc(2026, 3, 6, 14, 59), 1000),
                            session(utc(2026, 3, 7, 14), 1000),
                            session(utc(2026, 3, 7, 20), 5000, Phase::longBreak)};
    EXPECT_EQ(Stats::summary(sessions, Calendar::utc()).mostProductiveHour, 14);
    EXPECT_EQ(Stats::summary(sessions, zone("Asia/Tokyo")).mostProductiveHour, 23);
    EXPECT_EQ(Stats::summary(sessions, zone("America/New_York")).mostProductiveHour, 9);
}

TEST(StatsSummary, OfEqualHoursTheEarlierOneWins) {
    const Sessions sessions{session(utc(2026, 3, 5, 15), 1500), session(utc(2026, 3, 5, 9), 1500)};
    EXPECT_EQ(Stats::summary(sessions, Calendar::utc()).mostProductiveHour, 9);
}

TEST(StatsSummary, ASessionWithoutTimeStillHasAnHour) {
    EXPECT_EQ(Stats::summary(Sessions{session(morning, 0)}, Calendar::utc()), (Stats::Summary{0, 1, 0, 9}));
}

const AppUsage editor{"org.example.editor", "Editor", Seconds{100}};
const AppUsage browser{"org.example.browser", "Browser", Seconds{100}};
const AppUsage awayTime{"away", "Away", Seconds{300}};

TEST(StatsApps, AddUpAcrossSessions) {
    const Sessions sessions{withApps(morning, {editor, browser}), withApps(morning, {editor})};
    EXPECT_EQ(Stats::appTotals(sessions, distantPast),
              (std::vector<AppUsage>{{"org.example.editor", "Editor", Seconds{200}}, browser}));
}

TEST(StatsApps, KeepTheNameThatWasMetFirst) {
    const Sessions sessions{withApps(morning, {{"e", "Old", Seconds{1}}}),
                            withApps(morning, {{"e", "New", Seconds{1}}})};
    EXPECT_EQ(Stats::appTotals(sessions, distantPast), (std::vector<AppUsage>{{"e", "Old", Seconds{2}}}));
}

TEST(StatsApps, EqualSecondsSortByNameUpperCaseFirst) {
    const Sessions sessions{withApps(morning, {{"1", "b", Seconds{5}},
                                               {"2", "a", Seconds{5}},
                                               {"3", "Z", Seconds{5}},
                                               {"4", "\xC3\x84", Seconds{5}},
                                               {"5", "c", Seconds{6}}})};
    std::vector<std::string> ids;
    for (const AppUsage& usage : Stats::appTotals(sessions, distantPast))
        ids.push_back(usage.bundleID);
    EXPECT_EQ(ids, (std::vector<std::string>{"5", "3", "2", "1", "4"}));
}

TEST(StatsApps, NamesCompareInComposedForm) {
    // Decomposed, the accented name would begin with an "e" and come first.
    const Sessions sessions{withApps(morning, {{"1", "e\u0301", Seconds{5}}, {"2", "z", Seconds{5}}})};
    const std::vector<AppUsage> totals = Stats::appTotals(sessions, distantPast);
    ASSERT_EQ(totals.size(), 2U);
    EXPECT_EQ(totals[0].bundleID, "2");
}

TEST(StatsApps, FullTiesComeAsTheyWereMet) {
    std::vector<AppUsage> apps;
    for (int i = 40; i > 0; --i)
        apps.push_back({std::to_string(i), "Same", Seconds{5}});
    EXPECT_EQ(Stats::appTotals(Sessions{withApps(morning, apps)}, distantPast), apps);
}

TEST(StatsApps, ASessionAtTheVeryStartOfThePeriodCounts) {
    const Sessions sessions{withApps(morning, {editor})};
    EXPECT_EQ(Stats::appTotals(sessions, morning).size(), 1U);
    EXPECT_TRUE(Stats::appTotals(sessions, morning + std::chrono::microseconds{1}).empty());
}

TEST(StatsApps, LeaveOutTimeAway) {
    EXPECT_EQ(Stats::appTotals(Sessions{withApps(morning, {awayTime, editor})}, distantPast),
              (std::vector<AppUsage>{editor}));
    EXPECT_TRUE(
        Stats::appTotals(Sessions{withApps(morning, {awayTime}), withApps(morning, {awayTime})}, distantPast)
            .empty());
}

TEST(StatsApps, SessionsWithoutUsageAddNothing) {
    EXPECT_TRUE(
        Stats::appTotals(Sessions{session(morning, 1500), withApps(morning, {})}, distantPast).empty());
}

TEST(StatsApps, SortAnyFloats) {
    std::vector<AppUsage> apps;
    for (int i = 0; i < 200; ++i) {
        const double seconds = i % 3 == 0 ? std::numeric_limits<double>::quiet_NaN() : i % 7;
        apps.push_back({std::to_string(i), "name", Seconds{seconds}});
    }
    EXPECT_EQ(Stats::appTotals(Sessions{withApps(morning, apps)}, distantPast).size(), apps.size());
}

TEST(StatsScore, IsWeightedByTime) {
    const Sessions sessions{withApps(morning, {{"good", "Good", Seconds{300}}, awayTime}),
                            withApps(morning, {{"bad", "Bad", Seconds{100}}})};
    EXPECT_EQ(Stats::averageFocusScore(sessions, {"bad"}, distantPast), 0.75);
    EXPECT_EQ(Stats::averageFocusScore(sessions, {"bad"}, utc(2027, 1, 1)), std::nullopt);
}

} // namespace
} // namespace selvane
