#pragma once

#include "Selvane/UI/Timer/SweepItem.h"

#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The fill of the bar with its glowing head. The item is larger than the bar, so that the glow fits.
class BarFill : public selvane::SweepItem {
    Q_OBJECT
    QML_ELEMENT

public:
    explicit BarFill(QQuickItem* parent = nullptr);

protected:
    void draw(QPainter& painter) override;
    [[nodiscard]] double pathLength() const override;
    [[nodiscard]] QRectF changedArea(double from, double to) const override;
};

} // namespace selvane
