#include "SelvaneCore/SelvaneBackup.h"

#include "SelvaneCore/ModelsCoding.h"
#include "Support/LocalTime.h"
#include "Support/Repeats.h"
#include "Support/StoreFixture.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::RandomRecords;
using test::utc;
using Kind = SelvaneBackup::Problem::Kind;
using namespace std::chrono_literals;
using namespace std::string_view_literals;

const Date moment = utc(2026, 3, 5, 14, 7, 9);

UUID idOf(int number) {
    UUID::Bytes bytes{};
    bytes[14] = static_cast<std::uint8_t>(number >> 8);
    bytes[15] = static_cast<std::uint8_t>(number);
    return UUID(bytes);
}

FocusSession session(int number, Date start = utc(2026, 3, 5, 9)) {
    return {.id = idOf(number),
            .start = start,
            .end = start + 25min,
            .phase = Phase::focus,
            .plannedSeconds = Seconds{1500},
            .actualSeconds = Seconds{1500},
            .completed = true,
            .taskID = std::nullopt,
            .apps = std::nullopt};
}

TaskItem task(int number, std::string title = "Write") {
    return {.id = idOf(number),
            .title = std::move(title),
            .isDone = false,
            .createdAt = utc(2026, 3, 1),
            .completedAt = std::nullopt,
            .estimatedPomodoros = 4,
            .completedPomodoros = 1};
}

SelvaneBackup backupOf(std::vector<TaskItem> tasks, std::vector<FocusSession> sessions) {
    return {"1.4.2", moment, TaskList{std::move(tasks)}, std::move(sessions), std::nullopt, {}};
}

std::string textOf(const SelvaneBackup& backup) {
    return backup.encoded().value();
}

tl::expected<SelvaneBackup, SelvaneBackup::Problem> decodedBackup(std::string_view text) {
    return SelvaneBackup::decode(FileContents::copy(text), moment);
}

/// The sentence that refuses the text; empty if it is a good document.
std::string refusal(std::string_view text) {
    const auto backup = decodedBackup(text);
    return backup ? "" : backup.error().errorDescription();
}

std::string refusal(const SelvaneBackup& backup) {
    return refusal(textOf(backup));
}

std::string replaced(std::string text, std::string_view part, std::string_view by) {
    const std::size_t at = text.find(part);
    if (at == std::string::npos) {
        ADD_FAILURE() << "no " << part;
        return text;
    }
    return text.replace(at, part.size(), by);
}

constexpr auto notABackup = "This file isn't a Selvane backup."sv;
constexpr auto tooLarge = "This file is too large to be a Selvane backup."sv;
constexpr auto newerVersion =
    "This backup was made by a newer version of Selvane. Update Selvane, then try again."sv;
constexpr auto unreadable = "This backup is damaged (unreadable contents)."sv;
constexpr auto impossibleTimes = "This backup is damaged (a session with impossible times)."sv;
constexpr auto impossibleAppTimes = "This backup is damaged (a session with impossible app times)."sv;
constexpr auto invalidTitle = "This backup is damaged (a task without a valid title)."sv;
constexpr auto impossibleCounts = "This backup is damaged (a task with impossible counts)."sv;
constexpr auto repeatedSessions = "This backup is damaged (repeated sessions)."sv;
constexpr auto repeatedTasks = "This backup is damaged (repeated tasks)."sv;

// The document and its bytes.

SelvaneBackup fullBackup() {
    FocusSession focus = session(1, utc(2026, 3, 5, 13, 42, 9));
    focus.actualSeconds = Seconds{1499.25};
    focus.taskID = idOf(3);
    focus.apps.emplace().push_back({"org.example.Editor", "Edi/tor", Seconds{1200.5}});
    TaskItem done = task(4, "Größe");
    done.isDone = true;
    done.completedAt = utc(2026, 3, 4);
    return {"1.4.2", moment,  TaskList{{task(3), done}},
            {focus}, idOf(3), {{"dailyGoalMinutes", {std::int64_t{120}}}, {"musicVolume", {0.6}}}};
}

constexpr std::string_view golden = R"({
  "appVersion" : "1.4.2",
  "currentTaskID" : "00000000-0000-0000-0000-000000000003",
  "exportedAt" : "2026-03-05T14:07:09Z",
  "format" : "selvane-backup",
  "schemaVersion" : 1,
  "sessions" : [
    {
      "actualSeconds" : 1499.25,
      "apps" : [
        {
          "bundleID" : "org.example.Editor",
          "name" : "Edi\/tor",
          "seconds" : 1200.5
        }
      ],
      "completed" : true,
      "end" : "2026-03-05T14:07:09Z",
      "id" : "00000000-0000-0000-0000-000000000001",
      "phase" : "focus",
      "plannedSeconds" : 1500,
      "start" : "2026-03-05T13:42:09Z",
      "taskID" : "00000000-0000-0000-0000-000000000003"
    }
  ],
  "settings" : {
    "dailyGoalMinutes" : {
      "type" : "int",
      "value" : 120
    },
    "musicVolume" : {
      "type" : "double",
      "value" : 0.6
    }
  },
  "tasks" : {
    "items" : [
      {
        "completedPomodoros" : 1,
        "createdAt" : "2026-03-01T00:00:00Z",
        "estimatedPomodoros" : 4,
        "id" : "00000000-0000-0000-0000-000000000003",
        "isDone" : false,
        "title" : "Write"
      },
      {
        "completedAt" : "2026-03-04T00:00:00Z",
        "completedPomodoros" : 1,
        "createdAt" : "2026-03-01T00:00:00Z",
        "estimatedPomodoros" : 4,
        "id" : "00000000-0000-0000-0000-000000000004",
        "isDone" : true,
        "title" : "Größe"
      }
    ]
  }
})";

