#include "Selvane/App/BackupManager.h"

#include "Support/FaultyFileSystem.h"
#include "Support/LocalTime.h"
#include "Support/ManualQueue.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

namespace selvane {
namespace {

using test::utc;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

SelvaneBackup backupOf(Date exportedAt) {
    return {"1.2", exportedAt, {}, {}, std::nullopt, {}};
}

class BackupManagerTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(manager.directory()))
            result.push_back(entry.path().filename().string());
        std::ranges::sort(result);
        return result;
    }
    void keep(const std::string& name, const SelvaneBackup& backup) {
        folder.write("Backups/" + name, *backup.encoded());
    }
    [[nodiscard]] std::vector<std::string> listed() const {
        std::vector<std::string> result;
        for (const auto& entry : manager.readEntries())
            result.push_back(entry.url.filename().string());
        return result;
    }

    /// 2026-03-05 14:07:09 in Berlin.
    Date now = utc(2026, 3, 5, 13, 7, 9);
    test::TemporaryFolder folder;
    test::FaultyFileSystem files;
    test::ManualQueue queue;
    BackupManager manager{folder.path() / "Backups",
                          {&files, [this] { return now; }, [] { return test::zone("Europe/Berlin"); }},
                          queue};
};

TEST_F(BackupManagerTest, TheFirstWriteMakesAFolderThatOnlyItsUserEnters) {
    EXPECT_THAT(manager.readEntries(), IsEmpty());
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    struct stat status {};
    ASSERT_EQ(::stat(manager.directory().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
    EXPECT_THAT(names(), ElementsAre("daily-2026-03-05.json"));
}

TEST_F(BackupManagerTest, NamesTellKindAndLocalTime) {
    EXPECT_TRUE(manager.writePreUpdate(backupOf(now), "1.4 (beta)/2"));
    EXPECT_TRUE(manager.writeSafety(backupOf(now), "import"));
    EXPECT_THAT(names(),
                ElementsAre("before-import-2026-03-05-140709.json", "pre-update-1.4beta2-2026-03-05.json"));
}

TEST_F(BackupManagerTest, ABackupOfTheSameBuildAndDayIsOverwritten) {
    EXPECT_TRUE(manager.writePreUpdate(backupOf(utc(2026, 3, 5)), "7"));
    EXPECT_TRUE(manager.writePreUpdate(backupOf(utc(2026, 3, 4)), "7"));
    ASSERT_THAT(manager.readEntries(), SizeIs(1));
    EXPECT_EQ(manager.readEntries().front().backup.exportedAt, utc(2026, 3, 4));
}

TEST_F(BackupManagerTest, AWritePrunesWhatIsOldEnough) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    EXPECT_THAT(names(), SizeIs(14));
    EXPECT_EQ(names().front(), "daily-2026-02-12.json");
    EXPECT_EQ(names().back(), "daily-2026-03-05.json");
}

TEST_F(BackupManagerTest, FilesOfOtherNamesStayForEver) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
    folder.write("Backups/notes.txt", "mine");
    folder.write("Backups/daily-2020-01-01.txt", "mine too");
    keep("weekly-2020-01-01.json", backupOf(utc(2020, 1, 1)));
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    EXPECT_THAT(names(),
                testing::IsSupersetOf({"notes.txt", "daily-2020-01-01.txt", "weekly-2020-01-01.json"}));
}

TEST_F(BackupManagerTest, AFileThatCannotBeRemovedDoesNotSaveTheNext) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
    files.failFirst("remove", std::errc::permission_denied);
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    EXPECT_THAT(names(), SizeIs(15));
    EXPECT_EQ(names().front(), "daily-2026-02-10.json");
    EXPECT_EQ(names().at(1), "daily-2026-02-12.json");
}

TEST_F(BackupManagerTest, UntilABackupReadsBackNothingIsPruned) {
    std::size_t failures = 0;
    for (std::size_t call = 1;; ++call) {
        for (int day = 10; day < 25; ++day)
            keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
        const auto before = names();
        files.failCall(call);
        const bool written = manager.write(backupOf(now), "daily-2026-03-05.json");
        const bool failed = files.hasFailed();
        files.heal();
        if (!failed)
            break;
        if (written)
            continue;
        ++failures;
        for (const std::string& name : before)
            ASSERT_TRUE(std::filesystem::exists(manager.directory() / name)) << name << ", call " << call;
    }
    EXPECT_GE(failures, 8U);
}

