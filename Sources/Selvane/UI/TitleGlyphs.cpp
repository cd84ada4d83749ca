#include "Selvane/UI/TitleGlyphs.h"

#include "Selvane/UI/InkColor.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QString>

#include <algorithm>
#include <cmath>

namespace selvane {

namespace {

/// The dial is designed on a square of this side, with words of this size beside it.
constexpr double designSide = 16.0;
constexpr double designFontSize = 13.0;
/// How far the words are lifted for the eye.
constexpr double designLift = 0.5;

/// The words' characters in cells.
class Cells {
public:
    explicit Cells(int height) : _font(QGuiApplication::font()) {
        _font.setWeight(QFont::Normal);
        _font.setPixelSize(std::max(1, static_cast<int>(std::lround(designFontSize * height / designSide))));
        const QFontMetricsF metrics(_font);
        for (char16_t digit = u'0'; digit <= u'9'; ++digit)
            _digit = std::max(_digit, metrics.horizontalAdvance(QChar(digit)));
        // Digits stand in the middle of the height.
        _baseline = (height + metrics.tightBoundingRect(QStringLiteral("0")).height()) / 2 -
                    designLift * height / designSide;
    }

    [[nodiscard]] double width(QChar character) const {
        return character.isDigit() ? _digit : QFontMetricsF(_font).horizontalAdvance(character);
    }

    [[nodiscard]] double width(const QString& words) const {
        double sum = 0;
        for (const QChar character : words)
            sum += width(character);
        return sum;
    }

    void draw(QPainter& painter, const QString& words) const {
        painter.setFont(_font);
        const QFontMetricsF metrics(_font);
        double x = 0;
        for (const QChar character : words) {
            const double cell = width(character);
            painter.drawText(QPointF(x + (cell - metrics.horizontalAdvance(character)) / 2, _baseline),
                             QString(character));
            x += cell;
        }
    }

private:
    QFont _font;
    double _digit = 0;
    double _baseline = 0;
};

int pixels(double width) {
    return static_cast<int>(std::ceil(width));
}

} // namespace

int TitleGlyphs::width(const std::string& words, int height) const {
    return height <= 0 ? 0 : pixels(Cells(height).width(QString::fromStdString(words)));
}

Picture TitleGlyphs::draw(const std::string& words, int height, Ink ink) const {
    if (height <= 0)
        return {};
    const QString text = QString::fromStdString(words);
    const Cells cells(height);
    const int width = pixels(cells.width(text));
    Picture picture{width, height, {}};
    if (width == 0)
        return picture;
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    cells.draw(painter, text);
    painter.end();
    picture.argb.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < width; ++x)
            picture.argb.push_back(static_cast<std::uint32_t>(qAlpha(row[x])) << 24U | inkColor(ink));
    }
    return picture;
}

} // namespace selvane