TEST(SelvaneBackup, Golden) {
    EXPECT_EQ(textOf(fullBackup()), golden);
    const auto backup = decodedBackup(golden);
    ASSERT_TRUE(backup);
    EXPECT_EQ(*backup, fullBackup());
}

TEST(SelvaneBackup, OfNothingIsADocumentToo) {
    const SelvaneBackup empty = backupOf({}, {});
    EXPECT_EQ(textOf(empty), R"({
  "appVersion" : "1.4.2",
  "exportedAt" : "2026-03-05T14:07:09Z",
  "format" : "selvane-backup",
  "schemaVersion" : 1,
  "sessions" : [

  ],
  "settings" : {

  },
  "tasks" : {
    "items" : [

    ]
  }
})");
    EXPECT_EQ(decodedBackup(textOf(empty)), empty);
}

TEST(SelvaneBackup, ConstantsAreThoseOfTheForm) {
    EXPECT_EQ(SelvaneBackup::formatName, "selvane-backup");
    EXPECT_EQ(SelvaneBackup::currentSchema, 1);
    EXPECT_EQ(SelvaneBackup::maxFileSize, 52'428'800U);
    EXPECT_EQ(fullBackup().format, "selvane-backup");
    EXPECT_EQ(fullBackup().schemaVersion, 1);
}

TEST(SelvaneBackup, FractionsOfSecondsInDatesAreDropped) {
    SelvaneBackup backup = fullBackup();
    backup.exportedAt += 900ms;
    backup.sessions[0].start += 900ms;
    backup.tasks.items[0].createdAt += 1us;
    EXPECT_NE(backup, fullBackup());
    EXPECT_EQ(decodedBackup(textOf(backup)), fullBackup());
}

