#include "Support/DataHarness.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"
#include "Support/TaskFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

namespace selvane {
namespace {

using std::chrono::hours;
using test::utc;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

/// A history of one finished focus session.
const std::string oneSession =
    R"([{"actualSeconds":1500,"completed":true,"end":"2026-03-04T09:25:00Z",)"
    R"("id":"99999999-9999-4999-8999-999999999999","phase":"focus","plannedSeconds":1500,)"
    R"("start":"2026-03-04T09:00:00Z"}])";

FocusSession sessionAt(Date start, const std::string& id) {
    return {.id = *UUID::parse(id),
            .start = start,
            .end = start + std::chrono::minutes{25},
            .phase = Phase::focus,
            .plannedSeconds = Seconds{1500},
            .actualSeconds = Seconds{1500},
            .completed = true,
            .taskID = std::nullopt,
            .apps = std::nullopt};
}

class DataLifecycle : public testing::Test {
protected:
    /// A backup with one task and one session, which says that it was made at that moment.
    SelvaneBackup backupOf(Date exportedAt) {
        SelvaneBackup backup("1.1", exportedAt, {}, {}, std::nullopt, {});
        backup.tasks.items.push_back({.id = *UUID::parse(test::secondTask),
                                      .title = "From the backup",
                                      .isDone = false,
                                      .createdAt = exportedAt,
                                      .completedAt = std::nullopt,
                                      .estimatedPomodoros = 0,
                                      .completedPomodoros = 0});
        backup.sessions.push_back(sessionAt(exportedAt - hours{1}, "88888888-8888-4888-8888-888888888888"));
        return backup;
    }

    void keepBackup(const std::string& name, Date exportedAt) {
        harness.write("Backups/" + name, *backupOf(exportedAt).encoded());
    }

    void haveData() {
        harness.write("tasks.json", test::taskFile({{.id = test::firstTask}}));
        harness.write("sessions.json", oneSession);
    }

    std::vector<std::string> backups() { return harness.names("Backups"); }
    const std::optional<std::string>& notice() { return harness.model().recoveryNotice(); }
    AppModel& model() { return harness.model(); }

