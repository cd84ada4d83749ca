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

public:
    explicit RingBezel(QQuickItem* parent = nullptr);

    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink);

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void inkChanged();

private:
    QColor _ink = Qt::black;
};

} // namespace selvane
