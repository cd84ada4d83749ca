#include "Selvane/UI/Timer/DigitRoll.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

using Pace = DigitRoll::Pace;

constexpr Seconds start{1000};

/// Which cells roll, as a mark below each: "^", or "." for a cell that stands.
std::string rolling(const DigitRoll& roll) {
    std::string marks;
    for (const DigitRoll::Cell& cell : roll.cells())
        marks += cell.before ? '^' : '.';
    return marks;
}

int countSteps(const DigitRoll& roll) {
    int steps = 0;
    Seconds now = start;
    while (const auto delay = roll.untilNextStep(now)) {
        now += *delay;
        if (++steps > 1000)
            break;
    }
    return steps;
}

DigitRoll changed(const char* before, const char* after, Pace pace) {
    DigitRoll roll;
    roll.change(QString::fromUtf8(before), Pace::none, start);
    roll.change(QString::fromUtf8(after), pace, start);
    return roll;
}

TEST(DigitRoll, OnlyTheDigitsThatChangeRoll) {
    EXPECT_EQ(rolling(changed("24:13", "24:12", Pace::tick)), "....^");
    EXPECT_EQ(rolling(changed("24:10", "24:09", Pace::tick)), "...^^");
    EXPECT_EQ(rolling(changed("20:00", "19:59", Pace::tick)), "^^.^^");
    EXPECT_EQ(rolling(changed("1:02:05", "1:02:04", Pace::tick)), "......^");
}

TEST(DigitRoll, SecondsStandBelowSecondsWhateverTheLength) {
    const DigitRoll shorter = changed("10:00", "9:59", Pace::tick);
    EXPECT_EQ(rolling(shorter), "^.^^");
    EXPECT_EQ(shorter.cells()[0].before, QChar(u'0'));
    const DigitRoll longer = changed("9:59", "25:00", Pace::smooth);
    EXPECT_EQ(rolling(longer), "^^.^^");
    EXPECT_EQ(longer.cells()[0].before, QChar()) << "comes from nothing";
}

TEST(DigitRoll, NothingRollsWithoutMotion) {
    const DigitRoll roll = changed("24:13", "24:12", Pace::none);
    EXPECT_EQ(rolling(roll), ".....");
    EXPECT_DOUBLE_EQ(roll.position(start), 1);
    EXPECT_EQ(roll.untilNextStep(start), std::nullopt);
}

TEST(DigitRoll, TickTakesFewStepsAndAFifthOfASecond) {
    const DigitRoll roll = changed("24:13", "24:12", Pace::tick);
    EXPECT_GT(roll.position(start), 0.05) << "the frame of the tick is the first step";
    EXPECT_LE(countSteps(roll), 3);
    EXPECT_LT(roll.position(start + Seconds{0.13}), 1);
    EXPECT_DOUBLE_EQ(roll.position(start + Seconds{0.22}), 1);
}

TEST(DigitRoll, OtherChangesSwingAsASpring) {
    const DigitRoll roll = changed("14:32", "25:00", Pace::smooth);
    EXPECT_DOUBLE_EQ(roll.position(start), 0);
    EXPECT_GT(countSteps(roll), 20);
    double highest = 0;
    for (double passed = 0; passed < 1; passed += 0.01)
        highest = std::max(highest, roll.position(start + Seconds{passed}));
    EXPECT_GT(highest, 1) << "it passes its target a little";
    EXPECT_LT(highest, 1.02);
    EXPECT_DOUBLE_EQ(roll.position(start + Seconds{2}), 1);
}

TEST(DigitRoll, SettlingEndsWhatRolls) {
    DigitRoll roll = changed("14:32", "25:00", Pace::smooth);
    roll.settle();
    EXPECT_EQ(rolling(roll), ".....");
    EXPECT_EQ(roll.untilNextStep(start), std::nullopt);
}

} // namespace
} // namespace selvane
