#include "SelvaneCore/ModelsCoding.h"

#include "Support/JSONText.h"
#include "Support/LocalTime.h"
#include "Support/StoreFixture.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <ctime>
#include <locale>
#include <string>
#include <string_view>

namespace selvane {
namespace {

using test::decoded;
using test::encoded;
using test::History;
using test::RandomRecords;
using test::utc;

const UUID firstID = *UUID::parse("0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF");
const UUID secondID = *UUID::parse("11111111-2222-4333-8444-555555555555");

const FocusSession fullSession{firstID,
                               utc(2026, 3, 5, 13, 42, 9),
                               utc(2026, 3, 5, 14, 7, 9),
                               Phase::focus,
                               Seconds{1500},
                               Seconds{1499.25},
                               true,
                               secondID,
                               std::vector<AppUsage>{{"org.example.Editor", "Edi/tor", Seconds{1200.5}},
                                                     {"away", "Away", Seconds{298}}}};
const FocusSession bareSession{secondID,
                               utc(2026, 3, 5, 14, 7, 9),
                               utc(2026, 3, 5, 14, 12, 9),
                               Phase::shortBreak,
                               Seconds{300},
                               Seconds{300},
                               false,
                               std::nullopt,
                               std::nullopt};
const TaskItem openTask{firstID, "Write \"it\"", false, utc(2026, 1, 2, 3, 4, 5), std::nullopt, 4, 0};
const TaskItem doneTask{secondID, "Größe", true, utc(2026, 1, 2, 3, 4, 5), utc(2026, 1, 3), 0, 2};

constexpr std::string_view goldenSession = R"({
  "actualSeconds" : 1499.25,
  "apps" : [
    {
      "bundleID" : "org.example.Editor",
      "name" : "Edi\/tor",
      "seconds" : 1200.5
    },
    {
      "bundleID" : "away",
      "name" : "Away",
      "seconds" : 298
    }
  ],
  "completed" : true,
  "end" : "2026-03-05T14:07:09Z",
  "id" : "0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF",
  "phase" : "focus",
  "plannedSeconds" : 1500,
  "start" : "2026-03-05T13:42:09Z",
  "taskID" : "11111111-2222-4333-8444-555555555555"
})";

constexpr std::string_view goldenTask = R"({
  "completedAt" : "2026-01-03T00:00:00Z",
  "completedPomodoros" : 2,
  "createdAt" : "2026-01-02T03:04:05Z",
  "estimatedPomodoros" : 0,
  "id" : "11111111-2222-4333-8444-555555555555",
  "isDone" : true,
  "title" : "Größe"
})";

std::string replaced(std::string_view text, std::string_view part, std::string_view by) {
    std::string result(text);
    const std::size_t at = result.find(part);
    if (at == std::string::npos) {
        ADD_FAILURE() << "no " << part;
        return result;
    }
    return result.substr(0, at).append(by).append(result, at + part.size());
}

/// The text without the line of that key; the key isn't the object's last.
std::string withoutKey(std::string_view text, std::string_view key) {
    std::string result(text);
    const std::size_t at = result.find(std::string("  \"").append(key).append("\" : "));
    if (at == std::string::npos) {
        ADD_FAILURE() << "no " << key;
        return result;
    }
    return result.erase(at, result.find('\n', at) + 1 - at);
}

/// What decoding says of an object that lacks that key.
std::string missing(std::string_view key) {
    return std::string(1, '"').append(key).append("\": missing");
}

TEST(ModelsCoding, SessionGolden) {
    EXPECT_EQ(encoded(fullSession), goldenSession);
    EXPECT_EQ(decoded<FocusSession>(goldenSession), fullSession);
}

TEST(ModelsCoding, TaskGolden) {
    EXPECT_EQ(encoded(doneTask), goldenTask);
    EXPECT_EQ(decoded<TaskItem>(goldenTask), doneTask);
}

