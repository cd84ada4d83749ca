#include "Selvane/UI/TitleGlyphs.h"

#include "Selvane/Platform/InkColor.h"

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

QFont wordFont(const QFont& given, int height) {
    QFont font = given;
    font.setWeight(QFont::Normal);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(designFontSize * height / designSide))));
    return font;
}

int pixels(double width) {
    return static_cast<int>(std::ceil(width));
}

} // namespace

/// The words' characters in cells.
class TitleGlyphs::Cells {
public:
    Cells(const QFont& given, int height)
        : _given(given), _height(height), _font(wordFont(given, height)), _metrics(_font) {
        for (char16_t digit = u'0'; digit <= u'9'; ++digit)
            _digit = std::max(_digit, _metrics.horizontalAdvance(QChar(digit)));
        // Digits stand in the middle of the height.
        _baseline = (height + _metrics.tightBoundingRect(QStringLiteral("0")).height()) / 2 -
                    designLift * height / designSide;
    }

    [[nodiscard]] bool areOf(const QFont& given, int height) const {
        return _height == height && _given == given;
    }

    [[nodiscard]] double width(QChar character) const {
        return character.isDigit() ? _digit : _metrics.horizontalAdvance(character);
    }

    [[nodiscard]] double width(const QString& words) const {
        double sum = 0;
        for (const QChar character : words)
            sum += width(character);
        return sum;
    }

    void draw(QPainter& painter, const QString& words) const {
        painter.setFont(_font);
        double x = 0;
        for (const QChar character : words) {
            const double cell = width(character);
            painter.drawText(QPointF(x + (cell - _metrics.horizontalAdvance(character)) / 2, _baseline),
                             QString(character));
            x += cell;
        }
    }

private:
    QFont _given;
    int _height;
    QFont _font;
    QFontMetricsF _metrics;
    double _digit = 0;
    double _baseline = 0;
};

TitleGlyphs::TitleGlyphs() = default;
TitleGlyphs::~TitleGlyphs() = default;

const TitleGlyphs::Cells& TitleGlyphs::cells(int height) const {
    const QFont given = QGuiApplication::font();
    if (!_cells || !_cells->areOf(given, height)) {
        _cells = std::make_unique<Cells>(given, height);
        ++_fontSearches;
    }
    return *_cells;
}

int TitleGlyphs::width(const std::string& words, int height) const {
    return height <= 0 ? 0 : pixels(cells(height).width(QString::fromStdString(words)));
}

Picture TitleGlyphs::draw(const std::string& words, int height, Ink ink) const {
    if (height <= 0)
        return {};
    const QString text = QString::fromStdString(words);
    const Cells& cells = this->cells(height);
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
