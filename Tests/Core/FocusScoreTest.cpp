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

AppUsage timeIn(std::string id, double seconds) {
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
                 {timeIn("a", 100), timeIn("away", 300), timeIn("b", 100)},
                 {"b"},
                 0.5},
        ScoreRow{"nothing", {}, {"b"}, std::nullopt},
        ScoreRow{"onlyAway", {timeIn("away", 300)}, {}, std::nullopt},
        ScoreRow{"awayIsNoDistraction", {timeIn("away", 300), timeIn("a", 10)}, {"away"}, 1.0},
        ScoreRow{"lessThanASecond", {timeIn("a", 0.5)}, {}, std::nullopt},
        ScoreRow{"partsOfASecondAddUp", {timeIn("a", 0.5), timeIn("b", 0.5)}, {"b"}, 0.5},
        ScoreRow{"awayDoesNotMakeUpTheSecond", {timeIn("a", 0.5), timeIn("away", 5)}, {}, std::nullopt},
        ScoreRow{"nothingDistracts", {timeIn("a", 90)}, {}, 1.0},
        ScoreRow{"everythingDistracts", {timeIn("a", 90), timeIn("site:x.org", 7)}, {"a", "site:x.org"}, 0.0},
        ScoreRow{
            "sitesCountByTheirIdentifier", {timeIn("a", 75), timeIn("site:x.org", 25)}, {"site:x.org"}, 0.75},
        ScoreRow{"aSiteIsNotItsBareDomain", {timeIn("site:x.org", 25)}, {"x.org"}, 1.0},
        ScoreRow{"moreLostThanThereWas", {timeIn("a", -10), timeIn("b", 100)}, {"b"}, 0.0},
        ScoreRow{"lessThanNothingLost", {timeIn("a", 100), timeIn("b", -10)}, {"b"}, 1.0},
        ScoreRow{"beyondAllMeasure", {timeIn("a", 1e308), timeIn("b", 1e308)}, {"b"}, std::nullopt},
        ScoreRow{"lostBeyondAllMeasure", {timeIn("a", 1e308), timeIn("b", 1e308)}, {"a", "b"}, std::nullopt},
        ScoreRow{"infinite", {timeIn("a", std::numeric_limits<double>::infinity())}, {}, std::nullopt},
        ScoreRow{"theMostThatAddsUp", {timeIn("a", 8e307), timeIn("b", 8e307)}, {"b"}, 0.5},
        ScoreRow{"notANumber", {timeIn("a", std::numeric_limits<double>::quiet_NaN())}, {}, std::nullopt}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(FocusScore, IsNotRounded) {
    const std::vector<AppUsage> apps{timeIn("a", 2), timeIn("b", 1)};
    EXPECT_EQ(FocusScore::compute(apps, {"b"}), 1.0 - 1.0 / 3.0);
}

} // namespace
} // namespace selvane
