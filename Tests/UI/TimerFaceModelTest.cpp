#include "Selvane/UI/Timer/TimerFaceModel.h"

#include "Selvane/UI/Symbols/Symbols.h"
#include "Selvane/UI/Timer/TimerFaceState.h"
#include "Support/ModelHarness.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

class TimerFaceModelTest : public testing::Test {
protected:
    TimerFaceModelTest() { harness.launch(); }

    TimerEngine& engine() { return harness.model().engine(); }
    AppSettings& settings() { return harness.model().settings(); }

    test::ModelHarness harness;
};

TEST_F(TimerFaceModelTest, ShowsTheTimer) {
    TimerFaceModel face(harness.model());
    EXPECT_EQ(face.style(), TimerFaceModel::Ring);
    EXPECT_EQ(face.phase(), TimerFaceModel::Focus);
    EXPECT_EQ(face.time(), QStringLiteral("25:00"));
    EXPECT_DOUBLE_EQ(face.progress(), 0);
    EXPECT_EQ(face.cyclePosition(), 1);
    EXPECT_EQ(face.cycleLength(), 4);
    engine().start();
    harness.pass(Seconds{47});
    EXPECT_EQ(face.time(), QStringLiteral("24:13"));
    EXPECT_EQ(face.timeLabel(), QStringLiteral("24:13 remaining"));
    EXPECT_DOUBLE_EQ(face.progress(), 47.0 / 1500);
    EXPECT_TRUE(face.isRunning());
    EXPECT_FALSE(face.isPaused());
    engine().pause();
    EXPECT_FALSE(face.isRunning());
    EXPECT_TRUE(face.isPaused());
}

TEST_F(TimerFaceModelTest, TickTellsOfTheTimeAndTheProgressAlone) {
    engine().start();
    TimerFaceModel face(harness.model());
    const QSignalSpy time(&face, &TimerFaceModel::timeChanged);
    const QSignalSpy progress(&face, &TimerFaceModel::progressChanged);
    const QSignalSpy state(&face, &TimerFaceModel::stateChanged);
    const QSignalSpy style(&face, &TimerFaceModel::styleChanged);
    const QSignalSpy glyph(&face, &TimerFaceModel::glyphChanged);
    harness.pass(Seconds{3});
    EXPECT_EQ(time.count(), 3);
    EXPECT_EQ(progress.count(), 3);
    EXPECT_EQ(state.count(), 0);
    EXPECT_EQ(style.count(), 0);
    EXPECT_EQ(glyph.count(), 0);
    engine().pause();
    EXPECT_EQ(state.count(), 1);
    EXPECT_EQ(glyph.count(), 1);
}

TEST_F(TimerFaceModelTest, PhaseOfNoLengthHasNoProgress) {
    engine().adjustDuration = [](Phase, Seconds) { return Seconds{0}; };
    engine().start();
    EXPECT_DOUBLE_EQ(TimerFaceModel(harness.model()).progress(), 0);
}

TEST_F(TimerFaceModelTest, StyleHasItsHeight) {
    TimerFaceModel face(harness.model());
    EXPECT_DOUBLE_EQ(face.frameHeight(), 188);
    settings().timerStyle.set(TimerStyle::bar);
    EXPECT_EQ(face.style(), TimerFaceModel::Bar);
    EXPECT_DOUBLE_EQ(face.frameHeight(), 128);
    settings().timerStyle.set(TimerStyle::minimal);
    EXPECT_EQ(face.style(), TimerFaceModel::Minimal);
    EXPECT_DOUBLE_EQ(face.frameHeight(), 132);
}

TEST_F(TimerFaceModelTest, CaptionIsThePhaseInCapitalsUnlessPaused) {
    TimerFaceModel face(harness.model());
    EXPECT_EQ(face.caption(), QStringLiteral("FOCUS"));
    engine().select(Phase::shortBreak);
    EXPECT_EQ(face.caption(), QStringLiteral("SHORT BREAK"));
    engine().select(Phase::longBreak);
    EXPECT_EQ(face.caption(), QStringLiteral("LONG BREAK"));
    engine().start();
    EXPECT_EQ(face.caption(), QStringLiteral("LONG BREAK"));
    engine().pause();
    EXPECT_EQ(face.caption(), QStringLiteral("PAUSED"));
}

TEST_F(TimerFaceModelTest, CaptionFadesForAPauseAndNotForAPhase) {
    TimerFaceModel face(harness.model());
    std::vector<std::pair<std::string, bool>> changes;
    QObject::connect(&face, &TimerFaceModel::stateChanged,
                     [&] { changes.emplace_back(face.caption().toStdString(), face.captionFades()); });
    bool told = false;
    QObject::connect(&face, &TimerFaceModel::captionFadesChanged, [&] { told = face.captionFades(); });
    const auto last = [&] { return changes.empty() ? std::pair<std::string, bool>() : changes.back(); };
    engine().select(Phase::shortBreak);
    EXPECT_EQ(last(), std::pair(std::string("SHORT BREAK"), false));
    engine().start();
    engine().pause();
    EXPECT_EQ(last(), std::pair(std::string("PAUSED"), true));
    EXPECT_TRUE(told) << "before the word";
    engine().resume();
    EXPECT_EQ(last(), std::pair(std::string("SHORT BREAK"), true));
    engine().reset();
    engine().select(Phase::longBreak);
    EXPECT_EQ(last(), std::pair(std::string("LONG BREAK"), false));
}

