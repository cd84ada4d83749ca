#include "Support/FaultyFileSystem.h"
#include "Support/ModelHarness.h"
#include "Support/TaskFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

const std::string lockedTasks =
    "Selvane couldn't read or set aside tasks.json, so it won't save over it. Move the file "
    "out of the data folder and relaunch.";
const std::string lockedSessions =
    "Selvane couldn't read or set aside sessions.json, so it won't save over it. Move "
    "the file out of the data folder and relaunch.";

class AppModelPersistence : public testing::Test {
protected:
    AppModelPersistence() { harness.fileSystem = &files; }

    void finishFocus() {
        TimerEngine& engine = harness.model().engine();
        harness.model().settings().autoStartBreaks.set(false);
        if (engine.phase() != Phase::focus)
            engine.skip();
        engine.start();
        harness.pass(Seconds{1500.5});
    }

    /// Nothing can be moved, renamed or made any more.
    void lockFolder() {
        files.failAlways("move");
        files.failAlways("rename");
        files.failAlways("createForWriting");
    }

    const std::optional<std::string>& saveError() { return harness.model().saveError(); }

    test::FaultyFileSystem files;
    test::ModelHarness harness;
};

TEST_F(AppModelPersistence, SessionIsFoundAfterARestart) {
    harness.launch();
    finishFocus();
    const auto sessions = harness.model().sessions();
    EXPECT_EQ(saveError(), std::nullopt);
    EXPECT_EQ(harness.launch().sessions(), sessions);
}

TEST_F(AppModelPersistence, EventsArePersistedWhenTheCommandReturns) {
    harness.launch().engine().start();
    harness.pass(Seconds{60});
    EXPECT_THAT(harness.folder.read("Selvane/sessions.json"), IsEmpty());
    harness.model().engine().reset();
    EXPECT_THAT(harness.folder.read("Selvane/sessions.json"), HasSubstr("\"completed\" : false"));
}

TEST_F(AppModelPersistence, ViewsHearOfASessionAfterItsWrite) {
    harness.launch();
    std::string onDisk;
    const auto subscription = harness.model().sessionsChanged.subscribe(
        [&] { onDisk = harness.folder.read("Selvane/sessions.json"); });
    finishFocus();
    EXPECT_THAT(onDisk, HasSubstr("\"completed\" : true"));
}

TEST_F(AppModelPersistence, FailureTellsWhyKeepsMemoryAndIsMendedByTheNextSave) {
    harness.launch();
    finishFocus();
    const std::string before = harness.folder.read("Selvane/sessions.json");
    files.failAlways("sync");
    finishFocus();
    ASSERT_TRUE(saveError());
    EXPECT_THAT(*saveError(), testing::StartsWith("Selvane couldn't save sessions.json: "));
    EXPECT_THAT(harness.model().sessions(), SizeIs(2));
    EXPECT_EQ(harness.model().todayMinutes(), 50) << "counted though it isn't saved";
    EXPECT_EQ(harness.folder.read("Selvane/sessions.json"), before);
    files.heal();
    finishFocus();
    EXPECT_EQ(saveError(), std::nullopt);
    EXPECT_THAT(harness.launch().sessions(), SizeIs(3)) << "each save writes everything";
}

TEST_F(AppModelPersistence, FailureIsLoggedWithTheFilesName) {
    harness.launch();
    files.failAlways("rename");
    testing::internal::CaptureStderr();
    finishFocus();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::StartsWith("Selvane: failed to save sessions.json: "));
}

