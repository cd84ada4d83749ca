#include "Selvane/UI/Tasks/TaskText.h"

#include <gtest/gtest.h>

#include <limits>

namespace selvane {
namespace {

using TaskText::Dots;

TEST(TaskText, CountIsDoneOverAll) {
    EXPECT_EQ(TaskText::count(1, 4), QStringLiteral("1 / 4"));
    EXPECT_EQ(TaskText::count(0, 12), QStringLiteral("0 / 12"));
}

TEST(TaskText, CircleSaysWhatAPressDoes) {
    EXPECT_EQ(TaskText::checkLabel(false), QStringLiteral("Mark as done"));
    EXPECT_EQ(TaskText::checkLabel(true), QStringLiteral("Mark as not done"));
}

TEST(TaskText, MenuSaysWhatBecomesOfTheFocus) {
    EXPECT_EQ(TaskText::focusLabel(false), QStringLiteral("Focus on this"));
    EXPECT_EQ(TaskText::focusLabel(true), QStringLiteral("Stop focusing on this"));
}

TEST(TaskText, OneSessionHasNoPlural) {
    EXPECT_EQ(TaskText::estimateLabel(1), QStringLiteral("1 session"));
    EXPECT_EQ(TaskText::estimateLabel(2), QStringLiteral("2 sessions"));
    EXPECT_EQ(TaskText::estimateLabel(8), QStringLiteral("8 sessions"));
}

TEST(TaskText, PluralOfProgressIsTheTotals) {
    EXPECT_EQ(TaskText::progress(0, 1), QStringLiteral("0 of 1 session"));
    EXPECT_EQ(TaskText::progress(2, 1), QStringLiteral("2 of 1 session"));
    EXPECT_EQ(TaskText::progress(1, 2), QStringLiteral("1 of 2 sessions"));
    EXPECT_EQ(TaskText::progress(1, 21), QStringLiteral("1 of 21 sessions"));
}

TEST(TaskText, NumbersOfProgressStayAsTheyAre) {
    EXPECT_EQ(TaskText::progress(7, 4), QStringLiteral("7 of 4 sessions"));
    EXPECT_EQ(TaskText::progress(1, std::numeric_limits<std::int64_t>::max()),
              QStringLiteral("1 of 9223372036854775807 sessions"));
}

TEST(TaskText, WithoutAnEstimateThereIsNoProgress) {
    EXPECT_EQ(TaskText::progress(3, 0), QString());
    EXPECT_EQ(TaskText::progress(3, -1), QString());
}

TEST(TaskText, PlaceAfterAMove) {
    EXPECT_EQ(TaskText::moved(2, 4), QStringLiteral("moved to 2 of 4"));
}

struct DotsRow {
    const char* name;
    std::int64_t done;
    std::int64_t total;
    Dots expected;
};

class TaskDots : public testing::TestWithParam<DotsRow> {};

TEST_P(TaskDots, AreDrawn) {
    EXPECT_EQ(TaskText::dots(GetParam().done, GetParam().total), GetParam().expected);
}

constexpr std::int64_t huge = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t least = std::numeric_limits<std::int64_t>::min();

INSTANTIATE_TEST_SUITE_P(
    TaskText, TaskDots,
    testing::Values(DotsRow{"noneDone", 0, 4, {0, 4}}, DotsRow{"someDone", 2, 4, {2, 4}},
                    DotsRow{"moreDoneThanEstimated", 7, 4, {4, 4}}, DotsRow{"noEstimate", 3, 0, {0, 0}},
                    DotsRow{"negativeEstimate", 3, -2, {0, 0}}, DotsRow{"negativeDone", -1, 3, {0, 3}},
                    DotsRow{"asManyAsHaveRoom", 13, 20, {13, 20}},
                    DotsRow{"oneMoreThanHasRoom", 13, 21, {12, 20}},
                    DotsRow{"moreThanHaveRoom", 10, 40, {5, 20}}, DotsRow{"oneOfMany", 1, 1000, {1, 20}},
                    DotsRow{"allButOneOfMany", 999, 1000, {19, 20}},
                    DotsRow{"allOfMany", 1000, 1000, {20, 20}}, DotsRow{"noneOfMany", 0, 1000, {0, 20}},
                    DotsRow{"hugeEstimate", 1, huge, {1, 20}}, DotsRow{"hugeBoth", huge, huge, {20, 20}},
                    DotsRow{"leastBoth", least, least, {0, 0}}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace selvane
