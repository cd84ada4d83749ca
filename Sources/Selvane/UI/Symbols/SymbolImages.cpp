#include "Selvane/UI/Symbols/SymbolImages.h"

#include "Selvane/UI/Symbols/SymbolFit.h"
#include "Selvane/UI/Symbols/Symbols.h"
#include "SelvaneCore/Log.h"

#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace selvane {

namespace {

/// What the masks that are kept may take together, in bytes: some thousand small ones.
constexpr qsizetype mostBytes = 512 * 1024;

void paint(QPainter& painter, const SymbolDrawing::Shape& shape, const SymbolFit& fit, double strokeWidth) {
    const QColor ink = shape.erases ? Qt::transparent : Qt::black;
    painter.setBrush(shape.filled ? QBrush(ink) : QBrush(Qt::NoBrush));
    if (shape.strokes > 0)
        painter.setPen(QPen(ink, shape.strokes * strokeWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    else
        painter.setPen(Qt::NoPen);
    painter.drawPath(fit.place(shape.path));
}

/// How many times larger a symbol is painted than it is wanted. Qt follows curves to a quarter of a pixel,
/// which in a picture of sixteen pixels can be seen.
constexpr int oversampling = 4;

/// How opaque each pixel of the picture is of which `large` is the oversampled one.
QImage reduced(const QImage& large) {
    QImage mask(large.size() / oversampling, QImage::Format_Alpha8);
    for (int y = 0; y < mask.height(); ++y) {
        uchar* const to = mask.scanLine(y);
        for (int x = 0; x < mask.width(); ++x) {
            int sum = 0;
            for (int row = 0; row < oversampling; ++row) {
                const auto* const from =
                    reinterpret_cast<const QRgb*>(large.constScanLine(y * oversampling + row));
                for (int column = 0; column < oversampling; ++column)
                    sum += qAlpha(from[x * oversampling + column]);
            }
            constexpr int samples = oversampling * oversampling;
            to[x] = static_cast<uchar>((sum + samples / 2) / samples);
        }
    }
    return mask;
}

QImage draw(const SymbolDrawing& drawing, const SymbolStyle& style) {
    const double scale = SymbolImages::squarePerPoint * style.size * style.pixelRatio / SymbolDrawing::side;
    const double width = std::max(1.0, strokeWidth(style.weight) * style.size * style.pixelRatio);
    const SymbolFit fit(drawing, scale, width);

    const int unlitParts = style.level < 0 ? 0 : std::max(0, drawing.parts - style.level);
    const auto firstUnlit = drawing.shapes.size() - static_cast<std::size_t>(unlitParts);
    const auto painted = [&](std::size_t first, std::size_t end) {
        QImage image(fit.size() * oversampling, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        // Ink takes the place of what is there, also to erase it. The usual mode would have tall shapes
        // painted by several threads, and waking them takes longer than painting a symbol.
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.scale(oversampling, oversampling);
        for (std::size_t index = first; index < end; ++index)
            paint(painter, drawing.shapes[index], fit, width);
        return image;
    };

    QImage picture = painted(0, firstUnlit);
    if (unlitParts > 0) {
        QPainter painter(&picture);
        painter.setOpacity(SymbolImages::faint);
        painter.drawImage(0, 0, painted(firstUnlit, drawing.shapes.size()));
    }
    QImage mask = reduced(picture);
    mask.setDevicePixelRatio(style.pixelRatio);
    return mask;
}

} // namespace

double strokeWidth(SymbolWeight weight) {
    // Between the upright and the level strokes of sans-serif capitals of these weights.
    switch (weight) {
    case SymbolWeight::light:
        return 0.066;
    case SymbolWeight::regular:
        return 0.084;
    case SymbolWeight::medium:
        return 0.1;
    case SymbolWeight::semibold:
        return 0.118;
    case SymbolWeight::bold:
        return 0.136;
    }
    __builtin_unreachable();
}

SymbolImages::SymbolImages(Drawings drawings) : _read(std::move(drawings)), _masks(mostBytes) {}

SymbolDrawing SymbolImages::compiledDrawing(const QString& name) {
    return SymbolDrawing::fromFile(QStringLiteral(":/selvane/symbols/%1.symbol").arg(name));
}

const SymbolDrawing& SymbolImages::drawing(const QString& name) {
    const auto found = _drawings.constFind(name);
    if (found != _drawings.cend())
        return *found;
    SymbolDrawing drawing;
    if (Symbols::contains(name.toStdString()))
        drawing = _read(name);
    if (drawing.shapes.empty() && !name.isEmpty())
        Log::line("there is no symbol named \"" + name.toStdString() + "\"");
    return *_drawings.insert(name, std::move(drawing));
}

int SymbolImages::parts(const QString& name) {
    return drawing(name).parts;
}

QImage SymbolImages::mask(const QString& name, const SymbolStyle& style) {
    const SymbolDrawing& shapes = drawing(name);
    if (shapes.shapes.empty() || !(style.size > 0) || !(style.pixelRatio > 0))
        return {};
    const Key key{name, style};
    if (const QImage* const kept = _masks.object(key))
        return *kept;
    const QImage mask = draw(shapes, style);
    _masks.insert(key, new QImage(mask), mask.sizeInBytes());
    return mask;
}

QImage SymbolImages::tinted(const QString& name, const SymbolStyle& style, const QColor& color) {
    const QImage opacities = mask(name, style);
    if (opacities.isNull())
        return {};
    QImage image(opacities.size(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(style.pixelRatio);
    const QRgb ink = color.rgba();
    for (int y = 0; y < image.height(); ++y) {
        const uchar* const from = opacities.constScanLine(y);
        auto* const to = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = (from[x] * qAlpha(ink) + 127) / 255;
            to[x] = qPremultiply(qRgba(qRed(ink), qGreen(ink), qBlue(ink), alpha));
        }
    }
    return image;
}

} // namespace selvane