    test::DataHarness harness;
};

// Recovery

TEST_F(DataLifecycle, WithoutDamageThereIsNoNotice) {
    haveData();
    harness.start();
    EXPECT_EQ(notice(), std::nullopt);
    EXPECT_FALSE(model().unrecoveredData());
    EXPECT_TRUE(std::ranges::none_of(harness.journal.entries(), [](const std::string& entry) {
        return entry.starts_with("notifications.post ");
    }));
}

TEST_F(DataLifecycle, MissingFilesAreNoDamage) {
    harness.start();
    EXPECT_EQ(notice(), std::nullopt);
}

TEST_F(DataLifecycle, BothDamagedFilesComeBackFromTheNewestBackup) {
    harness.write("tasks.json", "{");
    harness.write("sessions.json", "[");
    keepBackup("daily-2026-03-03.json", utc(2026, 3, 3, 8));
    keepBackup("before-reset-2026-03-04-070000.json", utc(2026, 3, 4, 7));
    // Newest by what it says itself, not by its name.
    keepBackup("a.json", utc(2026, 3, 4, 9));
    harness.start();
    EXPECT_EQ(notice(),
              "Selvane couldn't read your tasks and focus history, so it restored them from the backup "
              "of day 4 at 9.");
    EXPECT_FALSE(model().unrecoveredData());
    EXPECT_EQ(model().tasks(), backupOf(utc(2026, 3, 4, 9)).tasks);
    EXPECT_EQ(model().sessions(), backupOf(utc(2026, 3, 4, 9)).sessions);
    EXPECT_TRUE(harness.journal.has("notifications.post Selvane restored your data: " + *notice()));
    EXPECT_TRUE(model().hadDataAtLaunch()) << "looked at after recovery";
    EXPECT_THAT(harness.read("tasks.json"), HasSubstr("From the backup")) << "the recovered list is on disk";
    EXPECT_THAT(harness.names(), ElementsAre("Backups", StartsWith("sessions.corrupt-"), "sessions.json",
                                             StartsWith("tasks.corrupt-"), "tasks.json"));
}

TEST_F(DataLifecycle, OnlyTheDamagedStoreIsReplaced) {
    harness.write("tasks.json", test::taskFile({{.id = test::firstTask}}));
    harness.write("sessions.json", "{}");
    keepBackup("daily-2026-03-04.json", utc(2026, 3, 4, 9));
    harness.start();
    EXPECT_EQ(notice(),
              "Selvane couldn't read your focus history, so it restored them from the backup of day 4 at 9.");
    ASSERT_THAT(model().tasks().items, SizeIs(1));
    EXPECT_EQ(model().tasks().items.front().id.text(), test::firstTask);
    EXPECT_EQ(model().sessions(), backupOf(utc(2026, 3, 4, 9)).sessions);
}

TEST_F(DataLifecycle, WithoutABackupTheDamageIsToldAndNoBackupIsMade) {
    harness.write("tasks.json", "{");
    harness.start();
    EXPECT_EQ(notice(),
              "Selvane couldn't read your tasks, and there was no backup to restore. The damaged file "
              "was kept in the data folder.");
    EXPECT_TRUE(model().unrecoveredData());
    EXPECT_TRUE(harness.journal.has("notifications.post Selvane couldn't read your data: " + *notice()));
    model().addTask("New");
    model().backUpDaily();
    EXPECT_THAT(backups(), IsEmpty()) << "an empty start must not push good backups out";
}

TEST_F(DataLifecycle, ADamagedBackupDoesNotStandIn) {
    harness.write("tasks.json", "{");
    harness.write("Backups/daily-2026-03-04.json", "{");
    harness.start();
    EXPECT_TRUE(model().unrecoveredData());
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-04.json"));
}

TEST_F(DataLifecycle, ADamagedFileThatIsStuckIsNotOverwrittenByWhatWasRecovered) {
    harness.write("tasks.json", "{damage");
    keepBackup("daily-2026-03-04.json", utc(2026, 3, 4, 9));
    harness.files.failAlways("move");
    harness.files.failAlways("createForWriting");
    harness.start();
    EXPECT_EQ(model().tasks(), backupOf(utc(2026, 3, 4, 9)).tasks);
    EXPECT_EQ(model().saveError(),
              "Selvane couldn't read or set aside tasks.json, so it won't save over it. Move "
              "the file out of the data folder and relaunch.");
    EXPECT_EQ(harness.read("tasks.json"), "{damage");
}

TEST_F(DataLifecycle, AMergeBringsAutomaticBackupsBack) {
    harness.write("tasks.json", "{");
    harness.start();
    ASSERT_TRUE(model().unrecoveredData());
    ASSERT_TRUE(model().importBackup(backupOf(utc(2026, 3, 4)), ImportMode::merge, "import"));
    EXPECT_FALSE(model().unrecoveredData());
    EXPECT_EQ(notice(), std::nullopt);
    model().backUpDaily();
    EXPECT_THAT(backups(), testing::Contains("daily-2026-03-05.json"));
}

TEST_F(DataLifecycle, WhatCouldNotBeSavedIsRecoveredAgainAtTheNextStart) {
    harness.write("tasks.json", "{damage");
    keepBackup("daily-2026-03-04.json", utc(2026, 3, 4, 9));
    harness.files.failAlways("rename");
    harness.start();
    EXPECT_EQ(model().tasks(), backupOf(utc(2026, 3, 4, 9)).tasks);
    EXPECT_THAT(model().saveError().value_or(""), StartsWith("Selvane couldn't save tasks.json: "));
    EXPECT_EQ(harness.read("tasks.json"), "{damage");
    harness.files.heal();
    harness.start();
    EXPECT_EQ(model().tasks(), backupOf(utc(2026, 3, 4, 9)).tasks);
    EXPECT_EQ(model().saveError(), std::nullopt);
    EXPECT_THAT(harness.read("tasks.json"), HasSubstr("From the backup"));
}

// The daily backup

TEST_F(DataLifecycle, AFirstLaunchBacksNothingUp) {
    harness.start();
    EXPECT_THAT(harness.names(), IsEmpty());
    EXPECT_EQ(harness.defaults.values().at("lastRunBuild").text(), "12");
    EXPECT_EQ(harness.defaults.values().at("lastSeenVersion").text(), "1.2");
    EXPECT_FALSE(harness.journal.has("show what's new"));
}

TEST_F(DataLifecycle, DataThatCameAfterLaunchIsBackedUp) {
    harness.start();
    model().addTask("New");
    model().backUpDaily();
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-05.json"));
}

TEST_F(DataLifecycle, TheFirstStateOfTheDayIsKept) {
    haveData();
    harness.start();
    const std::string first = harness.read("Backups/daily-2026-03-05.json");
    model().addTask("Later");
    model().backUpDaily();
    EXPECT_EQ(harness.read("Backups/daily-2026-03-05.json"), first);
    EXPECT_THAT(first, Not(HasSubstr("Later")));
}

TEST_F(DataLifecycle, ADayEndsAtItsStartHour) {
    haveData();
    harness.now = utc(2026, 3, 5, 23);
    harness.start();
    harness.now = utc(2026, 3, 6, 3, 59, 59);
    model().backUpDaily();
    EXPECT_THAT(backups(), testing::Contains("daily-2026-03-05.json"));
    EXPECT_THAT(backups(), Not(testing::Contains("daily-2026-03-06.json")));
    harness.now = utc(2026, 3, 6, 4);
    model().backUpDaily();
    EXPECT_THAT(backups(), testing::Contains("daily-2026-03-06.json"));
}

TEST_F(DataLifecycle, AFailedDailyBackupIsTriedAgain) {
    haveData();
    harness.defaults.store("lastRunBuild", {"12"});
    harness.releaseNotes.emplace(harness.release, harness.files, "none");
    harness.launch();
    harness.files.failAlways("sync");
    model().backUpDaily();
    harness.files.heal();
    EXPECT_THAT(backups(), IsEmpty());
    model().backUpDaily();
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-05.json"));
}

TEST_F(DataLifecycle, TheDayBeginsWhenTheUserSaysSo) {
    haveData();
    harness.defaults.store("dayStartHour", {std::int64_t{0}});
    harness.now = utc(2026, 3, 5, 2);
    harness.start();
    EXPECT_THAT(backups(), testing::Contains("daily-2026-03-05.json"));
}

TEST_F(DataLifecycle, WhatWasThereAtLaunchIsBackedUpAlsoWhenAllOfItWasDeletedSince) {
    haveData();
    harness.start();
    model().setTasks({});
    model().setSessions({});
    harness.now = utc(2026, 3, 6, 10);
    model().backUpDaily();
    EXPECT_THAT(backups(), testing::Contains("daily-2026-03-06.json"));
}

TEST_F(DataLifecycle, WhereNobodyCanTellWhetherThereIsABackupNoneIsOverwritten) {
    haveData();
    harness.start();
    const std::string first = harness.read("Backups/daily-2026-03-05.json");
    model().addTask("Later");
    harness.files.failAlways("exists");
    model().backUpDaily();
    harness.files.heal();
    EXPECT_EQ(harness.read("Backups/daily-2026-03-05.json"), first);
}

// The backup before an update

TEST_F(DataLifecycle, AnUpdateKeepsTheDataAsTheBuildBeforeLeftIt) {
    haveData();
    harness.defaults.store("lastRunBuild", {"11"});
    harness.start();
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-05.json", "pre-update-11-2026-03-05.json"));
    EXPECT_EQ(harness.defaults.values().at("lastRunBuild").text(), "12");
}

TEST_F(DataLifecycle, AnUpdateIsRememberedAlsoWhenItsBackupFails) {
    haveData();
    harness.defaults.store("lastRunBuild", {"11"});
    harness.files.failAlways("sync");
    harness.start();
    EXPECT_EQ(harness.defaults.values().at("lastRunBuild").text(), "12");
}

TEST_F(DataLifecycle, AnUpdateFromABuildThatDidNotSayIsFromAnEarlierOne) {
    haveData();
    harness.start();
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-05.json", "pre-update-earlier-2026-03-05.json"));
}

TEST_F(DataLifecycle, TheSameBuildMakesNoBackup) {
    haveData();
    harness.defaults.store("lastRunBuild", {"12"});
    harness.start();
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-05.json"));
    EXPECT_EQ(harness.journal.count("defaults.write lastRunBuild"), 0);
}

TEST_F(DataLifecycle, ABuildThatDoesNotSayMakesNoBackup) {
    haveData();
    harness.release.build = std::nullopt;
    harness.start();
    EXPECT_THAT(backups(), ElementsAre("daily-2026-03-05.json"));
    EXPECT_FALSE(harness.defaults.values().contains("lastRunBuild"));
}

TEST_F(DataLifecycle, AnUpdateWithUnrecoveredDataMakesNoBackupButIsRemembered) {
    harness.write("tasks.json", "{");
    harness.write("sessions.json", oneSession);
    harness.defaults.store("lastRunBuild", {"11"});
    harness.start();
    EXPECT_THAT(backups(), IsEmpty());
    EXPECT_EQ(harness.defaults.values().at("lastRunBuild").text(), "12");
}

// What's new

struct NewsRow {
    const char* name;
    std::optional<std::string> lastSeen;
    std::optional<std::string> version;
    bool hadData;
    bool hasNotes;
    bool isShown;
};

class WhatsNew : public testing::TestWithParam<NewsRow> {};

TEST_P(WhatsNew, IsShownAfterAnUpdate) {
    const NewsRow& row = GetParam();
    test::DataHarness harness;
    if (row.hadData)
        harness.write("sessions.json", oneSession);
    if (row.hasNotes)
        harness.folder.write("Changelog.json", R"([{"version":"1.2","date":"2026-03-01"}])");
    if (row.lastSeen)
        harness.defaults.store("lastSeenVersion", {*row.lastSeen});
    harness.release.version = row.version;
    harness.start();
    EXPECT_EQ(harness.journal.has("show what's new"), row.isShown);
    const auto& stored = harness.defaults.values();
    if (row.version)
        EXPECT_EQ(stored.at("lastSeenVersion").text(), row.version) << "stored whether shown or not";
    else
        EXPECT_EQ(stored.contains("lastSeenVersion"), row.lastSeen.has_value());
}

INSTANTIATE_TEST_SUITE_P(
    DataLifecycle, WhatsNew,
    testing::Values(NewsRow{"update", "1.1", "1.2", true, true, true},
                    NewsRow{"updateWithoutData", "1.1", "1.2", false, true, true},
                    NewsRow{"numbersNotText", "1.9", "1.10", true, true, true},
                    NewsRow{"sameVersion", "1.2", "1.2", true, true, false},
                    NewsRow{"sameVersionWrittenOtherwise", "1.2.0", "1.2", true, true, false},
                    NewsRow{"downgrade", "1.3", "1.2", true, true, false},
                    NewsRow{"newUser", std::nullopt, "1.2", false, true, false},
                    NewsRow{"updateFromAVersionThatDidNotStoreIt", std::nullopt, "1.2", true, true, true},
                    NewsRow{"noNotes", "1.1", "1.2", true, false, false},
                    NewsRow{"noVersion", "1.1", std::nullopt, true, true, false}),
    [](const auto& row) { return row.param.name; });

// Import

TEST_F(DataLifecycle, ReplaceBringsTheDocumentsState) {
    haveData();
    harness.start();
    SelvaneBackup backup = backupOf(utc(2026, 3, 4));
    backup.currentTaskID = UUID::parse(test::secondTask);
    backup.settings["dailyGoalMinutes"] = SettingValue{std::int64_t{120}};
    ASSERT_TRUE(model().importBackup(backup, ImportMode::replace, "restore"));
    EXPECT_EQ(model().tasks(), backup.tasks);
    EXPECT_EQ(model().sessions(), backup.sessions);
    EXPECT_EQ(model().currentTaskID(), backup.currentTaskID);
    EXPECT_EQ(model().settings().dailyGoalMinutes(), 120);
    EXPECT_THAT(backups(), testing::Contains("before-restore-2026-03-05-100000.json"));
    EXPECT_THAT(harness.read("Backups/before-restore-2026-03-05-100000.json"), HasSubstr(test::firstTask));
}

TEST_F(DataLifecycle, ReplaceEndsThePhaseUnderWayWhoseSessionGoesWithTheOldHistory) {
    harness.start().engine().start();
    harness.pass(Seconds{90});
    ASSERT_TRUE(model().importBackup(backupOf(utc(2026, 3, 4)), ImportMode::replace, "import"));
    EXPECT_TRUE(model().engine().isIdle());
    EXPECT_EQ(model().sessions(), backupOf(utc(2026, 3, 4)).sessions);
}

TEST_F(DataLifecycle, MergeKeepsTheSessionThatItCutOff) {
    harness.start().engine().start();
    harness.pass(Seconds{90});
    ASSERT_TRUE(model().importBackup(backupOf(utc(2026, 3, 4)), ImportMode::merge, "import"));
    EXPECT_THAT(model().sessions(), SizeIs(2));
    EXPECT_FALSE(model().sessions().back().completed);
}

TEST_F(DataLifecycle, ReplaceClearsACurrentTaskThatTheDocumentDoesNotHave) {
    haveData();
    harness.start().setCurrentTaskID(UUID::parse(test::firstTask));
    SelvaneBackup backup = backupOf(utc(2026, 3, 4));
    backup.currentTaskID = UUID::parse(test::thirdTask);
    ASSERT_TRUE(model().importBackup(backup, ImportMode::replace, "import"));
    EXPECT_EQ(model().currentTaskID(), std::nullopt);
    EXPECT_FALSE(harness.defaults.values().contains("currentTaskID"));
}

TEST_F(DataLifecycle, ReplaceAlwaysWritesTheCurrentTask) {
    harness.start();
    harness.journal.clear();
    ASSERT_TRUE(model().importBackup(backupOf(utc(2026, 3, 4)), ImportMode::replace, "import"));
    EXPECT_EQ(harness.journal.count("defaults.write currentTaskID"), 1);
}

TEST_F(DataLifecycle, MergeKeepsTheCurrentTaskAndSettings) {
    haveData();
    harness.start().setCurrentTaskID(UUID::parse(test::firstTask));
    SelvaneBackup backup = backupOf(utc(2026, 3, 4));
    backup.currentTaskID = UUID::parse(test::secondTask);
    backup.settings["dailyGoalMinutes"] = SettingValue{std::int64_t{120}};
    ASSERT_TRUE(model().importBackup(backup, ImportMode::merge, "import"));
    EXPECT_EQ(model().currentTaskID(), UUID::parse(test::firstTask));
    EXPECT_EQ(model().settings().dailyGoalMinutes(), 50);
    EXPECT_THAT(model().tasks().items, SizeIs(2));
    EXPECT_THAT(model().sessions(), SizeIs(2));
}

TEST_F(DataLifecycle, AFailingSafetyCopyLeavesEverythingAsItWas) {
    haveData();
    harness.start().engine().start();
    const auto tasks = model().tasks();
    const auto sessions = model().sessions();
    harness.files.failAlways("sync");
    for (const ImportMode mode : {ImportMode::replace, ImportMode::merge}) {
        const auto imported = model().importBackup(backupOf(utc(2026, 3, 4)), mode, "import");
        ASSERT_FALSE(imported);
        EXPECT_EQ(imported.error().localizedDescription,
                  "Selvane couldn't save a copy of your current data first, so nothing was changed.");
        EXPECT_TRUE(model().engine().isRunning());
        EXPECT_EQ(model().tasks(), tasks);
        EXPECT_EQ(model().sessions(), sessions);
    }
}

TEST_F(DataLifecycle, AnImportLeavesLockedFilesLocked) {
    harness.write("tasks.json", "{damage");
    harness.files.failAlways("move");
    harness.files.failAlways("createForWriting");
    harness.start();
    harness.files.heal();
    ASSERT_TRUE(model().importBackup(backupOf(utc(2026, 3, 4)), ImportMode::replace, "import"));
    EXPECT_EQ(harness.read("tasks.json"), "{damage");
    EXPECT_THAT(harness.read("sessions.json"), HasSubstr("88888888"));
}

// Reset

TEST_F(DataLifecycle, AResetClearsTheHistoryAfterASafetyCopy) {
    haveData();
    harness.start().resetStatistics();
    EXPECT_THAT(model().sessions(), IsEmpty());
    EXPECT_THAT(model().tasks().items, SizeIs(1));
    EXPECT_THAT(harness.read("Backups/before-reset-2026-03-05-100000.json"), HasSubstr("99999999"));
    EXPECT_EQ(harness.read("sessions.json"), "[\n\n]");
}

TEST_F(DataLifecycle, AnEmptyHistoryIsResetWithASafetyCopyToo) {
    harness.start().resetStatistics();
    EXPECT_THAT(backups(), ElementsAre("before-reset-2026-03-05-100000.json"));
}

TEST_F(DataLifecycle, AResetIsNotStoppedByASafetyCopyThatCannotBeMade) {
    haveData();
    harness.start();
    std::filesystem::remove_all(harness.data() / "Backups");
    // A file where the folder would be.
    harness.write("Backups", "");
    model().resetStatistics();
    EXPECT_THAT(model().sessions(), IsEmpty());
    EXPECT_EQ(harness.read("sessions.json"), "[\n\n]");
}

TEST_F(DataLifecycle, ASafetyCopyBeforeAResetHasASecondChance) {
    haveData();
    harness.start();
    harness.files.failFirst("createForWriting", std::errc::io_error);
    model().resetStatistics();
    EXPECT_THAT(harness.read("Backups/before-reset-2026-03-05-100000.json"), HasSubstr("99999999"));
}

// The document

TEST_F(DataLifecycle, ABackupHoldsThePresentState) {
    haveData();
    harness.start().setCurrentTaskID(UUID::parse(test::firstTask));
    model().settings().dailyGoalMinutes.set(90);
    const SelvaneBackup backup = model().makeBackup();
    EXPECT_EQ(backup.appVersion, "1.2");
    EXPECT_EQ(backup.exportedAt, harness.now);
    EXPECT_EQ(backup.tasks, model().tasks());
    EXPECT_EQ(backup.sessions, model().sessions());
    EXPECT_EQ(backup.currentTaskID, UUID::parse(test::firstTask));
    EXPECT_EQ(backup.settings.at("dailyGoalMinutes").integer(), 90);
    EXPECT_THAT(backup.settings, SizeIs(1)) << "what was never set is left out";
}

TEST_F(DataLifecycle, AVersionThatDoesNotSayIsUnknown) {
    harness.release.version = std::nullopt;
    EXPECT_EQ(harness.start().makeBackup().appVersion, "unknown");
}

// The move from the earlier product

class Migration : public DataLifecycle {
protected:
    Migration() {
        harness.defaults.set("migratedFromVesk", std::nullopt);
        harness.predecessor = {.dataDirectory = harness.folder.path() / "Vesk",
                               .newDataDirectory = harness.data(),
                               .readDefaults = [this] { return earlier; }};
    }

