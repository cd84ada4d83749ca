#include "Selvane/UI/DialGlyph.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <memory>
#include <vector>

namespace selvane {
namespace {

using Style = DialGlyph::Style;

/// The opacity, 0 to 255, of the pixel at a direction from the middle, told by a clock's minutes.
int opacityAt(const Pixmap& pixmap, double minute) {
    const double angle = minute / 60.0 * 2 * 3.14159265358979;
    const double radius = (16.0 / 2 - 0.5 - 2.6) + 2.6 / 2;
    const double scale = pixmap.side / 16.0;
    const auto x = static_cast<std::size_t>((8 + radius * std::sin(angle)) * scale);
    const auto y = static_cast<std::size_t>((8 - radius * std::cos(angle)) * scale);
    return static_cast<int>(pixmap.argb.at(y * static_cast<std::size_t>(pixmap.side) + x) >> 24);
}

int opacityInTheMiddle(const Pixmap& pixmap) {
    const auto side = static_cast<std::size_t>(pixmap.side);
    return static_cast<int>(pixmap.argb.at(side / 2 * side + side / 2) >> 24);
}

Pixmap draw(const DialGlyph::State& state, Ink ink = Ink::dark) {
    return DialGlyph().image(state)->pixmap(64, ink);
}

TEST(DialGlyph, SameQuantisedValueReturnsTheSameImage) {
    DialGlyph glyph;
    const auto image = glyph.image({0.5, Style::running, false});
    EXPECT_EQ(glyph.image({0.5 + 0.9 / 240, Style::running, false}), image);
    EXPECT_EQ(glyph.image({0.5 - 0.9 / 240, Style::running, false}), image);
    EXPECT_NE(glyph.image({0.5 + 1.1 / 240, Style::running, false}), image);
}

TEST(DialGlyph, StyleAndDotMakeAnotherImage) {
    DialGlyph glyph;
    const auto image = glyph.image({0.5, Style::running, false});
    EXPECT_NE(glyph.image({0.5, Style::onBreak, false}), image);
    EXPECT_NE(glyph.image({0.5, Style::paused, false}), image);
    EXPECT_NE(glyph.image({0.5, Style::running, true}), image);
}

TEST(DialGlyph, ImagesOneStepApartResembleEachOther) {
    DialGlyph glyph;
    constexpr double step = 1.0 / 120;
    for (int number = 0; number <= 118; ++number) {
        const auto image = glyph.image({number * step, Style::running, false});
        const auto next = glyph.image({(number + 1) * step, Style::running, false});
        const auto secondNext = glyph.image({(number + 2) * step, Style::running, false});
        EXPECT_TRUE(image->resembles(*next) && next->resembles(*image)) << number;
        EXPECT_FALSE(image->resembles(*secondNext) || secondNext->resembles(*image)) << number;
    }
    const auto image = glyph.image({0.5, Style::running, false});
    EXPECT_TRUE(image->resembles(*image));
    EXPECT_FALSE(glyph.image({0.5, Style::onBreak, false})->resembles(*image));
    EXPECT_FALSE(glyph.image({0.5, Style::paused, false})->resembles(*image));
    EXPECT_FALSE(glyph.image({0.5, Style::running, true})->resembles(*image));
}

TEST(DialGlyph, ForgetsTheDialsThatNobodyHolds) {
    DialGlyph glyph;
    const auto held = glyph.image({0.5, Style::running, false});
    const std::weak_ptr<const TemplateImage> unused = glyph.image({0.6, Style::running, false});
    ASSERT_FALSE(unused.expired());
    const Pixmap before = held->pixmap(22, Ink::dark);
    glyph.forgetUnused();
    EXPECT_TRUE(unused.expired());
    EXPECT_EQ(glyph.image({0.5, Style::running, false}), held);
    EXPECT_EQ(held->pixmap(22, Ink::dark), before);
}

TEST(DialGlyph, BreakDrawsLikeFocus) {
    EXPECT_EQ(draw({0.4, Style::onBreak, false}), draw({0.4, Style::running, false}));
}

TEST(DialGlyph, ArcRunsClockwiseFromTwelve) {
    const Pixmap pixmap = draw({0.5, Style::running, false});
    EXPECT_EQ(opacityAt(pixmap, 5), 255);
    EXPECT_EQ(opacityAt(pixmap, 15), 255);
    EXPECT_EQ(opacityAt(pixmap, 25), 255);
    EXPECT_NEAR(opacityAt(pixmap, 40), 64, 2) << "the track, a quarter opaque";
    EXPECT_NEAR(opacityAt(pixmap, 50), 64, 2);
}

TEST(DialGlyph, RestingDialIsThreeQuartersOfARingWithoutTrack) {
    const Pixmap pixmap = draw(DialGlyph::resting);
    EXPECT_EQ(opacityAt(pixmap, 10), 255);
    EXPECT_EQ(opacityAt(pixmap, 40), 255);
    EXPECT_EQ(opacityAt(pixmap, 52), 0);
    EXPECT_EQ(opacityInTheMiddle(pixmap), 0);
}

TEST(DialGlyph, WholePhaseShowsAFullRing) {
    const Pixmap pixmap = draw({1.0, Style::running, false});
    for (int minute = 0; minute < 60; ++minute)
        EXPECT_EQ(opacityAt(pixmap, minute), 255) << minute;
}

TEST(DialGlyph, NothingLeftShowsTheTrackAlone) {
    for (const double remaining : {0.0, -0.25}) {
        const Pixmap pixmap = draw({remaining, Style::running, false});
        for (int minute = 0; minute < 60; minute += 5)
            EXPECT_NEAR(opacityAt(pixmap, minute), 64, 2) << remaining << " at " << minute;
    }
}

TEST(DialGlyph, PausedArcIsFainter) {
    const Pixmap pixmap = draw({0.5, Style::paused, false});
    // 0.4 over a track of 0.25.
    EXPECT_NEAR(opacityAt(pixmap, 15), 255 * (0.4 + 0.25 * 0.6), 3);
}

TEST(DialGlyph, DotStandsInTheMiddleWhileDrifting) {
    EXPECT_EQ(opacityInTheMiddle(draw({0.5, Style::running, true})), 255);
    EXPECT_EQ(opacityInTheMiddle(draw({0.5, Style::running, false})), 0);
}

TEST(DialGlyph, StrokeAndDotHaveTheirWidths) {
    // Four pixels to a unit; the row through the middle crosses the ring, the dot and the ring again.
    const Pixmap pixmap = draw({1.0, Style::running, true});
    std::vector<double> runs(1, 0.0);
    for (std::size_t x = 0; x < 64; ++x) {
        const double coverage = (pixmap.argb.at(32 * 64 + x) >> 24) / 255.0;
        if (coverage > 0)
            runs.back() += coverage / 4;
        else if (runs.back() > 0)
            runs.push_back(0);
    }
    ASSERT_EQ(runs.size(), 4U);
    EXPECT_NEAR(runs[0], 2.6, 0.1);
    EXPECT_NEAR(runs[1], 4.5, 0.1);
    EXPECT_NEAR(runs[2], 2.6, 0.1);
}

TEST(DialGlyph, ArcEndsAreRound) {
    // Half the stroke, 1.3 of the circle's 39 units or two minutes, lies beyond the end of the arc, where the
    // track alone would be a quarter opaque.
    const Pixmap pixmap = draw({0.5, Style::running, false});
    EXPECT_EQ(opacityAt(pixmap, 31), 255);
    EXPECT_EQ(opacityAt(pixmap, 59), 255);
    EXPECT_NEAR(opacityAt(pixmap, 33), 64, 2);
}

TEST(DialGlyph, InkColorsEveryPixel) {
    for (const std::uint32_t pixel : draw({0.5, Style::running, true}, Ink::light).argb)
        EXPECT_EQ(pixel & 0xffffffU, 0xffffffU);
    for (const std::uint32_t pixel : draw({0.5, Style::running, true}, Ink::dark).argb)
        EXPECT_EQ(pixel & 0xffffffU, 0x1c1c1eU);
}

TEST(DialGlyph, DrawsAtEverySizeAndToTheEdgeOfNone) {
    const auto image = DialGlyph().image({0.7, Style::running, true});
    for (const int side : {16, 22, 24, 32, 48, 64}) {
        const Pixmap pixmap = image->pixmap(side, Ink::dark);
        ASSERT_EQ(pixmap.side, side);
        ASSERT_EQ(pixmap.argb.size(), static_cast<std::size_t>(side) * static_cast<std::size_t>(side));
        EXPECT_EQ(pixmap.argb.front() >> 24, 0U) << side;
        EXPECT_EQ(pixmap.argb.back() >> 24, 0U) << side;
    }
    EXPECT_TRUE(image->pixmap(0, Ink::dark).argb.empty());
}

// A dial is drawn several times a minute while a phase runs, and each thread that helps is woken for it. The
// threads that help stay for a while, so that only a process in which nothing else was drawn shows new ones.
TEST(DialGlyphDeathTest, ADialThatMovesIsDrawnInOneThread) {
    const auto threads = [] {
        return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
    };
    const auto drawAndExit = [&] {
        const auto before = threads();
        for (const Style style : {Style::running, Style::onBreak})
            draw({0.5, style, true});
        std::_Exit(threads() == before ? 0 : 1);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(drawAndExit(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace selvane