TEST_F(TimerFaceModelTest, StrengthTellsFocusFromBreaksAndPauses) {
    TimerFaceModel face(harness.model());
    EXPECT_DOUBLE_EQ(face.strength(), 1);
    engine().select(Phase::shortBreak);
    EXPECT_DOUBLE_EQ(face.strength(), 0.75);
    engine().select(Phase::longBreak);
    EXPECT_DOUBLE_EQ(face.strength(), 0.75);
    engine().start();
    engine().pause();
    EXPECT_DOUBLE_EQ(face.strength(), 0.5);
}

TEST_F(TimerFaceModelTest, EditorsExplainThemselves) {
    const TimerFaceModel face(harness.model());
    EXPECT_EQ(face.editTooltip(), QStringLiteral("Click to type the minutes"));
    EXPECT_EQ(face.editHint(), QStringLiteral("Type a new length in minutes"));
    EXPECT_EQ(face.iconTooltip(), QStringLiteral("Change this icon"));
    EXPECT_EQ(face.iconHint(), QStringLiteral("Choose a different icon"));
}

TEST_F(TimerFaceModelTest, OnlyTheIdleTimerCanBeEdited) {
    TimerFaceModel face(harness.model());
    EXPECT_TRUE(face.canEdit());
    engine().start();
    EXPECT_FALSE(face.canEdit());
    engine().pause();
    EXPECT_FALSE(face.canEdit());
    face.setMinutes(40);
    EXPECT_EQ(settings().focusMinutes(), 25);
    engine().reset();
    EXPECT_TRUE(face.canEdit());
}

TEST_F(TimerFaceModelTest, TypedMinutesAreThoseOfThePhaseWithinItsBounds) {
    TimerFaceModel face(harness.model());
    face.setMinutes(40);
    EXPECT_EQ(settings().focusMinutes(), 40);
    EXPECT_EQ(face.time(), QStringLiteral("40:00"));
    face.setMinutes(999);
    EXPECT_EQ(settings().focusMinutes(), 120);
    EXPECT_EQ(face.time(), QStringLiteral("2:00:00"));
    engine().select(Phase::longBreak);
    face.setMinutes(7);
    EXPECT_EQ(settings().longBreakMinutes(), 7);
    EXPECT_EQ(settings().shortBreakMinutes(), 5);
    EXPECT_EQ(settings().focusMinutes(), 120);
}

TEST_F(TimerFaceModelTest, GlyphIsTheOneOfThePhase) {
    TimerFaceModel face(harness.model());
    EXPECT_EQ(face.glyph(), QStringLiteral("eye"));
    EXPECT_EQ(face.iconLabel(), QStringLiteral("Focus icon"));
    EXPECT_EQ(face.iconTitle(), QStringLiteral("FOCUS ICON"));
    for (const Phase phase : {Phase::shortBreak, Phase::longBreak}) {
        engine().select(phase);
        EXPECT_EQ(face.glyph(), QStringLiteral("cup.and.saucer"));
        EXPECT_EQ(face.iconLabel(), QStringLiteral("Break icon"));
        EXPECT_EQ(face.iconTitle(), QStringLiteral("BREAK ICON"));
    }
}

TEST_F(TimerFaceModelTest, PauseHasItsGlyphWhateverWasChosen) {
    TimerFaceModel face(harness.model());
    settings().focusSymbol.set("");
    EXPECT_EQ(face.glyph(), QString());
    engine().start();
    EXPECT_EQ(face.glyph(), QString());
    engine().pause();
    EXPECT_EQ(face.glyph(), QStringLiteral("pause.fill"));
    EXPECT_TRUE(Symbols::contains(face.glyph().toStdString()));
    EXPECT_EQ(face.symbol(), QString()) << "the choice is still none";
}

TEST_F(TimerFaceModelTest, ChosenSymbolIsThatOfThePhase) {
    TimerFaceModel face(harness.model());
    const QSignalSpy glyph(&face, &TimerFaceModel::glyphChanged);
    face.chooseSymbol(QStringLiteral("flame"));
    EXPECT_EQ(settings().focusSymbol(), "flame");
    EXPECT_EQ(face.glyph(), QStringLiteral("flame"));
    EXPECT_EQ(glyph.count(), 1);
    engine().select(Phase::longBreak);
    face.chooseSymbol(QString());
    EXPECT_EQ(settings().breakSymbol(), "");
    EXPECT_EQ(settings().focusSymbol(), "flame");
}

TEST_F(TimerFaceModelTest, SampleShowsAStyleAndCannotBeEdited) {
    TimerFaceModel face(settings());
    EXPECT_EQ(face.time(), QStringLiteral("14:32"));
    EXPECT_DOUBLE_EQ(face.progress(), 0.42);
    EXPECT_EQ(face.phase(), TimerFaceModel::Focus);
    EXPECT_FALSE(face.isRunning());
    EXPECT_FALSE(face.isPaused());
    EXPECT_FALSE(face.canEdit());
    settings().timerStyle.set(TimerStyle::minimal);
    EXPECT_EQ(face.style(), TimerFaceModel::Minimal);
    engine().start();
    EXPECT_FALSE(face.isRunning());
    face.setMinutes(40);
    EXPECT_EQ(settings().focusMinutes(), 25);
}

} // namespace
} // namespace selvane
