#include "Selvane/UI/PanelPlacement.h"

#include "Support/ScreenPrinters.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

struct PlacementRow {
    const char* name;
    StatusItemAnchor anchor;
    ScreenRect available;
    ScreenPoint origin;
};

class PanelPlacementTable : public testing::TestWithParam<PlacementRow> {};

TEST_P(PanelPlacementTable, KeepsThePanelBesideItsItemAndOnTheScreen) {
    EXPECT_EQ(PanelPlacement::origin(GetParam().anchor, 348, 220, GetParam().available), GetParam().origin);
}

/// A screen of 1280 by 800 with a dock of 24 at the top, at the bottom or nowhere.
constexpr ScreenRect belowTopBar{0, 24, 1280, 776};
constexpr ScreenRect aboveTaskBar{0, 0, 1280, 776};
constexpr ScreenRect secondScreen{1280, 24, 1920, 1056};
constexpr ScreenRect narrow{0, 0, 300, 800};

StatusItemAnchor icon(int x, int y) {
    return {ScreenRect{x, y, 24, 24}, std::nullopt};
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PanelPlacementTable,
    testing::Values(
        PlacementRow{"UnderTheItemOfATopBar", icon(600, 0), belowTopBar, {438, 30}},
        PlacementRow{"OverTheItemOfATaskBar", icon(600, 776), aboveTaskBar, {438, 550}},
        PlacementRow{"EightFromTheRightEdge", icon(1250, 0), belowTopBar, {924, 30}},
        PlacementRow{"EightFromTheLeftEdge", icon(2, 0), belowTopBar, {8, 30}},
        PlacementRow{"OnTheScreenOfTheItem", icon(1290, 0), secondScreen, {1288, 30}},
        PlacementRow{"RightBoundWinsOnANarrowScreen", icon(100, 0), narrow, {-56, 30}},
        PlacementRow{"UnderThePointer", {std::nullopt, ScreenPoint{700, 10}}, belowTopBar, {526, 30}},
        PlacementRow{"OverThePointer", {std::nullopt, ScreenPoint{700, 790}}, aboveTaskBar, {526, 550}},
        PlacementRow{
            "IconBeforePointer", {ScreenRect{600, 0, 24, 24}, ScreenPoint{9, 9}}, belowTopBar, {438, 30}},
        PlacementRow{"TopRightWithoutAnchor", {}, belowTopBar, {924, 30}},
        PlacementRow{
            "HalvesAwayFromZero", {ScreenRect{601, 0, 23, 24}, std::nullopt}, belowTopBar, {439, 30}}),
    [](const auto& row) { return row.param.name; });

struct Bar {
    const char* name;
    ScreenRect available;
    ScreenPoint origin;
};

class PanelPlacementByBars : public testing::TestWithParam<Bar> {};

TEST_P(PanelPlacementByBars, PanelWithoutAnItemStandsAtTheEndOfTheBar) {
    constexpr ScreenRect whole{100, 0, 1280, 800};
    const ScreenRect& available = GetParam().available;
    EXPECT_EQ(PanelPlacement::origin(PanelPlacement::endOfBar(whole, available), 348, 220, available),
              GetParam().origin);
}

INSTANTIATE_TEST_SUITE_P(Rows, PanelPlacementByBars,
                         testing::Values(Bar{"NoBar", {100, 0, 1280, 800}, {1024, 6}},
                                         Bar{"Top", {100, 28, 1280, 772}, {1024, 34}},
                                         Bar{"Bottom", {100, 0, 1280, 772}, {1024, 546}},
                                         Bar{"Left", {128, 0, 1252, 800}, {136, 574}},
                                         Bar{"Right", {100, 0, 1252, 800}, {996, 574}},
                                         Bar{"TopAndBottom", {100, 28, 1280, 744}, {1024, 34}},
                                         Bar{"BottomAndLeft", {128, 0, 1252, 772}, {1024, 546}},
                                         Bar{"BothSides", {128, 0, 1224, 800}, {996, 574}}),
                         [](const auto& row) { return row.param.name; });

constexpr Monitor sharpSecond{{1280, 100, 3840, 2160}, 2.0};

TEST(PanelPlacement, PixelsAreScaledFromTheCornerOfTheScreen) {
    const StatusItemAnchor pixels{ScreenRect{1280 + 400, 100, 48, 44}, ScreenPoint{1280 + 401, 100 + 21}};
    const StatusItemAnchor units{ScreenRect{1280 + 200, 100, 24, 22}, ScreenPoint{1280 + 201, 100 + 11}};
    EXPECT_EQ(PanelPlacement::scaled(pixels, sharpSecond), units);
    EXPECT_EQ(PanelPlacement::scaled(StatusItemAnchor{}, sharpSecond), StatusItemAnchor{});
}

TEST(PanelPlacement, ScreenIsChosenByTheMiddleOfTheItem) {
    EXPECT_TRUE(PanelPlacement::isOn(sharpSecond, icon(1280 - 11, 100)));
    EXPECT_FALSE(PanelPlacement::isOn(sharpSecond, icon(1280 - 13, 100)));
    EXPECT_TRUE(PanelPlacement::isOn(sharpSecond, {std::nullopt, ScreenPoint{1280 + 3839, 100 + 2159}}));
    EXPECT_FALSE(PanelPlacement::isOn(sharpSecond, {std::nullopt, ScreenPoint{1280 + 3840, 100}}));
    EXPECT_FALSE(PanelPlacement::isOn(sharpSecond, {}));
}

} // namespace
} // namespace selvane
