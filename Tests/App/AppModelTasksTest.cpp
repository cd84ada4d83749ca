#include "Support/FaultyFileSystem.h"
#include "Support/ModelHarness.h"
#include "Support/RowName.h"
#include "Support/TaskFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const UUID first = *UUID::parse(test::firstTask);
const UUID second = *UUID::parse(test::secondTask);
const UUID third = *UUID::parse(test::thirdTask);
const UUID unknown = *UUID::parse("99999999-9999-4999-8999-999999999999");

const std::string today = "2026-03-05T09:00:00Z";
const std::string earlierToday = "2026-03-05T08:00:00Z";

class AppModelTasks : public testing::Test {
protected:
    AppModelTasks() { harness.fileSystem = &files; }

    AppModel& launchWith(std::initializer_list<test::TaskLine> tasks) {
        harness.folder.write("Selvane/tasks.json", test::taskFile(tasks));
        harness.launch();
        harness.scheduler.turn();
        return harness.model();
    }

    AppModel& launchWithThree() {
        return launchWith({{test::firstTask}, {test::secondTask}, {test::thirdTask}});
    }

    /// Every change from here on.
    std::vector<TaskChange> changesOf(const std::function<void(AppModel&)>& command) {
        std::vector<TaskChange> changes;
        const auto subscription =
            harness.model().tasksChanged.subscribe([&](TaskChange change) { changes.push_back(change); });
        command(harness.model());
        return changes;
    }

    /// The list in a word: the number of each task, "?" for one that wasn't there at the start, done tasks in
    /// brackets.
    std::string order() {
        std::string text;
        for (const TaskItem& item : harness.model().tasks().items) {
            const char* const number = item.id == first    ? "1"
                                       : item.id == second ? "2"
                                       : item.id == third  ? "3"
                                                           : "?";
            text += item.isDone ? "[" + std::string(number) + "]" : number;
        }
        return text;
    }

    std::string onDisk() { return harness.folder.read("Selvane/tasks.json"); }

    const TaskItem& task(const UUID& id) { return *harness.model().tasks().find(id); }

    test::FaultyFileSystem files;
    test::ModelHarness harness;
};

// Ticking off

TEST_F(AppModelTasks, TickIsOnDiskAtOnceAndStampedWithTheTime) {
    AppModel& model = launchWithThree();
    model.toggleTask(second);
    EXPECT_TRUE(task(second).isDone);
    EXPECT_EQ(task(second).completedAt, harness.now);
    EXPECT_THAT(onDisk(), HasSubstr("\"completedAt\" : \"2026-03-05T10:00:00Z\""));
    model.toggleTask(second);
    EXPECT_FALSE(task(second).isDone);
    EXPECT_THAT(onDisk(), Not(HasSubstr("completedAt")));
}

TEST_F(AppModelTasks, TickedTaskStaysInItsPlaceForAMoment) {
    AppModel& model = launchWithThree();
    model.toggleTask(first);
    harness.pass(Seconds{0.549});
    EXPECT_EQ(order(), "[1]23");
    harness.pass(Seconds{0.001});
    EXPECT_EQ(order(), "23[1]");
    harness.launch();
    EXPECT_EQ(order(), "23[1]") << "persisted";
}

TEST_F(AppModelTasks, OpenedTaskFindsItsPlaceAfterTheSameMoment) {
    AppModel& model = launchWith(
        {{test::firstTask}, {test::secondTask, true, today}, {test::thirdTask, true, earlierToday}});
    model.toggleTask(third);
    EXPECT_EQ(order(), "1[2]3");
    harness.pass(Seconds{0.55});
    EXPECT_EQ(order(), "13[2]");
}

TEST_F(AppModelTasks, TickIsPlainAndTheReorderIsAnimated) {
    launchWithThree();
    EXPECT_THAT(changesOf([this](AppModel& model) {
                    model.toggleTask(first);
                    harness.pass(Seconds{0.55});
                }),
                ElementsAre(TaskChange::plain, TaskChange::animated));
}

