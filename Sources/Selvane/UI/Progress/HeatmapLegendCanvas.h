#pragma once

#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The key to a heatmap: "Less", a square of each level, "More". Main thread.
class HeatmapLegendCanvas : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    /// What squares are filled with, weaker or stronger.
    Q_PROPERTY(QColor ink READ ink WRITE setInk NOTIFY inkChanged FINAL)
    /// Of the ink's opacity; 0 in the beginning.
    Q_PROPERTY(double lift READ lift WRITE setLift NOTIFY liftChanged FINAL)
    Q_PROPERTY(QColor labelInk READ labelInk WRITE setLabelInk NOTIFY labelInkChanged FINAL)

public:
    explicit HeatmapLegendCanvas(QQuickItem* parent = nullptr);

    [[nodiscard]] const QColor& ink() const { return _ink; }
    void setInk(const QColor& ink);
    [[nodiscard]] double lift() const { return _lift; }
    void setLift(double lift);
    [[nodiscard]] const QColor& labelInk() const { return _labelInk; }
    void setLabelInk(const QColor& ink);

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void inkChanged();
    void liftChanged();
    void labelInkChanged();

private:
    QColor _ink = Qt::black;
    double _lift = 0;
    QColor _labelInk = Qt::black;
};

} // namespace selvane
