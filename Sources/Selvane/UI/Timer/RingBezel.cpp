#include "Selvane/UI/Timer/RingBezel.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Controls/ShapePainting.h"
#include "Selvane/UI/Timer/RingGeometry.h"

#include <QPainter>
#include <QPen>

#include <utility>

namespace selvane {

namespace {

constexpr double trackOpacity = 0.08;

} // namespace

RingBezel::RingBezel(QQuickItem* parent) : StillItem(parent) {
    setImplicitSize(RingGeometry::side, RingGeometry::side);
    setAntialiasing(true);
}

void RingBezel::setInk(const QColor& ink) {
    if (std::exchange(_ink, ink) == ink)
        return;
    update();
    Q_EMIT inkChanged();
}

void RingBezel::setLift(double lift) {
    if (std::exchange(_lift, lift) == lift)
        return;
    update();
    Q_EMIT liftChanged();
}

void RingBezel::paint(QPainter* painter, const QSizeF& size) {
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(size.width() / 2, size.height() / 2);
    painter->setPen(QPen(faded(_ink, lifted(trackOpacity, _lift)), RingGeometry::lineWidth));
    painter->setBrush(Qt::NoBrush);
    painter->setCompositionMode(paintsOnEmptyGround);
    painter->drawEllipse(QPointF(0, 0), RingGeometry::arcDiameter / 2, RingGeometry::arcDiameter / 2);
    painter->setCompositionMode(QPainter::CompositionMode_SourceOver);
    for (const RingGeometry::Tick& tick : RingGeometry::ticks(size.width())) {
        painter->setPen(
            QPen(faded(_ink, lifted(tick.opacity, _lift)), tick.width, Qt::SolidLine, Qt::RoundCap));
        painter->drawLine(tick.inner, tick.outer);
    }
}

} // namespace selvane