TEST_F(AppModelTasks, TicksInARowEndInOneReorderTimedFromTheLast) {
    AppModel& model = launchWithThree();
    model.toggleTask(first);
    harness.pass(Seconds{0.3});
    model.toggleTask(second);
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.549}); }), IsEmpty());
    EXPECT_EQ(order(), "[1][2]3");
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.001}); }),
                ElementsAre(TaskChange::animated));
    EXPECT_EQ(order(), "3[2][1]");
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{5}); }), IsEmpty());
}

TEST_F(AppModelTasks, TicksFurtherApartReorderEachByItself) {
    AppModel& model = launchWithThree();
    model.toggleTask(first);
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.6}); }),
                ElementsAre(TaskChange::animated));
    model.toggleTask(second);
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.6}); }),
                ElementsAre(TaskChange::animated));
}

TEST_F(AppModelTasks, TickTakenBackWithinTheMomentReordersAllTheSame) {
    AppModel& model = launchWithThree();
    model.toggleTask(first);
    harness.pass(Seconds{0.3});
    model.toggleTask(first);
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.6}); }),
                ElementsAre(TaskChange::animated));
    EXPECT_EQ(order(), "123");
}

TEST_F(AppModelTasks, TickOfAnUnknownTaskNeitherPersistsNorReorders) {
    AppModel& model = launchWithThree();
    const std::string before = onDisk();
    EXPECT_THAT(changesOf([](AppModel& changed) { changed.toggleTask(unknown); }), IsEmpty());
    EXPECT_EQ(harness.scheduler.waiting(), 0U);
    EXPECT_EQ(onDisk(), before);
    model.toggleTask(first);
    harness.pass(Seconds{0.4});
    model.toggleTask(unknown);
    harness.pass(Seconds{0.2});
    EXPECT_EQ(order(), "23[1]") << "a reorder on its way keeps its time";
}

TEST_F(AppModelTasks, TaskDeletedWithinTheMomentIsMissingFromTheReorder) {
    AppModel& model = launchWithThree();
    model.toggleTask(first);
    model.toggleTask(second);
    harness.pass(Seconds{0.3});
    model.deleteTask(second);
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.25}); }),
                ElementsAre(TaskChange::animated))
        << "timed from the tick, not from the deletion";
    EXPECT_EQ(order(), "3[1]");
}

TEST_F(AppModelTasks, ReorderRunsWithoutItsOnlyTask) {
    AppModel& model = launchWith({{test::firstTask}});
    model.toggleTask(first);
    model.deleteTask(first);
    EXPECT_THAT(changesOf([this](AppModel&) { harness.pass(Seconds{0.55}); }),
                ElementsAre(TaskChange::animated));
    EXPECT_EQ(order(), "");
}

TEST_F(AppModelTasks, ReorderOfAModelThatIsGoneDoesNothing) {
    launchWithThree().toggleTask(first);
    const std::string before = onDisk();
    harness.quit();
    harness.pass(Seconds{1});
    EXPECT_EQ(onDisk(), before);
    EXPECT_EQ(harness.scheduler.waiting(), 0U);
}

TEST_F(AppModelTasks, ReorderCountsTheTimeOfASuspend) {
    launchWithThree().toggleTask(first);
    harness.scheduler.suspend(Seconds{3600});
    EXPECT_EQ(order(), "23[1]");
}

// Adding, moving, renaming, estimating

TEST_F(AppModelTasks, NewTaskIsNotTheCurrentOne) {
    AppModel& model = launchWith({{test::firstTask}, {test::secondTask, true, today}});
    model.addTask("  Write  ");
    ASSERT_EQ(model.tasks().items.size(), 3U);
    EXPECT_EQ(model.tasks().items[1].title, "Write");
    EXPECT_EQ(model.tasks().items[1].createdAt, harness.now);
    EXPECT_EQ(model.currentTaskID(), std::nullopt);
    EXPECT_THAT(onDisk(), HasSubstr("\"title\" : \"Write\""));
}

