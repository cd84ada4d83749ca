#include "Selvane/UI/Progress/ProgressText.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

struct MilestoneRow {
    int streak;
    const char* text;
};

class Milestones : public testing::TestWithParam<MilestoneRow> {};

TEST_P(Milestones, AreToldByTheStreak) {
    EXPECT_EQ(ProgressText::milestone(GetParam().streak).toStdString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(ProgressText, Milestones,
                         testing::Values(MilestoneRow{0, "7 days to your 7-day milestone"},
                                         MilestoneRow{5, "2 days to your 7-day milestone"},
                                         MilestoneRow{6, "1 day to your 7-day milestone"},
                                         MilestoneRow{7, "7-day milestone reached"},
                                         MilestoneRow{8, "22 days to your 30-day milestone"},
                                         MilestoneRow{30, "30-day milestone reached"},
                                         MilestoneRow{31, "69 days to your 100-day milestone"},
                                         MilestoneRow{100, "100-day milestone reached"},
                                         MilestoneRow{101, "264 days to your 365-day milestone"},
                                         MilestoneRow{364, "1 day to your 365-day milestone"},
                                         MilestoneRow{365, "365-day milestone reached"},
                                         MilestoneRow{366, "Over a year of focus. Legendary."},
                                         MilestoneRow{5000, "Over a year of focus. Legendary."}),
                         [](const auto& row) { return "streak" + std::to_string(row.param.streak); });

TEST(ProgressText, StreakAndBestAreCounts) {
    EXPECT_EQ(ProgressText::streak(12), QStringLiteral("12 day streak"));
    EXPECT_EQ(ProgressText::streak(1), QStringLiteral("1 day streak"));
    EXPECT_EQ(ProgressText::best(31), QStringLiteral("31 best"));
}

TEST(ProgressText, OnlyOneFreezeIsSingular) {
    EXPECT_EQ(ProgressText::freezes(0), QStringLiteral("0 freezes"));
    EXPECT_EQ(ProgressText::freezes(1), QStringLiteral("1 freeze"));
    EXPECT_EQ(ProgressText::freezes(2), QStringLiteral("2 freezes"));
}

TEST(ProgressText, ScoreIsRoundedToTheNearestHundredth) {
    EXPECT_EQ(ProgressText::score(0.996), QStringLiteral("100% focused"));
    EXPECT_EQ(ProgressText::score(0.994), QStringLiteral("99% focused"));
    EXPECT_EQ(ProgressText::score(0.125), QStringLiteral("13% focused"));
    EXPECT_EQ(ProgressText::score(0), QStringLiteral("0% focused"));
    EXPECT_EQ(ProgressText::score(1), QStringLiteral("100% focused"));
}

TEST(ProgressText, TooltipsExplain) {
    EXPECT_EQ(ProgressText::freezesTooltip(),
              QStringLiteral(
                  "Earn a streak freeze every 7 days (hold up to 2). A missed day uses one automatically."));
    EXPECT_EQ(ProgressText::scoreTooltip(),
              QStringLiteral("Share of today's focus time spent outside apps on your distractions list"));
}

TEST(ProgressText, DayOverItsGoalIsNoMoreThanWhole) {
    EXPECT_EQ(ProgressText::goalFraction(0, 60), 0);
    EXPECT_EQ(ProgressText::goalFraction(15, 60), 0.25);
    EXPECT_EQ(ProgressText::goalFraction(60, 60), 1);
    EXPECT_EQ(ProgressText::goalFraction(90, 60), 1);
}

TEST(ProgressText, GoalBelowAMinuteCountsAsOne) {
    EXPECT_EQ(ProgressText::goalFraction(0, 0), 0);
    EXPECT_EQ(ProgressText::goalFraction(1, 0), 1);
    EXPECT_EQ(ProgressText::goalFraction(1, -5), 1);
}

TEST(ProgressText, GoalIsInPlainMinutesBelowTheRingsNumberAndInHoursInItsTooltip) {
    EXPECT_EQ(ProgressText::goalCaption(60), QStringLiteral("/60m"));
    EXPECT_EQ(ProgressText::goalCaption(90), QStringLiteral("/90m"));
    EXPECT_EQ(ProgressText::goalTooltip(90, 60), QStringLiteral("Today: 1h 30m of your 1h goal"));
    EXPECT_EQ(ProgressText::goalTooltip(0, 50), QStringLiteral("Today: 0m of your 50m goal"));
}

} // namespace
} // namespace selvane