TEST_F(BackupManagerTest, BytesThatComeBackOtherwiseAreNoBackup) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
    const auto before = names();
    const std::string name = before.back();
    const std::string kept = folder.read("Backups/" + name);
    files.corruptReads();
    EXPECT_FALSE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    EXPECT_FALSE(manager.write(backupOf(now), name));
    files.heal();
    EXPECT_EQ(names(), before) << "nothing came, nothing went";
    EXPECT_EQ(folder.read("Backups/" + name), kept) << "the old one of that name is whole";
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
}

TEST_F(BackupManagerTest, WhatHasJustBeenWrittenStaysThoughOthersSayThatTheyAreNewer) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2027-02-" + std::to_string(day) + ".json", backupOf(utc(2027, 2, day)));
    for (int second = 10; second < 16; ++second)
        keep("before-import-2027-02-01-0000" + std::to_string(second) + ".json", backupOf(utc(2027, 2, 1)));
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    EXPECT_THAT(names(), testing::Contains("daily-2026-03-05.json"));
    EXPECT_TRUE(manager.writeSafety(backupOf(now), "import"));
    EXPECT_THAT(names(), testing::Contains("before-import-2026-03-05-140709.json"));
}

TEST_F(BackupManagerTest, TwoSafetyCopiesInOneSecondAreTwo) {
    EXPECT_TRUE(manager.writeSafety(backupOf(utc(2026, 3, 1)), "reset"));
    EXPECT_TRUE(manager.writeSafety(backupOf(utc(2026, 3, 2)), "reset"));
    EXPECT_THAT(names(),
                ElementsAre("before-reset-2026-03-05-140709.json", "before-reset-2026-03-05-140710.json"));
}

TEST_F(BackupManagerTest, WhatAKilledWriterLeftBehindGoes) {
    keep("mine.json", backupOf(utc(2026, 3, 1)));
    folder.write("Backups/.daily-2026-03-01.json.saving-0123AB", "half");
    EXPECT_TRUE(manager.write(backupOf(now), "daily-2026-03-05.json"));
    EXPECT_THAT(names(), ElementsAre("daily-2026-03-05.json", "mine.json"));
}

TEST_F(BackupManagerTest, AnExportGoesAnywhereAndPrunesNothing) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
    const auto target = folder.path() / "far/away/export.json";
    EXPECT_TRUE(BackupManager::write(files, backupOf(now), target));
    EXPECT_EQ(folder.read("far/away/export.json"), backupOf(now).encoded());
    EXPECT_THAT(names(), SizeIs(15));

    files.failAlways("sync", std::errc::no_space_on_device);
    const auto failed = BackupManager::write(files, backupOf(utc(2026, 3, 1)), target);
    ASSERT_FALSE(failed);
    EXPECT_THAT(failed.error().localizedDescription(), Not(IsEmpty()));
    EXPECT_EQ(folder.read("far/away/export.json"), backupOf(now).encoded()) << "the old file is whole";
}

TEST_F(BackupManagerTest, ARecordThatCannotBeCostsNoBackup) {
    SelvaneBackup backup = backupOf(now);
    backup.tasks.items.push_back({.id = UUID::random(),
                                  .title = "Task",
                                  .isDone = false,
                                  .createdAt = now,
                                  .completedAt = std::nullopt,
                                  .estimatedPomodoros = 5000,
                                  .completedPomodoros = 0});
    testing::internal::CaptureStderr();
    EXPECT_TRUE(manager.write(backup, "daily-2026-03-05.json"));
    EXPECT_THAT(
        testing::internal::GetCapturedStderr(),
        testing::AllOf(testing::StartsWith("Selvane: the backup daily-2026-03-05.json holds a record that "
                                           "can't be: "),
                       testing::HasSubstr(backup.tasks.items.front().id.text())));
    EXPECT_THAT(names(), ElementsAre("daily-2026-03-05.json"));
    EXPECT_THAT(manager.readEntries(), IsEmpty()) << "but it can't be offered";
}

TEST_F(BackupManagerTest, ADocumentThatMustBeMendedPushesNothingOut) {
    for (int day = 10; day < 25; ++day)
        keep("daily-2026-02-" + std::to_string(day) + ".json", backupOf(utc(2026, 2, day)));
    SelvaneBackup backup = backupOf(now);
    backup.tasks.items.push_back({.id = UUID::random(),
                                  .title = " ",
                                  .isDone = false,
                                  .createdAt = now,
                                  .completedAt = std::nullopt,
                                  .estimatedPomodoros = 0,
                                  .completedPomodoros = 0});
    EXPECT_TRUE(manager.write(backup, "daily-2026-03-05.json"));
    EXPECT_THAT(names(), SizeIs(16));
}

