#include "Support/ModelHarness.h"
#include "Support/TaskFiles.h"

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
                            "lifecycle.migrate", "make settings", "make music", "make guard",
                            "make focusMode", "make calendar", "defaults.read currentTaskID",
                            "lifecycle.recover missing missing", "lifecycle.backUpBeforeUpdate",
                            "notifications.authorize"));
}

/// Puts files in place in the move from the earlier product, as that move does.
class MigratingLifecycle final : public test::RecordingLifecycle {
public:
    explicit MigratingLifecycle(test::ModelHarness& harness)
        : RecordingLifecycle(harness.journal, harness.answers), _folder(harness.folder) {}
    void migrateFromVesk() override {
        _folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    }

private:
    const test::TemporaryFolder& _folder;
};

TEST_F(AppModelConstruction, MigratesBeforeAnyFileIsRead) {
    AppEnvironment environment = harness.environment();
    environment.services.makeDataLifecycle = [&] { return std::make_unique<MigratingLifecycle>(harness); };
    const AppModel model(environment);
    EXPECT_EQ(model.tasks().items.size(), 1U);
    EXPECT_TRUE(model.hadDataAtLaunch());
}

TEST_F(AppModelConstruction, ReadsTheTasksBeforeTheSessions) {
    harness.folder.write("Selvane/tasks.json", "damaged");
    harness.folder.write("Selvane/sessions.json", "damaged");
    testing::internal::CaptureStderr();
    harness.launch();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::ContainsRegex("couldn't read tasks.json.*\n.*couldn't read sessions.json"));
    EXPECT_THAT(harness.journal.entries(), Contains("lifecycle.recover unreadable unreadable"));
}

TEST_F(AppModelConstruction, RecoveryKnowsTheCurrentTask) {
    harness.defaults.store("currentTaskID", {test::firstTask});
    harness.launch();
    EXPECT_THAT(harness.journal.entries(), Contains("lifecycle.recover missing missing with current task"));
}

struct AuthorizationCase {
    const char* name;
    bool notificationsEnabled;
    FocusGuardMode focusGuardMode;
    bool isAsked;
};

class AuthorizationAtLaunch : public testing::TestWithParam<AuthorizationCase> {};

TEST_P(AuthorizationAtLaunch, IsAskedForIfAnythingMaySpeak) {
    test::ModelHarness harness;
    harness.answers.storedSettings = [](AppSettings& settings) {
        settings.notificationsEnabled.set(GetParam().notificationsEnabled);
        settings.focusGuardMode.set(GetParam().focusGuardMode);
    };
    harness.launch();
    EXPECT_EQ(harness.journal.count("notifications.authorize"), GetParam().isAsked ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, AuthorizationAtLaunch,
                         testing::Values(AuthorizationCase{"Nothing", false, FocusGuardMode::track, false},
                                         AuthorizationCase{"GuardOff", false, FocusGuardMode::off, false},
                                         AuthorizationCase{"Notifications", true, FocusGuardMode::off, true},
                                         AuthorizationCase{"Nudges", false, FocusGuardMode::nudge, true},
                                         AuthorizationCase{"Hiding", false, FocusGuardMode::hide, true}),
                         [](const auto& row) { return row.param.name; });

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
        harness.defaults.store("currentTaskID", {*GetParam().stored});
    EXPECT_EQ(harness.launch().currentTaskID(), GetParam().read);
    EXPECT_EQ(harness.model().currentTask(), nullptr);
}

const auto someID = UUID::parse("0F8FAD5B-D9CB-469F-A165-70867728950E");

INSTANTIATE_TEST_SUITE_P(
    Rows, CurrentTaskAtLaunch,
    testing::Values(CurrentTaskCase{"Absent", std::nullopt, std::nullopt},
                    CurrentTaskCase{"Unparsable", "no identifier", std::nullopt},
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
