#include "Selvane/UI/Controls/Spring.h"

#include "ControlsFixture.h"

#include <QPointF>

#include <cmath>
#include <numbers>

namespace selvane {
namespace {

struct Motion {
    const char* name;
    double response;
    double dampingFraction;
};

void PrintTo(const Motion& motion, std::ostream* stream) {
    *stream << motion.name;
}

/// The springs that the views use.
constexpr Motion motions[] = {
    {"Press", 0.15, 0.85}, {"Switch", 0.2, 0.85}, {"VolumeFade", 0.2, 1}, {"Tabs", 0.25, 0.85},
    {"Note", 0.25, 1},     {"List", 0.5, 0.85},   {"Ring", 0.5, 1},
};

class SpringTable : public testing::TestWithParam<Motion> {
protected:
    SpringTable() {
        spring.setResponse(GetParam().response);
        spring.setDampingFraction(GetParam().dampingFraction);
    }

    /// Integrates the equation of motion x" = w²(1 - x) - 2·z·w·x' in small steps: no formula is shared with
    /// the code.
    [[nodiscard]] static double integrated(const Motion& motion, double seconds) {
        const double w = 2 * std::numbers::pi / motion.response;
        constexpr int steps = 200'000;
        const double step = seconds / steps;
        double x = 0;
        double v = 0;
        for (int i = 0; i < steps; ++i) {
            const double a = w * w * (1 - x) - 2 * motion.dampingFraction * w * v;
            const double middle = v + a * step / 2;
            x += middle * step;
            v = middle + (w * w * (1 - x) - 2 * motion.dampingFraction * w * middle) * step / 2;
        }
        return x;
    }

