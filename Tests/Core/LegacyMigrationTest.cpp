#include "SelvaneCore/LegacyMigration.h"

#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/FaultyFileSystem.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

namespace selvane {
namespace {

using test::FaultyFileSystem;
using test::TemporaryFolder;
using Texts = SettingValue::Texts;
using namespace std::string_view_literals;

class MoveDataDirectory : public testing::Test {
protected:
    void makeOldFolder() {
        folder.write("share/Vesk/tasks.json", "old tasks");
        folder.write("share/Vesk/Backups/daily-2026-03-05.json", "old backup");
    }

    /// Whether all of the old data is in that folder.
    [[nodiscard]] bool isWhole(const std::string& name) const {
        return folder.read(name + "/tasks.json") == "old tasks" &&
               folder.read(name + "/Backups/daily-2026-03-05.json") == "old backup";
    }

    /// Moves, and notes what was logged.
    bool move(const std::filesystem::path& target) {
        testing::internal::CaptureStderr();
        const bool moved = LegacyMigration::moveDataDirectory(files, from, target);
        log = testing::internal::GetCapturedStderr();
        return moved;
    }
    bool move() { return move(to); }

    TemporaryFolder folder;
    std::filesystem::path from = folder.path() / "share/Vesk";
    std::filesystem::path to = folder.path() / "share/Selvane";
    FaultyFileSystem files;
    std::string log;
};

TEST_F(MoveDataDirectory, MovesTheOldFolderWithAllThatIsInIt) {
    makeOldFolder();
    EXPECT_TRUE(move());
    EXPECT_TRUE(isWhole("share/Selvane"));
    EXPECT_FALSE(std::filesystem::exists(from));
    EXPECT_EQ(log, "");
}

TEST_F(MoveDataDirectory, WithoutAnOldFolderThereIsNothingToDoOrToLog) {
    EXPECT_FALSE(move());
    EXPECT_EQ(log, "");
    EXPECT_FALSE(std::filesystem::exists(to));
    EXPECT_FALSE(std::filesystem::exists(to.parent_path()));
}

TEST_F(MoveDataDirectory, NeverPutsTwoFoldersTogether) {
    makeOldFolder();
    folder.write("share/Selvane/sessions.json", "new history");
    EXPECT_FALSE(move());
    EXPECT_TRUE(isWhole("share/Vesk"));
    EXPECT_EQ(folder.read("share/Selvane/sessions.json"), "new history");
    EXPECT_FALSE(std::filesystem::exists(to / "tasks.json"));
    EXPECT_EQ(log, "");
}

TEST_F(MoveDataDirectory, AnEmptyNewFolderCountsToo) {
    makeOldFolder();
    std::filesystem::create_directory(to);
    EXPECT_FALSE(move());
    EXPECT_TRUE(isWhole("share/Vesk"));
    EXPECT_TRUE(std::filesystem::is_empty(to));
}

TEST_F(MoveDataDirectory, AFileUnderTheNewNameCountsToo) {
    makeOldFolder();
    folder.write("share/Selvane", "a file");
    EXPECT_FALSE(move());
    EXPECT_TRUE(isWhole("share/Vesk"));
    EXPECT_EQ(folder.read("share/Selvane"), "a file");
}

TEST_F(MoveDataDirectory, ALinkThatLeadsNowhereIsNotReplacedEither) {
    makeOldFolder();
    std::filesystem::create_symlink("nowhere", to);
    EXPECT_FALSE(move());
    EXPECT_TRUE(isWhole("share/Vesk"));
    EXPECT_TRUE(std::filesystem::is_symlink(to));
    EXPECT_EQ(log, "Selvane: couldn't move " + from.string() + " to " + to.string() + ": File exists\n");
}

TEST_F(MoveDataDirectory, MakesMissingParents) {
    makeOldFolder();
    const auto deep = folder.path() / "other/data/of/mine/Selvane";
    EXPECT_TRUE(move(deep));
    EXPECT_TRUE(isWhole("other/data/of/mine/Selvane"));
    EXPECT_FALSE(std::filesystem::exists(from));
}

TEST_F(MoveDataDirectory, AFailedMoveIsLoggedAndLeavesTheOldFolder) {
    makeOldFolder();
    files.failAlways("move", std::errc::permission_denied);
    EXPECT_FALSE(move());
    EXPECT_EQ(log,
              "Selvane: couldn't move " + from.string() + " to " + to.string() + ": Permission denied\n");
    EXPECT_TRUE(isWhole("share/Vesk"));
    EXPECT_FALSE(std::filesystem::exists(to));
}

TEST_F(MoveDataDirectory, AParentThatCannotBeMadeIsLogged) {
    makeOldFolder();
    folder.write("file", "no folder");
    const auto target = folder.path() / "file/Selvane";
    files.failAlways("makeFolder", std::errc::no_space_on_device);
    EXPECT_FALSE(move(target));
    EXPECT_EQ(log, "Selvane: couldn't move " + from.string() + " to " + target.string() + ": make folder " +
                       target.parent_path().string() + ": No space left on device\n");
    EXPECT_TRUE(isWhole("share/Vesk"));
}

TEST_F(MoveDataDirectory, WhatCannotBeKnownIsLeftToTheMove) {
    makeOldFolder();
    files.failAlways("exists");
    EXPECT_TRUE(move());
    EXPECT_TRUE(isWhole("share/Selvane"));
}

TEST_F(MoveDataDirectory, WhatCannotBeKnownIsStillNotReplaced) {
    makeOldFolder();
    folder.write("share/Selvane/sessions.json", "new history");
    files.failAlways("exists");
    EXPECT_FALSE(move());
    EXPECT_TRUE(isWhole("share/Vesk"));
    EXPECT_EQ(folder.read("share/Selvane/sessions.json"), "new history");
    EXPECT_EQ(log, "Selvane: couldn't move " + from.string() + " to " + to.string() + ": File exists\n");
}

TEST_F(MoveDataDirectory, MakesTheMoveDurable) {
    makeOldFolder();
    EXPECT_TRUE(move());
    EXPECT_EQ(files.calls(), (std::vector<std::string>{"exists", "exists", "makeFolder", "move", "openFolder",
                                                       "sync", "close", "openFolder", "sync", "close"}));
    EXPECT_EQ(files.openCount(), 0);
}

/// Moves in a folder of its own for every call that can fail. Counts the times that data was lost, and the
/// faults.
class MoveFaults : public testing::Test {
protected:
    void failEach(void (FaultyFileSystem::*fail)(std::size_t)) {
        bool hasFailed = true;
        for (std::size_t number = 1; hasFailed; ++number) {
            const TemporaryFolder folder;
            folder.write("Vesk/tasks.json", "old tasks");
            const auto from = folder.path() / "Vesk";
            const auto to = folder.path() / "data/of/mine/Selvane";
            FaultyFileSystem files;

            (files.*fail)(number);
            const bool moved = LegacyMigration::moveDataDirectory(files, from, to);
            hasFailed = files.hasFailed();
            EXPECT_EQ(files.openCount(), 0) << number;
            files.heal();

            const bool isOld = folder.read("Vesk/tasks.json") == "old tasks";
            const bool isNew = folder.read("data/of/mine/Selvane/tasks.json") == "old tasks";
            EXPECT_EQ(moved, isNew) << number;
            EXPECT_NE(isOld, isNew) << number;
            lost += !isOld && !isNew;
            faults += hasFailed;

            // Without the fault the rest is done.
            EXPECT_EQ(LegacyMigration::moveDataDirectory(files, from, to), !moved) << number;
            EXPECT_EQ(folder.read("data/of/mine/Selvane/tasks.json"), "old tasks") << number;
        }
    }