TEST_F(AppModelTasks, DraggedTasksAreMovedAsOneRun) {
    AppModel& model = launchWithThree();
    model.moveTasks({0, 1}, 3);
    EXPECT_EQ(order(), "312");
    model.moveTasks({2}, 0);
    EXPECT_EQ(order(), "231");
    harness.launch();
    EXPECT_EQ(order(), "231") << "persisted";
}

TEST_F(AppModelTasks, DoneTaskDraggedAmongOpenOnesSpringsBack) {
    AppModel& model = launchWith({{test::firstTask}, {test::secondTask}, {test::thirdTask, true, today}});
    model.moveTasks({2}, 0);
    EXPECT_EQ(order(), "12[3]");
}

TEST_F(AppModelTasks, RenamedTaskHasTheCleanedTitle) {
    AppModel& model = launchWithThree();
    model.renameTask(second, "\tRead \n");
    EXPECT_EQ(task(second).title, "Read");
    EXPECT_EQ(task(first).title, "Task");
    EXPECT_THAT(onDisk(), HasSubstr("\"title\" : \"Read\""));
}

TEST_F(AppModelTasks, EstimateIsNeverNegative) {
    AppModel& model = launchWithThree();
    model.setEstimate(second, 8);
    EXPECT_EQ(task(second).estimatedPomodoros, 8);
    model.setEstimate(second, -3);
    EXPECT_EQ(task(second).estimatedPomodoros, 0);
    EXPECT_THAT(onDisk(), HasSubstr("\"estimatedPomodoros\" : 0"));
}

// Deleting and clearing

TEST_F(AppModelTasks, DeletedTaskIsGoneFromTheDisk) {
    AppModel& model = launchWithThree();
    model.deleteTask(second);
    EXPECT_EQ(order(), "13");
    EXPECT_THAT(onDisk(), Not(HasSubstr(test::secondTask)));
}

TEST_F(AppModelTasks, EveryTaskWithTheIdIsDeleted) {
    AppModel& model = launchWith({{test::firstTask}, {test::secondTask}, {test::firstTask}});
    model.deleteTask(first);
    EXPECT_EQ(order(), "2");
}

TEST_F(AppModelTasks, DeletedTaskStopsBeingCurrentBeforeItGoes) {
    AppModel& model = launchWithThree();
    model.setCurrentTaskID(second);
    std::vector<std::string> heard;
    const auto current = model.currentTaskIDChanged.subscribe(
        [&] { heard.push_back((model.currentTaskID() ? "current " : "none ") + order()); });
    const auto tasks = model.tasksChanged.subscribe(
        [&](TaskChange) { heard.push_back((model.currentTaskID() ? "current " : "none ") + order()); });
    model.deleteTask(second);
    EXPECT_THAT(heard, ElementsAre("none 123", "none 13"));
    EXPECT_FALSE(harness.defaults.values().contains("currentTaskID"));
}

TEST_F(AppModelTasks, OnlyDoneTasksAreCleared) {
    AppModel& model = launchWith(
        {{test::firstTask}, {test::secondTask, true, today}, {test::thirdTask, true, earlierToday}});
    model.clearCompletedTasks();
    EXPECT_EQ(order(), "1");
    EXPECT_THAT(onDisk(), Not(HasSubstr(test::thirdTask)));
}

TEST_F(AppModelTasks, ClearingWithNothingDoneStillPersistsAndAnimates) {
    launchWithThree();
    harness.folder.write("Selvane/tasks.json", "");
    EXPECT_THAT(changesOf([](AppModel& model) { model.clearCompletedTasks(); }),
                ElementsAre(TaskChange::animated));
    EXPECT_THAT(onDisk(), HasSubstr(test::thirdTask));
}

// What all commands have in common

/// A command on a list of two open tasks and a done one.
struct CommandRow {
    const char* name;
    /// Given the id of the first task.
    std::function<void(AppModel&, UUID)> run;
    TaskChange kind;
    /// The list after the command.
    std::string after;
};

