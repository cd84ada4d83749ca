#pragma once

#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// The ring of a check circle and the disc that fills it as it is ticked. Round for the pointer too. Main
/// thread.
class CheckShape : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    /// From 0, an empty ring, to 1, a full disc. Springs may pass both.
    Q_PROPERTY(double progress READ progress WRITE setProgress NOTIFY progressChanged FINAL)
    /// Of the check mark on the disc.
    Q_PROPERTY(double markOpacity READ markOpacity NOTIFY progressChanged FINAL)
    Q_PROPERTY(double markScale READ markScale NOTIFY progressChanged FINAL)
    Q_PROPERTY(QColor ringColor READ ringColor WRITE setRingColor NOTIFY ringColorChanged FINAL)
    Q_PROPERTY(QColor fillColor READ fillColor WRITE setFillColor NOTIFY fillColorChanged FINAL)

public:
    explicit CheckShape(QQuickItem* parent = nullptr);

    [[nodiscard]] double progress() const { return _progress; }
    void setProgress(double progress);
    [[nodiscard]] double markOpacity() const;
    [[nodiscard]] double markScale() const;
    [[nodiscard]] QColor ringColor() const { return _ringColor; }
    void setRingColor(const QColor& color);
    [[nodiscard]] QColor fillColor() const { return _fillColor; }
    void setFillColor(const QColor& color);

    [[nodiscard]] bool contains(const QPointF& point) const override;
    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void progressChanged();
    void ringColorChanged();
    void fillColorChanged();

protected:
    void describe(QDataStream& look) const override;

private:
    double _progress = 0;
    QColor _ringColor;
    QColor _fillColor;
};

} // namespace selvane
