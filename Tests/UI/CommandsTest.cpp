#include "Selvane/UI/Commands.h"

#include "Selvane/UI/WindowCoordinator.h"
#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

TEST(Commands, PrimaryButtonIsNamedAfterWhatItDoes) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_EQ(Commands::primaryLabel(engine), "Start");
    engine.toggle();
    EXPECT_EQ(Commands::primaryLabel(engine), "Pause");
    engine.toggle();
    EXPECT_EQ(Commands::primaryLabel(engine), "Resume");
    engine.toggle();
    EXPECT_EQ(Commands::primaryLabel(engine), "Pause");
}

TEST(Commands, ResetIsDisabledOnlyWhileIdle) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_FALSE(Commands::canReset(engine));
    engine.start();
    EXPECT_TRUE(Commands::canReset(engine));
    engine.pause();
    EXPECT_TRUE(Commands::canReset(engine));
    engine.reset();
    EXPECT_FALSE(Commands::canReset(engine));
}

TEST(Commands, SkipTellsWhereItLeads) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_EQ(Commands::skipTooltip(engine), "Skip to the break");
    engine.select(Phase::shortBreak);
    EXPECT_EQ(Commands::skipTooltip(engine), "Skip the break");
    engine.select(Phase::longBreak);
    EXPECT_EQ(Commands::skipTooltip(engine), "Skip the break");
}

TEST(Commands, ResetOfThePopoverPausesTheMusicThatTheTimerStarted) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    model.engine().start();
    harness.journal.clear();
    Commands::resetFromPopover(model);
    EXPECT_TRUE(model.engine().isIdle());
    EXPECT_EQ(harness.journal.count("music.pause"), 1);
}

TEST(Commands, ResetOfThePopoverLeavesMusicThatTheUserStarted) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    model.settings().autoPlayMusic.set(false);
    model.engine().start();
    Commands::resetFromPopover(model);
    EXPECT_FALSE(harness.journal.has("music.pause"));
}

TEST(Commands, PaneIsChosenBeforeTheWindowComesForward) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    Pane shown = Pane::statistics;
    class Window final : public WindowCoordinator {
    public:
        Window(AppModel& model, Pane& shown) : _model(model), _shown(shown) {}
        void showSettings() override {}
        void bringForward() override { _shown = _model.windowPane(); }

    private:
        AppModel& _model;
        Pane& _shown;
    } window(model, shown);
    int changes = 0;
    const Subscription watch = model.windowPaneChanged.subscribe([&] { ++changes; });
    Commands::openPane(model, &window, Pane::goals);
    EXPECT_EQ(shown, Pane::goals);
    Commands::openPane(model, &window, Pane::goals);
    EXPECT_EQ(changes, 1);
}

TEST(Commands, WithoutAWindowNoPaneIsChosen) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    Commands::openPane(model, nullptr, Pane::goals);
    EXPECT_EQ(model.windowPane(), Pane::statistics);
}

} // namespace
} // namespace selvane