    void haveEarlierData() { harness.folder.write("Vesk/sessions.json", oneSession); }
    [[nodiscard]] bool isOver() const {
        const auto& values = harness.defaults.values();
        return values.contains("migratedFromVesk") && values.at("migratedFromVesk").boolean() == true;
    }

    std::optional<SettingValues> earlier;
};

TEST_F(Migration, FolderAndSettingsComeOverBeforeAnythingIsRead) {
    haveEarlierData();
    harness.folder.write("Vesk/tasks.json", test::taskFile({{.id = test::firstTask}}));
    earlier = {{"dailyGoalMinutes", {std::int64_t{90}}}, {"currentTaskID", {test::firstTask}}};
    harness.start();
    EXPECT_THAT(model().sessions(), SizeIs(1));
    EXPECT_EQ(model().settings().dailyGoalMinutes(), 90);
    ASSERT_NE(model().currentTask(), nullptr);
    EXPECT_FALSE(std::filesystem::exists(harness.folder.path() / "Vesk"));
    EXPECT_TRUE(isOver());
}

TEST_F(Migration, TwoFoldersAreNeverPutTogether) {
    haveEarlierData();
    harness.write("tasks.json", test::taskFile({{.id = test::firstTask}}));
    harness.start();
    EXPECT_THAT(model().sessions(), IsEmpty());
    EXPECT_THAT(model().tasks().items, SizeIs(1));
    EXPECT_EQ(harness.folder.read("Vesk/sessions.json"), oneSession);
    EXPECT_TRUE(isOver());
}

TEST_F(Migration, WithoutAnEarlierProductItIsOverWithoutAWord) {
    testing::internal::CaptureStderr();
    harness.start();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), IsEmpty());
    EXPECT_TRUE(isOver());
}

