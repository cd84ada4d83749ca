#include "Selvane/UI/Tasks/TaskListModel.h"

#include "Support/Dice.h"
#include "Support/FaultyFileSystem.h"
#include "Support/ModelHarness.h"
#include "Support/Repeats.h"
#include "Support/TaskFiles.h"

#include <QAbstractItemModelTester>
#include <QVariantMap>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::Dice;

using testing::ElementsAre;
using testing::IsEmpty;

const UUID first = *UUID::parse(test::firstTask);
const UUID second = *UUID::parse(test::secondTask);
const UUID third = *UUID::parse(test::thirdTask);
const std::string fourthTask = "44444444-4444-4444-8444-444444444444";
const UUID fourth = *UUID::parse(fourthTask);

const std::string today = "2026-03-05T09:00:00Z";
const std::string earlierToday = "2026-03-05T08:00:00Z";

/// The fields of a row that are the task's own.
QVariantMap fields(QVariantMap row) {
    for (const char* const derived : {"sessions", "description", "isEditing", "isLifted"})
        row.remove(QString::fromLatin1(derived));
    return row;
}

/// A view that knows only what the list tells it. Notes every step in words.
class Follower {
public:
    explicit Follower(const QAbstractItemModel& list) : _list(list) {
        for (int row = 0; row < list.rowCount(); ++row)
            _rows.push_back(read(row));
        QObject::connect(&list, &QAbstractItemModel::rowsInserted, &_context,
                         [this](const QModelIndex&, int from, int to) { inserted(from, to); });
        QObject::connect(&list, &QAbstractItemModel::rowsRemoved, &_context,
                         [this](const QModelIndex&, int from, int to) { removed(from, to); });
        QObject::connect(&list, &QAbstractItemModel::rowsMoved, &_context,
                         [this](const QModelIndex&, int from, int to, const QModelIndex&, int before) {
                             moved(from, to, before);
                         });
        QObject::connect(&list, &QAbstractItemModel::dataChanged, &_context,
                         [this](const QModelIndex& from, const QModelIndex& to, const QList<int>& roles) {
                             changed(from.row(), to.row(), roles);
                         });
        QObject::connect(&list, &QAbstractItemModel::modelReset, &_context,
                         [this] { _steps.push_back("reset"); });
        QObject::connect(&list, &QAbstractItemModel::layoutChanged, &_context,
                         [this] { _steps.push_back("layout"); });
    }

    /// The tasks' own fields.
    [[nodiscard]] std::vector<QVariantMap> rows() const {
        std::vector<QVariantMap> rows;
        for (const QVariantMap& row : _rows)
            rows.push_back(fields(row));
        return rows;
    }
    /// The steps since the last request.
    std::vector<std::string> steps() { return std::exchange(_steps, {}); }

private:
    [[nodiscard]] QVariantMap read(int row) const {
        QVariantMap fields;
        const auto names = _list.roleNames();
        for (auto role = names.begin(); role != names.end(); ++role)
            fields[QString::fromUtf8(role.value())] = _list.index(row, 0).data(role.key());
        return fields;
    }

    void note(const std::string& what, int from, int to, const std::string& more = {}) {
        std::ostringstream text;
        text << what << ' ' << from;
        if (to != from)
            text << '-' << to;
        _steps.push_back(text.str() + more);
    }

    void inserted(int from, int to) {
        note("insert", from, to);
        for (int row = from; row <= to; ++row)
            _rows.insert(_rows.begin() + row, read(row));
    }

    void removed(int from, int to) {
        note("remove", from, to);
        _rows.erase(_rows.begin() + from, _rows.begin() + to + 1);
    }

    void moved(int from, int to, int before) {
        note("move", from, to, " before " + std::to_string(before));
        const std::vector<QVariantMap> run(_rows.begin() + from, _rows.begin() + to + 1);
        _rows.erase(_rows.begin() + from, _rows.begin() + to + 1);
        const int destination = before > from ? before - static_cast<int>(run.size()) : before;
        _rows.insert(_rows.begin() + destination, run.begin(), run.end());
    }

    void changed(int from, int to, const QList<int>& roles) {
        std::string names;
        for (const int role : roles)
            names += " " + _list.roleNames().value(role).toStdString();
        note("change", from, to, names);
        for (int row = from; row <= to; ++row) {
            const QVariantMap fresh = read(row);
            for (const int role : roles) {
                const QString name = QString::fromUtf8(_list.roleNames().value(role));
                _rows[static_cast<std::size_t>(row)][name] = fresh[name];
            }
        }
    }