TEST_F(BackupManagerTest, ADocumentThatNobodyCouldReadIsNotWritten) {
    SelvaneBackup backup = backupOf(now);
    backup.settings["appleMusicPlaylist"] = SettingValue{std::string(SelvaneBackup::maxFileSize, 'a')};
    EXPECT_FALSE(manager.write(backup, "daily-2026-03-05.json"));
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(BackupManagerTest, AFailureIsALineInTheLog) {
    files.failAlways("sync", std::errc::no_space_on_device);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(manager.writeSafety(backupOf(now), "reset"));
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("Selvane: couldn't write backup before-reset-2026-03-05-140709.json: "));
}

TEST_F(BackupManagerTest, EntriesComeLatestDocumentFirst) {
    keep("z.json", backupOf(utc(2026, 3, 1)));
    keep("daily-2026-03-02.json", backupOf(utc(2026, 3, 3)));
    keep("daily-2026-03-03.json", backupOf(utc(2026, 3, 2)));
    EXPECT_THAT(listed(), ElementsAre("daily-2026-03-02.json", "daily-2026-03-03.json", "z.json"));
}

TEST_F(BackupManagerTest, WhatIsNoBackupIsPassedOver) {
    keep("good.json", backupOf(utc(2026, 3, 1)));
    keep("other.txt", backupOf(utc(2026, 3, 1)));
    folder.write("Backups/cut.json", "{");
    folder.write("Backups/newer.json", R"({"format":"selvane-backup","schemaVersion":2})");
    folder.write("Backups/folder.json/x", "");
    EXPECT_THAT(listed(), ElementsAre("good.json"));
}

TEST_F(BackupManagerTest, AFileThatIsTooLargeIsNotRead) {
    keep("large.json", backupOf(utc(2026, 3, 1)));
    std::filesystem::resize_file(folder.path() / "Backups/large.json", SelvaneBackup::maxFileSize + 1);
    files.heal();
    EXPECT_THAT(manager.readEntries(), IsEmpty());
    EXPECT_EQ(std::ranges::count(files.calls(), "read"), 0);
}

TEST_F(BackupManagerTest, EntriesAreLoadedAwayFromTheMainThread) {
    keep("good.json", backupOf(utc(2026, 3, 1)));
    std::vector<BackupManager::Entry> loaded;
    manager.loadEntries([&](std::vector<BackupManager::Entry> entries) { loaded = std::move(entries); });
    EXPECT_THAT(loaded, IsEmpty());
    ASSERT_EQ(queue.waiting(), 1U);
    queue.runNext();
    EXPECT_THAT(loaded, SizeIs(1));
}

TEST_F(BackupManagerTest, EntriesAreEqualIfTheirFilesAre) {
    const BackupManager::Entry one{"a.json", backupOf(utc(2026, 3, 1))};
    const BackupManager::Entry same{"a.json", backupOf(utc(2026, 3, 2))};
    const BackupManager::Entry other{"b.json", backupOf(utc(2026, 3, 1))};
    EXPECT_TRUE(one == same);
    EXPECT_FALSE(one == other);
}

struct KindRow {
    const char* name;
    const char* file;
    const char* kind;
};

class BackupKind : public testing::TestWithParam<KindRow> {};

TEST_P(BackupKind, IsToldByTheName) {
    EXPECT_EQ((BackupManager::Entry{GetParam().file, backupOf({})}.kind()), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    BackupManager, BackupKind,
    testing::Values(KindRow{"daily", "daily-2026-03-05.json", "Daily"},
                    KindRow{"update", "pre-update-1-2026-03-05.json", "Before update"},
                    KindRow{"reset", "before-reset-2026-03-05-140709.json", "Before reset"},
                    KindRow{"import", "before-import-2026-03-05-140709.json", "Before import"},
                    KindRow{"restore", "before-restore-x.json", "Before restore"},
                    KindRow{"otherReason", "before-lunch-2026-03-05-140709.json", "Backup"},
                    KindRow{"users", "mine.json", "Backup"}),
    [](const auto& row) { return row.param.name; });

} // namespace
} // namespace selvane
