#include "Selvane/UI/Controls.h"

#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

TEST(Controls, PrimaryButtonIsNamedAfterWhatItDoes) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_EQ(Controls::primaryLabel(engine), "Start");
    engine.toggle();
    EXPECT_EQ(Controls::primaryLabel(engine), "Pause");
    engine.toggle();
    EXPECT_EQ(Controls::primaryLabel(engine), "Resume");
    engine.toggle();
    EXPECT_EQ(Controls::primaryLabel(engine), "Pause");
}

TEST(Controls, ResetIsDisabledOnlyWhileIdle) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_FALSE(Controls::canReset(engine));
    engine.start();
    EXPECT_TRUE(Controls::canReset(engine));
    engine.pause();
    EXPECT_TRUE(Controls::canReset(engine));
    engine.reset();
    EXPECT_FALSE(Controls::canReset(engine));
}

TEST(Controls, SkipTellsWhereItLeads) {
    test::ModelHarness harness;
    TimerEngine& engine = harness.launch().engine();
    EXPECT_EQ(Controls::skipTooltip(engine), "Skip to the break");
    engine.select(Phase::shortBreak);
    EXPECT_EQ(Controls::skipTooltip(engine), "Skip the break");
    engine.select(Phase::longBreak);
    EXPECT_EQ(Controls::skipTooltip(engine), "Skip the break");
}

TEST(Controls, ResetOfThePopoverPausesTheMusicThatTheTimerStarted) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    model.engine().start();
    harness.journal.clear();
    Controls::resetFromPopover(model);
    EXPECT_TRUE(model.engine().isIdle());
    EXPECT_EQ(harness.journal.count("music.pause"), 1);
}

TEST(Controls, ResetOfThePopoverLeavesMusicThatTheUserStarted) {
    test::ModelHarness harness;
    AppModel& model = harness.launch();
    model.settings().autoPlayMusic.set(false);
    model.engine().start();
    Controls::resetFromPopover(model);
    EXPECT_FALSE(harness.journal.has("music.pause"));
}

} // namespace
} // namespace selvane