    const QAbstractItemModel& _list;
    std::vector<QVariantMap> _rows;
    std::vector<std::string> _steps;
    QObject _context;
};

/// What a row says, in the order of the roles.
QVariantMap shown(const std::string& taskID, const std::string& title, bool isDone, bool isCurrent,
                  std::int64_t estimatedPomodoros, std::int64_t completedPomodoros) {
    return {{QStringLiteral("taskID"), QString::fromStdString(taskID)},
            {QStringLiteral("title"), QString::fromStdString(title)},
            {QStringLiteral("isDone"), isDone},
            {QStringLiteral("isCurrent"), isCurrent},
            {QStringLiteral("estimatedPomodoros"), static_cast<qlonglong>(estimatedPomodoros)},
            {QStringLiteral("completedPomodoros"), static_cast<qlonglong>(completedPomodoros)}};
}

/// The rows that a list of the model's tasks is to show.
std::vector<QVariantMap> expectedRows(const AppModel& model) {
    std::vector<QVariantMap> rows;
    for (const TaskItem& task : model.tasks().items) {
        const bool isCurrent = model.currentTask() && *model.currentTask() == task;
        rows.push_back(shown(task.id.text(), task.title, task.isDone, isCurrent, task.estimatedPomodoros,
                             task.completedPomodoros));
    }
    return rows;
}

/// A list that is watched by Qt's own tester, which ends the program at the first broken rule.
struct WatchedList {
    explicit WatchedList(AppModel& model) : list(model) {}

    TaskListModel list;
    QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Fatal};
    Follower follower{list};
};

class TaskListModelTest : public testing::Test {
protected:
    TaskListModelTest() {
        files.skipSyncs();
        harness.fileSystem = &files;
    }

    AppModel& launchWith(std::initializer_list<test::TaskLine> tasks) {
        harness.folder.write("Selvane/tasks.json", test::taskFile(tasks));
        return harness.launch();
    }

    /// One open task, the next one open, the last one done.
    AppModel& launchWithThree() {
        return launchWith({{test::firstTask}, {test::secondTask}, {test::thirdTask, true, today}});
    }

    test::FaultyFileSystem files;
    test::ModelHarness harness;
};

TEST_F(TaskListModelTest, RowShowsItsTask) {
    AppModel& model = launchWithThree();
    model.renameTask(first, "Übung 🎹");
    model.setEstimate(first, 4);
    model.setCurrentTaskID(first);
    model.engine().start();
    harness.pass(Seconds{1501});
    const WatchedList watched(model);
    ASSERT_EQ(watched.list.rowCount(), 3);
    EXPECT_EQ(watched.follower.rows()[0], shown(test::firstTask, "Übung 🎹", false, true, 4, 1));
    EXPECT_EQ(watched.follower.rows()[2], shown(test::thirdTask, "Task", true, false, 1, 0));
}

TEST_F(TaskListModelTest, NothingStandsOutsideTheRows) {
    const WatchedList watched(launchWithThree());
    EXPECT_EQ(watched.list.rowCount(watched.list.index(0)), 0);
    EXPECT_FALSE(watched.list.data(watched.list.index(3), TaskListModel::TitleRole).isValid());
    EXPECT_FALSE(watched.list.data({}, TaskListModel::TitleRole).isValid());
    EXPECT_FALSE(watched.list.data(watched.list.index(0), Qt::DecorationRole).isValid());
}

struct EditRow {
    const char* name;
    /// Done before anybody watches.
    std::function<void(test::ModelHarness&)> before;
    std::function<void(test::ModelHarness&)> edit;
    std::vector<std::string> steps;
};

class TaskListModelEdit : public TaskListModelTest, public testing::WithParamInterface<EditRow> {};

/// Two open tasks and two done ones.
TEST_P(TaskListModelEdit, IsToldInFewSteps) {
    AppModel& model = launchWith({{test::firstTask},
                                  {test::secondTask},
                                  {test::thirdTask, true, today},
                                  {fourthTask, true, earlierToday}});
    if (GetParam().before)
        GetParam().before(harness);
    WatchedList watched(model);
    GetParam().edit(harness);
    EXPECT_EQ(watched.follower.steps(), GetParam().steps);
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
}

using Harness = test::ModelHarness;

void makeFirstCurrent(Harness& harness) {
    harness.model().setCurrentTaskID(first);
}

