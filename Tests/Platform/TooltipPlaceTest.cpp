#include "Selvane/Platform/Linux/TooltipPlace.h"

#include "Selvane/Platform/Monitor.h"
#include "Support/ScreenPrinters.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

/// Two screens side by side, and one below the first.
constexpr ScreenRect first{0, 0, 1280, 800};
constexpr ScreenRect right{1280, 0, 2560, 1600};
constexpr ScreenRect lower{0, 800, 1280, 800};

struct CornerRow {
    const char* name;
    ScreenRect item;
    ScreenRect monitor;
    ScreenPoint corner;
};

class TooltipPlaceTable : public testing::TestWithParam<CornerRow> {};

TEST_P(TooltipPlaceTable, StandsBesideTheItemOnItsMonitor) {
    EXPECT_EQ(tooltipCorner(GetParam().item, 100, 20, GetParam().monitor), GetParam().corner);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TooltipPlaceTable,
    testing::Values(CornerRow{"UnderAnItemAtTheTop", {600, 2, 24, 24}, first, {562, 30}},
                    CornerRow{"OverAnItemAtTheBottom", {600, 774, 24, 24}, first, {562, 750}},
                    CornerRow{"OverTheBottomOfTheUpperScreen", {1200, 774, 24, 24}, first, {1162, 750}},
                    CornerRow{"UnderTheTopOfTheLowerScreen", {600, 802, 24, 24}, lower, {562, 830}},
                    CornerRow{"EndsWithTheLeftScreen", {1250, 2, 24, 24}, first, {1180, 30}},
                    CornerRow{"BeginsWithTheRightScreen", {1282, 2, 24, 24}, right, {1280, 30}},
                    CornerRow{"EndsWithTheRightScreen", {3810, 2, 24, 24}, right, {3740, 30}},
                    CornerRow{"BeginningOfWhatIsTooWide", {8, 2, 24, 24}, {0, 0, 60, 800}, {0, 30}}),
    [](const auto& row) { return row.param.name; });

TEST(Monitor, ItsPixelsCountFromItsCorner) {
    const Monitor sharp = Monitor::ofUnits({1280, 100, 1280, 800}, 2);
    EXPECT_EQ(sharp, (Monitor{{1280, 100, 2560, 1600}, 2}));
    EXPECT_TRUE(sharp.contains({1280 + 2559, 100 + 1599}));
    EXPECT_FALSE(sharp.contains({1280 + 2560, 100}));
    EXPECT_FALSE(sharp.contains({1280, 99}));
    EXPECT_EQ(Monitor::ofUnits({0, 0, 1093, 614}, 1.25).pixels, (ScreenRect{0, 0, 1366, 768}));
}

TEST(Monitor, HoldsWhatHasItsMiddleOnIt) {
    const Monitor monitor{right, 1};
    EXPECT_TRUE(monitor.holds({1280 - 12, 0, 24, 24}));
    EXPECT_FALSE(monitor.holds({1280 - 13, 0, 24, 24}));
}

} // namespace
} // namespace selvane
