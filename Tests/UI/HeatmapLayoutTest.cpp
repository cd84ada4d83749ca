#include "Selvane/UI/Progress/HeatmapLayout.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

/// As the popover has it, and as the window has it.
const HeatmapLayout small{.weeks = 18, .cell = 12, .gap = 4, .offeredWidth = 316};
const HeatmapLayout large{.weeks = 53, .cell = 9, .gap = 2.5, .offeredWidth = 660};

TEST(HeatmapLayout, FillsTheOfferedWidthWhereTheLabelsAllow) {
    EXPECT_EQ(small.contentSize(), QSizeF(316, 126));
    EXPECT_EQ(small.square(17 * 7, 316).right(), 316);
    EXPECT_EQ(small.gridOrigin(316), QPointF(32, 18));
}

TEST(HeatmapLayout, LeavesWhatItCannotFillAtTheEnd) {
    EXPECT_EQ(large.left(660), 0);
    EXPECT_LT(large.contentSize().width(), 660);
    EXPECT_EQ(large.gridOrigin(660).x(), large.weekdayWidth() + 5);
}

TEST(HeatmapLayout, WeekdaysDoNotDriftAwayFromTheirSquares) {
    EXPECT_EQ(large.weekdayWidth(), small.weekdayWidth()) << "however much is left";
}

TEST(HeatmapLayout, WeekdaysFitIntoThirtyPixelsWithTheirSpaceWhereNoMoreIsLeft) {
    const double squares = 53 * 9 + 52 * 2.5;
    const HeatmapLayout tight{.weeks = 53, .cell = 9, .gap = 2.5, .offeredWidth = squares + 30};
    EXPECT_EQ(tight.weekdayWidth(), 25);
    EXPECT_EQ(tight.contentSize().width(), tight.offeredWidth);
}

TEST(HeatmapLayout, StandsAtTheEndWithoutAnOffer) {
    HeatmapLayout free = small;
    free.offeredWidth = 0;
    const double width = free.contentSize().width();
    EXPECT_EQ(free.left(width + 50), 50);
    EXPECT_EQ(free.square(17 * 7, width + 50).right(), width + 50);
    EXPECT_EQ(free.left(width - 50), 0);
}

TEST(HeatmapLayout, ColumnsAreWeeksAndRowsDays) {
    EXPECT_EQ(small.square(0, 316), QRectF(32, 18, 12, 12));
    EXPECT_EQ(small.square(6, 316), QRectF(32, 18 + 6 * 16, 12, 12));
    EXPECT_EQ(small.square(7, 316), QRectF(48, 18, 12, 12));
}

TEST(HeatmapLayout, EveryPointOfASquareBelongsToItsDay) {
    for (int offset = 0; offset < 18 * 7; ++offset) {
        const QRectF square = small.square(offset, 316);
        EXPECT_EQ(small.offsetAt(square.center(), 316), offset);
        EXPECT_EQ(small.offsetAt(square.topLeft(), 316), offset);
        EXPECT_EQ(small.offsetAt(square.bottomRight(), 316), offset);
    }
}

TEST(HeatmapLayout, GapBelongsToTheNearerDay) {
    const QRectF square = small.square(8, 316);
    EXPECT_EQ(small.offsetAt({square.right() + 1.9, square.center().y()}, 316), 8);
    EXPECT_EQ(small.offsetAt({square.right() + 2.1, square.center().y()}, 316), 15);
}

TEST(HeatmapLayout, NoDayLiesBeyondTheSquares) {
    EXPECT_FALSE(small.offsetAt({10, 60}, 316)) << "on the weekdays";
    EXPECT_FALSE(small.offsetAt({100, 5}, 316)) << "on the months";
    EXPECT_FALSE(small.offsetAt({400, 60}, 316));
    EXPECT_FALSE(small.offsetAt({100, 130}, 316));
    EXPECT_FALSE(HeatmapLayout{}.offsetAt({30, 20}, 316)) << "without weeks";
}

} // namespace
} // namespace selvane