INSTANTIATE_TEST_SUITE_P(
    TaskListModel, TaskListModelEdit,
    testing::Values(
        EditRow{"add", {}, [](Harness& it) { it.model().addTask("Write"); }, {"insert 2"}},
        EditRow{"addABlankTitle", {}, [](Harness& it) { it.model().addTask(" "); }, {}},
        EditRow{
            "tick", {}, [](Harness& it) { it.model().toggleTask(first); }, {"change 0 isDone description"}},
        EditRow{"reorderAfterATick",
                [](Harness& it) { it.model().toggleTask(first); },
                [](Harness& it) { it.pass(Seconds{0.55}); },
                {"move 0 before 2"}},
        EditRow{"reorderAfterOpeningAgain",
                [](Harness& it) { it.model().toggleTask(fourth); },
                [](Harness& it) { it.pass(Seconds{0.55}); },
                {"move 2 before 4"}},
        EditRow{"reorderThatMovesNothing",
                [](Harness& it) { it.model().toggleTask(second); },
                [](Harness& it) { it.pass(Seconds{0.55}); },
                {}},
        EditRow{"dragUp", {}, [](Harness& it) { it.model().moveTasks({1}, 0); }, {"move 0 before 2"}},
        EditRow{"dragToItsOwnPlace", {}, [](Harness& it) { it.model().moveTasks({1}, 2); }, {}},
        EditRow{"dragThatSpringsBack", {}, [](Harness& it) { it.model().moveTasks({3}, 0); }, {}},
        EditRow{"rename", {}, [](Harness& it) { it.model().renameTask(second, "Read"); }, {"change 1 title"}},
        EditRow{"renameToTheSame", {}, [](Harness& it) { it.model().renameTask(second, "Task"); }, {}},
        EditRow{"estimate",
                {},
                [](Harness& it) { it.model().setEstimate(first, 5); },
                {"change 0 estimatedPomodoros sessions description"}},
        EditRow{"credit",
                makeFirstCurrent,
                [](Harness& it) {
                    it.model().engine().start();
                    it.pass(Seconds{1500});
                },
                {"change 0 completedPomodoros sessions description"}},
        EditRow{"delete", {}, [](Harness& it) { it.model().deleteTask(first); }, {"remove 0"}},
        EditRow{"deleteTheCurrentTask",
                makeFirstCurrent,
                [](Harness& it) { it.model().deleteTask(first); },
                {"change 0 isCurrent description", "remove 0"}},
        EditRow{"clearCompleted", {}, [](Harness& it) { it.model().clearCompletedTasks(); }, {"remove 2-3"}},
        EditRow{"clearCompletedAmongOpenOnes",
                [](Harness& it) { it.model().toggleTask(first); },
                [](Harness& it) { it.model().clearCompletedTasks(); },
                {"remove 2-3", "remove 0"}},
        EditRow{"newDay",
                {},
                [](Harness& it) {
                    it.now += std::chrono::days{1};
                    it.model().rollOverDay();
                },
                {"remove 2-3"}},
        EditRow{"taskBecomesCurrent", {}, makeFirstCurrent, {"change 0 isCurrent description"}},
        EditRow{"anotherTaskBecomesCurrent",
                makeFirstCurrent,
                [](Harness& it) { it.model().setCurrentTaskID(second); },
                {"change 0 isCurrent description", "change 1 isCurrent description"}},
        EditRow{"doneTaskIsChosen", {}, [](Harness& it) { it.model().setCurrentTaskID(third); }, {}},
        EditRow{"currentTaskIsTickedOff",
                makeFirstCurrent,
                [](Harness& it) { it.model().toggleTask(first); },
                {"change 0 isDone isCurrent description"}},
        EditRow{"historyGrows",
                {},
                [](Harness& it) {
                    it.model().engine().start();
                    it.pass(Seconds{61});
                    it.model().engine().reset();
                },
                {}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(TaskListModelTest, RunOfDraggedTasksIsOneMove) {
    AppModel& model = launchWith({});
    for (const char* const title : {"A", "B", "C", "D", "E", "F", "G"})
        model.addTask(title);
    WatchedList watched(model);
    model.moveTasks({1, 2}, 6);
    EXPECT_THAT(watched.follower.steps(), ElementsAre("move 1-2 before 6"));
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
}

// Lists from damaged files

TEST_F(TaskListModelTest, TasksWithTheSameIDAreRowsOfTheirOwn) {
    AppModel& model =
        launchWith({{test::firstTask}, {test::secondTask}, {test::firstTask}, {test::firstTask}});
    model.renameTask(first, "Read");
    WatchedList watched(model);
    model.setCurrentTaskID(first);
    EXPECT_THAT(watched.follower.steps(), ElementsAre("change 0 isCurrent description"))
        << "the first is the current one";
    model.moveTasks({3}, 0);
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
    model.toggleTask(first);
    harness.pass(Seconds{1});
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
    watched.follower.steps();
    model.deleteTask(first);
    EXPECT_EQ(watched.list.rowCount(), 1);
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
}

TEST_F(TaskListModelTest, TasksThatAreTheSameInEverythingAreCurrentTogether) {
    AppModel& model = launchWith({{test::firstTask}, {test::firstTask}});
    WatchedList watched(model);
    model.setCurrentTaskID(first);
    EXPECT_THAT(watched.follower.steps(),
                ElementsAre("change 0 isCurrent description", "change 1 isCurrent description"));
}

// Motion

TEST_F(TaskListModelTest, ToldBeforeTheRowsChangeWhetherTheyAreAnimated) {
    AppModel& model = launchWithThree();
    WatchedList watched(model);
    std::vector<bool> seen;
    const auto look = [&] { seen.push_back(watched.list.isAnimated()); };
    QObject::connect(&watched.list, &QAbstractItemModel::rowsAboutToBeRemoved, &watched.list, look);
    QObject::connect(&watched.list, &QAbstractItemModel::rowsAboutToBeMoved, &watched.list, look);
    QObject::connect(&watched.list, &QAbstractItemModel::rowsAboutToBeInserted, &watched.list, look);
    model.moveTasks({0}, 2);
    EXPECT_THAT(seen, ElementsAre(false)) << "the user drags";
    model.toggleTask(second);
    harness.pass(Seconds{0.55});
    model.toggleTask(second);
    harness.pass(Seconds{0.55});
    model.addTask("Write");
    model.clearCompletedTasks();
    model.deleteTask(first);
    EXPECT_THAT(seen, ElementsAre(false, true, true, true, true));
}

TEST_F(TaskListModelTest, ChangeWithoutRowsThatMoveLeavesTheMotionOfTheLast) {
    AppModel& model = launchWithThree();
    WatchedList watched(model);
    int changes = 0;
    QObject::connect(&watched.list, &TaskListModel::isAnimatedChanged, &watched.list, [&] { ++changes; });
    model.deleteTask(first);
    EXPECT_TRUE(watched.list.isAnimated());
    model.renameTask(second, "Read");
    model.setCurrentTaskID(second);
    EXPECT_TRUE(watched.list.isAnimated()) << "the rows are still on their way";
    EXPECT_EQ(changes, 1);
}

// Listeners that give commands

TEST_F(TaskListModelTest, ListenerOfTheRowsMayChangeTheTasks) {
    AppModel& model = launchWithThree();
    WatchedList watched(model);
    int meddling = 0;
    const auto meddle = [&] {
        if (++meddling == 1) {
            model.addTask("Write");
            model.deleteTask(second);
        }
    };
    QObject::connect(&watched.list, &QAbstractItemModel::rowsRemoved, &watched.list, meddle);
    model.clearCompletedTasks();
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
    EXPECT_THAT(watched.follower.steps(), ElementsAre("remove 2", "remove 1", "insert 1"));
}

TEST_F(TaskListModelTest, APlainChangeTogetherWithAnAnimatedOneIsAnimated) {
    AppModel& model = launchWithThree();
    WatchedList watched(model);
    int meddling = 0;
    std::vector<bool> seen;
    QObject::connect(&watched.list, &QAbstractItemModel::rowsMoved, &watched.list, [&] {
        if (++meddling == 1) {
            model.deleteTask(second);
            model.renameTask(first, "Read");
        }
    });
    QObject::connect(&watched.list, &QAbstractItemModel::rowsAboutToBeRemoved, &watched.list,
                     [&] { seen.push_back(watched.list.isAnimated()); });
    model.moveTasks({0}, 2);
    EXPECT_THAT(seen, ElementsAre(true));
}

TEST_F(TaskListModelTest, ListenerOfAFieldMayChangeTheTasks) {
    AppModel& model = launchWithThree();
    WatchedList watched(model);
    QObject::connect(&watched.list, &QAbstractItemModel::dataChanged, &watched.list,
                     [&] { model.deleteTask(first); });
    model.renameTask(first, "Read");
    EXPECT_EQ(watched.follower.rows(), expectedRows(model));
    EXPECT_THAT(watched.follower.steps(), ElementsAre("change 0 title", "remove 0"));
}

// Many tasks, many edits

TEST_F(TaskListModelTest, LongListLosesEverySecondTaskAndTurnsRound) {
    constexpr std::size_t size = 10'000;
    std::string items;
    for (std::size_t number = 0; number < size; ++number) {
        items += number == 0 ? "" : ",";
        items += R"({"id":")" + UUID::random().text() + R"(","title":"Task","isDone":)" +
                 (number % 2 == 0 ? R"(false)" : R"(true,"completedAt":")" + today + '"') +
                 R"(,"createdAt":"2026-01-01T00:00:00Z","estimatedPomodoros":1,"completedPomodoros":0})";
    }
    harness.folder.write("Selvane/tasks.json", R"({"items":[)" + items + "]}");
    AppModel& model = harness.launch();
    const TaskListModel list(model);
    Follower follower(list);
    ASSERT_EQ(list.rowCount(), 10'000);
    model.clearCompletedTasks();
    EXPECT_EQ(follower.steps().size(), 5'000U);
    model.moveTasks({0}, 5'000);
    EXPECT_THAT(follower.steps(), ElementsAre("move 0 before 5000"));
    std::set<std::ptrdiff_t> everySecond;
    for (std::ptrdiff_t offset = 0; offset < 5'000; offset += 2)
        everySecond.insert(offset);
    model.moveTasks(everySecond, 0);
    EXPECT_LT(follower.steps().size(), 2'500U);
    EXPECT_EQ(follower.rows(), expectedRows(model));
}

class TaskListModelRandom : public TaskListModelTest {
protected:
    UUID someTask(const AppModel& model) {
        const auto& items = model.tasks().items;
        return items.empty() || dice.below(20) == 0 ? third : items[dice.below(items.size())].id;
    }

    void edit(AppModel& model) {
        const auto offset = [&] {
            return static_cast<std::ptrdiff_t>(dice.below(model.tasks().items.size() + 3)) - 1;
        };
        switch (dice.below(16)) {
        case 0:
        case 1:
        case 2:
            return model.addTask(dice.below(10) == 0 ? " " : "Task " + std::to_string(dice.below(100)));
        case 3:
        case 4:
        case 5:
            return model.toggleTask(someTask(model));
        case 6:
        case 7:
        case 8: {
            std::set<std::ptrdiff_t> offsets;
            for (std::size_t count = dice.below(4); count > 0; --count)
                offsets.insert(offset());
            return model.moveTasks(offsets, offset());
        }
        case 9:
            return model.renameTask(someTask(model), "Title " + std::to_string(dice.below(100)));
        case 10:
            return model.setEstimate(someTask(model), static_cast<std::int64_t>(dice.below(9)) - 1);
        case 11:
            return model.deleteTask(someTask(model));
        case 12:
            return dice.below(4) == 0 ? model.clearCompletedTasks() : model.setCurrentTaskID(someTask(model));
        case 13:
            return model.setCurrentTaskID(std::nullopt);
        case 14:
            harness.pass(Seconds{0.3});
            return;
        default:
            harness.now += std::chrono::hours{dice.below(8)};
            return model.rollOverDay();
        }
    }

    void editAndCompare(int edits) {
        AppModel& model = harness.model();
        WatchedList watched(model);
        for (int count = 0; count < edits; ++count) {
            edit(model);
            ASSERT_EQ(watched.follower.rows(), expectedRows(model)) << "edit " << count;
            for (const std::string& step : watched.follower.steps())
                ASSERT_FALSE(step == "reset" || step == "layout") << "edit " << count;
        }
    }

    Dice dice{7};
};

TEST_F(TaskListModelRandom, StepsAloneKeepAFollowerRight) {
    launchWith({});
    editAndCompare(test::repeats(4'000));
}

TEST_F(TaskListModelRandom, StepsAloneKeepAFollowerRightWithEqualIDs) {
    launchWith({{test::firstTask},
                {test::secondTask},
                {test::firstTask},
                {test::thirdTask, true, today},
                {test::firstTask, true, earlierToday},
                {test::thirdTask},
                {test::secondTask}});
    editAndCompare(60);
}

TEST_F(TaskListModelRandom, StepsAloneKeepAFollowerRightWhenListenersMeddle) {
    AppModel& model = launchWith({});
    int depth = 0;
    // Heard before the list hears it, so that several changes reach it at once.
    const auto meddler = model.tasksChanged.subscribe([&](TaskChange) {
        if (depth < 3 && dice.below(3) == 0) {
            ++depth;
            edit(model);
            --depth;
        }
    });
    editAndCompare(test::repeats(2'000));
}

} // namespace
} // namespace selvane
