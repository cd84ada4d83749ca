#pragma once

#include <QImage>
#include <QRect>

#include <string>

namespace selvane::test {

/// How far a picture is from the one that was kept.
///
/// Both are cut into tiles, and a tile's difference is the mean over its pixels of the largest difference of
/// a channel, from 0 to 255. One differing tile makes the pictures differ, so that a small thing counts as
/// much in a large picture as in a small one. What rounding does to the edge of a curve or to a shade is too
/// little in each pixel to be counted.
struct PictureDifference {
    /// The length of a tile's sides in points.
    static constexpr int tileSize = 12;
    /// The greatest difference of a pixel that isn't counted.
    static constexpr int rounding = 4;
    /// The greatest difference of a tile that still passes.
    static constexpr double limit = 0.6;

    /// Compares two pictures. `scale` is how many of their pixels make a point.
    PictureDifference(const QImage& kept, const QImage& actual, int scale);

    [[nodiscard]] bool passes() const { return isSameSize && worst <= limit; }
    /// What is wrong, for the one who reads the test's log.
    [[nodiscard]] std::string text() const;
    /// The kept picture, faint, with everything that differs in red.
    [[nodiscard]] QImage picture() const;

    bool isSameSize;
    /// The difference of the tile that differs most, and where it lies, in pixels.
    double worst = 0;
    QRect worstTile;

private:
    QImage _kept;
    QImage _actual;
};

} // namespace selvane::test
