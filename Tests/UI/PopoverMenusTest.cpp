#include "Selvane/UI/Popover/CurrentTaskPickerModel.h"
#include "Selvane/UI/Popover/MenuChoices.h"
#include "Selvane/UI/Popover/PhaseMenuModel.h"
#include "Support/ModelHarness.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace selvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The entries as a reader sees them, those in force with a mark.
std::vector<std::string> lines(const MenuChoices* menu) {
    std::vector<std::string> lines;
    for (int row = 0; row < menu->rowCount(); ++row) {
        const QModelIndex index = menu->index(row);
        lines.push_back((index.data(MenuChoices::IsCheckedRole).toBool() ? "✓ " : "") +
                        index.data(MenuChoices::TitleRole).toString().toStdString());
    }
    return lines;
}

std::vector<std::string> texts(const QStringList& list) {
    std::vector<std::string> texts;
    for (const QString& text : list)
        texts.push_back(text.toStdString());
    return texts;
}

TEST(MenuChoices, TellsOnlyWhatReallyChanges) {
    MenuChoices menu;
    int changes = 0;
    int rows = 0;
    QObject::connect(&menu, &MenuChoices::rowsInserted, &menu, [&] { ++rows; });
    QObject::connect(&menu, &MenuChoices::rowsRemoved, &menu, [&] { ++rows; });
    QObject::connect(&menu, &MenuChoices::dataChanged, &menu, [&] { ++changes; });
    menu.setChoices({{QStringLiteral("One"), true}, {QStringLiteral("Two")}});
    EXPECT_EQ(rows, 1);
    menu.setChoices({{QStringLiteral("One"), true}, {QStringLiteral("Two")}});
    EXPECT_EQ(rows + changes, 1);
    menu.setChoices({{QStringLiteral("One")}, {QStringLiteral("Two"), true}});
    EXPECT_EQ(rows, 1);
    EXPECT_EQ(changes, 1);
    menu.setChoices({{QStringLiteral("One")}});
    EXPECT_EQ(rows, 2);
    EXPECT_EQ(changes, 1);
    EXPECT_THAT(lines(&menu), ElementsAre("One"));
}

TEST(MenuChoices, RowsComeAndGoAtTheEndOnly) {
    MenuChoices menu;
    int resets = 0;
    QObject::connect(&menu, &MenuChoices::modelReset, &menu, [&] { ++resets; });
    menu.setChoices({{QStringLiteral("One")}, {QStringLiteral("Two"), true}});
    const QPersistentModelIndex first(menu.index(0));
    menu.setChoices({{QStringLiteral("Zero")}, {QStringLiteral("One")}, {QStringLiteral("Two"), true}});
    EXPECT_THAT(lines(&menu), ElementsAre("Zero", "One", "✓ Two"));
    EXPECT_EQ(first.data(MenuChoices::TitleRole), QStringLiteral("Zero"));
    menu.setChoices({{QStringLiteral("Two"), true}});
    EXPECT_THAT(lines(&menu), ElementsAre("✓ Two"));
    menu.setChoices({});
    EXPECT_THAT(lines(&menu), IsEmpty());
    EXPECT_FALSE(first.isValid());
    EXPECT_EQ(resets, 0);
}

class PhaseMenuTest : public testing::Test {
protected:
    PhaseMenuTest() : menu(harness.launch()) {}

    TimerEngine& engine() { return harness.model().engine(); }

    test::ModelHarness harness;
    PhaseMenuModel menu;
};

TEST_F(PhaseMenuTest, OffersEveryPhaseAndMarksTheOneInForce) {
    EXPECT_THAT(lines(menu.phases()), ElementsAre("✓ Focus", "Short Break", "Long Break"));
    EXPECT_EQ(menu.title(), QStringLiteral("Focus"));
    EXPECT_EQ(menu.accessibleName(), QStringLiteral("Phase: Focus"));
    EXPECT_EQ(menu.pickerLabel(), QStringLiteral("Phase"));
}

TEST_F(PhaseMenuTest, SelectsWhileIdle) {
    EXPECT_TRUE(menu.canSelect());
    EXPECT_THAT(texts(menu.hints()), IsEmpty());
    EXPECT_EQ(menu.tooltip(), QStringLiteral("Choose a phase"));
    menu.select(2);
    EXPECT_EQ(engine().phase(), Phase::longBreak);
    EXPECT_EQ(menu.accessibleName(), QStringLiteral("Phase: Long Break"));
    EXPECT_THAT(lines(menu.phases()), ElementsAre("Focus", "Short Break", "✓ Long Break"));
}

TEST_F(PhaseMenuTest, PhaseUnderWayCannotBeSwitchedAndTheMenuSaysWhy) {
    engine().start();
    for (int state = 0; state < 2; ++state) {
        EXPECT_FALSE(menu.canSelect());
        EXPECT_THAT(texts(menu.hints()), ElementsAre("Reset the timer to switch"));
        EXPECT_EQ(menu.tooltip(), QStringLiteral("Reset the timer to switch phases"));
        menu.select(1);
        EXPECT_EQ(engine().phase(), Phase::focus);
        engine().pause();
    }
    engine().reset();
    EXPECT_TRUE(menu.canSelect());
    EXPECT_THAT(texts(menu.hints()), IsEmpty());
}