TEST_F(Migration, HappensOnce) {
    harness.start();
    haveEarlierData();
    earlier = {{"dailyGoalMinutes", {std::int64_t{90}}}};
    harness.start();
    EXPECT_THAT(model().sessions(), IsEmpty());
    EXPECT_EQ(model().settings().dailyGoalMinutes(), 50);
    EXPECT_TRUE(std::filesystem::exists(harness.folder.path() / "Vesk"));
}

TEST_F(Migration, IsNotTriedAgainAfterAFailedMove) {
    haveEarlierData();
    harness.files.failAlways("move");
    harness.files.failAlways("rename");
    testing::internal::CaptureStderr();
    harness.start();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), StartsWith("Selvane: couldn't move "));
    harness.files.heal();
    harness.start();
    EXPECT_THAT(model().sessions(), IsEmpty());
    EXPECT_EQ(harness.folder.read("Vesk/sessions.json"), oneSession);
}

TEST_F(Migration, SettingsOfOursWinAlsoWhereTheyAreFalseOrNothing) {
    earlier = {
        {"autoStartBreaks", {true}}, {"driftGraceSeconds", {std::int64_t{60}}}, {"timerStyle", {"bar"}}};
    harness.defaults.store("autoStartBreaks", {false});
    harness.defaults.store("driftGraceSeconds", {std::int64_t{0}});
    harness.start();
    EXPECT_FALSE(model().settings().autoStartBreaks());
    EXPECT_EQ(model().settings().driftGraceSeconds(), 0);
    EXPECT_EQ(model().settings().timerStyle(), TimerStyle::bar);
}

