#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace selvane {

class RoundedShape;

/// An item that Tab stops at and a click passes by. Unlike the templates' controls it leaves its role for
/// assistive technology to QML. Main thread.
class KeyboardStop : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

    /// True while the keyboard is here and came by a key, so that it should be seen.
    Q_PROPERTY(bool visualFocus READ hasVisualFocus NOTIFY visualFocusChanged FINAL)
    /// Of a ring around the item, which exists only while it is seen. Clear in the beginning: no ring.
    Q_PROPERTY(QColor ringColor READ ringColor WRITE setRingColor NOTIFY ringChanged FINAL)
    /// From the item's top to what the ring is around.
    Q_PROPERTY(double ringTop READ ringTop WRITE setRingTop NOTIFY ringChanged FINAL)

public:
    explicit KeyboardStop(QQuickItem* parent = nullptr);

    [[nodiscard]] bool hasVisualFocus() const { return _visualFocus; }
    [[nodiscard]] const QColor& ringColor() const { return _ringColor; }
    void setRingColor(const QColor& color);
    [[nodiscard]] double ringTop() const { return _ringTop; }
    void setRingTop(double top);

Q_SIGNALS:
    void visualFocusChanged();
    void ringChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    void setVisualFocus(bool visualFocus);
    /// Makes the ring, brings it up to date or takes it away.
    void updateRing();

    bool _visualFocus = false;
    QColor _ringColor = Qt::transparent;
    double _ringTop = 0;
    /// A child, which goes with the item.
    RoundedShape* _ring = nullptr;
};

} // namespace selvane