/// A document of every shape that validates.
SelvaneBackup randomBackup(RandomRecords& random) {
    const auto seconds = [&random](std::uint64_t end) { return std::chrono::seconds(random.below(end)); };
    const auto length = [&random] {
        return Seconds{static_cast<double>(random.below(86'400'000'001U)) / 1e6};
    };
    std::vector<FocusSession> sessions;
    for (auto left = random.below(6); left > 0; --left) {
        FocusSession& each = sessions.emplace_back(random.session());
        each.start = utc(2000, 1, 1) + seconds(825'000'000);
        each.end = each.start + seconds(100'000);
        each.plannedSeconds = length();
        each.actualSeconds = length();
        if (each.apps) {
            for (AppUsage& usage : *each.apps)
                usage.seconds = length();
        }
    }
    std::vector<TaskItem> tasks;
    for (auto left = random.below(6); left > 0; --left) {
        TaskItem& each = tasks.emplace_back(random.task());
        each.title += "x";
        each.estimatedPomodoros = static_cast<std::int64_t>(random.below(1001));
        each.completedPomodoros = static_cast<std::int64_t>(random.below(100'001));
    }
    SettingValues settings;
    for (auto left = random.below(6); left > 0; --left) {
        SettingValue& value = settings[random.text()];
        switch (random.below(5)) {
        case 0:
            value.payload = random.coin();
            break;
        case 1:
            value.payload =
                static_cast<std::int64_t>(random.below(std::numeric_limits<std::uint64_t>::max()));
            break;
        case 2:
            value.payload = random.number();
            break;
        case 3:
            value.payload = random.text();
            break;
        default:
            value.payload = SettingValue::Texts{random.text(), random.text()};
            break;
        }
    }
    const auto currentTask = random.coin() ? std::optional(random.uuid()) : std::nullopt;
    return {random.text(),       random.date(), TaskList{std::move(tasks)},
            std::move(sessions), currentTask,   std::move(settings)};
}

TEST(SelvaneBackup, RandomStatesRoundTrip) {
    constexpr int count = test::repeats(10'000);
    RandomRecords random(42);
    for (int number = 0; number < count; ++number) {
        const SelvaneBackup backup = randomBackup(random);
        const std::string text = textOf(backup);
        const auto back = decodedBackup(text);
        ASSERT_TRUE(back) << number << ": " << back.error().errorDescription();
        ASSERT_EQ(*back, backup) << number;
        ASSERT_EQ(textOf(*back), text) << number;
    }
}

TEST(SelvaneBackup, WhatHasNoFormIsTold) {
    SelvaneBackup backup = fullBackup();
    backup.appVersion = "\xff";
    EXPECT_EQ(backup.encoded(), tl::unexpected(JSONWriteError::textIsNotUTF8));

    backup = fullBackup();
    backup.tasks.items[0].title = "\xc3";
    EXPECT_EQ(backup.encoded(), tl::unexpected(JSONWriteError::textIsNotUTF8));

    backup = fullBackup();
    backup.settings.insert_or_assign("\x80", SettingValue{true});
    EXPECT_EQ(backup.encoded(), tl::unexpected(JSONWriteError::textIsNotUTF8));

    backup = fullBackup();
    backup.sessions[0].actualSeconds = Seconds{std::numeric_limits<double>::quiet_NaN()};
    EXPECT_EQ(backup.encoded(), tl::unexpected(JSONWriteError::numberIsNotFinite));

    backup = fullBackup();
    backup.settings.insert_or_assign("musicVolume", SettingValue{std::numeric_limits<double>::infinity()});
    EXPECT_EQ(backup.encoded(), tl::unexpected(JSONWriteError::numberIsNotFinite));
}

TEST(SelvaneBackup, WritingDoesNotValidate) {
    SelvaneBackup backup = fullBackup();
    std::swap(backup.sessions[0].start, backup.sessions[0].end);
    ASSERT_TRUE(backup.encoded());
    EXPECT_EQ(refusal(backup), impossibleTimes);
}

TEST(SelvaneBackup, LargeDocumentsArePutTogetherWhole) {
    SelvaneBackup backup = fullBackup();
    for (int number = 10; number < 10'000; ++number)
        backup.sessions.push_back(session(number));
    const std::string text = textOf(backup);
    EXPECT_GT(text.size(), 2 * JSONWriter::pieceSize);
    EXPECT_EQ(decodedBackup(text), backup);
}

// Reading, stage by stage.

struct RefusedRow {
    const char* name;
    std::string text;
    std::string_view message;
};

class RefusedBackups : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedBackups, AreToldWhy) {
    EXPECT_EQ(refusal(GetParam().text), GetParam().message);
}

std::string goldenWith(std::string_view part, std::string_view by) {
    return replaced(std::string(golden), part, by);
}

INSTANTIATE_TEST_SUITE_P(
    SelvaneBackup, RefusedBackups,
    testing::Values(
        RefusedRow{"empty", "", notABackup}, RefusedRow{"noJSON", "selvane-backup", notABackup},
        RefusedRow{"array", "[]", notABackup},
        RefusedRow{"arrayOfADocument", "[" + std::string(golden) + "]", notABackup},
        RefusedRow{"null", "null", notABackup}, RefusedRow{"emptyObject", "{}", notABackup},
        RefusedRow{"cutOff", std::string(golden.substr(0, golden.size() - 1)), notABackup},
        RefusedRow{"cutOffInTheMiddle", std::string(golden.substr(0, golden.size() / 2)), notABackup},
        RefusedRow{"byteBehind", std::string(golden) + "}", notABackup},
        RefusedRow{"byteOrderMark", "\xEF\xBB\xBF" + std::string(golden), notABackup},
        RefusedRow{"notUTF8", goldenWith("Write", "Wr\xffte"), notABackup},
        RefusedRow{"noFormat", goldenWith("\"format\"", "\"Format\""), notABackup},
        RefusedRow{"noSchemaVersion", goldenWith("\"schemaVersion\"", "\"schema\""), notABackup},
        RefusedRow{"otherFormat", goldenWith("selvane-backup", "selvane-export"), notABackup},
        RefusedRow{"formatInOtherCase", goldenWith("selvane-backup", "Selvane-Backup"), notABackup},
        RefusedRow{"formatNumber", goldenWith("\"selvane-backup\"", "1"), notABackup},
        RefusedRow{"formatNull", goldenWith("\"selvane-backup\"", "null"), notABackup},
        RefusedRow{"otherFormatOfALaterSchema", R"({"format":"other","schemaVersion":2})", notABackup},
        RefusedRow{"schemaText", goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : \"1\""),
                   notABackup},
        RefusedRow{"schemaNull", goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : null"), notABackup},
        RefusedRow{"schemaBoolean", goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : true"),
                   notABackup},
        RefusedRow{"schemaWithAFraction", goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : 1.5"),
                   notABackup},
        RefusedRow{"schemaBeyond64Bits", goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : 1e19"),
                   notABackup},
        RefusedRow{"laterSchema", goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : 2"), newerVersion},
        RefusedRow{"muchLaterSchema",
                   goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : 9223372036854775807"),
                   newerVersion},
        RefusedRow{"laterSchemaAndNothingElse", R"({"format":"selvane-backup","schemaVersion":2})",
                   newerVersion},
        RefusedRow{
            "laterSchemaWithGarbage",
            R"({"format":"selvane-backup","schemaVersion":2,"tasks":[null],"sessions":7,"settings":"x"})",
            newerVersion},
        RefusedRow{"laterSchemaCutOff", R"({"format":"selvane-backup","schemaVersion":2,"tasks":[)",
                   notABackup},
        RefusedRow{"noAppVersion", goldenWith("\"appVersion\"", "\"version\""), unreadable},
        RefusedRow{"appVersionNumber", goldenWith("\"1.4.2\"", "1.4"), unreadable},
        RefusedRow{"noExportedAt", goldenWith("\"exportedAt\"", "\"exported\""), unreadable},
        RefusedRow{"badExportedAt", goldenWith("2026-03-05T14:07:09Z", "2026-03-05T14:07:09.5Z"), unreadable},
        RefusedRow{"noTasks", goldenWith("\"tasks\"", "\"task\""), unreadable},
        RefusedRow{
            "tasksNull",
            R"({"appVersion":"1","exportedAt":"2026-03-05T14:07:09Z","format":"selvane-backup","schemaVersion":1,"sessions":[],"tasks":null})",
            unreadable},
        RefusedRow{
            "tasksArray",
            R"({"appVersion":"1","exportedAt":"2026-03-05T14:07:09Z","format":"selvane-backup","schemaVersion":1,"sessions":[],"tasks":[]})",
            unreadable},
        RefusedRow{"noItems", goldenWith("\"items\"", "\"tasks\""), unreadable},
        RefusedRow{"taskWithABadDate", goldenWith("2026-03-01T00:00:00Z", "2026-03-01"), unreadable},
        RefusedRow{"taskWithoutACount", goldenWith("\"estimatedPomodoros\"", "\"estimate\""), unreadable},
        RefusedRow{"noSessions", goldenWith("\"sessions\"", "\"history\""), unreadable},
        RefusedRow{
            "sessionsObject",
            R"({"appVersion":"1","exportedAt":"2026-03-05T14:07:09Z","format":"selvane-backup","schemaVersion":1,"sessions":{},"tasks":{"items":[]}})",
            unreadable},
        RefusedRow{"badCurrentTask", goldenWith("000000000003\"", "00000000000X\""), unreadable},
        RefusedRow{
            "settingsArray",
            R"({"appVersion":"1","exportedAt":"2026-03-05T14:07:09Z","format":"selvane-backup","schemaVersion":1,"sessions":[],"settings":[],"tasks":{"items":[]}})",
            unreadable},
        RefusedRow{"unknownSettingType", goldenWith("\"int\"", "\"date\""), unreadable},
        RefusedRow{"settingOfAnotherType", goldenWith(" 120\n", " \"120\"\n"), unreadable}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SelvaneBackup, ProblemsHoldWhatWasFound) {
    const auto newer = decodedBackup(R"({"format":"selvane-backup","schemaVersion":7})");
    ASSERT_FALSE(newer);
    EXPECT_EQ(newer.error(), (SelvaneBackup::Problem{.kind = Kind::newerVersion, .version = 7}));
    const auto damaged = decodedBackup(R"({"format":"selvane-backup","schemaVersion":1})");
    ASSERT_FALSE(damaged);
    EXPECT_EQ(damaged.error(),
              (SelvaneBackup::Problem{.kind = Kind::invalid, .reason = "unreadable contents"}));
    EXPECT_EQ(decodedBackup("").error(), (SelvaneBackup::Problem{.kind = Kind::notABackup}));
}

TEST(SelvaneBackup, EarlierSchemasAreReadLikeOurs) {
    for (const std::int64_t schema :
         {std::int64_t{0}, std::int64_t{-1}, std::numeric_limits<std::int64_t>::min()}) {
        const auto backup = decodedBackup(
            goldenWith("\"schemaVersion\" : 1", "\"schemaVersion\" : " + std::to_string(schema)));
        ASSERT_TRUE(backup) << schema;
        EXPECT_EQ(backup->schemaVersion, schema);
        EXPECT_EQ(backup->sessions, fullBackup().sessions);
    }
}

TEST(SelvaneBackup, AnyLayoutAndOrderOfKeysIsRead) {
    const auto backup = decodedBackup(
        R"({"tasks":{"items":[]},"x":[{}],"schemaVersion":1.0,"sessions":[],"format":"other","settings":null,)"
        R"("exportedAt":"2026-03-05T14:07:09Z","currentTaskID":null,"appVersion":"1.4.2","format":"selvane-backup"})");
    ASSERT_TRUE(backup);
    EXPECT_EQ(*backup, backupOf({}, {}));
}

TEST(SelvaneBackup, AbsentSettingsAreEmptyAndAnAbsentTaskIsAbsent) {
    const auto backup = decodedBackup(
        R"({"appVersion":"1.4.2","exportedAt":"2026-03-05T14:07:09Z","format":"selvane-backup","schemaVersion":1,)"
        R"("sessions":[],"tasks":{"items":[]}})");
    ASSERT_TRUE(backup);
    EXPECT_TRUE(backup->settings.empty());
    EXPECT_EQ(backup->currentTaskID, std::nullopt);
}

TEST(SelvaneBackup, OneBadSessionAmongTenIsLeftOutWithoutAWord) {
    std::vector<FocusSession> sessions;
    for (int number = 0; number < 10; ++number)
        sessions.push_back(session(number));
    const std::string text =
        replaced(textOf(backupOf({}, sessions)), "\"phase\" : \"focus\"", "\"phase\" : \"nap\"");
    sessions.erase(sessions.begin());
    testing::internal::CaptureStderr();
    const auto backup = decodedBackup(text);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    ASSERT_TRUE(backup);
    EXPECT_EQ(backup->sessions, sessions);
}

TEST(SelvaneBackup, OneBadTaskAmongTenRefusesTheDocument) {
    std::vector<TaskItem> tasks;
    for (int number = 0; number < 10; ++number)
        tasks.push_back(task(number));
    const std::string text = textOf(backupOf(tasks, {}));
    EXPECT_EQ(refusal(text), "");
    EXPECT_EQ(refusal(replaced(text, "\"isDone\" : false", "\"isDone\" : 0")), unreadable);
}

TEST(SelvaneBackup, TheProgramsVersionIsCutToFortyCharacters) {
    SelvaneBackup backup = backupOf({}, {});
    backup.appVersion = std::string(50, '1');
    EXPECT_EQ(decodedBackup(textOf(backup))->appVersion, std::string(40, '1'));
    // What a reader sees as one character is never cut in two.
    backup.appVersion = std::string(39, '1') + "👨‍👩‍👧‍👦" + "2";
    EXPECT_EQ(decodedBackup(textOf(backup))->appVersion, std::string(39, '1') + "👨‍👩‍👧‍👦");
    backup.appVersion = "";
    EXPECT_EQ(decodedBackup(textOf(backup))->appVersion, "");
}

// The largest documents.

/// The golden document with white space up to a size.
FileContents paddedTo(std::size_t size) {
    std::string text(golden);
    text.append(size - text.size(), ' ');
    return FileContents::copy(text);
}

TEST(SelvaneBackup, OfTheLargestSizeIsRead) {
    const auto backup = SelvaneBackup::decode(paddedTo(52'428'800), moment);
    ASSERT_TRUE(backup);
    EXPECT_EQ(*backup, fullBackup());
}

TEST(SelvaneBackup, OneByteMoreIsTooLarge) {
    const auto backup = SelvaneBackup::decode(paddedTo(52'428'801), moment);
    ASSERT_FALSE(backup);
    EXPECT_EQ(backup.error().errorDescription(), tooLarge);
}

TEST(SelvaneBackup, TooLargeIsToldWithoutParsing) {
    // Parsed, it would be no backup.
    EXPECT_EQ(refusal(std::string(52'428'801, '\xff')), tooLarge);
    EXPECT_EQ(refusal(std::string(52'428'800, '\xff')), notABackup);
}

// Validation.

struct RecordRow {
    const char* name;
    std::function<void(SelvaneBackup&)> change;
    std::string_view message;
};

class BackupValidation : public testing::TestWithParam<RecordRow> {};

TEST_P(BackupValidation, DecidesAsTold) {
    SelvaneBackup backup = fullBackup();
    GetParam().change(backup);
    EXPECT_EQ(refusal(backup), GetParam().message);

    const auto valid = backup.validate(moment);
    EXPECT_EQ(valid.has_value(), GetParam().message.empty());
    EXPECT_EQ(valid ? "" : valid.error().errorDescription(), GetParam().message);
    EXPECT_EQ(backup.firstInvalidRecord(moment).has_value(), !valid.has_value());
}

RecordRow sessionRow(const char* name, std::function<void(FocusSession&)> change, std::string_view message) {
    return {name, [change = std::move(change)](SelvaneBackup& backup) { change(backup.sessions[0]); },
            message};
}

RecordRow usageRow(const char* name, std::function<void(AppUsage&)> change, std::string_view message) {
    return {name,
            [change = std::move(change)](SelvaneBackup& backup) { change((*backup.sessions[0].apps)[0]); },
            message};
}

RecordRow taskRow(const char* name, std::function<void(TaskItem&)> change, std::string_view message) {
    return {name, [change = std::move(change)](SelvaneBackup& backup) { change(backup.tasks.items[0]); },
            message};
}

RecordRow startRow(const char* name, Date start, std::string_view message) {
    return sessionRow(
        name,
        [start](FocusSession& session) {
            session.start = start;
            session.end = start;
        },
        message);
}

RecordRow titleRow(const char* name, const std::string& title, std::string_view message) {
    return taskRow(
        name, [title](TaskItem& task) { task.title = title; }, message);
}

/// As many characters as that, each of several bytes.
std::string accents(std::size_t count) {
    std::string text;
    while (count-- > 0)
        text += "e\u0301";
    return text;
}

INSTANTIATE_TEST_SUITE_P(
    SelvaneBackup, BackupValidation,
    testing::Values(
        RecordRow{"good", [](SelvaneBackup&) {}, ""},
        RecordRow{"noRecords",
                  [](SelvaneBackup& backup) {
                      backup.sessions.clear();
                      backup.tasks.items.clear();
                  },
                  ""},
        RecordRow{"repeatedSessions", [](SelvaneBackup& backup) { backup.sessions.push_back(session(1)); },
                  repeatedSessions},
        RecordRow{"repeatedTasks", [](SelvaneBackup& backup) { backup.tasks.items.push_back(task(3)); },
                  repeatedTasks},
        RecordRow{"sessionAndTaskOfOneID",
                  [](SelvaneBackup& backup) { backup.sessions.push_back(session(3)); }, ""},
        RecordRow{"repeatedTasksBeforeABadSession",
                  [](SelvaneBackup& backup) {
                      backup.tasks.items.push_back(task(3));
                      backup.sessions[0].actualSeconds = Seconds{-1};
                  },
                  repeatedTasks},
        RecordRow{"repeatedSessionsBeforeRepeatedTasks",
                  [](SelvaneBackup& backup) {
                      backup.tasks.items.push_back(task(3));
                      backup.sessions.push_back(session(1));
                  },
                  repeatedSessions},
        RecordRow{"badSessionBeforeABadTask",
                  [](SelvaneBackup& backup) {
                      backup.tasks.items[0].title = "";
                      backup.sessions[0].actualSeconds = Seconds{-1};
                  },
                  impossibleTimes},
        RecordRow{"sessionsInTheirOrder",
                  [](SelvaneBackup& backup) {
                      (*backup.sessions[0].apps)[0].seconds = Seconds{-1};
                      backup.sessions.push_back(session(2, utc(1999, 12, 31)));
                  },
                  impossibleAppTimes},
        RecordRow{"timesBeforeAppTimes",
                  [](SelvaneBackup& backup) {
                      (*backup.sessions[0].apps)[0].seconds = Seconds{-1};
                      backup.sessions[0].plannedSeconds = Seconds{-1};
                  },
                  impossibleTimes},
        RecordRow{"titleBeforeCounts",
                  [](SelvaneBackup& backup) {
                      backup.tasks.items[0].title = "";
                      backup.tasks.items[0].estimatedPomodoros = -1;
                  },
                  invalidTitle},
        RecordRow{"lastSession",
                  [](SelvaneBackup& backup) { backup.sessions.push_back(session(2, utc(1999, 12, 31))); },
                  impossibleTimes},
        RecordRow{"lastTask", [](SelvaneBackup& backup) { backup.tasks.items.push_back(task(5, " ")); },
                  invalidTitle},
        RecordRow{"nothingElseIsLookedAt",
                  [](SelvaneBackup& backup) {
                      backup.currentTaskID = idOf(99);
                      backup.exportedAt = utc(1970, 1, 1);
                      backup.appVersion = "";
                      backup.settings = {{"unknown", {std::int64_t{-1}}}};
                      backup.sessions[0].taskID = idOf(98);
                      backup.tasks.items[0].createdAt = utc(3000, 1, 1);
                  },
                  ""}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    OfSessions, BackupValidation,
    testing::Values(
        startRow("firstMoment", utc(2000, 1, 1), ""),
        startRow("secondBeforeTheFirst", utc(1999, 12, 31, 23, 59, 59), impossibleTimes),
        startRow("lastDayOf1999", utc(1999, 12, 31), impossibleTimes),
        startRow("yearZero", utc(0, 1, 1), impossibleTimes), startRow("now", moment, ""),
        startRow("in23Hours", moment + 23h, ""), startRow("in24Hours", moment + 24h, ""),
        startRow("aSecondPast24Hours", moment + 24h + 1s, impossibleTimes),
        startRow("in25Hours", moment + 25h, impossibleTimes),
        startRow("year9999", utc(9999, 12, 31), impossibleTimes),
        sessionRow(
            "endAtStart", [](FocusSession& each) { each.end = each.start; }, ""),
        sessionRow(
            "endBeforeStart", [](FocusSession& each) { each.end = each.start - 1s; }, impossibleTimes),
        sessionRow(
            "endFarInTheFuture", [](FocusSession& each) { each.end = utc(9999, 12, 31); }, ""),
        sessionRow(
            "noActualSeconds", [](FocusSession& each) { each.actualSeconds = Seconds{0}; }, ""),
        sessionRow(
            "negativeActualSeconds", [](FocusSession& each) { each.actualSeconds = Seconds{-0.001}; },
            impossibleTimes),
        sessionRow(
            "actualSecondsOfADay", [](FocusSession& each) { each.actualSeconds = Seconds{86'400}; }, ""),
        sessionRow(
            "actualSecondsPastADay", [](FocusSession& each) { each.actualSeconds = Seconds{86'400.5}; },
            impossibleTimes),
        sessionRow(
            "noPlannedSeconds", [](FocusSession& each) { each.plannedSeconds = Seconds{0}; }, ""),
        sessionRow(
            "negativePlannedSeconds", [](FocusSession& each) { each.plannedSeconds = Seconds{-1}; },
            impossibleTimes),
        sessionRow(
            "plannedSecondsOfADay", [](FocusSession& each) { each.plannedSeconds = Seconds{86'400}; }, ""),
        sessionRow(
            "plannedSecondsPastADay", [](FocusSession& each) { each.plannedSeconds = Seconds{86'401}; },
            impossibleTimes),
        sessionRow(
            "hugeSeconds", [](FocusSession& each) { each.plannedSeconds = Seconds{1e300}; }, impossibleTimes),
        sessionRow(
            "noApps", [](FocusSession& each) { each.apps.reset(); }, ""),
        sessionRow(
            "emptyApps", [](FocusSession& each) { each.apps->clear(); }, "")),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    OfUsage, BackupValidation,
    testing::Values(
        usageRow(
            "noSeconds", [](AppUsage& usage) { usage.seconds = Seconds{0}; }, ""),
        usageRow(
            "negativeSeconds", [](AppUsage& usage) { usage.seconds = Seconds{-0.5}; }, impossibleAppTimes),
        usageRow(
            "secondsOfADay", [](AppUsage& usage) { usage.seconds = Seconds{86'400}; }, ""),
        usageRow(
            "secondsPastADay", [](AppUsage& usage) { usage.seconds = Seconds{86'400.5}; },
            impossibleAppTimes),
        usageRow(
            "emptyTexts",
            [](AppUsage& usage) {
                usage = {"", "", Seconds{1}};
            },
            ""),
        usageRow(
            "longestName", [](AppUsage& usage) { usage.name = std::string(300, 'n'); }, ""),
        usageRow(
            "nameTooLong", [](AppUsage& usage) { usage.name = std::string(301, 'n'); }, impossibleAppTimes),
        usageRow(
            "longestNameOfAccents", [](AppUsage& usage) { usage.name = accents(300); }, ""),
        usageRow(
            "nameOfAccentsTooLong", [](AppUsage& usage) { usage.name = accents(301); }, impossibleAppTimes),
        usageRow(
            "longestID", [](AppUsage& usage) { usage.bundleID = std::string(300, 'i'); }, ""),
        usageRow(
            "idTooLong", [](AppUsage& usage) { usage.bundleID = std::string(301, 'i'); },
            impossibleAppTimes)),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    OfTasks, BackupValidation,
    testing::Values(
        titleRow("emptyTitle", "", invalidTitle), titleRow("blankTitle", " \t\n\u00a0\u3000", invalidTitle),
        titleRow("titleWithBlanksAround", " a ", ""), titleRow("longestTitle", std::string(300, 't'), ""),
        titleRow("titleTooLong", std::string(301, 't'), invalidTitle),
        titleRow("blanksCountForTheLength", std::string(300, 't') + " ", invalidTitle),
        titleRow("longestTitleOfAccents", accents(300), ""),
        titleRow("titleOfAccentsTooLong", accents(301), invalidTitle),
        taskRow(
            "noEstimate", [](TaskItem& each) { each.estimatedPomodoros = 0; }, ""),
        taskRow(
            "negativeEstimate", [](TaskItem& each) { each.estimatedPomodoros = -1; }, impossibleCounts),
        taskRow(
            "largestEstimate", [](TaskItem& each) { each.estimatedPomodoros = 1000; }, ""),
        taskRow(
            "estimateTooLarge", [](TaskItem& each) { each.estimatedPomodoros = 1001; }, impossibleCounts),
        taskRow(
            "noneCompleted", [](TaskItem& each) { each.completedPomodoros = 0; }, ""),
        taskRow(
            "negativeCompleted", [](TaskItem& each) { each.completedPomodoros = -1; }, impossibleCounts),
        taskRow(
            "mostCompleted", [](TaskItem& each) { each.completedPomodoros = 100'000; }, ""),
        taskRow(
            "tooManyCompleted", [](TaskItem& each) { each.completedPomodoros = 100'001; }, impossibleCounts)),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SelvaneBackup, FractionsCountAtTheEdgesOfTheWindow) {
    SelvaneBackup backup = backupOf({}, {session(1, moment + 24h)});
    EXPECT_TRUE(backup.validate(moment));
    backup.sessions[0].start += 1us;
    EXPECT_FALSE(backup.validate(moment));
    EXPECT_TRUE(backup.validate(moment + 1us));
    backup.sessions[0].start = utc(2000, 1, 1);
    EXPECT_TRUE(backup.validate(moment));
    backup.sessions[0].start -= 1us;
    EXPECT_FALSE(backup.validate(moment));
}

TEST(SelvaneBackup, TheWindowEndsWithTimeItself) {
    const SelvaneBackup backup = backupOf({}, {session(1)});
    EXPECT_TRUE(backup.validate(Date::max()));
    EXPECT_FALSE(backup.validate(Date::min()));
}

TEST(SelvaneBackup, SecondsThatAreNoNumberAreImpossible) {
    for (const double seconds :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()}) {
        SelvaneBackup backup = fullBackup();
        backup.sessions[0].actualSeconds = Seconds{seconds};
        EXPECT_EQ(backup.validate(moment).error().errorDescription(), impossibleTimes);
        backup = fullBackup();
        backup.sessions[0].plannedSeconds = Seconds{seconds};
        EXPECT_EQ(backup.validate(moment).error().errorDescription(), impossibleTimes);
        backup = fullBackup();
        (*backup.sessions[0].apps)[0].seconds = Seconds{seconds};
        EXPECT_EQ(backup.validate(moment).error().errorDescription(), impossibleAppTimes);
    }
}

TEST(SelvaneBackup, TheFirstInvalidRecordIsToldForTheLog) {
    SelvaneBackup backup = backupOf({task(1), task(2)}, {session(1), session(2), session(3)});
    EXPECT_EQ(backup.firstInvalidRecord(moment), std::nullopt);
    backup.tasks.items[1].completedPomodoros = -1;
    EXPECT_EQ(backup.firstInvalidRecord(moment),
              "task 2 (00000000-0000-0000-0000-000000000002): a task with impossible counts");
    backup.sessions[2].end = backup.sessions[2].start - 1s;
    EXPECT_EQ(backup.firstInvalidRecord(moment),
              "session 3 (00000000-0000-0000-0000-000000000003): a session with impossible times");
    backup.tasks.items.push_back(task(1));
    EXPECT_EQ(backup.firstInvalidRecord(moment),
              "task 3 (00000000-0000-0000-0000-000000000001): repeated tasks");
    backup.sessions.push_back(session(2));
    EXPECT_EQ(backup.firstInvalidRecord(moment),
              "session 4 (00000000-0000-0000-0000-000000000002): repeated sessions");
}

// Merging and telling.

TEST(SelvaneBackup, MergingAddsWhatIsNewAndThePresentWins) {
    FocusSession ours = session(1, utc(2026, 3, 2));
    FocusSession theirs = session(1, utc(2026, 3, 9));
    TaskItem ourTask = task(1, "ours");
    const SelvaneBackup backup = backupOf({task(1, "theirs"), task(2, "new"), task(3, "newer")},
                                          {session(3, utc(2026, 3, 3)), theirs, session(2, utc(2026, 3, 1))});
    const auto [tasks, sessions] =
        backup.merged(TaskList{{ourTask, task(4, "last")}}, {ours, session(4, utc(2026, 3, 4))});
    EXPECT_EQ(sessions, (std::vector{session(2, utc(2026, 3, 1)), ours, session(3, utc(2026, 3, 3)),
                                     session(4, utc(2026, 3, 4))}));
    EXPECT_EQ(tasks, (TaskList{{ourTask, task(4, "last"), task(2, "new"), task(3, "newer")}}));
}

TEST(SelvaneBackup, MergingKeepsTheOrderOfEqualStarts) {
    // More than a sort would put in order by insertion, which keeps ties anyway.
    std::vector<FocusSession> theirs;
    std::vector<FocusSession> ours;
    for (int number = 0; number < 60; ++number)
        (number % 2 == 0 ? theirs : ours).push_back(session(number * 37 % 61 + 1));
    std::vector<FocusSession> both = ours;
    both.insert(both.end(), theirs.begin(), theirs.end());
    EXPECT_EQ(backupOf({}, theirs).merged({}, ours).sessions, both);
}

TEST(SelvaneBackup, MergingTheSameChangesOnlyTheOrder) {
    const std::vector sessions{session(2, utc(2026, 3, 2)), session(1, utc(2026, 3, 1))};
    const SelvaneBackup backup = backupOf({task(1), task(2)}, sessions);
    const auto merged = backup.merged(backup.tasks, backup.sessions);
    EXPECT_EQ(merged.tasks, backup.tasks);
    EXPECT_EQ(merged.sessions, (std::vector{sessions[1], sessions[0]}));
}

TEST(SelvaneBackup, MergingRestoresTheOrderOfTasks) {
    TaskItem done = task(1, "done");
    done.isDone = true;
    done.completedAt = utc(2026, 3, 1);
    TaskItem doneLater = task(2, "done later");
    doneLater.isDone = true;
    doneLater.completedAt = utc(2026, 3, 2);
    const SelvaneBackup backup = backupOf({doneLater, task(3)}, {});
    EXPECT_EQ(backup.merged(TaskList{{task(4), done}}, {}).tasks,
              (TaskList{{task(4), task(3), doneLater, done}}));
}

TEST(SelvaneBackup, MergingIntoNothingAndMergingNothing) {
    const SelvaneBackup backup = backupOf({task(1)}, {session(1)});
    EXPECT_EQ(backup.merged({}, {}).tasks, backup.tasks);
    EXPECT_EQ(backup.merged({}, {}).sessions, backup.sessions);
    const auto merged = backupOf({}, {}).merged(backup.tasks, backup.sessions);
    EXPECT_EQ(merged.tasks, backup.tasks);
    EXPECT_EQ(merged.sessions, backup.sessions);
}

struct SummaryRow {
    const char* name;
    int tasks;
    int focusSessions;
    int breaks;
    std::string_view summary;
};

class BackupSummaries : public testing::TestWithParam<SummaryRow> {};

TEST_P(BackupSummaries, CountTasksAndFocusSessions) {
    SelvaneBackup backup = backupOf({}, {});
    for (int number = 0; number < GetParam().tasks; ++number)
        backup.tasks.items.push_back(task(number));
    for (int number = 0; number < GetParam().focusSessions + GetParam().breaks; ++number) {
        backup.sessions.push_back(session(number));
        if (number >= GetParam().focusSessions)
            backup.sessions.back().phase = number % 2 == 0 ? Phase::shortBreak : Phase::longBreak;
    }
    EXPECT_EQ(backup.summary(), GetParam().summary);
}

INSTANTIATE_TEST_SUITE_P(SelvaneBackup, BackupSummaries,
                         testing::Values(SummaryRow{"nothing", 0, 0, 0, "0 tasks · 0 sessions"},
                                         SummaryRow{"oneOfEach", 1, 1, 0, "1 task · 1 session"},
                                         SummaryRow{"breaksDoNotCount", 1, 3, 2, "1 task · 3 sessions"},
                                         SummaryRow{"onlyBreaks", 2, 0, 3, "2 tasks · 0 sessions"},
                                         SummaryRow{"several", 12, 1, 0, "12 tasks · 1 session"}),
                         [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace selvane
