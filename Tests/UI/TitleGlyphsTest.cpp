#include "Selvane/UI/TitleGlyphs.h"

#include <QFont>
#include <QGuiApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>

namespace selvane {

class TitleGlyphsPeer {
public:
    static int fontSearches(const TitleGlyphs& glyphs) { return glyphs._fontSearches; }
};

namespace {

/// The rows that have ink, from the first to the last.
struct Rows {
    int first;
    int last;
};

Rows inkedRows(const Picture& picture) {
    Rows rows{picture.height, -1};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            if (picture.argb[static_cast<std::size_t>(y * picture.width + x)] >> 24 < 128)
                continue;
            rows.first = std::min(rows.first, y);
            rows.last = std::max(rows.last, y);
        }
    }
    return rows;
}

TEST(TitleGlyphs, AllDigitsAreEquallyWide) {
    const TitleGlyphs glyphs;
    for (const int height : {16, 22, 24, 48})
        EXPECT_EQ(glyphs.width("11:11", height), glyphs.width("20:48", height)) << height;
    EXPECT_GT(glyphs.width("1:00:00", 22), glyphs.width("10:00", 22));
    EXPECT_GT(glyphs.width(" 10:00", 22), glyphs.width("10:00", 22));
}

TEST(TitleGlyphs, PictureHasTheWidthThatWasTold) {
    const TitleGlyphs glyphs;
    const Picture picture = glyphs.draw("24:59", 22, Ink::dark);
    EXPECT_EQ(picture.width, glyphs.width("24:59", 22));
    EXPECT_EQ(picture.height, 22);
    EXPECT_EQ(picture.argb.size(), static_cast<std::size_t>(picture.width) * 22U);
}

TEST(TitleGlyphs, DigitsStandInTheMiddleAndWithinTheHeight) {
    for (const int height : {16, 22, 32, 48}) {
        const Rows rows = inkedRows(TitleGlyphs().draw("00:00", height, Ink::dark));
        ASSERT_LE(rows.first, rows.last) << height;
        const int above = rows.first;
        const int below = height - 1 - rows.last;
        EXPECT_GT(above, 0) << height;
        EXPECT_GT(below, 0) << height;
        // Lifted by half a unit of sixteen, which is a difference of one unit between the two.
        // Text stands on whole pixels, and a round digit reaches a little below its line.
        EXPECT_NEAR(below - above, height / 16.0, 2.1) << height;
    }
}

TEST(TitleGlyphs, ATimeThatCountsIsMeasuredWithTheSameFont) {
    const TitleGlyphs glyphs;
    for (const char* const words : {" 24:59", " 24:58", " 9:57"}) {
        const Picture picture = glyphs.draw(words, 22, Ink::dark);
        EXPECT_EQ(picture.width, glyphs.width(words, 22)) << words;
    }
    EXPECT_EQ(TitleGlyphsPeer::fontSearches(glyphs), 1);
    EXPECT_GT(glyphs.width(" 24:59", 44), glyphs.width(" 24:59", 22));
}

TEST(TitleGlyphs, AnotherFontOfTheApplicationIsUsedAtOnce) {
    const TitleGlyphs glyphs;
    const QFont before = QGuiApplication::font();
    const int width = glyphs.width("24:59", 22);
    QFont wide = before;
    wide.setStretch(2 * QFont::Unstretched);
    QGuiApplication::setFont(wide);
    EXPECT_GT(glyphs.width("24:59", 22), width * 3 / 2);
    QGuiApplication::setFont(before);
    EXPECT_EQ(glyphs.width("24:59", 22), width);
}

TEST(TitleGlyphs, InkColorsEveryPixel) {
    for (const std::uint32_t pixel : TitleGlyphs().draw("0:59", 22, Ink::light).argb)
        EXPECT_EQ(pixel & 0xffffffU, 0xffffffU);
    for (const std::uint32_t pixel : TitleGlyphs().draw("0:59", 22, Ink::dark).argb)
        EXPECT_EQ(pixel & 0xffffffU, 0x1c1c1eU);
}

TEST(TitleGlyphs, NothingHasNoPicture) {
    EXPECT_EQ(TitleGlyphs().width("", 22), 0);
    EXPECT_TRUE(TitleGlyphs().draw("", 22, Ink::dark).argb.empty());
    EXPECT_TRUE(TitleGlyphs().draw("0:59", 0, Ink::dark).argb.empty());
}

} // namespace
} // namespace selvane
