#pragma once

#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// What stands still in the ring: 60 ticks at the rim, and the track on which the arc runs. Painted once.
class RingBezel : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QColor ink READ ink WRITE setInk NOTIFY inkChanged FINAL)
    /// Of the ink's opacity; 0 in the beginning.
    Q_PROPERTY(double lift READ lift WRITE setLift NOTIFY liftChanged FINAL)

public:
    explicit RingBezel(QQuickItem* parent = nullptr);

    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink);
    [[nodiscard]] double lift() const { return _lift; }
    void setLift(double lift);

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void inkChanged();
    void liftChanged();

private:
    QColor _ink = Qt::black;
    double _lift = 0;
};

} // namespace selvane
