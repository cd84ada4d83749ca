#include "Selvane/UI/Timer/BarFill.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Timer/ArcHead.h"
#include "Selvane/UI/Timer/BarGeometry.h"
#include "Selvane/UI/Timer/RingGeometry.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace selvane {

namespace {

/// Room for the glow on all sides.
const double margin = std::ceil(ArcHead::glowReach);

} // namespace

BarFill::BarFill(QQuickItem* parent) : SweepItem(parent) {
    setImplicitSize(BarGeometry::width + 2 * margin, BarGeometry::height + 2 * margin);
}

double BarFill::pathLength() const {
    return BarGeometry::width;
}

QRectF BarFill::changedArea(double from, double to) const {
    // The gradient is as long as the fill, so that all of the fill changes with its length.
    const double fill = BarGeometry::fillWidth(std::max(from, to), 1, BarGeometry::width);
    return {0, 0, margin + fill + BarGeometry::headSize + margin, height()};
}

void BarFill::draw(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    painter.translate(margin, margin);

    const double top = (BarGeometry::height - BarGeometry::trackHeight) / 2;
    const double fill = BarGeometry::fillWidth(shownProgress(), headPresence(), BarGeometry::width);
    if (!(fill > 0))
        return;
    const double radius = std::min(fill, BarGeometry::trackHeight) / 2;
    QLinearGradient gradient(0, 0, fill, 0);
    gradient.setColorAt(0, faded(ink(), RingGeometry::weakest));
    gradient.setColorAt(1, faded(ink(), RingGeometry::strongest));
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(0, top, fill, BarGeometry::trackHeight), radius, radius);

    const double headRadius = BarGeometry::headSize / 2;
    painter.setOpacity(headPresence());
    ArcHead::paint(painter, QPointF(BarGeometry::headOffset(fill) + headRadius, BarGeometry::height / 2),
                   BarGeometry::headSize, ink());
}

} // namespace selvane