const std::vector<CommandRow> changes{
    {"addTask", [](AppModel& model, UUID) { model.addTask("Write"); }, TaskChange::animated, "12?[3]"},
    {"toggleTask", [](AppModel& model, UUID id) { model.toggleTask(id); }, TaskChange::plain, "[1]2[3]"},
    {"moveTasks", [](AppModel& model, UUID) { model.moveTasks({0}, 2); }, TaskChange::plain, "21[3]"},
    {"renameTask", [](AppModel& model, UUID id) { model.renameTask(id, "Read"); }, TaskChange::plain,
     "12[3]"},
    {"setEstimate", [](AppModel& model, UUID id) { model.setEstimate(id, 4); }, TaskChange::plain, "12[3]"},
    {"deleteTask", [](AppModel& model, UUID id) { model.deleteTask(id); }, TaskChange::animated, "2[3]"},
    {"clearCompletedTasks", [](AppModel& model, UUID) { model.clearCompletedTasks(); }, TaskChange::animated,
     "12"},
};

const std::vector<CommandRow> refusals{
    {"addTaskWithABlankTitle", [](AppModel& model, UUID) { model.addTask(" \n"); }, TaskChange::animated,
     "12[3]"},
    {"moveTasksFromStaleOffsets",
     [](AppModel& model, UUID) {
         model.moveTasks({-1, 3}, 0);
     },
     TaskChange::plain, "12[3]"},
    {"moveNoTasks", [](AppModel& model, UUID) { model.moveTasks({}, 0); }, TaskChange::plain, "12[3]"},
    {"renameTaskToABlankTitle", [](AppModel& model, UUID id) { model.renameTask(id, "  "); },
     TaskChange::plain, "12[3]"},
    {"renameAnUnknownTask", [](AppModel& model, UUID) { model.renameTask(unknown, "Read"); },
     TaskChange::plain, "12[3]"},
    {"setEstimateOfAnUnknownTask", [](AppModel& model, UUID) { model.setEstimate(unknown, 4); },
     TaskChange::plain, "12[3]"},
    {"deleteAnUnknownTask", [](AppModel& model, UUID) { model.deleteTask(unknown); }, TaskChange::animated,
     "12[3]"},
};

class AppModelTaskCommand : public AppModelTasks, public testing::WithParamInterface<CommandRow> {
protected:
    AppModel& launchWithOneDone() {
        return launchWith({{test::firstTask}, {test::secondTask}, {test::thirdTask, true, today}});
    }
};

TEST_P(AppModelTaskCommand, ChangesTheListAndTellsOnceHowToShowIt) {
    launchWithOneDone();
    EXPECT_THAT(changesOf([](AppModel& model) { GetParam().run(model, first); }),
                ElementsAre(GetParam().kind));
    EXPECT_EQ(order(), GetParam().after);
}

TEST_P(AppModelTaskCommand, IsOnDiskWhenViewsHearOfIt) {
    AppModel& model = launchWithOneDone();
    harness.folder.write("Selvane/tasks.json", "");
    std::string heard;
    const auto subscription = model.tasksChanged.subscribe([&](TaskChange) { heard = onDisk(); });
    GetParam().run(model, first);
    EXPECT_THAT(heard, StartsWith("{"));
    EXPECT_EQ(onDisk(), heard);
    const TaskList kept = model.tasks();
    EXPECT_EQ(harness.launch().tasks(), kept);
}

TEST_P(AppModelTaskCommand, FailedSaveIsToldKeepsMemoryAndIsMendedByTheNext) {
    AppModel& model = launchWithOneDone();
    const std::string before = onDisk();
    files.failAlways("sync");
    GetParam().run(model, first);
    ASSERT_TRUE(model.saveError());
    EXPECT_THAT(*model.saveError(), StartsWith("Selvane couldn't save tasks.json: "));
    EXPECT_EQ(order(), GetParam().after);
    EXPECT_EQ(onDisk(), before);
    files.heal();
    model.renameTask(unknown, "");
    EXPECT_EQ(model.saveError(), std::nullopt);
    const TaskList kept = model.tasks();
    EXPECT_EQ(harness.launch().tasks(), kept);
}