TEST_F(Migration, EverySettingComesOver) {
    earlier.emplace();
    for (const std::string_view key : AppSettings::keys())
        earlier->emplace(key, SettingValue{std::string("of another kind")});
    // One that needs no mending, so that it stays as it came.
    earlier->insert_or_assign("focusOnShortcut", SettingValue{std::string("On")});
    harness.start();
    EXPECT_THAT(AppSettings::keys(), SizeIs(37));
    for (const std::string_view key : AppSettings::keys())
        EXPECT_TRUE(harness.defaults.values().contains(key)) << key;
    EXPECT_EQ(model().settings().focusOnShortcut(), "On");
}

TEST_F(Migration, OtherKeysStayBehind) {
    earlier = {{"lastSeenVersion", {"9.9"}}, {"lastRunBuild", {"99"}}};
    harness.start();
    EXPECT_EQ(harness.defaults.values().at("lastSeenVersion").text(), "1.2");
    EXPECT_EQ(harness.defaults.values().at("lastRunBuild").text(), "12");
}

TEST_F(Migration, DefaultsThatAreNotTheUsersTakeNothingOver) {
    haveEarlierData();
    harness.predecessor = std::nullopt;
    harness.start();
    EXPECT_FALSE(isOver());
    EXPECT_TRUE(std::filesystem::exists(harness.folder.path() / "Vesk"));
}

} // namespace
} // namespace selvane
