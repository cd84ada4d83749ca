#include "Selvane/UI/MenuBarLabel.h"

#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class MenuBarLabelTest : public testing::Test {
protected:
    MenuBarLabelTest() { harness.launch(); }

    TimerEngine& engine() { return harness.model().engine(); }
    DialGlyph::State state() { return MenuBarLabel::glyphState(harness.model()); }
    StatusItemContent content() { return MenuBarLabel::content(harness.model(), glyph); }
    std::string words() { return MenuBarLabel::accessibilityLabel(harness.model()); }

    test::ModelHarness harness;
    DialGlyph glyph;
};

TEST_F(MenuBarLabelTest, IdleShowsTheRestingDialAlone) {
    for (const auto display :
         {MenuBarDisplay::iconAndTime, MenuBarDisplay::iconOnly, MenuBarDisplay::timeOnly}) {
        harness.model().settings().menuBarDisplay.set(display);
        EXPECT_EQ(content(), (StatusItemContent{glyph.image(DialGlyph::resting), std::nullopt}));
    }
}

TEST_F(MenuBarLabelTest, DotNeverShowsWhileIdle) {
    harness.answers.driftAppName = "Chat";
    EXPECT_FALSE(state().drifting);
    engine().start();
    EXPECT_TRUE(state().drifting);
    harness.answers.driftAppName = std::nullopt;
    EXPECT_FALSE(state().drifting);
}

TEST_F(MenuBarLabelTest, DisplaySettingChoosesDialAndTime) {
    engine().start();
    AppSettings& settings = harness.model().settings();
    EXPECT_TRUE(content().image);
    EXPECT_EQ(content().title, "25:00");
    settings.menuBarDisplay.set(MenuBarDisplay::iconOnly);
    EXPECT_TRUE(content().image);
    EXPECT_EQ(content().title, std::nullopt);
    settings.menuBarDisplay.set(MenuBarDisplay::timeOnly);
    EXPECT_FALSE(content().image);
    EXPECT_EQ(content().title, "25:00");
    EXPECT_EQ(content().substitute, glyph.image(state())) << "for panels that show no words";
}

TEST_F(MenuBarLabelTest, DialEmptiesAsThePhaseRuns) {
    engine().start();
    EXPECT_EQ(state(), (DialGlyph::State{1.0, DialGlyph::Style::running, false}));
    harness.pass(Seconds{375});
    EXPECT_DOUBLE_EQ(state().remaining, 0.75);
    engine().pause();
    EXPECT_EQ(state().style, DialGlyph::Style::paused);
}

TEST_F(MenuBarLabelTest, BreakHasItsOwnStyle) {
    engine().select(Phase::longBreak);
    engine().start();
    EXPECT_EQ(state().style, DialGlyph::Style::onBreak);
}

TEST_F(MenuBarLabelTest, PhaseOfNoLengthShowsAFullRing) {
    engine().adjustDuration = [](Phase, Seconds) { return Seconds{0}; };
    engine().start();
    EXPECT_DOUBLE_EQ(state().remaining, 1.0);
}

TEST_F(MenuBarLabelTest, WordsTellPhaseTimeAndPause) {
    EXPECT_EQ(words(), "Selvane");
    engine().start();
    harness.pass(Seconds{47});
    EXPECT_EQ(words(), "Selvane, Focus, 24:13 remaining");
    engine().pause();
    EXPECT_EQ(words(), "Selvane, Focus, 24:13 paused");
    engine().reset();
    engine().select(Phase::shortBreak);
    engine().start();
    EXPECT_EQ(words(), "Selvane, Short Break, 5:00 remaining");
    engine().reset();
    engine().select(Phase::longBreak);
    engine().start();
    EXPECT_EQ(words(), "Selvane, Long Break, 15:00 remaining");
}

TEST_F(MenuBarLabelTest, TooltipTellsTheEndWhileItRuns) {
    const QLocale locale(QLocale::English, QLocale::UnitedKingdom);
    const auto tooltip = [&] { return MenuBarLabel::tooltip(harness.model(), locale).toStdString(); };
    EXPECT_EQ(tooltip(), "Selvane");
    engine().start();
    EXPECT_EQ(tooltip(), "Selvane, Focus, ends 10:25");
    harness.pass(Seconds{47});
    EXPECT_EQ(tooltip(), "Selvane, Focus, ends 10:25");
    engine().pause();
    EXPECT_EQ(tooltip(), "Selvane, Focus, 24:13 paused");
}

} // namespace
} // namespace selvane