TEST_P(AppModelTaskCommand, LockedFileIsNamedAndStaysAsItIs) {
    const std::string damaged = test::taskFile({{test::firstTask}}) + "!";
    harness.folder.write("Selvane/tasks.json", damaged);
    for (const char* const call : {"move", "rename", "createForWriting"})
        files.failAlways(call);
    AppModel& model = harness.launch();
    files.heal();
    model.addTask("In memory only");
    // A session that can be saved takes the error away.
    model.engine().start();
    harness.pass(Seconds{61});
    model.engine().reset();
    ASSERT_EQ(model.saveError(), std::nullopt);
    GetParam().run(model, model.tasks().items.front().id);
    EXPECT_EQ(
        model.saveError(),
        "Selvane couldn't read or set aside tasks.json, so it won't save over it. Move the file out of the "
        "data folder and relaunch.");
    EXPECT_EQ(onDisk(), damaged);
}

INSTANTIATE_TEST_SUITE_P(Change, AppModelTaskCommand, testing::ValuesIn(changes), test::rowName);
INSTANTIATE_TEST_SUITE_P(Refusal, AppModelTaskCommand, testing::ValuesIn(refusals), test::rowName);

// How the current task follows

struct FollowRow {
    const char* name;
    std::function<void(test::ModelHarness&)> change;
    bool staysCurrentID;
    bool staysCurrent;
};

class AppModelCurrentTask : public AppModelTasks, public testing::WithParamInterface<FollowRow> {};

TEST_P(AppModelCurrentTask, FollowsTheChange) {
    const FollowRow& row = GetParam();
    AppModel& model = launchWithThree();
    model.setCurrentTaskID(first);
    row.change(harness);
    EXPECT_EQ(model.currentTaskID(), row.staysCurrentID ? std::optional(first) : std::nullopt);
    EXPECT_EQ(model.currentTask() != nullptr, row.staysCurrent);
    EXPECT_EQ(harness.defaults.values().contains("currentTaskID"), row.staysCurrentID);
}

