#include "Selvane/UI/Progress/HeatmapLegendCanvas.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Controls/ShapePainting.h"
#include "Selvane/UI/Progress/HeatmapPainting.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr int levels = 5;
constexpr double side = 10;
constexpr double radius = 3;
constexpr double gap = 3;
constexpr double besideWords = 5;
constexpr double lineHeight = 12;

const QString less = QStringLiteral("Less");
const QString more = QStringLiteral("More");

/// Whole pixels, so that the squares behind the word keep their places.
double widthOf(const QString& word) {
    return std::ceil(QFontMetricsF(HeatmapPainting::labelFont()).horizontalAdvance(word));
}

double firstSquare() {
    return widthOf(less) + besideWords;
}

double secondWord() {
    return firstSquare() + levels * (side + gap) - gap + besideWords;
}

} // namespace

HeatmapLegendCanvas::HeatmapLegendCanvas(QQuickItem* parent) : StillItem(parent) {
    setImplicitSize(secondWord() + widthOf(more), lineHeight);
}

void HeatmapLegendCanvas::setInk(const QColor& ink) {
    if (std::exchange(_ink, ink) == ink)
        return;
    update();
    Q_EMIT inkChanged();
}

void HeatmapLegendCanvas::setLift(double lift) {
    if (std::exchange(_lift, lift) == lift)
        return;
    update();
    Q_EMIT liftChanged();
}

void HeatmapLegendCanvas::setLabelInk(const QColor& ink) {
    if (std::exchange(_labelInk, ink) == ink)
        return;
    update();
    Q_EMIT labelInkChanged();
}

void HeatmapLegendCanvas::paint(QPainter* painter, const QSizeF& /*size*/) {
    painter->setRenderHint(QPainter::Antialiasing);
    const double scale = HeatmapPainting::scaleOf(*painter);
    painter->setFont(HeatmapPainting::labelFont());
    painter->setPen(_labelInk);
    const double baseline = HeatmapPainting::baseline(0, lineHeight, scale);
    painter->drawText(QPointF(0, baseline), less);
    painter->drawText(QPointF(secondWord(), baseline), more);

    const double drawnSide = crispPlace(side, scale);
    for (int level = 0; level < levels; ++level) {
        const double left = crispPlace(firstSquare() + level * (side + gap), scale);
        const double top = crispPlace((lineHeight - side) / 2, scale);
        HeatmapPainting::fillSquare(*painter, {left, top}, drawnSide, radius,
                                    faded(_ink, lifted(HeatmapPainting::opacityOfLevel(level), _lift)));
    }
}

} // namespace selvane