TEST_F(PhaseMenuTest, RowsThatAreNotThereSelectNothing) {
    menu.select(1);
    menu.select(-1);
    menu.select(3);
    EXPECT_EQ(engine().phase(), Phase::shortBreak);
}

TEST_F(PhaseMenuTest, TicksAreNotTold) {
    engine().start();
    int changes = 0;
    QObject::connect(&menu, &PhaseMenuModel::changed, &menu, [&] { ++changes; });
    harness.pass(Seconds{5});
    EXPECT_EQ(changes, 0);
}

class CurrentTaskPickerTest : public testing::Test {
protected:
    CurrentTaskPickerTest() : picker(harness.launch()) {}

    AppModel& model() { return harness.model(); }
    [[nodiscard]] UUID id(std::size_t row) { return model().tasks().items.at(row).id; }

    test::ModelHarness harness;
    CurrentTaskPickerModel picker;
};

TEST_F(CurrentTaskPickerTest, WithoutTasksTheMenuHoldsOnlyTheHint) {
    EXPECT_THAT(lines(picker.tasks()), IsEmpty());
    EXPECT_THAT(texts(picker.hints()), ElementsAre("Add tasks below to focus on one"));
    EXPECT_THAT(texts(picker.noTaskLabels()), IsEmpty());
    EXPECT_EQ(picker.title(), QStringLiteral("Choose a task…"));
    EXPECT_FALSE(picker.hasTask());
    EXPECT_EQ(picker.tooltip(), QStringLiteral("The task this focus session counts toward"));
}

TEST_F(CurrentTaskPickerTest, OffersOpenTasksInTheirOrder) {
    model().addTask("Write");
    model().addTask("Read");
    model().addTask("Rest");
    model().toggleTask(id(1));
    EXPECT_THAT(lines(picker.tasks()), ElementsAre("Write", "Rest"));
    EXPECT_THAT(texts(picker.hints()), IsEmpty());
    EXPECT_THAT(texts(picker.noTaskLabels()), IsEmpty()) << "none is current";
}

TEST_F(CurrentTaskPickerTest, ListOfDoneTasksOffersNone) {
    model().addTask("Write");
    model().toggleTask(id(0));
    EXPECT_THAT(lines(picker.tasks()), IsEmpty());
    EXPECT_THAT(texts(picker.hints()), ElementsAre("Add tasks below to focus on one"));
}

TEST_F(CurrentTaskPickerTest, ChosenTaskIsCurrentAndMarked) {
    model().addTask("Write");
    model().addTask("Read");
    picker.choose(1);
    EXPECT_EQ(model().currentTaskID(), id(1));
    EXPECT_EQ(picker.title(), QStringLiteral("Read"));
    EXPECT_TRUE(picker.hasTask());
    EXPECT_THAT(lines(picker.tasks()), ElementsAre("Write", "✓ Read"));
    EXPECT_THAT(texts(picker.noTaskLabels()), ElementsAre("No task"));
}

TEST_F(CurrentTaskPickerTest, RowsCountOpenTasksOnly) {
    model().addTask("Write");
    model().addTask("Read");
    model().toggleTask(id(0));
    picker.choose(0);
    EXPECT_EQ(picker.title(), QStringLiteral("Read"));
    picker.choose(1);
    picker.choose(-1);
    EXPECT_EQ(picker.title(), QStringLiteral("Read"));
}

TEST_F(CurrentTaskPickerTest, NoTaskMakesNoneCurrent) {
    model().addTask("Write");
    picker.choose(0);
    picker.chooseNone();
    EXPECT_FALSE(model().currentTaskID());
    EXPECT_EQ(picker.title(), QStringLiteral("Choose a task…"));
    EXPECT_THAT(texts(picker.noTaskLabels()), IsEmpty());
}

TEST_F(CurrentTaskPickerTest, DoneTaskStopsBeingShownAsCurrent) {
    model().addTask("Write");
    picker.choose(0);
    model().toggleTask(id(0));
    EXPECT_FALSE(picker.hasTask());
    EXPECT_THAT(texts(picker.noTaskLabels()), IsEmpty());
    EXPECT_TRUE(model().currentTaskID()) << "it is kept all the same";
}

TEST_F(CurrentTaskPickerTest, RenamedTaskIsShownByItsNewName) {
    model().addTask("Write");
    picker.choose(0);
    model().renameTask(id(0), "Write more");
    EXPECT_EQ(picker.title(), QStringLiteral("Write more"));
    EXPECT_THAT(lines(picker.tasks()), ElementsAre("✓ Write more"));
}

TEST_F(CurrentTaskPickerTest, TellsOnlyWhatReallyChanges) {
    int changes = 0;
    QObject::connect(&picker, &CurrentTaskPickerModel::changed, &picker, [&] { ++changes; });
    model().addTask("Write");
    EXPECT_EQ(changes, 1) << "the hint is gone";
    model().addTask("Read");
    EXPECT_EQ(changes, 1);
    picker.choose(0);
    EXPECT_EQ(changes, 2);
    model().renameTask(id(1), "Read more");
    EXPECT_EQ(changes, 2);
    model().renameTask(id(0), "Write more");
    EXPECT_EQ(changes, 3);
}

} // namespace
} // namespace selvane
