#pragma once

#include "Selvane/UI/Controls/ShapePainting.h"
#include "Selvane/UI/Controls/StillItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

#include <utility>

namespace selvane {

/// A rounded rectangle with what belongs to it: a soft shadow, an edge inside it, and the ring
/// around it that tells where the keyboard is. One item for all, painted once until something of it changes.
/// Sides and edge are crisp where the item itself begins at a whole device pixel, which a whole pixel of the
/// window always is at a whole scale. Lengths are pixels of the window. Main thread.
class RoundedShape : public selvane::StillItem {
    Q_OBJECT
    QML_ELEMENT

    /// From the item's edges to the shape: room for the ring, which takes 4, and for the shadow.
    Q_PROPERTY(double spread READ spread WRITE setSpread NOTIFY shapeChanged FINAL)
    /// At most half the shorter side; -1, as in the beginning, makes a capsule.
    Q_PROPERTY(double radius READ radius WRITE setRadius NOTIFY shapeChanged FINAL)
    /// Clear in the beginning.
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY shapeChanged FINAL)
    /// Clear in the beginning: no edge.
    Q_PROPERTY(QColor edgeColor READ edgeColor WRITE setEdgeColor NOTIFY shapeChanged FINAL)
    /// Drawn as whole device pixels, at least one.
    Q_PROPERTY(double edgeWidth READ edgeWidth WRITE setEdgeWidth NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor shadowColor READ shadowColor WRITE setShadowColor NOTIFY shapeChanged FINAL)
    /// How far the shadow reaches beyond the shape, about.
    Q_PROPERTY(double shadowRadius READ shadowRadius WRITE setShadowRadius NOTIFY shapeChanged FINAL)
    /// How far below the shape the shadow lies.
    Q_PROPERTY(double shadowOffset READ shadowOffset WRITE setShadowOffset NOTIFY shapeChanged FINAL)
    Q_PROPERTY(bool ringed READ isRinged WRITE setRinged NOTIFY shapeChanged FINAL)
    Q_PROPERTY(QColor ringColor READ ringColor WRITE setRingColor NOTIFY shapeChanged FINAL)

public:
    explicit RoundedShape(QQuickItem* parent = nullptr);

    [[nodiscard]] double spread() const { return _spread; }
    void setSpread(double spread) { set(_spread, spread); }
    [[nodiscard]] double radius() const { return _radius; }
    void setRadius(double radius) { set(_radius, radius); }
    [[nodiscard]] const QColor& color() const { return _color; }
    void setColor(const QColor& color) { set(_color, color); }
    [[nodiscard]] const QColor& edgeColor() const { return _edgeColor; }
    void setEdgeColor(const QColor& color) { set(_edgeColor, color); }
    [[nodiscard]] double edgeWidth() const { return _edgeWidth; }
    void setEdgeWidth(double width) { set(_edgeWidth, width); }
    [[nodiscard]] const QColor& shadowColor() const { return _shadow.color; }
    void setShadowColor(const QColor& color) { set(_shadow.color, color); }
    [[nodiscard]] double shadowRadius() const { return _shadow.radius; }
    void setShadowRadius(double radius) { set(_shadow.radius, radius); }
    [[nodiscard]] double shadowOffset() const { return _shadow.offset; }
    void setShadowOffset(double offset) { set(_shadow.offset, offset); }
    [[nodiscard]] bool isRinged() const { return _ringed; }
    void setRinged(bool ringed) { set(_ringed, ringed); }
    [[nodiscard]] const QColor& ringColor() const { return _ringColor; }
    void setRingColor(const QColor& color) { set(_ringColor, color); }

    void paint(QPainter* painter, const QSizeF& size) override;

Q_SIGNALS:
    void shapeChanged();

protected:
    /// Device pixels to a pixel of the window.
    [[nodiscard]] double pixels() const;
    /// The shape in an item of that size, with its sides on borders between device pixels as counted from the
    /// item's corner.
    [[nodiscard]] QRectF shapeRectangle(const QSizeF& size) const;
    [[nodiscard]] double cornerRadius(const QRectF& shape) const;

    void describe(QDataStream& look) const override;
    [[nodiscard]] bool isClear() const override;
    [[nodiscard]] QSizeF leastSize() const override;

    /// What fills the shape, and its edge. From top to bottom of the shape.
    [[nodiscard]] virtual QBrush fill(const QRectF& shape) const;
    [[nodiscard]] virtual QBrush edge(const QRectF& shape) const;

    template <typename Value>
    void set(Value& member, const Value& value) {
        if (std::exchange(member, value) == value)
            return;
        update();
        Q_EMIT shapeChanged();
    }

private:
    /// From the shape to the outer side of its ring.
    [[nodiscard]] double ringOut() const;
    void paintRing(QPainter& painter, const QRectF& shape, double radius) const;

    double _spread = 0;
    double _radius = -1;
    QColor _color = Qt::transparent;
    QColor _edgeColor = Qt::transparent;
    double _edgeWidth = 0.5;
    SoftShadow _shadow{.color = Qt::transparent};
    bool _ringed = false;
    QColor _ringColor = Qt::transparent;
};

} // namespace selvane