TEST_F(AppModelPersistence, FailureAtAnyCallLeavesTheOldFileWholeAndIsTold) {
    harness.launch();
    finishFocus();
    std::size_t faults = 0;
    for (std::size_t call = 1;; ++call) {
        const std::string before = harness.folder.read("Selvane/sessions.json");
        const auto kept = harness.model().sessions().size();
        files.heal();
        files.failCall(call);
        finishFocus();
        EXPECT_THAT(harness.model().sessions(), SizeIs(kept + 1)) << "memory keeps the change, call " << call;
        if (!files.hasFailed())
            break;
        // Looking for what a killed process left only helps: failing, it costs nothing.
        const auto failed =
            std::ranges::find_if(files.calls(), [](const auto& name) { return name.ends_with('!'); });
        EXPECT_EQ(saveError().has_value(), *failed != "list!") << *failed;
        ++faults;
        const std::string after = harness.folder.read("Selvane/sessions.json");
        files.heal();
        const auto onDisk = harness.launch().sessions().size();
        EXPECT_TRUE(onDisk == kept || onDisk == kept + 1) << "one whole version, call " << call;
        EXPECT_EQ(after == before, onDisk == kept) << call;
    }
    EXPECT_GE(faults, 8U);
    std::cout << faults << " calls of a save failed one by one, 0 sessions lost\n";
}

TEST_F(AppModelPersistence, LockedTaskFileMakesEveryTaskChangeAnErrorAndStaysAsItIs) {
    const std::string damaged = test::taskFile({{test::firstTask}}) + "!";
    harness.folder.write("Selvane/tasks.json", damaged);
    lockFolder();
    AppModel& model = harness.launch();
    files.heal();
    EXPECT_EQ(model.saveError(), std::nullopt) << "nothing was saved yet";
    model.addTask("Write");
    EXPECT_EQ(model.saveError(), lockedTasks);
    EXPECT_EQ(harness.folder.read("Selvane/tasks.json"), damaged);
    EXPECT_THAT(model.tasks().items, SizeIs(1)) << "memory keeps the change";
}

TEST_F(AppModelPersistence, LaterSuccessOfTheOtherFileClearsTheError) {
    harness.folder.write("Selvane/tasks.json", "not tasks");
    lockFolder();
    AppModel& model = harness.launch();
    files.heal();
    model.addTask("Write");
    EXPECT_EQ(saveError(), lockedTasks);
    finishFocus();
    EXPECT_EQ(saveError(), std::nullopt);
}

TEST_F(AppModelPersistence, LockedSessionFileIsNeverOverwritten) {
    harness.folder.write("Selvane/sessions.json", "{}");
    lockFolder();
    harness.launch();
    files.heal();
    finishFocus();
    EXPECT_EQ(saveError(), lockedSessions);
    EXPECT_EQ(harness.folder.read("Selvane/sessions.json"), "{}");
    EXPECT_THAT(harness.model().sessions(), SizeIs(1));
}

TEST_F(AppModelPersistence, DamagedFileThatWasSetAsideIsReplacedByTheNextSave) {
    harness.folder.write("Selvane/sessions.json", "{}");
    harness.launch();
    finishFocus();
    EXPECT_EQ(saveError(), std::nullopt);
    EXPECT_THAT(harness.folder.read("Selvane/sessions.json"), HasSubstr("plannedSeconds"));
    int kept = 0;
    for (const auto& entry : std::filesystem::directory_iterator(harness.folder.path() / "Selvane")) {
        if (entry.path().filename().string().starts_with("sessions.corrupt-")) {
            ++kept;
            EXPECT_EQ(harness.folder.read("Selvane/" + entry.path().filename().string()), "{}");
        }
    }
    EXPECT_EQ(kept, 1);
}

TEST_F(AppModelPersistence, CurrentTaskIsWrittenAtEveryAssignmentAndRemovedWhenAbsent) {
    AppModel& model = harness.launch();
    const auto id = UUID::parse(test::firstTask);
    model.setCurrentTaskID(id);
    EXPECT_EQ(harness.defaults.values().at("currentTaskID").text(), test::firstTask);
    model.setCurrentTaskID(std::nullopt);
    EXPECT_FALSE(harness.defaults.values().contains("currentTaskID"));
}

TEST_F(AppModelPersistence, CurrentTaskSurvivesARestart) {
    harness.folder.write("Selvane/tasks.json", test::taskFile({{test::firstTask}}));
    harness.launch().setCurrentTaskID(UUID::parse(test::firstTask));
    ASSERT_NE(harness.launch().currentTask(), nullptr);
    EXPECT_EQ(harness.model().currentTask()->id, UUID::parse(test::firstTask));
}

} // namespace
} // namespace selvane
