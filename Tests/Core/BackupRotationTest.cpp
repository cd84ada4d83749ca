#include "SelvaneCore/BackupRotation.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

using test::utc;
using test::zone;
using Names = std::vector<std::string>;

/// Names of one kind on that many days from the first of March on, oldest first.
Names days(const std::string& prefix, int count) {
    Names names;
    for (int day = 1; day <= count; ++day)
        names.push_back(prefix + DayKey(2026, 3, day).description() + ".json");
    return names;
}

Names joined(Names first, const Names& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST(BackupRotation, PrefixesAndCounts) {
    EXPECT_EQ(BackupRotation::dailyPrefix, "daily-");
    EXPECT_EQ(BackupRotation::keepDaily, 14U);
    EXPECT_EQ(BackupRotation::preUpdatePrefix, "pre-update-");
    EXPECT_EQ(BackupRotation::keepPreUpdate, 3U);
    EXPECT_EQ(BackupRotation::safetyPrefix, "before-");
    EXPECT_EQ(BackupRotation::keepSafety, 5U);
}

// Names.

TEST(BackupRotation, DailyNamesTellTheDayKey) {
    EXPECT_EQ(BackupRotation::dailyName(DayKey(2026, 3, 5)), "daily-2026-03-05.json");
    EXPECT_EQ(BackupRotation::dailyName(DayKey(utc(2026, 3, 5, 2), 4, Calendar::utc())),
              "daily-2026-03-04.json");
}

TEST(BackupRotation, OtherNamesTellLocalTime) {
    const Date date = utc(2026, 3, 5, 23, 7, 9);
    EXPECT_EQ(BackupRotation::preUpdateName("1.4.2", date, Calendar::utc()),
              "pre-update-1.4.2-2026-03-05.json");
    EXPECT_EQ(BackupRotation::safetyName("import", date, Calendar::utc()),
              "before-import-2026-03-05-230709.json");
    const Calendar tokyo = zone("Asia/Tokyo");
    EXPECT_EQ(BackupRotation::preUpdateName("1.4.2", date, tokyo), "pre-update-1.4.2-2026-03-06.json");
    EXPECT_EQ(BackupRotation::safetyName("import", date, tokyo), "before-import-2026-03-06-080709.json");
}

TEST(BackupRotation, OtherNamesTellThePlainCalendarDay) {
    // An hour that the user may still count to the day before.
    const Date date = utc(2026, 3, 5, 0, 0, 1);
    EXPECT_EQ(BackupRotation::preUpdateName("7", date, Calendar::utc()), "pre-update-7-2026-03-05.json");
    EXPECT_EQ(BackupRotation::safetyName("reset", date, Calendar::utc()),
              "before-reset-2026-03-05-000001.json");
    EXPECT_EQ(BackupRotation::safetyName("restore", date, Calendar::utc()),
              "before-restore-2026-03-05-000001.json");
}

struct BuildRow {
    const char* name;
    std::string_view build;
    std::string cleaned;
};

class BuildNames : public testing::TestWithParam<BuildRow> {};

TEST_P(BuildNames, AreCleaned) {
    EXPECT_EQ(BackupRotation::preUpdateName(GetParam().build, utc(2026, 3, 5), Calendar::utc()),
              "pre-update-" + GetParam().cleaned + "-2026-03-05.json");
}

using namespace std::string_view_literals;
INSTANTIATE_TEST_SUITE_P(
    BackupRotation, BuildNames,
    testing::Values(BuildRow{"plain", "1.4.2"sv, "1.4.2"}, BuildRow{"word", "earlier"sv, "earlier"},
                    BuildRow{"beta", "1.4 (beta)/2"sv, "1.4beta2"}, BuildRow{"empty", ""sv, ""},
                    BuildRow{"nothingLeft", "()/-_ "sv, ""}, BuildRow{"climbing", "../../etc"sv, "....etc"},
                    BuildRow{"zeroByte", "1\0002"sv, "12"}, BuildRow{"lineBreaks", "1\r\n2\n3"sv, "123"},
                    BuildRow{"thirtyLetters", "abcdefghijklmnopqrstuvwxyzabcd"sv, "abcdefghijklmnopqrst"},
                    BuildRow{"cutAfterCleaning", "a-b-c-d-e-f-g-h-i-j-k-l-m-n-o-p-q-r-s-t-u"sv,
                             "abcdefghijklmnopqrst"},
                    BuildRow{"otherScripts", "größe日本٣½"sv, "größe日本٣½"},
                    BuildRow{"accentsGoWithTheirLetters", "e\u0301.\u0301x"sv, "e\u0301x"},
                    BuildRow{"twentyAccents",
                             "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"
                             "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301x"sv,
                             "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"
                             "e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301e\u0301"},
                    BuildRow{"emoji", "1🍅2"sv, "12"},
                    BuildRow{"wrongBytes",
                             "1\xff"
                             "2"sv,
                             "12"}),
    [](const auto& test) { return std::string(test.param.name); });

// What may go.

TEST(BackupRotation, OfFifteenDaysTheOldestGoes) {
    EXPECT_EQ(BackupRotation::namesToDelete(days("daily-", 15)), Names{"daily-2026-03-01.json"});
    EXPECT_EQ(BackupRotation::namesToDelete(days("daily-", 14)), Names{});
    EXPECT_EQ(BackupRotation::namesToDelete({}), Names{});
}

TEST(BackupRotation, OfFourUpdatesTheOldestGoes) {
    EXPECT_EQ(BackupRotation::namesToDelete(days("pre-update-7-", 4)), Names{"pre-update-7-2026-03-01.json"});
    EXPECT_EQ(BackupRotation::namesToDelete(days("pre-update-7-", 3)), Names{});
}

TEST(BackupRotation, ReasonsShareOneCount) {
    const Names names{"before-restore-2026-03-03-100000.json", "before-reset-2026-03-01-100000.json",
                      "before-import-2026-03-02-100000.json",  "before-import-2026-03-04-100000.json",
                      "before-import-2026-03-05-100000.json",  "before-reset-2026-03-06-100000.json"};
    EXPECT_EQ(BackupRotation::namesToDelete(names), Names{"before-reset-2026-03-01-100000.json"});
    EXPECT_EQ(BackupRotation::namesToDelete(Names(names.begin() + 1, names.end())), Names{});
}

TEST(BackupRotation, TheBuildNamePlaysNoPart) {
    EXPECT_EQ(
        BackupRotation::namesToDelete({"pre-update-1.0-2026-02-01.json", "pre-update-9.9-2026-01-01.json",
                                       "pre-update-0.1-2026-02-03.json", "pre-update-5.0-2026-02-02.json"}),
        Names{"pre-update-9.9-2026-01-01.json"});
}

TEST(BackupRotation, AtAnEqualDateTheTimeComesLater) {
    Names names = days("before-reset-", 3);
    names.insert(names.begin(), {"before-reset-2026-02-01-000000.json", "before-import-2026-02-01.json",
                                 "before-reset-2026-01-31-235959.json"});
    EXPECT_EQ(BackupRotation::namesToDelete(names), Names{"before-reset-2026-01-31-235959.json"});
    names.push_back("before-reset-2026-04-01.json");
    EXPECT_EQ(BackupRotation::namesToDelete(names),
              (Names{"before-reset-2026-01-31-235959.json", "before-import-2026-02-01.json"}));
    names.push_back("before-reset-2026-04-02.json");
    EXPECT_EQ(BackupRotation::namesToDelete(names).back(), "before-reset-2026-02-01-000000.json");
}

TEST(BackupRotation, EqualStampsKeepTheirOrder) {
    EXPECT_EQ(BackupRotation::namesToDelete({"pre-update-c-2026-01-01.json", "pre-update-a-2026-01-01.json",
                                             "pre-update-b-2026-01-01.json", "pre-update-e-2026-01-01.json",
                                             "pre-update-d-2026-01-01.json"}),
              (Names{"pre-update-c-2026-01-01.json", "pre-update-a-2026-01-01.json"}));
}

TEST(BackupRotation, NamesOfTheFutureAreAhead) {
    // 14:07:09 in Berlin.
    const Date now = test::utc(2026, 3, 5, 13, 7, 9);
    const Calendar berlin = test::zone("Europe/Berlin");
    for (const char* const ahead :
         {"daily-2026-03-06.json", "pre-update-1-2027-01-01.json", "before-reset-2026-03-05-140710.json"})
        EXPECT_TRUE(BackupRotation::isAhead(ahead, now, berlin)) << ahead;
    for (const char* const past : {"daily-2026-03-05.json", "before-reset-2026-03-05-140709.json",
                                   "daily-notes.json", "daily-2027-01-01.txt", "daily-2026-03-04.json"})
        EXPECT_FALSE(BackupRotation::isAhead(past, now, berlin)) << past;
}

TEST(BackupRotation, ManyEqualStampsKeepTheirOrder) {
    Names names;
    for (int number = 0; number < 60; ++number)
        names.push_back("pre-update-" + std::to_string(number * 37 % 61) + "-2026-01-01.json");
    EXPECT_EQ(BackupRotation::namesToDelete(names), Names(names.begin(), names.end() - 3));
}

struct NoStampRow {
    const char* name;
    std::string_view middle;
};

class NamesWithoutDate : public testing::TestWithParam<NoStampRow> {};

TEST_P(NamesWithoutDate, AreTheFirstToGo) {
    const std::string odd = "daily-" + std::string(GetParam().middle) + ".json";
    EXPECT_EQ(BackupRotation::namesToDelete(joined(days("daily-", 14), {odd})), Names{odd});
    EXPECT_EQ(BackupRotation::namesToDelete(joined(days("daily-", 13), {odd})), Names{});
}

INSTANTIATE_TEST_SUITE_P(
    BackupRotation, NamesWithoutDate,
    testing::Values(NoStampRow{"notes", "notes"}, NoStampRow{"nothing", ""},
                    NoStampRow{"dateInFront", "2027-01-01-copy"}, NoStampRow{"copyNumber", "2027-01-01 (2)"},
                    NoStampRow{"fiveDigitsOfTime", "2027-01-01-12345"},
                    NoStampRow{"sevenDigitsOfTime", "2027-01-01-1234567"},
                    NoStampRow{"shortYear", "27-01-01"}, NoStampRow{"shortDay", "2027-01-1"},
                    NoStampRow{"longDay", "2027-01-011"}, NoStampRow{"otherDashes", "2027–01–01"},
                    NoStampRow{"otherDigits", "٢٠٢٧-٠١-٠١"}, NoStampRow{"blankBehind", "2027-01-01 "},
                    NoStampRow{"lineBreakBehind", "2027-01-01\n"}, NoStampRow{"letter", "2027-O1-01"},
                    NoStampRow{"extensionTwice", "2027-01-01.json"}, NoStampRow{"digits", "20270101"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(BackupRotation, DatesNeedNotExistAndDigitsMayStandBefore) {
    for (const std::string odd : {"daily-2025-99-99.json", "daily-12025-01-01.json", "daily-0000-00-00.json",
                                  "daily-x2025-01-01-999999.json", "daily-9999-01-01-2025-01-01.json"}) {
        // With the date of its end it is older than the others, and newer than one without.
        EXPECT_EQ(BackupRotation::namesToDelete(joined(days("daily-", 14), {odd})), Names{odd});
        EXPECT_EQ(BackupRotation::namesToDelete(joined(days("daily-", 14), {odd, "daily-.json"})),
                  (Names{"daily-.json", odd}));
    }
}

TEST(BackupRotation, OtherFilesAreNeverNamed) {
    Names names = days("daily-", 14);
    for (const char* const other :
         {"daily-2026-03-05.txt", "weekly-2026-03-05.json", "Daily-2026-03-05.json", "daily2026-03-05.json",
          "daily-2026-03-05.JSON", "daily-2026-03-05.json.bak", ".daily-2026-03-05.json.saving-0A1B2C",
          "my daily-2026-03-05.json", "before.json", "notes", "", ".json", "daily-"})
        names.insert(names.begin(), other);
    EXPECT_EQ(BackupRotation::namesToDelete(names), Names{});
}

TEST(BackupRotation, KindsComeInTheirOrderEachFromTheOldestOn) {
    Names names = joined(joined(days("before-import-", 7), days("pre-update-7-", 5)), days("daily-", 16));
    const Names expected{"daily-2026-03-01.json",         "daily-2026-03-02.json",
                         "pre-update-7-2026-03-01.json",  "pre-update-7-2026-03-02.json",
                         "before-import-2026-03-01.json", "before-import-2026-03-02.json"};
    EXPECT_EQ(BackupRotation::namesToDelete(names), expected);
    std::mt19937 random(3);
    for (int count = 0; count < 100; ++count) {
        std::ranges::shuffle(names, random);
        ASSERT_EQ(BackupRotation::namesToDelete(names), expected);
    }
}

TEST(BackupRotation, WhatIsMadeHereIsOrderedByTime) {
    const Calendar calendar = zone("Europe/Berlin");
    Names names;
    Date date = utc(2025, 12, 30);
    for (int count = 0; count < 10; ++count) {
        names.push_back(BackupRotation::safetyName(count % 2 == 0 ? "reset" : "import", date, calendar));
        date += std::chrono::hours{7};
    }
    EXPECT_EQ(BackupRotation::namesToDelete(names), Names(names.begin(), names.begin() + 5));
}

} // namespace
} // namespace selvane
