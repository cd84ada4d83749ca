#include "Selvane/Platform/Linux/Struts.h"

#include "Support/ScreenPrinters.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace selvane {
namespace {

using Edge = Strut::Edge;

/// A screen of 3840 by 1600: a small monitor at its upper left, a larger one beside it.
constexpr ScreenRect small{0, 0, 1280, 800};
constexpr ScreenRect large{1280, 0, 2560, 1600};

struct StrutRow {
    const char* name;
    std::vector<Strut> struts;
    ScreenRect ofSmall;
    ScreenRect ofLarge;
};

class StrutsTable : public testing::TestWithParam<StrutRow> {};

TEST_P(StrutsTable, LeavesWhatNoBarTakes) {
    EXPECT_EQ(withoutStruts(small, GetParam().struts, 3840, 1600), GetParam().ofSmall);
    EXPECT_EQ(withoutStruts(large, GetParam().struts, 3840, 1600), GetParam().ofLarge);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, StrutsTable,
    testing::Values(
        StrutRow{"NoBar", {}, small, large},
        StrutRow{"TopOfTheSmall", {{Edge::top, 28, 0, 1279}}, {0, 28, 1280, 772}, large},
        StrutRow{"TopOfTheLarge", {{Edge::top, 56, 1280, 3839}}, small, {1280, 56, 2560, 1544}},
        StrutRow{"TopOfBoth", {{Edge::top, 28, 0, 3839}}, {0, 28, 1280, 772}, {1280, 28, 2560, 1572}},
        StrutRow{
            "BottomOfTheSmallCountsFromTheScreen", {{Edge::bottom, 828, 0, 1279}}, {0, 0, 1280, 772}, large},
        StrutRow{"BottomOfTheLarge", {{Edge::bottom, 56, 1280, 3839}}, small, {1280, 0, 2560, 1544}},
        StrutRow{"LeftOfTheSmall", {{Edge::left, 28, 0, 799}}, {28, 0, 1252, 800}, large},
        StrutRow{"RightOfTheLarge", {{Edge::right, 56, 0, 1599}}, small, {1280, 0, 2504, 1600}},
        StrutRow{"BetweenTheTwo", {{Edge::left, 1336, 0, 1599}}, small, {1336, 0, 2504, 1600}},
        StrutRow{"TwoBarsAtOneEdge",
                 {{Edge::top, 28, 0, 1279}, {Edge::top, 40, 0, 1279}},
                 {0, 40, 1280, 760},
                 large},
        StrutRow{"OneAtEachEnd",
                 {{Edge::top, 28, 0, 1279}, {Edge::bottom, 830, 0, 1279}},
                 {0, 28, 1280, 742},
                 large},
        StrutRow{"AllOfAMonitor", {{Edge::top, 800, 0, 1279}}, small, large}),
    [](const auto& row) { return row.param.name; });

struct Dock {
    const char* name;
    ScreenRect dock;
    ScreenRect ofSmall;
    ScreenRect ofLarge;
};

class DocksTable : public testing::TestWithParam<Dock> {};

TEST_P(DocksTable, TakeTheirRoomWithoutTelling) {
    const std::array docks{GetParam().dock};
    EXPECT_EQ(withoutDocks(small, small, docks), GetParam().ofSmall);
    EXPECT_EQ(withoutDocks(large, large, docks), GetParam().ofLarge);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, DocksTable,
    testing::Values(Dock{"BottomOfTheSmall", {0, 772, 1280, 28}, {0, 0, 1280, 772}, large},
                    Dock{"APixelAboveIt", {0, 771, 1280, 28}, {0, 0, 1280, 771}, large},
                    Dock{"TopOfTheSmall", {1080, 0, 200, 28}, {0, 28, 1280, 772}, large},
                    Dock{"RightOfTheSmall", {1252, 0, 28, 800}, {0, 0, 1252, 800}, large},
                    Dock{"LeftOfTheLarge", {1280, 0, 56, 1600}, small, {1336, 0, 2504, 1600}},
                    Dock{"TopOfBoth", {0, 0, 3840, 28}, {0, 28, 1280, 772}, {1280, 28, 2560, 1572}},
                    Dock{"InTheMiddle", {0, 400, 1280, 28}, small, large},
                    Dock{"TooDeep", {0, 599, 1280, 201}, small, large},
                    Dock{"SmallOneInACorner", {980, 0, 300, 100}, small, large},
                    Dock{"SmallOneAtTheSide", {3720, 100, 120, 300}, small, large},
                    Dock{"AQuarterOfTheEdge", {960, 0, 320, 100}, {0, 100, 1280, 700}, large},
                    Dock{"SmallTrayOfASharpMonitor", {3600, 0, 240, 100}, small, {1280, 100, 2560, 1500}},
                    Dock{"Hidden", {0, 799, 1280, 1}, {0, 0, 1280, 799}, large},
                    Dock{"BelowTheSmall", {0, 800, 1280, 28}, small, large}),
    [](const auto& row) { return row.param.name; });

TEST(Docks, TakeFromWhatTheStrutsLeft) {
    const std::array docks{ScreenRect{0, 0, 1280, 28}, ScreenRect{0, 760, 1280, 40}};
    EXPECT_EQ(withoutDocks({0, 28, 1280, 772}, small, docks), (ScreenRect{0, 28, 1280, 732}))
        << "what has told of itself counts once";
}

TEST(Struts, PropertyHoldsDepthsAndThenEnds) {
    constexpr std::array<std::uint32_t, 12> values{1, 2, 3, 4, 11, 12, 21, 22, 31, 32, 41, 42};
    const auto struts = strutsOf(values);
    ASSERT_TRUE(struts);
    EXPECT_THAT(*struts, testing::ElementsAre(Strut{Edge::left, 1, 11, 12}, Strut{Edge::right, 2, 21, 22},
                                              Strut{Edge::top, 3, 31, 32}, Strut{Edge::bottom, 4, 41, 42}));
}

TEST(Struts, OtherValuesAreNone) {
    EXPECT_FALSE(strutsOf({}));
    EXPECT_FALSE(strutsOf(std::array<std::uint32_t, 4>{1, 2, 3, 4}));
    EXPECT_FALSE(strutsOf(std::array<std::uint32_t, 12>{0, 0, 0xffffffff})) << "more than any screen has";
}

} // namespace
} // namespace selvane
