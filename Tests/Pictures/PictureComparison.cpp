#include "PictureComparison.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace selvane::test {

namespace {

int differenceOf(QRgb left, QRgb right) {
    const int difference =
        std::max({std::abs(qRed(left) - qRed(right)), std::abs(qGreen(left) - qGreen(right)),
                  std::abs(qBlue(left) - qBlue(right))});
    return difference > PictureDifference::rounding ? difference : 0;
}

double meanDifference(const QImage& left, const QImage& right, const QRect& tile) {
    qint64 sum = 0;
    for (int y = tile.top(); y <= tile.bottom(); ++y) {
        const auto* const leftRow = reinterpret_cast<const QRgb*>(left.constScanLine(y));
        const auto* const rightRow = reinterpret_cast<const QRgb*>(right.constScanLine(y));
        for (int x = tile.left(); x <= tile.right(); ++x) {
            if (leftRow[x] != rightRow[x])
                sum += differenceOf(leftRow[x], rightRow[x]);
        }
    }
    return static_cast<double>(sum) / (tile.width() * tile.height());
}

} // namespace

PictureDifference::PictureDifference(const QImage& kept, const QImage& actual, int scale)
    : isSameSize(kept.size() == actual.size()),
      _kept(kept.convertToFormat(QImage::Format_RGB32)),
      _actual(actual.convertToFormat(QImage::Format_RGB32)) {
    if (!isSameSize)
        return;
    const int side = tileSize * scale;
    // Tiles overlap by half, so that nothing is divided among neighbours in all of them.
    for (int y = 0; y < _kept.height(); y += side / 2) {
        for (int x = 0; x < _kept.width(); x += side / 2) {
            const QRect tile = QRect(std::min(x, std::max(0, _kept.width() - side)),
                                     std::min(y, std::max(0, _kept.height() - side)), side, side)
                                   .intersected(_kept.rect());
            const double difference = meanDifference(_kept, _actual, tile);
            if (difference > worst) {
                worst = difference;
                worstTile = tile;
            }
        }
    }
}

std::string PictureDifference::text() const {
    std::ostringstream text;
    if (!isSameSize) {
        text << "is " << _actual.width() << " by " << _actual.height() << " pixels instead of "
             << _kept.width() << " by " << _kept.height();
    } else {
        text << "differs by " << std::round(worst * 100) / 100 << " (at most " << limit << ") around "
             << worstTile.center().x() << ", " << worstTile.center().y();
    }
    return text.str();
}

QImage PictureDifference::picture() const {
    QImage result = _kept;
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            const QRgb kept = _kept.pixel(x, y);
            const int faint = 255 - (255 - qGray(kept)) / 4;
            const bool differs =
                !_actual.rect().contains(x, y) || differenceOf(kept, _actual.pixel(x, y)) > 0;
            result.setPixel(x, y, differs ? qRgb(220, 0, 0) : qRgb(faint, faint, faint));
        }
    }
    return result;
}

} // namespace selvane::test
