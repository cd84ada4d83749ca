#include "SelvaneCore/AppUsageOrder.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace selvane {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

AppUsage usage(std::string name, double seconds) {
    return {"id", std::move(name), Seconds{seconds}};
}

enum class Rank { before, alike };

struct RankRow {
    const char* name;
    AppUsage left;
    AppUsage right;
    Rank rank;
};

class RankTable : public testing::TestWithParam<RankRow> {};

TEST_P(RankTable, RanksInOneDirection) {
    const RankRow& row = GetParam();
    EXPECT_EQ(ranksBefore(row.left, row.right), row.rank == Rank::before);
    EXPECT_FALSE(ranksBefore(row.right, row.left));
}

INSTANTIATE_TEST_SUITE_P(
    AppUsageOrder, RankTable,
    testing::Values(RankRow{"moreSecondsFirst", usage("z", 2), usage("a", 1), Rank::before},
                    RankRow{"aFractionMore", usage("z", 1.000001), usage("a", 1), Rank::before},
                    RankRow{"equalSecondsByName", usage("a", 1), usage("b", 1), Rank::before},
                    RankRow{"upperCaseFirst", usage("Z", 1), usage("a", 1), Rank::before},
                    RankRow{"theShorterNameFirst", usage("a", 1), usage("ab", 1), Rank::before},
                    RankRow{"asciiBeforeOtherLetters", usage("z", 1), usage("\u00e9", 1), Rank::before},
                    // Decomposed, it would begin with an "e" and come first.
                    RankRow{"namesInComposedForm", usage("z", 1), usage("e\u0301", 1), Rank::before},
                    // In UTF-16 the surrogates would come first.
                    RankRow{"namesByScalarValues", usage("\uff5e", 1), usage("\U0001F600", 1), Rank::before},
                    RankRow{"equalNamesRankAlike", usage("a", 1), usage("a", 1), Rank::alike},
                    RankRow{"oneNameInTwoForms", usage("caf\u00e9", 1), usage("cafe\u0301", 1), Rank::alike},
                    RankRow{"zerosRankAlike", usage("a", 0.0), usage("a", -0.0), Rank::alike},
                    RankRow{"infiniteFirst", usage("z", infinity), usage("a", 1e300), Rank::before},
                    RankRow{"negativeLast", usage("z", 0), usage("a", -1), Rank::before},
                    RankRow{"notANumberFirst", usage("z", notANumber), usage("a", infinity), Rank::before},
                    RankRow{"notANumberWithAMinusLast", usage("z", -infinity), usage("a", -notANumber),
                            Rank::before}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(AppUsageOrder, TheIdentifierPlaysNoPart) {
    EXPECT_FALSE(ranksBefore({"a", "Name", Seconds{1}}, {"b", "Name", Seconds{1}}));
    EXPECT_FALSE(ranksBefore({"b", "Name", Seconds{1}}, {"a", "Name", Seconds{1}}));
}

// What sorting asks of an order, for all triples of awkward entries.
TEST(AppUsageOrder, IsAStrictWeakOrder) {
    std::vector<AppUsage> all;
    for (const double seconds : {-infinity, -1.0, -0.0, 0.0, 1.0, 1e300, infinity, notANumber, -notANumber}) {
        for (const char* const name : {"", "a", "B", "caf\u00e9", "cafe\u0301", "\xff"})
            all.push_back(usage(name, seconds));
    }
    const auto alike = [](const AppUsage& a, const AppUsage& b) {
        return !ranksBefore(a, b) && !ranksBefore(b, a);
    };
    for (const AppUsage& a : all) {
        ASSERT_FALSE(ranksBefore(a, a));
        for (const AppUsage& b : all) {
            ASSERT_FALSE(ranksBefore(a, b) && ranksBefore(b, a));
            for (const AppUsage& c : all) {
                if (ranksBefore(a, b) && ranksBefore(b, c)) {
                    ASSERT_TRUE(ranksBefore(a, c));
                }
                if (alike(a, b) && alike(b, c)) {
                    ASSERT_TRUE(alike(a, c));
                }
            }
        }
    }
}

} // namespace
} // namespace selvane
