#include "Selvane/UI/Timer/Sweep.h"

#include "Selvane/UI/Timer/CycleDash.h"
#include "Selvane/UI/Timer/DigitRoll.h"

#include <gtest/gtest.h>

#include <vector>

namespace selvane {
namespace {

using Motion = Sweep::Motion;

constexpr Seconds start{1000};
/// The ring's arc at scale 1.
constexpr double path = 502.65;

/// The moments, in seconds, at which what moves asks to be drawn, until it has arrived.
template <typename Moving>
std::vector<double> steps(const Moving& moving, Seconds from = start) {
    std::vector<double> moments;
    Seconds now = from;
    while (const auto delay = moving.untilNextStep(now)) {
        now += *delay;
        moments.push_back((now - from).count());
        if (moments.size() > 1000)
            break;
    }
    return moments;
}

TEST(Sweep, JumpsWithoutMotion) {
    Sweep sweep;
    sweep.aim(0.5, Motion::none, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5);
    EXPECT_TRUE(steps(sweep).empty());
}

TEST(Sweep, LongPhaseNeedsNoStepBetweenItsTicks) {
    Sweep sweep;
    sweep.jump(0.5);
    for (int tick = 1; tick <= 30; ++tick) {
        const Seconds now = start + Seconds{static_cast<double>(tick)};
        sweep.aim(0.5 + tick / 1500.0, Motion::linear, path, now);
        EXPECT_NEAR(sweep.shown(now) * path, (0.5 + tick / 1500.0) * path, 0.5) << "half a pixel";
        EXPECT_TRUE(steps(sweep, now).empty());
    }
}

TEST(Sweep, TickThatCannotBeSeenIsNotDrawn) {
    Sweep sweep;
    sweep.jump(0.5);
    // Two fifths of the least that can be seen.
    const double tick = 0.2 / path;
    sweep.aim(0.5 + tick, Motion::linear, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5);
    EXPECT_DOUBLE_EQ(sweep.target(), 0.5 + tick);
    sweep.aim(0.5 + 2 * tick, Motion::linear, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5);
    sweep.aim(0.5 + 3 * tick, Motion::linear, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5 + 3 * tick) << "none is lost";
    sweep.aim(0.5 + 4 * tick, Motion::none, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5 + 4 * tick) << "a jump is drawn however short it is";
}

TEST(Sweep, TickThatASpringPassesIsStillAimedAt) {
    Sweep sweep;
    sweep.jump(0.9);
    sweep.aim(0.1, Motion::spring, path, start);
    const Seconds now = start + Seconds{0.2};
    const double passed = sweep.shown(now);
    ASSERT_GT(passed, 0.15);
    sweep.aim(passed + 0.1 / path, Motion::linear, path, now);
    EXPECT_NEAR(sweep.shown(now + Seconds{5}), passed, 1 / path);
}

TEST(Sweep, ResetAfterATickThatWasNotDrawnGoesAllTheWay) {
    Sweep sweep;
    sweep.jump(0.5);
    sweep.aim(0.5 + 0.2 / path, Motion::linear, path, start);
    sweep.aim(0, Motion::spring, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5);
    EXPECT_DOUBLE_EQ(sweep.shown(start + Seconds{5}), 0);
}

TEST(Sweep, FirstTickBringsTheHead) {
    Sweep sweep;
    sweep.jump(0);
    sweep.aim(0.2 / path, Motion::linear, path, start);
    EXPECT_GT(sweep.shown(start), 0);
    EXPECT_GT(sweep.headPresence(start), 0);
}

TEST(Sweep, ShortPhaseStepsByHalfPixelsAndJoinsItsTicks) {
    Sweep sweep;
    sweep.jump(0.5);
    sweep.aim(0.5 + 1.0 / 150, Motion::linear, path, start);
    // 3.35 pixels to go: 7 steps, of which the first is made at once.
    const auto moments = steps(sweep);
    ASSERT_EQ(moments.size(), 6U);
    double before = sweep.shown(start);
    EXPECT_NEAR(before, 0.5 + 1.0 / 150 / 7, 1e-9);
    for (const double moment : moments) {
        const double shown = sweep.shown(start + Seconds{moment});
        EXPECT_NEAR(shown - before, 1.0 / 150 / 7, 1e-9) << moment;
        before = shown;
    }
    EXPECT_LT(moments.back(), 1.0) << "it has arrived when the next tick comes";
    EXPECT_NEAR(before, 0.5 + 1.0 / 150, 1e-12);
}

TEST(Sweep, NeverStepsMoreThanTenTimesATick) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        Sweep sweep;
        sweep.jump(0.5);
        sweep.aim(0.5 + 1.0 / 60, Motion::linear, path * scale, start);
        EXPECT_EQ(steps(sweep).size(), 9U) << scale;
    }
}