    Spring spring;
};

TEST_P(SpringTable, PositionSolvesTheEquationOfMotion) {
    for (const double part : {0.1, 0.3, 0.5, 0.8, 1.2}) {
        const double seconds = part * GetParam().response;
        EXPECT_NEAR(Spring::position(GetParam().response, GetParam().dampingFraction, seconds),
                    integrated(GetParam(), seconds), 1e-4)
            << part;
    }
}

TEST_P(SpringTable, VelocityIsTheSlopeOfThePosition) {
    const auto [name, response, damping] = GetParam();
    constexpr double h = 1e-6;
    for (const double part : {0.05, 0.3, 0.5, 1.0}) {
        const double t = part * response;
        const double slope =
            (Spring::position(response, damping, t + h) - Spring::position(response, damping, t - h)) /
            (2 * h);
        EXPECT_NEAR(Spring::velocity(response, damping, t), slope, 1e-4) << part;
    }
}

TEST_P(SpringTable, CurveFollowsThePosition) {
    const auto [name, response, damping] = GetParam();
    const QEasingCurve curve = spring.curve();
    const double end = Spring::settlingTime(response, damping);
    // Up to the last piece, which brings the motion to its end.
    for (int step = 0; step <= 90; ++step) {
        const double part = step / 100.0;
        EXPECT_NEAR(curve.valueForProgress(part), Spring::position(response, damping, part * end), 0.004)
            << part;
    }
}

TEST_P(SpringTable, CurveHasNoMorePiecesThanQtHasRoomFor) {
    // An end and two control points each.
    EXPECT_LE(spring.curve().toCubicSpline().size(), 10 * 3);
}

TEST_P(SpringTable, BeginsAtRestAndEndsExactlyAtItsTarget) {
    const QEasingCurve curve = spring.curve();
    EXPECT_EQ(curve.valueForProgress(0), 0);
    EXPECT_EQ(curve.valueForProgress(1), 1);
    EXPECT_LT(curve.valueForProgress(0.001), 0.001) << "slowly at first";
    EXPECT_NEAR(curve.valueForProgress(0.999), 1, 0.003);
}

TEST_P(SpringTable, CurveHasNoKinks) {
    const QEasingCurve curve = spring.curve();
    constexpr double h = 1e-3;
    const auto slope = [&](double at) {
        return (curve.valueForProgress(at + h) - curve.valueForProgress(at - h)) / (2 * h);
    };
    for (int step = 1; step < 98; ++step)
        EXPECT_NEAR(slope(step / 100.0 + 2 * h), slope(step / 100.0), 0.2) << step;
}

TEST_P(SpringTable, PassesItsTargetOnlyIfItSwings) {
    const QEasingCurve curve = spring.curve();
    double highest = 0;
    for (int step = 0; step <= 1000; ++step)
        highest = std::max(highest, curve.valueForProgress(step / 1000.0));
    const double z = GetParam().dampingFraction;
    // By how much a swinging mass first passes its target.
    const double overshoot = z < 1 ? std::exp(-std::numbers::pi * z / std::sqrt(1 - z * z)) : 0;
    EXPECT_NEAR(highest, 1 + overshoot, 0.001);
}

TEST_P(SpringTable, DurationIsTheTimeUntilItHasSettled) {
    const auto [name, response, damping] = GetParam();
    const double end = Spring::settlingTime(response, damping);
    EXPECT_EQ(spring.duration(), std::lround(end * 1000));
    for (double t = end; t < end + 1; t += 0.001)
        ASSERT_NEAR(Spring::position(response, damping, t), 1, 0.0021);
}

INSTANTIATE_TEST_SUITE_P(Springs, SpringTable, testing::ValuesIn(motions),
                         [](const auto& row) { return std::string(row.param.name); });

// Numbers worked out by hand, so that the table can't share a mistake with the code.
TEST(Spring, MovesByTheNumbersOfItsResponse) {
    // After one radian of its frequency, a critically damped mass has 2/e of the way to go.
    EXPECT_NEAR(Spring::position(0.5, 1, 0.5 / 6.283185307179586), 0.26424111765711533, 1e-12);
    EXPECT_NEAR(Spring::position(2, 1, 2 / 6.283185307179586), 0.26424111765711533, 1e-12);
    // Half a damped period after its release a swinging mass is as far beyond its target as it gets.
    EXPECT_NEAR(Spring::position(0.5, 0.85, 0.4745789), 1.006287603784958, 1e-9);
    EXPECT_NEAR(Spring::velocity(0.5, 0.85, 0.4745789), 0, 1e-5);
}

TEST(Spring, TellsItsDurationInMilliseconds) {
    Spring spring;
    spring.setResponse(0.5);
    spring.setDampingFraction(1);
    EXPECT_EQ(spring.duration(), 673);
    spring.setResponse(0.25);
    spring.setDampingFraction(0.85);
    EXPECT_EQ(spring.duration(), 321);
}

TEST(Spring, TellsTheResponseAndDampingThatItWasGiven) {
    Spring spring;
    EXPECT_EQ(spring.response(), 0.5);
    EXPECT_EQ(spring.dampingFraction(), 1);
    int changes = 0;
    QObject::connect(&spring, &Spring::changed, &spring, [&] { ++changes; });
    spring.setResponse(0.25);
    spring.setDampingFraction(0.85);
    spring.setResponse(0.25);
    EXPECT_EQ(spring.response(), 0.25);
    EXPECT_EQ(spring.dampingFraction(), 0.85);
    EXPECT_EQ(changes, 2);
}

class SpringMotionTest : public test::ControlsFixture {};

TEST_F(SpringMotionTest, TakesNoTimeWhereTheUserWantsNoMotion) {
    QQuickItem* const item = show(R"(Item {
        property SpringMotion motion: SpringMotion { response: 0.25; dampingFraction: 0.85 }
    })");
    QObject* const motion = item->property("motion").value<QObject*>();
    EXPECT_EQ(motion->property("duration").toInt(), std::lround(Spring::settlingTime(0.25, 0.85) * 1000));
    appearance.setReducesMotion(true);
    EXPECT_EQ(motion->property("duration").toInt(), 0);
    appearance.setReducesMotion(false);
    EXPECT_GT(motion->property("duration").toInt(), 0);
}

} // namespace
} // namespace selvane
