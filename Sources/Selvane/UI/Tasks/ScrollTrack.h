#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// What a scroll bar does beside a list that it is as high as: it says where the thumb lies, and turns a drag
/// of the thumb into places of the list. A press elsewhere brings the thumb's middle there. Parts of the list
/// are from 0 to 1, lengths are pixels of the window. Main thread.
class ScrollTrack : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    /// How much of the list is seen. 1 in the beginning: all.
    Q_PROPERTY(double partSeen READ partSeen WRITE setPartSeen NOTIFY partSeenChanged FINAL)
    /// How much of it lies above what is seen.
    Q_PROPERTY(double partAbove READ partAbove WRITE setPartAbove NOTIFY partAboveChanged FINAL)

    /// The thumb is never so short that it can't be taken hold of.
    Q_PROPERTY(double thumbY READ thumbY NOTIFY thumbChanged FINAL)
    Q_PROPERTY(double thumbHeight READ thumbHeight NOTIFY thumbChanged FINAL)
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged FINAL)
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged FINAL)

public:
    explicit ScrollTrack(QQuickItem* parent = nullptr);

    [[nodiscard]] double partSeen() const { return _partSeen; }
    void setPartSeen(double part);
    [[nodiscard]] double partAbove() const { return _partAbove; }
    void setPartAbove(double part);
    [[nodiscard]] double thumbY() const;
    [[nodiscard]] double thumbHeight() const;
    [[nodiscard]] bool isHovered() const { return _hovered; }
    [[nodiscard]] bool isPressed() const { return _pressed; }

Q_SIGNALS:
    /// The user wants so much of the list above what is seen.
    void scrolled(double partAbove);

    void partSeenChanged();
    void partAboveChanged();
    void thumbChanged();
    void hoveredChanged();
    void pressedChanged();

protected:
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    void setHovered(bool hovered);
    void setPressed(bool pressed);
    /// How far the thumb can go.
    [[nodiscard]] double way() const;
    /// Brings the thumb's grip to the pointer.
    void drag(const QPointF& pointer);

    double _partSeen = 1;
    double _partAbove = 0;
    bool _hovered = false;
    bool _pressed = false;
    /// Where the thumb is held, from its top.
    double _grip = 0;
};

} // namespace selvane
