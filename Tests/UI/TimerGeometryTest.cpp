#include "Selvane/UI/Timer/ArcHead.h"
#include "Selvane/UI/Timer/BarGeometry.h"
#include "Selvane/UI/Timer/RingGeometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace selvane {
namespace {

TEST(RingGeometry, SixtyTicksOfWhichEveryFifthIsMajor) {
    const auto ticks = RingGeometry::ticks(184);
    ASSERT_EQ(ticks.size(), 60U);
    for (std::size_t index = 0; index < ticks.size(); ++index) {
        const auto& [inner, outer, width, opacity] = ticks[index];
        const bool isMajor = index % 5 == 0;
        EXPECT_DOUBLE_EQ(width, isMajor ? 1.2 : 1.0) << index;
        EXPECT_DOUBLE_EQ(opacity, isMajor ? 0.22 : 0.1) << index;
        EXPECT_NEAR(std::hypot(outer.x(), outer.y()), 92, 1e-9) << index;
        EXPECT_NEAR(std::hypot(inner.x(), inner.y()), isMajor ? 87.5 : 89.5, 1e-9) << index;
    }
}

TEST(RingGeometry, TicksGoClockwiseFromTwelve) {
    const auto ticks = RingGeometry::ticks(100);
    EXPECT_NEAR(ticks[0].outer.x(), 0, 1e-9);
    EXPECT_NEAR(ticks[0].outer.y(), -50, 1e-9);
    EXPECT_NEAR(ticks[15].outer.x(), 50, 1e-9);
    EXPECT_NEAR(ticks[30].outer.y(), 50, 1e-9);
    EXPECT_NEAR(ticks[45].outer.x(), -50, 1e-9);
}

TEST(RingGeometry, GradientEndsWithTheArcButNeverAtZero) {
    EXPECT_DOUBLE_EQ(RingGeometry::gradientEnd(0), 1);
    EXPECT_DOUBLE_EQ(RingGeometry::gradientEnd(0.001), 1);
    EXPECT_DOUBLE_EQ(RingGeometry::gradientEnd(0.5), 180);
    EXPECT_DOUBLE_EQ(RingGeometry::gradientEnd(1), 360);
}

TEST(RingGeometry, ArcIsWeakestEightDegreesBeforeItsStartAndFullAtItsEnd) {
    for (const double progress : {0.0, 0.02, 0.42, 1.0}) {
        EXPECT_DOUBLE_EQ(RingGeometry::opacityAt(-8, progress), 0.22);
        EXPECT_DOUBLE_EQ(RingGeometry::opacityAt(RingGeometry::gradientEnd(progress), progress), 1);
    }
    EXPECT_DOUBLE_EQ(RingGeometry::opacityAt(86, 0.5), 0.61) << "half way";
}

/// The opacity that a conical gradient of these stops has at a position of its turn.
double opacityOf(const RingGeometry::ConicalStops& conical, double position) {
    const auto& stops = conical.stops;
    for (std::size_t index = 1; index < stops.size(); ++index) {
        const auto& [from, low] = stops[index - 1];
        const auto& [to, high] = stops[index];
        if (position <= to)
            return std::lerp(low, high, (position - from) / (to - from));
    }
    return stops.back().second;
}

TEST(RingGeometry, ConicalGradientShowsTheArcsShadeEverywhereOnTheArc) {
    for (const double progress : {0.0, 0.0001, 0.02, 0.42, 0.9, 0.96, 0.99, 1.0}) {
        const auto conical = RingGeometry::conicalStops(progress);
        EXPECT_DOUBLE_EQ(conical.stops.front().first, 0);
        EXPECT_DOUBLE_EQ(conical.stops.back().first, 1);
        EXPECT_TRUE(std::is_sorted(conical.stops.begin(), conical.stops.end())) << progress;
        const double begin = std::max(conical.seam - 360, 0.0);
        for (double angle = begin; angle <= 360 * progress; angle += 1) {
            EXPECT_NEAR(opacityOf(conical, (angle - conical.seam + 360) / 360),
                        RingGeometry::opacityAt(angle, progress), 1e-9)
                << progress << " at " << angle;
        }
    }
}

TEST(RingGeometry, SeamLiesOutsideTheArcOrBelowItsHead) {
    const double cap =
        std::asin(RingGeometry::lineWidth / RingGeometry::arcDiameter) * 180 / 3.14159265358979;
    const double head =
        std::asin(RingGeometry::headSize / RingGeometry::arcDiameter) * 180 / 3.14159265358979;
    for (double progress = 0.001; progress <= 1; progress += 0.001) {
        const double end = 360 * progress;
        const double seam = RingGeometry::conicalStops(progress).seam;
        const bool isBetween = seam >= end + cap && seam <= 360 - cap;
        const bool isBelowHead = seam >= end && seam <= end + head;
        EXPECT_TRUE(isBetween || isBelowHead) << progress;
    }
}

TEST(RingGeometry, HeadRidesTheEndOfTheArc) {
    EXPECT_NEAR(RingGeometry::headCentre(0).y(), -80, 1e-9);
    EXPECT_NEAR(RingGeometry::headCentre(0.25).x(), 80, 1e-9);
    EXPECT_NEAR(RingGeometry::headCentre(0.75).x(), -80, 1e-9);
    EXPECT_NEAR(RingGeometry::headCentre(1).y(), -80, 1e-9);
}

TEST(BarGeometry, FillIsAtLeastACapsuleUnlessThereIsNone) {
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(0, 0, 220), 0);
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(0.0001, 1, 220), 8);
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(8.0 / 220, 1, 220), 8);
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(0.5, 1, 220), 110);
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(1, 1, 220), 220);
}

TEST(BarGeometry, FillThatGoesAwayShrinksEvenlyToNothing) {
    // From a width of 110 and of 8, at three quarters of the way.
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(0.125, 0.25, 220), 27.5);
    EXPECT_DOUBLE_EQ(BarGeometry::fillWidth(0.000025, 0.25, 220), 2);
}

TEST(BarGeometry, HeadStandsAtTheEndOfTheFillWithinTheBar) {
    EXPECT_DOUBLE_EQ(BarGeometry::headOffset(0), 0);
    EXPECT_DOUBLE_EQ(BarGeometry::headOffset(8), 0);
    EXPECT_DOUBLE_EQ(BarGeometry::headOffset(10), 0);
    EXPECT_DOUBLE_EQ(BarGeometry::headOffset(110), 100);
    EXPECT_DOUBLE_EQ(BarGeometry::headOffset(220), 210);
}

TEST(ArcHead, GlowFadesOutward) {
    double before = ArcHead::glow(0, 6);
    EXPECT_LE(before, 0.45);
    for (double distance = 1; distance <= 6 + ArcHead::glowReach; distance += 1) {
        const double strength = ArcHead::glow(distance, 6);
        EXPECT_LT(strength, before) << distance;
        before = strength;
    }
    EXPECT_LT(before, 1.0 / 255) << "nothing is cut off";
}

} // namespace
} // namespace selvane
