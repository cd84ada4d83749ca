#include "Selvane/UI/Timer/RingArc.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Timer/ArcHead.h"
#include "Selvane/UI/Timer/RingGeometry.h"

#include <QConicalGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <numbers>

namespace selvane {

namespace {

constexpr double reach = RingGeometry::headSize / 2 + ArcHead::glowReach + 1;
constexpr double itemSide = RingGeometry::arcDiameter + 2 * reach;

} // namespace

RingArc::RingArc(QQuickItem* parent) : SweepItem(parent) {
    setImplicitSize(itemSide, itemSide);
}

double RingArc::pathLength() const {
    return RingGeometry::arcDiameter * std::numbers::pi;
}

QRectF RingArc::changedArea(double from, double to) const {
    // The gradient is as long as the arc, so that every part of the arc changes with its length. From the
    // start, clockwise: the part of the ring up to the farther of both ends.
    const double end = std::max(from, to);
    const double radius = RingGeometry::arcDiameter / 2;
    QRectF area(QPointF(0, -radius), QSizeF(0, 0));
    const auto include = [&](QPointF point) {
        area.setLeft(std::min(area.left(), point.x()));
        area.setRight(std::max(area.right(), point.x()));
        area.setTop(std::min(area.top(), point.y()));
        area.setBottom(std::max(area.bottom(), point.y()));
    };
    for (const double corner : {0.25, 0.5, 0.75}) {
        if (corner < end)
            include(RingGeometry::headCentre(corner));
    }
    include(RingGeometry::headCentre(end));
    include(RingGeometry::headCentre(std::min(from, to)));
    return area.adjusted(-reach, -reach, reach, reach).translated(width() / 2, height() / 2);
}

void RingArc::draw(QPainter& painter) {
    const double progress = shownProgress();
    if (!(progress > 0))
        return;
    painter.translate(width() / 2, height() / 2);

    const auto [seam, stops] = RingGeometry::conicalStops(progress);
    // A round cap has a length of its own, and would go in one moment with the last of the arc.
    const double part = std::min(progress * pathLength(), 1.0);
    // Conical gradients turn anticlockwise from three o'clock, so the turn is told from its end.
    QConicalGradient gradient(QPointF(0, 0), 90 - seam);
    for (const auto& [position, opacity] : stops) {
        gradient.setColorAt(1 - position, faded(ink(), opacity * part));
    }
    const double radius = RingGeometry::arcDiameter / 2;
    painter.setPen(QPen(gradient, RingGeometry::lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    QPainterPath arc;
    arc.arcMoveTo(QRectF(-radius, -radius, 2 * radius, 2 * radius), 90);
    arc.arcTo(QRectF(-radius, -radius, 2 * radius, 2 * radius), 90, -360 * progress);
    painter.drawPath(arc);

    painter.setOpacity(headPresence());
    ArcHead::paint(painter, RingGeometry::headCentre(progress), RingGeometry::headSize, ink());
}

} // namespace selvane
