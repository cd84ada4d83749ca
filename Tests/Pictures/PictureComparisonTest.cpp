#include "PictureComparison.h"

#include <QPainter>

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

/// A page with a line of small faint text on it, the least that a view shows.
QImage page(QPointF offset = {}, double opacity = 0.5) {
    QImage image(348, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QFont font;
    font.setPixelSize(11);
    painter.setFont(font);
    painter.setPen(QColor::fromRgbF(0, 0, 0, static_cast<float>(opacity)));
    painter.drawText(QPointF(100, 90) + offset, QStringLiteral("Ends before Design review"));
    return image;
}

/// The page with every pixel that is neither black nor white off by `amount`, up and down in turn.
QImage unsteadyPage(int amount) {
    QImage image = page();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(image.pixel(x, y));
            const int other = std::clamp(grey + ((x + y) % 2 == 0 ? amount : -amount), 0, 255);
            if (grey > 0 && grey < 255)
                image.setPixel(x, y, qRgb(other, other, other));
        }
    }
    return image;
}

bool passes(const QImage& actual) {
    return PictureDifference(page(), actual, 1).passes();
}

TEST(PictureComparisonTest, SamePicturePasses) {
    EXPECT_TRUE(passes(page()));
}

TEST(PictureComparisonTest, EdgesThatAreRoundedOtherwisePass) {
    EXPECT_TRUE(passes(unsteadyPage(PictureDifference::rounding)));
}

TEST(PictureComparisonTest, TextThatMovedByOnePixelFails) {
    EXPECT_FALSE(passes(page({1, 0})));
    EXPECT_FALSE(passes(page({0, 1})));
}

TEST(PictureComparisonTest, TextThatIsFainterByATenthFails) {
    EXPECT_FALSE(passes(page({}, 0.4)));
    EXPECT_FALSE(passes(page({}, 0.6)));
}

TEST(PictureComparisonTest, OneDotTooManyFails) {
    QImage actual = page();
    for (const QPoint dot : {QPoint(20, 20), QPoint(21, 20), QPoint(20, 21), QPoint(21, 21)})
        actual.setPixel(dot, qRgb(60, 60, 60));
    EXPECT_FALSE(passes(actual));
}

TEST(PictureComparisonTest, DotInTheLastCornerFails) {
    QImage actual = page();
    for (const int x : {345, 346, 347})
        actual.setPixel(x, 199, qRgb(60, 60, 60));
    EXPECT_FALSE(passes(actual));
}

TEST(PictureComparisonTest, OtherColourOfTheSameLightnessFails) {
    QImage actual = page();
    actual.fill(qRgb(255, 255, 240));
    QImage kept = page();
    kept.fill(Qt::white);
    EXPECT_FALSE(PictureDifference(kept, actual, 1).passes());
}

TEST(PictureComparisonTest, OtherSizeFailsAndSaysSo) {
    const PictureDifference difference(page(), page().copy(0, 0, 347, 200), 1);
    EXPECT_FALSE(difference.passes());
    EXPECT_EQ(difference.text(), "is 347 by 200 pixels instead of 348 by 200");
}

TEST(PictureComparisonTest, TellsWhereItDiffersMost) {
    QImage actual = page();
    for (int step = 0; step < 4; ++step)
        actual.setPixel(300 + step, 150, qRgb(0, 0, 0));
    const PictureDifference difference(page(), actual, 1);
    EXPECT_TRUE(difference.worstTile.contains(301, 150));
    EXPECT_EQ(difference.picture().pixel(301, 150), qRgb(220, 0, 0));
    EXPECT_EQ(difference.picture().pixel(10, 10), qRgb(255, 255, 255));
}

} // namespace
} // namespace selvane::test
