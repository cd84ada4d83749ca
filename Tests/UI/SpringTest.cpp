#include "Selvane/UI/Controls/Spring.h"

#include <QPointF>

#include <gtest/gtest.h>

namespace selvane {
namespace {

struct SpringRow {
    double response;
    double dampingFraction;
};

class Springs : public testing::TestWithParam<SpringRow> {
protected:
    Springs() {
        spring.setResponse(GetParam().response);
        spring.setDampingFraction(GetParam().dampingFraction);
    }

    Spring spring;
};

TEST_P(Springs, HaveNoMorePiecesThanQtHasRoomFor) {
    // An end and two control points each.
    EXPECT_LE(spring.curve().toCubicSpline().size(), 10 * 3);
}

TEST_P(Springs, MoveAsTheirMassDoes) {
    const QEasingCurve curve = spring.curve();
    const double length = Spring::settlingTime(GetParam().response, GetParam().dampingFraction);
    for (double part = 0; part < 1; part += 0.01)
        EXPECT_NEAR(curve.valueForProgress(part),
                    Spring::position(GetParam().response, GetParam().dampingFraction, part * length), 0.005)
            << part;
    EXPECT_EQ(curve.valueForProgress(1), 1);
}

INSTANTIATE_TEST_SUITE_P(Spring, Springs,
                         testing::Values(SpringRow{0.2, 0.85}, SpringRow{0.25, 0.85}, SpringRow{0.25, 1},
                                         SpringRow{0.5, 0.85}, SpringRow{0.5, 1}),
                         [](const auto& row) {
                             return "response" + std::to_string(static_cast<int>(row.param.response * 100)) +
                                    "damping" +
                                    std::to_string(static_cast<int>(row.param.dampingFraction * 100));
                         });

} // namespace
} // namespace selvane
