#include "SelvaneCore/FocusScore.h"

#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace selvane {
namespace {

struct ScoreRow {
    const char* name;
    std::vector<AppUsage> apps;
    DistractingSet distracting;
    std::optional<double> score;
};

AppUsage usage(std::string id, double seconds) {
    return {id, id, Seconds{seconds}};
}

class FocusScoreTable : public testing::TestWithParam<ScoreRow> {};

TEST_P(FocusScoreTable, IsTheShareThatWasNotDistracted) {
    EXPECT_EQ(FocusScore::compute(GetParam().apps, GetParam().distracting), GetParam().score);
}

INSTANTIATE_TEST_SUITE_P(
    FocusScore, FocusScoreTable,
    testing::Values(
        ScoreRow{"timeAwayCountsOnNeitherSide",
                 {usage("a", 100), usage("away", 300), usage("b", 100)},
                 {"b"},
                 0.5},
        ScoreRow{"nothing", {}, {"b"}, std::nullopt},
        ScoreRow{"onlyAway", {usage("away", 300)}, {}, std::nullopt},
        ScoreRow{"awayIsNoDistraction", {usage("away", 300), usage("a", 10)}, {"away"}, 1.0},
        ScoreRow{"lessThanASecond", {usage("a", 0.5)}, {}, std::nullopt},
        ScoreRow{"partsOfASecondAddUp", {usage("a", 0.5), usage("b", 0.5)}, {"b"}, 0.5},
        ScoreRow{"awayDoesNotMakeUpTheSecond", {usage("a", 0.5), usage("away", 5)}, {}, std::nullopt},
        ScoreRow{"nothingDistracts", {usage("a", 90)}, {}, 1.0},
        ScoreRow{"everythingDistracts", {usage("a", 90), usage("site:x.org", 7)}, {"a", "site:x.org"}, 0.0},
        ScoreRow{
            "sitesCountByTheirIdentifier", {usage("a", 75), usage("site:x.org", 25)}, {"site:x.org"}, 0.75},
        ScoreRow{"aSiteIsNotItsBareDomain", {usage("site:x.org", 25)}, {"x.org"}, 1.0},
        ScoreRow{"moreLostThanThereWas", {usage("a", -10), usage("b", 100)}, {"b"}, 0.0},
        ScoreRow{"lessThanNothingLost", {usage("a", 100), usage("b", -10)}, {"b"}, 1.0},
        ScoreRow{"beyondAllMeasure", {usage("a", 1e308), usage("b", 1e308)}, {"b"}, std::nullopt},
        ScoreRow{"lostBeyondAllMeasure", {usage("a", 1e308), usage("b", 1e308)}, {"a", "b"}, std::nullopt},
        ScoreRow{"infinite", {usage("a", std::numeric_limits<double>::infinity())}, {}, std::nullopt},
        ScoreRow{"theMostThatAddsUp", {usage("a", 8e307), usage("b", 8e307)}, {"b"}, 0.5},
        ScoreRow{"notANumber", {usage("a", std::numeric_limits<double>::quiet_NaN())}, {}, std::nullopt}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(FocusScore, IsNotRounded) {
    const std::vector<AppUsage> apps{usage("a", 2), usage("b", 1)};
    EXPECT_EQ(FocusScore::compute(apps, {"b"}), 1.0 - 1.0 / 3.0);
}

} // namespace
} // namespace selvane
