#include "Support/ModelHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

class AppModelConstruction : public testing::Test {
protected:
    test::ModelHarness harness;
};

TEST_F(AppModelConstruction, RunsItsStepsInOrder) {
    harness.launch();
    EXPECT_THAT(harness.journal.entries(),
                ElementsAre("make updater", "make backups on Backups", "make notifier", "make lifecycle",
                            "lifecycle.migrate", "make music", "make guard", "make focusMode",
                            "make calendar", "defaults.read currentTaskID",
                            "lifecycle.recover missing missing", "lifecycle.backUpBeforeUpdate",
                            "notifier.authorize"));
}

TEST_F(AppModelConstruction, MigratesBeforeAnyFileIsRead) {
    harness.folder.write("Selvane/tasks.json", "no tasks");
    AppEnvironment environment = harness.environment();
    bool wasWhole = false;
    environment.services.makeDataLifecycle = [&] {
        wasWhole = harness.folder.read("Selvane/tasks.json") == "no tasks";
        return std::make_unique<test::RecordingLifecycle>(harness.journal);
    };
    const AppModel model(environment);
    EXPECT_TRUE(wasWhole);
    EXPECT_THAT(harness.journal.entries(), Contains("lifecycle.recover unreadable missing"));
}

TEST_F(AppModelConstruction, DressesTheApplicationOnlyAfterwards) {
    harness.launch();
    EXPECT_THAT(harness.journal.entries(), Not(Contains("appearance")));
    harness.scheduler.turn();
    EXPECT_EQ(harness.journal.count("appearance"), 1);
}

TEST_F(AppModelConstruction, TakesNoDailyBackupByItself) {
    harness.launch();
    harness.scheduler.turn();
    EXPECT_THAT(harness.journal.entries(), Not(Contains("lifecycle.backUpDaily")));
    EXPECT_THAT(harness.journal.entries(), Not(Contains("lifecycle.whatsNew")));
}

TEST_F(AppModelConstruction, ShowsStatisticsFirst) {
    EXPECT_EQ(harness.launch().windowPane(), Pane::statistics);
}

TEST_F(AppModelConstruction, HasNoDataAtTheFirstLaunch) {
    EXPECT_FALSE(harness.launch().hadDataAtLaunch());
    EXPECT_FALSE(harness.model().unrecoveredData());
    EXPECT_EQ(harness.model().saveError(), std::nullopt);
    EXPECT_EQ(harness.model().recoveryNotice(), std::nullopt);
}

TEST_F(AppModelConstruction, SessionsAloneAreDataAtLaunch) {
    harness.launch().engine().start();
    harness.pass(Seconds{1501});
    EXPECT_TRUE(harness.launch().hadDataAtLaunch());
}

struct CurrentTaskCase {
    const char* name;
    std::optional<std::string> stored;
    std::optional<UUID> read;
};

class CurrentTaskAtLaunch : public testing::TestWithParam<CurrentTaskCase> {};

TEST_P(CurrentTaskAtLaunch, IsReadFromTheDefaults) {
    test::ModelHarness harness;
    if (GetParam().stored)
        harness.defaults.texts["currentTaskID"] = *GetParam().stored;
    EXPECT_EQ(harness.launch().currentTaskID(), GetParam().read);
    EXPECT_EQ(harness.model().currentTask(), nullptr);
}

const auto someID = UUID::parse("0F8FAD5B-D9CB-469F-A165-70867728950E");

INSTANTIATE_TEST_SUITE_P(
    Rows, CurrentTaskAtLaunch,
    testing::Values(CurrentTaskCase{"Absent", std::nullopt, std::nullopt},
                    CurrentTaskCase{"Unparsable", "task 1", std::nullopt},
                    CurrentTaskCase{"Empty", "", std::nullopt},
                    CurrentTaskCase{"UnknownTask", "0F8FAD5B-D9CB-469F-A165-70867728950E", someID},
                    CurrentTaskCase{"LowerCase", "0f8fad5b-d9cb-469f-a165-70867728950e", someID}),
    [](const auto& row) { return row.param.name; });

TEST_F(AppModelConstruction, LeavesNothingRunningWhenItGoes) {
    harness.launch().engine().start();
    harness.quit();
    EXPECT_THAT(harness.journal.entries(), Contains("activity.end"));
    const auto before = harness.journal.entries().size();
    harness.scheduler.advance(Seconds{10});
    harness.awayMonitor.didWake.emit();
    EXPECT_EQ(harness.journal.entries().size(), before);
}

} // namespace
} // namespace selvane