    int lost = 0;
    int faults = 0;
};

TEST_F(MoveFaults, NothingIsLost) {
    failEach(&FaultyFileSystem::failCall);
    failEach(&FaultyFileSystem::failFrom);
    std::cout << "calls failed one by one or all from one on, " << faults << " times: " << lost << " lost\n";
    EXPECT_EQ(lost, 0);
    EXPECT_GT(faults, 20);
}

TEST(CopyDefaults, CopiesWhatIsOnlyInTheOldStore) {
    MemoryDefaultsStore from;
    MemoryDefaultsStore to;
    from.set("both", SettingValue{std::string("old")});
    from.set("old", SettingValue{std::string("old")});
    to.set("both", SettingValue{std::string("new")});
    to.set("new", SettingValue{std::string("new")});
    const SettingValues before = from.values();

    EXPECT_EQ(LegacyMigration::copyDefaults(std::array{"both"sv, "old"sv, "new"sv, "neither"sv}, from, to),
              1U);
    EXPECT_EQ(to.values(), (SettingValues{{"both", {std::string("new")}},
                                          {"new", {std::string("new")}},
                                          {"old", {std::string("old")}}}));
    EXPECT_EQ(from.values(), before);
}

TEST(CopyDefaults, KeepsEveryType) {
    MemoryDefaultsStore from;
    MemoryDefaultsStore to;
    from.set("bool", SettingValue{false});
    from.set("int", SettingValue{std::int64_t{0}});
    from.set("double", SettingValue{1.0});
    from.set("string", SettingValue{std::string()});
    from.set("strings", SettingValue{Texts{"a", "b"}});
    EXPECT_EQ(LegacyMigration::copyDefaults(
                  std::array{"strings"sv, "string"sv, "double"sv, "int"sv, "bool"sv}, from, to),
              5U);
    EXPECT_EQ(to.values(), from.values());
}

TEST(CopyDefaults, FalseZeroAndEmptyCountAsPresent) {
    for (const SettingValue& present : {SettingValue{false}, SettingValue{std::int64_t{0}}, SettingValue{0.0},
                                        SettingValue{std::string()}, SettingValue{Texts{}}}) {
        MemoryDefaultsStore from;
        MemoryDefaultsStore to;
        from.set("key", SettingValue{std::int64_t{7}});
        to.set("key", present);
        EXPECT_EQ(LegacyMigration::copyDefaults(std::array{"key"sv}, from, to), 0U);
        EXPECT_EQ(to.value("key"), present);
    }
}

TEST(CopyDefaults, CopiesNothingButTheKeys) {
    MemoryDefaultsStore from;
    MemoryDefaultsStore to;
    from.set("key", SettingValue{true});
    EXPECT_EQ(LegacyMigration::copyDefaults({}, from, to), 0U);
    EXPECT_EQ(LegacyMigration::copyDefaults(std::array{"Key"sv, ""sv}, from, to), 0U);
    EXPECT_TRUE(to.values().empty());
}

TEST(CopyDefaults, AKeyThatIsRepeatedCountsOnce) {
    MemoryDefaultsStore from;
    MemoryDefaultsStore to;
    from.set("key", SettingValue{true});
    EXPECT_EQ(LegacyMigration::copyDefaults(std::array{"key"sv, "key"sv}, from, to), 1U);
}

TEST(CopyDefaults, ASecondTimeCopiesNothing) {
    MemoryDefaultsStore from;
    MemoryDefaultsStore to;
    from.set("key", SettingValue{true});
    EXPECT_EQ(LegacyMigration::copyDefaults(std::array{"key"sv}, from, to), 1U);
    from.set("key", SettingValue{false});
    EXPECT_EQ(LegacyMigration::copyDefaults(std::array{"key"sv}, from, to), 0U);
    EXPECT_EQ(to.value("key"), SettingValue{true});
}

} // namespace
} // namespace selvane