/// Into a day that no text below names.
tl::expected<DayKey, std::string> decodedDay(std::string_view text) {
    return decoded(text, DayKey(1, 1, 1));
}

TEST(ModelsCoding, ADayIsThreeNumbersAndNotItsDescription) {
    constexpr std::string_view golden = R"({
  "day" : 5,
  "month" : 3,
  "year" : 2026
})";
    EXPECT_EQ(encoded(DayKey(2026, 3, 5)), golden);
    EXPECT_EQ(decodedDay(golden), DayKey(2026, 3, 5));
    EXPECT_EQ(decodedDay(encoded(DayKey(-987, 13, 99))), DayKey(-987, 13, 99)) << "numbers are not checked";
    EXPECT_FALSE(decodedDay(R"("2026-03-05")"));
}

TEST(ModelsCoding, EveryNumberOfADayIsRequired) {
    EXPECT_EQ(decodedDay(R"({"month":3,"year":2026})").error(), missing("day"));
    EXPECT_EQ(decodedDay(R"({"day":5,"year":2026})").error(), missing("month"));
    EXPECT_EQ(decodedDay(R"({"day":5,"month":3})").error(), missing("year"));
    EXPECT_FALSE(decodedDay(R"({"day":5.5,"month":3,"year":2026})"));
    EXPECT_FALSE(decodedDay(R"({"day":"5","month":3,"year":2026})"));
    EXPECT_FALSE(decodedDay(R"({"day":5,"month":3,"year":2147483648})"));
}

TEST(ModelsCoding, AbsentFieldsAreLeftOutAndReadBackAbsent) {
    const std::string session = encoded(bareSession);
    EXPECT_EQ(session.find("taskID"), std::string::npos);
    EXPECT_EQ(session.find("apps"), std::string::npos);
    EXPECT_EQ(session.find("null"), std::string::npos);
    EXPECT_EQ(decoded<FocusSession>(session), bareSession);
    const std::string task = encoded(openTask);
    EXPECT_EQ(task.find("completedAt"), std::string::npos);
    EXPECT_EQ(decoded<TaskItem>(task), openTask);
}

TEST(ModelsCoding, NullForAnOptionalFieldIsAbsence) {
    const auto session = decoded<FocusSession>(
        replaced(encoded(bareSession), "{\n", "{\n  \"apps\" : null,\n  \"taskID\" : null,\n"));
    EXPECT_EQ(session, bareSession);
    EXPECT_EQ(decoded<TaskItem>(replaced(encoded(openTask), "{\n", "{\n  \"completedAt\" : null,\n")),
              openTask);
}

TEST(ModelsCoding, AnEmptyUsageListIsNoAbsence) {
    FocusSession session = bareSession;
    session.apps.emplace();
    EXPECT_NE(encoded(session).find("\"apps\" : [\n\n  ],\n"), std::string::npos);
    EXPECT_EQ(decoded<FocusSession>(encoded(session)), session);
}

TEST(ModelsCoding, EveryKeyOfASessionButTwoIsRequired) {
    for (const auto* const key :
         {"actualSeconds", "completed", "end", "id", "phase", "plannedSeconds", "start"}) {
        EXPECT_EQ(decoded<FocusSession>(withoutKey(goldenSession, key)).error(), missing(key));
        const std::string null = std::string("{\n  \"").append(key).append("\" : null,\n");
        EXPECT_FALSE(decoded<FocusSession>(replaced(withoutKey(goldenSession, key), "{\n", null))) << key;
    }
}

TEST(ModelsCoding, EveryKeyOfATaskButOneIsRequired) {
    const std::string text = replaced(goldenTask, "\"Größe\"\n", "\"Größe\",\n  \"z\" : 1\n");
    ASSERT_EQ(decoded<TaskItem>(text), doneTask);
    for (const auto* const key :
         {"completedPomodoros", "createdAt", "estimatedPomodoros", "id", "isDone", "title"})
        EXPECT_EQ(decoded<TaskItem>(withoutKey(text, key)).error(), missing(key));
}