TEST(Sweep, LateStepShowsWhereItShouldBe) {
    Sweep sweep;
    sweep.jump(0.5);
    sweep.aim(0.5 + 1.0 / 60, Motion::linear, path, start);
    EXPECT_NEAR(sweep.shown(start + Seconds{0.55}), 0.5 + 6.0 / 10 / 60, 1e-9);
    EXPECT_NEAR(sweep.shown(start + Seconds{5}), 0.5 + 1.0 / 60, 1e-12);
    EXPECT_EQ(sweep.untilNextStep(start + Seconds{5}), std::nullopt);
}

TEST(Sweep, RunningFaceWakesAtMostTwentyTimesASecond) {
    Sweep sweep;
    sweep.jump(0.5);
    sweep.aim(0.5 + 1.0 / 60, Motion::linear, path * 2, start);
    DigitRoll roll;
    roll.change(QStringLiteral("0:30"), DigitRoll::Pace::none, start);
    roll.change(QStringLiteral("0:29"), DigitRoll::Pace::tick, start);
    const double tick = 1;
    const double pulses = Seconds{1} / CycleDash::pulseStep;
    EXPECT_LE(tick + static_cast<double>(steps(sweep).size() + steps(roll).size()) + pulses, 20);
}

TEST(Sweep, HeadGoesWithTheLastOfTheLine) {
    Sweep sweep;
    sweep.jump(0.6);
    EXPECT_DOUBLE_EQ(sweep.headPresence(start), 1);
    sweep.aim(0, Motion::spring, path, start);
    EXPECT_DOUBLE_EQ(sweep.headPresence(start), 1);
    for (const double passed : {0.1, 0.2, 0.4}) {
        const Seconds now = start + Seconds{passed};
        EXPECT_NEAR(sweep.headPresence(now), sweep.shown(now) / 0.6, 1e-9) << passed;
    }
    EXPECT_DOUBLE_EQ(sweep.headPresence(start + Seconds{5}), 0);
}

TEST(Sweep, HeadStaysWhileThereIsALine) {
    Sweep sweep;
    sweep.jump(0.6);
    sweep.aim(0.1, Motion::spring, path, start);
    EXPECT_DOUBLE_EQ(sweep.headPresence(start + Seconds{0.1}), 1);
}

TEST(Sweep, HeadComesWithTheFirstTickAlsoOfALongPhase) {
    Sweep sweep;
    EXPECT_DOUBLE_EQ(sweep.headPresence(start), 0);
    sweep.aim(1 / 1500.0, Motion::linear, path, start);
    EXPECT_NEAR(sweep.headPresence(start), 0.1, 1e-9) << "the first step is made at once";
    EXPECT_NEAR(sweep.headPresence(start + Seconds{0.55}), 0.6, 1e-9);
    EXPECT_DOUBLE_EQ(sweep.headPresence(start + Seconds{1}), 1);
    EXPECT_EQ(steps(sweep).size(), 9U);
}

TEST(Sweep, JumpOfTheRunningTimerTakesASecondAndIsSmooth) {
    Sweep sweep;
    sweep.jump(0.6);
    sweep.aim(0, Motion::linear, path, start);
    const auto moments = steps(sweep);
    EXPECT_NEAR(static_cast<double>(moments.size()), 59, 1);
    EXPECT_NEAR(sweep.shown(start + Seconds{0.5}), 0.3, 0.01);
    EXPECT_DOUBLE_EQ(sweep.shown(start + Seconds{1}), 0);
}

TEST(Sweep, SpringComesToRestWithoutPassingItsTarget) {
    Sweep sweep;
    sweep.jump(0.6);
    sweep.aim(0, Motion::spring, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.6);
    const auto moments = steps(sweep);
    ASSERT_GT(moments.size(), 30U);
    double before = 0.6;
    for (const double moment : moments) {
        const double shown = sweep.shown(start + Seconds{moment});
        EXPECT_LE(shown, before);
        EXPECT_GE(shown, 0);
        before = shown;
    }
    EXPECT_DOUBLE_EQ(before, 0);
}

TEST(Sweep, ChangeThatCannotBeSeenIsMadeAtOnce) {
    Sweep sweep;
    sweep.jump(0.5);
    sweep.aim(0.5005, Motion::spring, path, start);
    EXPECT_DOUBLE_EQ(sweep.shown(start), 0.5005);
    EXPECT_TRUE(steps(sweep).empty());
}

TEST(Sweep, NewTargetIsAimedAtFromWhereItIs) {
    Sweep sweep;
    sweep.aim(1, Motion::spring, path, start);
    const Seconds now = start + Seconds{0.1};
    const double shown = sweep.shown(now);
    ASSERT_GT(shown, 0.1);
    ASSERT_LT(shown, 0.9);
    sweep.aim(0, Motion::spring, path, now);
    EXPECT_DOUBLE_EQ(sweep.shown(now), shown);
    sweep.jump(0.25);
    EXPECT_DOUBLE_EQ(sweep.shown(now), 0.25);
}

} // namespace
} // namespace selvane
