#pragma once

#include "Selvane/UI/Timer/SweepItem.h"

#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The arc of the ring with its glowing head. The item is larger than the ring, so that the glow fits.
class RingArc : public selvane::SweepItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit RingArc(QQuickItem* parent = nullptr);

protected:
    void draw(QPainter& painter) override;
    [[nodiscard]] double pathLength() const override;
    [[nodiscard]] QRectF changedArea(double from, double to) const override;
};

} // namespace selvane
