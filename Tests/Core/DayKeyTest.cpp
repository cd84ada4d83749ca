#include "SelvaneCore/DayKey.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <absl/hash/hash_testing.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <unordered_set>
#include <vector>

namespace selvane {
namespace {

using absl::CivilSecond;
using test::local;
using test::utc;
using test::zone;

constexpr auto allZones = {"UTC",          "Europe/Berlin", "America/New_York", "America/Sao_Paulo",
                           "Asia/Kolkata", "Asia/Tokyo",    "Pacific/Apia",     "Pacific/Kiritimati",
                           "Africa/Cairo", "Asia/Tehran",   "Asia/Beirut",      "Australia/Lord_Howe"};

struct KeyRow {
    const char* name;
    const char* zone;
    int dayStartHour;
    CivilSecond local;
    DayKey key;
};

class DayKeyOfInstant : public testing::TestWithParam<KeyRow> {};

TEST_P(DayKeyOfInstant, IsTheDayThatTheUserIsIn) {
    const KeyRow& row = GetParam();
    const Calendar calendar = zone(row.zone);
    EXPECT_EQ(DayKey(calendar.date(row.local), row.dayStartHour, calendar), row.key);
}

INSTANTIATE_TEST_SUITE_P(
    DayKey, DayKeyOfInstant,
    testing::Values(
        KeyRow{"midnightOfAPlainDay", "UTC", 0, CivilSecond(2026, 3, 1, 0, 0, 0), {2026, 3, 1}},
        KeyRow{"lastSecondOfAPlainDay", "UTC", 0, CivilSecond(2026, 3, 1, 23, 59, 59), {2026, 3, 1}},
        KeyRow{
            "lastSecondBeforeTheHour", "Europe/Berlin", 4, CivilSecond(2026, 3, 5, 3, 59, 59), {2026, 3, 4}},
        KeyRow{"theHourItself", "Europe/Berlin", 4, CivilSecond(2026, 3, 5, 4, 0, 0), {2026, 3, 5}},
        KeyRow{"monthEnd", "Asia/Tokyo", 4, CivilSecond(2026, 3, 1, 2, 0, 0), {2026, 2, 28}},
        KeyRow{"leapDay", "America/New_York", 4, CivilSecond(2024, 3, 1, 2, 0, 0), {2024, 2, 29}},
        KeyRow{"yearEnd", "Asia/Kolkata", 4, CivilSecond(2026, 1, 1, 3, 0, 0), {2025, 12, 31}},
        KeyRow{"latestStartHour", "UTC", 6, CivilSecond(2026, 5, 2, 5, 59, 59), {2026, 5, 1}},
        // On the day on which the clock goes forward, four elapsed hours before 04:30 is 23:30.
        KeyRow{"shortNightShiftsByElapsedHours",
               "Europe/Berlin",
               4,
               CivilSecond(2026, 3, 29, 4, 30, 0),
               {2026, 3, 28}},
        KeyRow{"shortNightEndsAnHourLater",
               "Europe/Berlin",
               4,
               CivilSecond(2026, 3, 29, 5, 0, 0),
               {2026, 3, 29}},
        // And on the day on which it goes back, four elapsed hours before 03:00 is midnight.
        KeyRow{"longNightEndsAnHourEarlier",
               "Europe/Berlin",
               4,
               CivilSecond(2026, 10, 25, 3, 0, 0),
               {2026, 10, 25}},
        KeyRow{
            "longNightBeforeThat", "Europe/Berlin", 4, CivilSecond(2026, 10, 25, 2, 30, 0), {2026, 10, 24}},
        KeyRow{"lastInstantBeforeASkippedDay",
               "Pacific/Apia",
               0,
               CivilSecond(2011, 12, 29, 23, 59, 59),
               {2011, 12, 29}},
        KeyRow{"firstInstantAfterASkippedDay",
               "Pacific/Apia",
               0,
               CivilSecond(2011, 12, 31, 0, 0, 0),
               {2011, 12, 31}},
        KeyRow{
            "shiftAcrossASkippedDay", "Pacific/Apia", 4, CivilSecond(2011, 12, 31, 3, 0, 0), {2011, 12, 29}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(DayKey, OneInstantIsAnotherDayInAnotherZone) {
    const Date date = utc(2026, 7, 1, 22, 30);
    EXPECT_EQ(DayKey(date, 0, zone("America/New_York")), DayKey(2026, 7, 1));
    EXPECT_EQ(DayKey(date, 0, zone("Europe/Berlin")), DayKey(2026, 7, 2));
}

TEST(DayKey, AKeyKeepsItsDateWhenTheZoneChangesLater) {
    const Date date = utc(2026, 7, 1, 22, 30);
    const DayKey made(date, 4, zone("America/New_York"));
    ASSERT_NE(DayKey(date, 4, zone("Pacific/Kiritimati")), made);
    for (const char* const name : allZones) {
        const Calendar elsewhere = zone(name);
        EXPECT_EQ(DayKey(made.date(elsewhere), 4, elsewhere), made) << name;
        EXPECT_EQ(made.adding(1, elsewhere), DayKey(2026, 7, 2)) << name;
    }
}

TEST(DayKey, TheDistantPastHasADay) {
    EXPECT_EQ(DayKey(distantPast, 0, Calendar::utc()), DayKey(1, 1, 1));
    EXPECT_EQ(DayKey(distantPast, 4, Calendar::utc()), DayKey(0, 12, 31));
}

TEST(DayKey, TheFirstAndLastInstantHaveADay) {
    EXPECT_EQ(DayKey(Date::min(), 4, Calendar::utc()).year, -290308);
    EXPECT_EQ(DayKey(Date::max(), -4, Calendar::utc()).year, 294247);
}

TEST(DayKey, ItsDateIsNoon) {
    EXPECT_EQ(DayKey(2026, 3, 5).date(Calendar::utc()), utc(2026, 3, 5, 12));
    for (const char* const name : {"Europe/Berlin", "Asia/Kolkata", "America/Sao_Paulo"}) {
        const Calendar calendar = zone(name);
        EXPECT_EQ(calendar.civil(DayKey(2018, 11, 4).date(calendar)),
                  absl::CivilSecond(2018, 11, 4, 12, 0, 0));
    }
}

TEST(DayKey, NoonStaysInItsDayForEveryDayStartHour) {
    for (const char* const name : allZones) {
        const Calendar calendar = zone(name);
        for (DayKey key(2025, 1, 1); key < DayKey(2027, 1, 1); key = key.adding(1, calendar)) {
            for (int hour = 0; hour <= 6; ++hour)
                ASSERT_EQ(DayKey(key.date(calendar), hour, calendar), key) << name << " at " << hour;
        }
    }
}

TEST(DayKey, WhatInstantsDoNotReachIsTheDistantPast) {
    for (const int year : {300'000, -300'000, std::numeric_limits<int>::max()}) {
        EXPECT_EQ(DayKey(year, 1, 1).date(Calendar::utc()), distantPast) << year;
        EXPECT_EQ(DayKey(year, 1, 1).start(4, Calendar::utc()), distantPast) << year;
    }
}

TEST(DayKey, StartIsTheHourOfThatDay) {
    const Calendar berlin = zone("Europe/Berlin");
    EXPECT_EQ(DayKey(2026, 3, 5).start(0, berlin), local(berlin, 2026, 3, 5));
    EXPECT_EQ(DayKey(2026, 3, 5).start(4, berlin), utc(2026, 3, 5, 3));
    // A wall clock hour, also on the day of a clock change.
    EXPECT_EQ(DayKey(2026, 3, 29).start(4, berlin), utc(2026, 3, 29, 2));
}

TEST(DayKey, StartInAGapTakesTheOffsetBefore) {
    EXPECT_EQ(DayKey(2026, 3, 29).start(2, zone("Europe/Berlin")), utc(2026, 3, 29, 1));
    // Here midnight itself is skipped.
    const Calendar saoPaulo = zone("America/Sao_Paulo");
    EXPECT_EQ(DayKey(2018, 11, 4).start(0, saoPaulo), local(saoPaulo, 2018, 11, 4, 1));
}

TEST(DayKey, StartThatComesTwiceIsTheFirst) {
    EXPECT_EQ(DayKey(2026, 10, 25).start(2, zone("Europe/Berlin")), utc(2026, 10, 25, 0));
}

struct AddingRow {
    const char* name;
    const char* zone;
    DayKey from;
    int days;
    DayKey to;
};

class DayKeyAdding : public testing::TestWithParam<AddingRow> {};

TEST_P(DayKeyAdding, FollowsTheCalendar) {
    const AddingRow& row = GetParam();
    EXPECT_EQ(row.from.adding(row.days, zone(row.zone)), row.to);
}

INSTANTIATE_TEST_SUITE_P(
    DayKey, DayKeyAdding,
    testing::Values(AddingRow{"nothing", "UTC", {2026, 3, 5}, 0, {2026, 3, 5}},
                    AddingRow{"overTheYearEnd", "UTC", {2026, 12, 31}, 1, {2027, 1, 1}},
                    AddingRow{"backOverTheYearEnd", "Asia/Tokyo", {2027, 1, 1}, -1, {2026, 12, 31}},
                    AddingRow{"backOverTheMonthEnd", "UTC", {2026, 3, 1}, -1, {2026, 2, 28}},
                    AddingRow{"backToALeapDay", "America/New_York", {2024, 3, 1}, -1, {2024, 2, 29}},
                    AddingRow{"noLeapDayInACentury", "UTC", {2100, 2, 28}, 1, {2100, 3, 1}},
                    AddingRow{"aWholeYear", "Europe/Berlin", {2026, 3, 5}, 365, {2027, 3, 5}},
                    AddingRow{"clockForward", "Europe/Berlin", {2026, 3, 28}, 1, {2026, 3, 29}},
                    AddingRow{"clockForwardAndOn", "Europe/Berlin", {2026, 3, 29}, 1, {2026, 3, 30}},
                    AddingRow{"clockBack", "Europe/Berlin", {2026, 10, 24}, 1, {2026, 10, 25}},
                    AddingRow{"clockBackAndOn", "Europe/Berlin", {2026, 10, 25}, 1, {2026, 10, 26}},
                    AddingRow{"backOverAClockBack", "Europe/Berlin", {2026, 10, 26}, -1, {2026, 10, 25}},
                    AddingRow{"backToAClockForward", "Europe/Berlin", {2026, 3, 30}, -1, {2026, 3, 29}},
                    AddingRow{"backOverAClockForward", "Europe/Berlin", {2026, 3, 29}, -1, {2026, 3, 28}},
                    AddingRow{"skippedMidnight", "America/Sao_Paulo", {2018, 11, 3}, 1, {2018, 11, 4}},
                    AddingRow{"overASkippedDay", "Pacific/Apia", {2011, 12, 29}, 1, {2011, 12, 31}},
                    AddingRow{"backOverASkippedDay", "Pacific/Apia", {2011, 12, 31}, -1, {2011, 12, 29}},
                    AddingRow{"pastASkippedDay", "Pacific/Apia", {2011, 12, 29}, 2, {2011, 12, 31}},
                    AddingRow{"backOntoASkippedDay", "Pacific/Apia", {2012, 1, 1}, -2, {2011, 12, 29}},
                    AddingRow{"fromASkippedDay", "Pacific/Apia", {2011, 12, 30}, 1, {2012, 1, 1}},
                    AddingRow{"backFromASkippedDay", "Pacific/Apia", {2011, 12, 30}, -1, {2011, 12, 29}},
                    AddingRow{"overASkippedNewYear", "Pacific/Kiritimati", {1994, 12, 30}, 1, {1995, 1, 1}},
                    AddingRow{"sameDatesElsewhere", "Europe/Berlin", {2011, 12, 29}, 1, {2011, 12, 30}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(DayKey, SteppingVisitsEachDateOnceInBothDirections) {
    for (const char* const name : allZones) {
        const Calendar calendar = zone(name);
        std::vector<DayKey> forward;
        const DayKey last(2012, 12, 31);
        for (DayKey key(2011, 1, 1); key < last; key = key.adding(1, calendar))
            forward.push_back(key);
        EXPECT_EQ(std::ranges::adjacent_find(forward, std::ranges::greater_equal{}), forward.end()) << name;
        // Of these zones, only Samoa lost a day in these years.
        EXPECT_EQ(forward.size(), name == std::string("Pacific/Apia") ? 729U : 730U) << name;

        std::vector<DayKey> backward;
        for (DayKey key = last.adding(-1, calendar); key >= DayKey(2011, 1, 1);
             key = key.adding(-1, calendar))
            backward.push_back(key);
        std::ranges::reverse(backward);
        EXPECT_EQ(forward, backward) << name;
    }
}

TEST(DayKey, SteppingGoesOnWhereInstantsEnd) {
    EXPECT_EQ(DayKey(300'000, 12, 31).adding(1, Calendar::utc()), DayKey(300'001, 1, 1));
    constexpr int lastYear = std::numeric_limits<int>::max();
    constexpr int firstYear = std::numeric_limits<int>::min();
    EXPECT_EQ(DayKey(lastYear, 12, 30).adding(1, Calendar::utc()), DayKey(lastYear, 12, 31));
    EXPECT_EQ(DayKey(lastYear, 12, 31).adding(1, Calendar::utc()), DayKey(lastYear, 12, 31));
    EXPECT_EQ(DayKey(firstYear, 1, 1).adding(-1, Calendar::utc()), DayKey(firstYear, 1, 1));
}

TEST(DayKey, TheWeekdayOfASkippedDayIsThatOfItsNoon) {
    EXPECT_EQ(DayKey(2011, 12, 30).weekday(zone("Pacific/Apia")), 7);
    EXPECT_EQ(DayKey(2011, 12, 30).weekday(Calendar::utc()), 6);
}

struct WeekdayRow {
    DayKey key;
    int weekday;
};

class DayKeyWeekday : public testing::TestWithParam<WeekdayRow> {};

TEST_P(DayKeyWeekday, CountsFromSunday) {
    for (const char* const name : allZones)
        EXPECT_EQ(GetParam().key.weekday(zone(name)), GetParam().weekday) << name;
}

INSTANTIATE_TEST_SUITE_P(DayKey, DayKeyWeekday,
                         testing::Values(WeekdayRow{{2026, 3, 1}, 1}, WeekdayRow{{2026, 3, 2}, 2},
                                         WeekdayRow{{2026, 3, 3}, 3}, WeekdayRow{{2026, 3, 4}, 4},
                                         WeekdayRow{{2026, 3, 5}, 5}, WeekdayRow{{2026, 3, 6}, 6},
                                         WeekdayRow{{2026, 3, 7}, 7}, WeekdayRow{{2024, 2, 29}, 5}),
                         [](const auto& test) {
                             std::string name = "on" + test.param.key.description();
                             std::ranges::replace(name, '-', '_');
                             return name;
                         });

TEST(DayKey, IsOrderedByYearThenMonthThenDay) {
    const std::vector<DayKey> ordered{{-1, 12, 31},  {987, 3, 5},  {2025, 12, 31}, {2026, 1, 1},
                                      {2026, 2, 28}, {2026, 3, 1}, {2026, 3, 2},   {2027, 1, 1}};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j)
            EXPECT_EQ(ordered[i] <=> ordered[j], i <=> j) << i << " and " << j;
    }
}

TEST(DayKey, HashesByAllThreeFields) {
    EXPECT_TRUE(absl::VerifyTypeImplementsAbslHashCorrectly({DayKey(2026, 1, 2), DayKey(2026, 2, 1),
                                                             DayKey(2026, 1, 1), DayKey(2025, 1, 2),
                                                             DayKey(1, 2, 2026)}));
    const std::unordered_set<DayKey> set{{2026, 1, 2}, {2026, 1, 2}, {2026, 2, 1}};
    EXPECT_EQ(set.size(), 2U);
    EXPECT_TRUE(set.contains(DayKey(2026, 2, 1)));
}

TEST(DayKey, TheDescriptionIsPaddedWithZeros) {
    EXPECT_EQ(DayKey(2026, 3, 5).description(), "2026-03-05");
    EXPECT_EQ(DayKey(987, 3, 5).description(), "0987-03-05");
    EXPECT_EQ(DayKey(12026, 12, 31).description(), "12026-12-31");
}

TEST(DayKey, NumbersAreNotChecked) {
    EXPECT_EQ(DayKey(2026, 13, 40).description(), "2026-13-40");
    constexpr int least = std::numeric_limits<int>::min();
    EXPECT_EQ(DayKey(least, least, least).description(), "-2147483648--2147483648--2147483648");
}

} // namespace
} // namespace selvane
