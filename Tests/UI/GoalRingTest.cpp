#include "Selvane/UI/Progress/GoalRingCanvas.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace selvane {
namespace {

class GoalRingTest : public testing::Test {
protected:
    GoalRingTest() {
        ring.setSize({GoalRingCanvas::side, GoalRingCanvas::side});
        ring.setInk(Qt::black);
        ring.setTextInk(Qt::transparent);
        ring.setCaptionInk(Qt::transparent);
    }

    [[nodiscard]] QImage picture() {
        constexpr int scale = 4;
        QImage image(QSize(40, 40) * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(Qt::white);
        QPainter painter(&image);
        ring.paint(&painter, ring.size());
        return image;
    }

    /// The shade in the middle of the ring's line, `turns` of a turn clockwise from the top.
    static int shadeAt(const QImage& image, double turns) {
        const double angle = 2 * std::numbers::pi * turns;
        const double radius = (40 - 3.5) / 2 * 4;
        return qGray(image.pixel(static_cast<int>(80 + radius * std::sin(angle)),
                                 static_cast<int>(80 - radius * std::cos(angle))));
    }

    GoalRingCanvas ring;
};

TEST_F(GoalRingTest, ReachesAsFarAsTheDayHasCome) {
    ring.setMinutes(15);
    ring.setGoal(60);
    EXPECT_EQ(ring.reached(), 0.25);
    EXPECT_EQ(ring.tooltip(), QStringLiteral("Today: 15m of your 1h goal"));
}

TEST_F(GoalRingTest, DayOverItsGoalIsAFullRing) {
    ring.setMinutes(90);
    ring.setGoal(60);
    EXPECT_EQ(ring.reached(), 1);
}

TEST_F(GoalRingTest, DrawsItsPartFromTheTopClockwise) {
    ring.setFraction(0.25);
    const QImage image = picture();
    EXPECT_EQ(shadeAt(image, 0.01), 0);
    EXPECT_EQ(shadeAt(image, 0.24), 0);
    EXPECT_NEAR(shadeAt(image, 0.35), 255 * 0.92, 2) << "the track";
    EXPECT_NEAR(shadeAt(image, 0.95), 255 * 0.92, 2);
}

TEST_F(GoalRingTest, EndsAreRound) {
    ring.setFraction(0.25);
    const QImage image = picture();
    // The cap covers half a line's width, 1.75 of the circle's 114.7 pixels.
    EXPECT_EQ(shadeAt(image, 0.262), 0);
    EXPECT_EQ(shadeAt(image, -0.012), 0);
}

TEST_F(GoalRingTest, NothingReachedIsTheTrackAlone) {
    ring.setFraction(0);
    const QImage image = picture();
    for (double turns = 0; turns < 1; turns += 0.05)
        EXPECT_NEAR(shadeAt(image, turns), 255 * 0.92, 2) << turns;
}

TEST_F(GoalRingTest, FullRingHasNoGap) {
    ring.setFraction(1);
    const QImage image = picture();
    for (double turns = 0; turns < 1; turns += 0.01)
        EXPECT_EQ(shadeAt(image, turns), 0) << turns;
}

TEST_F(GoalRingTest, LongNumbersStayWithinTheRing) {
    ring.setTextInk(Qt::black);
    ring.setCaptionInk(Qt::black);
    ring.setInk(Qt::transparent);
    for (const int minutes : {0, 8, 25, 90, 480, 1440, 14400}) {
        ring.setMinutes(minutes);
        ring.setGoal(600);
        const QImage image = picture();
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (qGray(image.pixel(x, y)) > 200)
                    continue;
                ++inked;
                EXPECT_LE(std::hypot(x - 79.5, y - 79.5) / 4, 16.5) << minutes << " at " << x << ", " << y;
            }
        }
        EXPECT_GT(inked, 100) << minutes;
    }
}

} // namespace
} // namespace selvane
