#include "Selvane/UI/Timer/CycleDash.h"

#include <gtest/gtest.h>

namespace selvane::CycleDash {
namespace {

using Row = std::vector<Look>;

TEST(CycleDash, RowTellsWhatIsOverCurrentAndAhead) {
    EXPECT_EQ(row(Phase::focus, 3, 4, Pulse::still),
              (Row{Look::full, Look::full, Look::current, Look::ahead}));
    EXPECT_EQ(row(Phase::focus, 1, 2, Pulse::still), (Row{Look::current, Look::ahead}));
    EXPECT_EQ(row(Phase::shortBreak, 2, 3, Pulse::still), (Row{Look::full, Look::current, Look::ahead}));
}

TEST(CycleDash, CurrentDashPulsesInFocusAlone) {
    EXPECT_EQ(row(Phase::focus, 2, 3, Pulse::moving), (Row{Look::full, Look::pulsing, Look::ahead}));
    EXPECT_EQ(row(Phase::shortBreak, 2, 3, Pulse::moving), (Row{Look::full, Look::current, Look::ahead}));
    EXPECT_EQ(row(Phase::longBreak, 2, 3, Pulse::moving), (Row{Look::full, Look::full, Look::full}));
}

TEST(CycleDash, LongBreakIsFullWhateverThePosition) {
    for (const int position : {-1, 0, 1, 3, 4, 9})
        EXPECT_EQ(row(Phase::longBreak, position, 3, Pulse::still),
                  (Row{Look::full, Look::full, Look::full}));
}

TEST(CycleDash, LengthBelowOneDrawsOneDash) {
    for (const int length : {0, -1, -100}) {
        EXPECT_EQ(row(Phase::focus, 1, length, Pulse::still), Row{Look::current});
        EXPECT_EQ(label(1, length), QStringLiteral("Session 1 of 1"));
    }
}

TEST(CycleDash, PositionBeyondTheLengthIsAllFull) {
    EXPECT_EQ(row(Phase::focus, 5, 3, Pulse::moving), (Row{Look::full, Look::full, Look::full}));
    EXPECT_EQ(label(5, 3), QStringLiteral("Session 3 of 3"));
}

TEST(CycleDash, Words) {
    EXPECT_EQ(label(2, 4), QStringLiteral("Session 2 of 4"));
    EXPECT_EQ(tooltip(2, 4), QStringLiteral("Session 2 of 4 before a long break"));
}

TEST(CycleDash, Opacities) {
    const Seconds any{0.7};
    EXPECT_DOUBLE_EQ(opacity(Look::full, any), 1);
    EXPECT_DOUBLE_EQ(opacity(Look::current, any), 0.5);
    EXPECT_DOUBLE_EQ(opacity(Look::ahead, any), 0.15);
}

TEST(CycleDash, PulseComesAndGoesWithinTwiceOnePointFourSeconds) {
    EXPECT_NEAR(opacity(Look::pulsing, Seconds{0}), 0.3, 1e-9);
    EXPECT_NEAR(opacity(Look::pulsing, Seconds{0.7}), 0.525, 1e-9);
    EXPECT_NEAR(opacity(Look::pulsing, Seconds{1.4}), 0.75, 1e-9);
    EXPECT_NEAR(opacity(Look::pulsing, Seconds{2.8}), 0.3, 1e-9);
    EXPECT_NEAR(opacity(Look::pulsing, Seconds{4.2}), 0.75, 1e-9);
    // Slow at both ends.
    EXPECT_LT(opacity(Look::pulsing, Seconds{0.14}), 0.3 + 0.45 * 0.05);
    EXPECT_GT(opacity(Look::pulsing, Seconds{1.26}), 0.75 - 0.45 * 0.05);
}

} // namespace
} // namespace selvane::CycleDash