TEST(ModelsCoding, EveryKeyOfAUsageIsRequiredAndOneBadEntryFailsTheSession) {
    for (const auto* const line : {"      \"bundleID\" : \"away\",\n", "      \"name\" : \"Away\",\n"})
        EXPECT_FALSE(decoded<FocusSession>(replaced(goldenSession, line, "")));
    EXPECT_FALSE(decoded<FocusSession>(replaced(goldenSession, ",\n      \"seconds\" : 298", "")));
    EXPECT_FALSE(decoded<FocusSession>(replaced(goldenSession, "298", "\"298\"")));
    EXPECT_FALSE(decoded<FocusSession>(replaced(goldenSession, "298", "true")));
}

struct FaultRow {
    const char* name;
    const char* part;
    const char* by;
};

class BadSessions : public testing::TestWithParam<FaultRow> {};

TEST_P(BadSessions, FailToDecode) {
    ASSERT_TRUE(decoded<FocusSession>(goldenSession));
    EXPECT_FALSE(decoded<FocusSession>(replaced(goldenSession, GetParam().part, GetParam().by)));
}

INSTANTIATE_TEST_SUITE_P(
    ModelsCoding, BadSessions,
    testing::Values(FaultRow{"phaseBreak", "\"focus\"", "\"break\""},
                    FaultRow{"phaseInOtherCase", "\"focus\"", "\"Focus\""},
                    FaultRow{"phaseNumber", "\"focus\"", "0"},
                    FaultRow{"fractionOfASecond", "14:07:09Z", "14:07:09.5Z"},
                    FaultRow{"dateInAnotherZone", "14:07:09Z", "14:07:09+01:00"},
                    FaultRow{"dateNumber", "\"2026-03-05T14:07:09Z\"", "794412429"},
                    FaultRow{"completedNumber", "true", "1"}, FaultRow{"completedText", "true", "\"true\""},
                    FaultRow{"secondsText", "1499.25", "\"1499.25\""},
                    FaultRow{"secondsNull", "1500", "null"}, FaultRow{"secondsBoolean", "1500", "true"},
                    FaultRow{"badID", "0F1E2D3C", "XF1E2D3C"}, FaultRow{"badTaskID", "11111111-", "11111111"},
                    FaultRow{"emptyTaskID", "11111111-2222-4333-8444-555555555555", ""},
                    FaultRow{"otherKeyName", "\"plannedSeconds\"", "\"planned\""},
                    FaultRow{"keyInOtherCase", "\"start\"", "\"Start\""}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(ModelsCoding, ATaskWithoutCountsFails) {
    EXPECT_FALSE(decoded<TaskItem>(withoutKey(goldenTask, "completedPomodoros")));
    EXPECT_FALSE(decoded<TaskItem>(
        replaced(goldenTask, "\"completedPomodoros\" : 2", "\"completedPomodoros\" : 2.5")));
    EXPECT_TRUE(decoded<TaskItem>(
        replaced(goldenTask, "\"completedPomodoros\" : 2", "\"completedPomodoros\" : 2.0")));
    const auto large = decoded<TaskItem>(
        replaced(goldenTask, "\"estimatedPomodoros\" : 0", "\"estimatedPomodoros\" : 3000000000"));
    ASSERT_TRUE(large);
    EXPECT_EQ(large->estimatedPomodoros, 3'000'000'000);
    EXPECT_FALSE(decoded<TaskItem>(
        replaced(goldenTask, "\"estimatedPomodoros\" : 0", "\"estimatedPomodoros\" : 9223372036854775808")));
}

TEST(ModelsCoding, ExtraKeysAreIgnored) {
    EXPECT_EQ(
        decoded<FocusSession>(replaced(goldenSession, "{\n", "{\n  \"mood\" : [{\"id\" : 1}, null],\n")),
        fullSession);
    EXPECT_EQ(decoded<TaskItem>(replaced(goldenTask, "{\n", "{\n  \"items\" : {},\n")), doneTask);
}

TEST(ModelsCoding, NothingChecksThatValuesMakeSense) {
    FocusSession session = bareSession;
    std::swap(session.start, session.end);
    session.actualSeconds = Seconds{-1};
    EXPECT_EQ(decoded<FocusSession>(encoded(session)), session);
    TaskItem task = openTask;
    task.completedPomodoros = -5;
    task.title = "";
    EXPECT_EQ(decoded<TaskItem>(encoded(task)), task);
}

TEST(ModelsCoding, WholeSecondsRoundTripAndFractionsAreDropped) {
    TaskItem task = openTask;
    EXPECT_EQ(decoded<TaskItem>(encoded(task))->createdAt, utc(2026, 1, 2, 3, 4, 5));
    task.createdAt += std::chrono::milliseconds{800};
    EXPECT_EQ(decoded<TaskItem>(encoded(task))->createdAt, utc(2026, 1, 2, 3, 4, 5));
}

TEST(ModelsCoding, ATaskListIsAnObjectOfItems) {
    EXPECT_EQ(encoded(TaskList{}), "{\n  \"items\" : [\n\n  ]\n}");
    EXPECT_EQ(decoded<TaskList>("{\"items\":[]}"), TaskList{});
    // The order of the file is kept, whether or not it is normal.
    const TaskList list{{doneTask, openTask}};
    EXPECT_EQ(decoded<TaskList>(encoded(list)), list);
}

TEST(ModelsCoding, ATaskListIsReadStrictly) {
    for (const auto* const text :
         {"{}", "[]", "{\"items\":null}", "{\"items\":{}}", "{\"items\":[null]}", "{\"Items\":[]}", "null"})
        EXPECT_FALSE(decoded<TaskList>(text)) << text;
    const std::string good(goldenTask);
    ASSERT_TRUE(decoded<TaskList>("{\"items\":[" + good + "," + good + "]}"));
    EXPECT_FALSE(decoded<TaskList>("{\"items\":[" + good + "," + withoutKey(good, "isDone") + "]}"));
}

TEST(ModelsCoding, RandomValuesRoundTrip) {
    for (std::uint64_t seed = 0; seed < 200; ++seed) {
        RandomRecords random(seed);
        const History history = random.history(20);
        ASSERT_EQ(decoded<History>(encoded(history)), history) << seed;
        const TaskList tasks = random.tasks(20);
        ASSERT_EQ(decoded<TaskList>(encoded(tasks)), tasks) << seed;
        ASSERT_EQ(encoded(*decoded<TaskList>(encoded(tasks))), encoded(tasks)) << seed;
    }
}

/// A decimal comma and grouped digits.
class CommaDigits : public std::numpunct<char> {
protected:
    [[nodiscard]] char do_decimal_point() const override { return ','; }
    [[nodiscard]] char do_thousands_sep() const override { return '.'; }
    [[nodiscard]] std::string do_grouping() const override { return "\3"; }
};

TEST(ModelsCoding, NeitherLocaleNorZoneChangesAByte) {
    const std::string oldZone = std::getenv("TZ") ? std::getenv("TZ") : "";
    const std::locale oldLocale = std::locale::global(std::locale(std::locale::classic(), new CommaDigits));
    // Where the system has it, the locale of the C library too.
    static_cast<void>(std::setlocale(LC_ALL, "de_DE.UTF-8"));
    ::setenv("TZ", "Pacific/Kiritimati", 1);
    ::tzset();

    EXPECT_EQ(encoded(fullSession), goldenSession);
    EXPECT_EQ(decoded<FocusSession>(goldenSession), fullSession);

    std::locale::global(oldLocale);
    std::setlocale(LC_ALL, "C");
    if (oldZone.empty())
        ::unsetenv("TZ");
    else
        ::setenv("TZ", oldZone.c_str(), 1);
    ::tzset();
}

} // namespace
} // namespace selvane
