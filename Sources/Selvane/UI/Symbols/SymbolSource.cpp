#include "Selvane/UI/Symbols/SymbolSource.h"

#include <QFile>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <utility>

namespace selvane {

namespace {

/// Keeps the outlines that are painted, instead of pixels.
class OutlineEngine final : public QPaintEngine {
public:
    OutlineEngine() : QPaintEngine(AllFeatures) {}

    std::vector<SymbolDrawing::Shape> shapes;

    bool begin(QPaintDevice*) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState&) override {}
    [[nodiscard]] Type type() const override { return User; }
    void drawPixmap(const QRectF&, const QPixmap&, const QRectF&) override {}

    void drawPolygon(const QPointF* points, int count, PolygonDrawMode mode) override {
        QPainterPath path;
        path.addPolygon(QPolygonF(QList<QPointF>(points, points + count)));
        if (mode != PolylineMode)
            path.closeSubpath();
        drawPath(path);
    }

    void drawPath(const QPainterPath& path) override {
        const bool fills = painter()->brush().style() != Qt::NoBrush;
        const QPen pen = painter()->pen();
        const bool strokes = pen.style() != Qt::NoPen;
        if (!fills && !strokes)
            return;
        const QTransform onGrid = painter()->deviceTransform();
        const QColor color = fills ? painter()->brush().color() : pen.color();
        const double widths = strokes ? pen.widthF() / SymbolDrawing::strokeWidth : 0;
        const SymbolDrawing::Shape shape{onGrid.map(path), fills, widths, color == QColor(Qt::white)};
        // An element that is filled and stroked comes as its inside first, then as its outline.
        if (!shapes.empty() && shapes.back().filled && shapes.back().strokes <= 0 && !fills &&
            shapes.back().path == shape.path)
            shapes.back().strokes = widths;
        else
            shapes.push_back(shape);
    }
};

/// The grid as something to paint on.
class OutlineDevice final : public QPaintDevice {
public:
    OutlineEngine engine;

    [[nodiscard]] QPaintEngine* paintEngine() const override { return const_cast<OutlineEngine*>(&engine); }

protected:
    [[nodiscard]] int metric(PaintDeviceMetric metric) const override {
        switch (metric) {
        case PdmWidth:
        case PdmHeight:
            return static_cast<int>(SymbolDrawing::side);
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return 96;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default: // Nothing else is asked for, and Qt adds more from version to version.
            return QPaintDevice::metric(metric);
        }
    }
};

} // namespace

SymbolDrawing SymbolSource::read(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QSvgRenderer renderer;
    if (!renderer.load(file.readAll()))
        return {};

    OutlineDevice device;
    QPainter painter(&device);
    renderer.render(&painter, QRectF(0, 0, SymbolDrawing::side, SymbolDrawing::side));
    painter.end();

    SymbolDrawing drawing{std::move(device.engine.shapes), 0};
    while (renderer.elementExists(QStringLiteral("part%1").arg(drawing.parts + 1)))
        ++drawing.parts;
    return drawing;
}

} // namespace selvane