INSTANTIATE_TEST_SUITE_P(
    AppModel, AppModelCurrentTask,
    testing::Values(
        FollowRow{"tickedOff", [](auto& harness) { harness.model().toggleTask(first); }, true, false},
        FollowRow{"tickedOffAndReordered",
                  [](auto& harness) {
                      harness.model().toggleTask(first);
                      harness.pass(Seconds{0.6});
                  },
                  true, false},
        FollowRow{"tickedOffAndOpenedAgain",
                  [](auto& harness) {
                      harness.model().toggleTask(first);
                      harness.model().toggleTask(first);
                  },
                  true, true},
        FollowRow{"deleted", [](auto& harness) { harness.model().deleteTask(first); }, false, false},
        FollowRow{"anotherDeleted", [](auto& harness) { harness.model().deleteTask(second); }, true, true},
        FollowRow{"clearedByHand",
                  [](auto& harness) {
                      harness.model().toggleTask(first);
                      harness.model().clearCompletedTasks();
                  },
                  true, false},
        FollowRow{"clearedByANewDay",
                  [](auto& harness) {
                      harness.model().toggleTask(first);
                      harness.now += std::chrono::days{1};
                      harness.model().rollOverDay();
                  },
                  true, false},
        FollowRow{"moved", [](auto& harness) { harness.model().moveTasks({0}, 3); }, true, true},
        FollowRow{"renamed", [](auto& harness) { harness.model().renameTask(first, "Read"); }, true, true}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(AppModelTasks, StaleCurrentIDIsClearedByADeletionThatFindsNoTask) {
    AppModel& model = launchWithThree();
    model.setCurrentTaskID(unknown);
    model.deleteTask(unknown);
    EXPECT_EQ(model.currentTaskID(), std::nullopt);
    EXPECT_EQ(order(), "123");
}

// Arguments that live in what changes

TEST_F(AppModelTasks, TaskIsDeletedByItsOwnID) {
    AppModel& model = launchWithThree();
    model.deleteTask(model.tasks().items.front().id);
    EXPECT_EQ(order(), "23");
}

TEST_F(AppModelTasks, CurrentTaskIsDeletedByTheIDThatIsCleared) {
    AppModel& model = launchWithThree();
    model.setCurrentTaskID(second);
    model.deleteTask(*model.currentTaskID());
    EXPECT_EQ(order(), "13");
    EXPECT_EQ(model.currentTaskID(), std::nullopt);
}

TEST_F(AppModelTasks, TitlesMayComeFromTheList) {
    AppModel& model = launchWithThree();
    const std::string title(100, 'x');
    model.renameTask(first, title);
    model.renameTask(model.tasks().items.front().id, model.tasks().items.front().title);
    model.renameTask(second, model.tasks().items.front().title);
    model.addTask(model.tasks().items.front().title);
    EXPECT_EQ(task(first).title, title);
    EXPECT_EQ(task(second).title, title);
    EXPECT_EQ(model.tasks().items.back().title, title);
}

// Listeners that give commands

TEST_F(AppModelTasks, ListenerOfTheListMayChangeItAgain) {
    AppModel& model = launchWithThree();
    std::vector<TaskChange> heard;
    const auto meddler = model.tasksChanged.subscribe([&](TaskChange) {
        if (order() == "23")
            model.moveTasks({0}, 2);
    });
    const auto subscription =
        model.tasksChanged.subscribe([&](TaskChange change) { heard.push_back(change); });
    model.deleteTask(first);
    EXPECT_EQ(order(), "32");
    EXPECT_THAT(heard, ElementsAre(TaskChange::plain, TaskChange::animated))
        << "the inner change is told first";
    const TaskList kept = model.tasks();
    EXPECT_EQ(harness.launch().tasks(), kept);
}

TEST_F(AppModelTasks, ListenerOfTheTickMayTickAnother) {
    AppModel& model = launchWithThree();
    const auto meddler = model.tasksChanged.subscribe([&](TaskChange) {
        if (order() == "[1]23")
            model.toggleTask(second);
    });
    model.toggleTask(first);
    EXPECT_EQ(order(), "[1][2]3");
    EXPECT_EQ(harness.scheduler.waiting(), 1U) << "one reorder";
    harness.pass(Seconds{0.55});
    EXPECT_EQ(order(), "3[1][2]");
}

TEST_F(AppModelTasks, ListenerOfTheReorderMayTickAgain) {
    AppModel& model = launchWithThree();
    const auto meddler = model.tasksChanged.subscribe([&](TaskChange) {
        if (order() == "23[1]")
            model.toggleTask(second);
    });
    model.toggleTask(first);
    harness.pass(Seconds{0.55});
    EXPECT_EQ(order(), "[2]3[1]");
    harness.pass(Seconds{0.55});
    EXPECT_EQ(order(), "3[2][1]");
}

TEST_F(AppModelTasks, ListenerOfTheCurrentTaskMayDeleteTheTaskItself) {
    AppModel& model = launchWithThree();
    model.setCurrentTaskID(first);
    const auto meddler = model.currentTaskIDChanged.subscribe([&] { model.deleteTask(first); });
    model.deleteTask(model.tasks().items.front().id);
    EXPECT_EQ(order(), "23") << "and not the task that took its place";
}

TEST_F(AppModelTasks, ListenerOfTheErrorMayGiveACommand) {
    AppModel& model = launchWithThree();
    files.failAlways("sync");
    bool meddled = false;
    const auto meddler = model.saveErrorChanged.subscribe([&] {
        files.heal();
        if (!std::exchange(meddled, true))
            model.renameTask(second, "Read");
    });
    model.deleteTask(first);
    EXPECT_EQ(model.saveError(), std::nullopt);
    const TaskList kept = model.tasks();
    EXPECT_EQ(order(), "23");
    EXPECT_EQ(harness.launch().tasks(), kept);
}

} // namespace
} // namespace selvane
