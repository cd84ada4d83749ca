#pragma once

#include "Selvane/UI/Controls/KeyboardStop.h"

#include <QMarginsF>
#include <QPointer>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace selvane {

/// What a button does, whatever it looks like. It is clicked by a press of the mouse that ends on it, by
/// Space and by Return or Enter. A key that is held clicks once; Return with another key but that of the
/// keypad goes on to whom it is meant for. A click leaves the keyboard where it is, and the pointer is for
/// what the button lies in too.
///
/// It holds two items and gives them their places: the content within the padding, and behind that the
/// background within the insets. An item that another takes the place of is deleted. Lengths are pixels of
/// the window, and all are 0 in the beginning. Main thread.
class PressArea : public selvane::KeyboardStop {
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)
    /// The pointer is on it, also where it can't be used.
    Q_PROPERTY(bool pointed READ isPointed NOTIFY pointedChanged FINAL)
    /// The pointer is on it, and it is in use.
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged FINAL)
    /// The mouse, which is on it, or Space holds it.
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged FINAL)
    /// Whether it looks pressed: while it is, and as long as is wished here.
    Q_PROPERTY(bool down READ isDown WRITE setDown NOTIFY downChanged FINAL)

    Q_PROPERTY(QQuickItem* contentItem READ contentItem WRITE setContentItem NOTIFY contentItemChanged FINAL)
    Q_PROPERTY(QQuickItem* background READ background WRITE setBackground NOTIFY backgroundChanged FINAL)
    /// What the content asks for, without the padding.
    Q_PROPERTY(double implicitContentWidth READ implicitContentWidth NOTIFY implicitContentWidthChanged FINAL)
    Q_PROPERTY(
        double implicitContentHeight READ implicitContentHeight NOTIFY implicitContentHeightChanged FINAL)

    Q_PROPERTY(double leftPadding READ leftPadding WRITE setLeftPadding NOTIFY leftPaddingChanged FINAL)
    Q_PROPERTY(double topPadding READ topPadding WRITE setTopPadding NOTIFY topPaddingChanged FINAL)
    Q_PROPERTY(double rightPadding READ rightPadding WRITE setRightPadding NOTIFY rightPaddingChanged FINAL)
    Q_PROPERTY(
        double bottomPadding READ bottomPadding WRITE setBottomPadding NOTIFY bottomPaddingChanged FINAL)
    /// Below 0 the background is larger than the button.
    Q_PROPERTY(double leftInset READ leftInset WRITE setLeftInset NOTIFY insetChanged FINAL)
    Q_PROPERTY(double topInset READ topInset WRITE setTopInset NOTIFY insetChanged FINAL)
    Q_PROPERTY(double rightInset READ rightInset WRITE setRightInset NOTIFY insetChanged FINAL)
    Q_PROPERTY(double bottomInset READ bottomInset WRITE setBottomInset NOTIFY insetChanged FINAL)

public:
    explicit PressArea(QQuickItem* parent = nullptr);

    [[nodiscard]] const QString& text() const { return _text; }
    void setText(const QString& text);
    [[nodiscard]] bool isPointed() const { return _pointed; }
    [[nodiscard]] bool isHovered() const { return _pointed && isEnabled(); }
    [[nodiscard]] bool isPressed() const { return _pressed; }
    [[nodiscard]] bool isDown() const { return _pressed || _down; }
    void setDown(bool down);

    [[nodiscard]] QQuickItem* contentItem() const { return _content; }
    void setContentItem(QQuickItem* item);
    [[nodiscard]] QQuickItem* background() const { return _background; }
    void setBackground(QQuickItem* item);
    [[nodiscard]] double implicitContentWidth() const { return _content ? _content->implicitWidth() : 0; }
    [[nodiscard]] double implicitContentHeight() const { return _content ? _content->implicitHeight() : 0; }

    [[nodiscard]] double leftPadding() const { return _padding.left(); }
    void setLeftPadding(double padding);
    [[nodiscard]] double topPadding() const { return _padding.top(); }
    void setTopPadding(double padding);
    [[nodiscard]] double rightPadding() const { return _padding.right(); }
    void setRightPadding(double padding);
    [[nodiscard]] double bottomPadding() const { return _padding.bottom(); }
    void setBottomPadding(double padding);

    [[nodiscard]] double leftInset() const { return _inset.left(); }
    void setLeftInset(double inset) { setInset(&QMarginsF::setLeft, inset); }
    [[nodiscard]] double topInset() const { return _inset.top(); }
    void setTopInset(double inset) { setInset(&QMarginsF::setTop, inset); }
    [[nodiscard]] double rightInset() const { return _inset.right(); }
    void setRightInset(double inset) { setInset(&QMarginsF::setRight, inset); }
    [[nodiscard]] double bottomInset() const { return _inset.bottom(); }
    void setBottomInset(double inset) { setInset(&QMarginsF::setBottom, inset); }

Q_SIGNALS:
    /// The user pressed it.
    void clicked();

    void textChanged();
    void pointedChanged();
    void hoveredChanged();
    void pressedChanged();
    void downChanged();
    void contentItemChanged();
    void backgroundChanged();
    void implicitContentWidthChanged();
    void implicitContentHeightChanged();
    void leftPaddingChanged();
    void topPaddingChanged();
    void rightPaddingChanged();
    void bottomPaddingChanged();
    void insetChanged();

protected:
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverMoveEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& now, const QRectF& before) override;

private:
    using SetSide = void (QMarginsF::*)(qreal);

    void setPointed(bool pointed);
    void setPressed(bool pressed);
    /// The press is over and was a click if the button is still pressed.
    void release();
    /// Whether that changed it.
    [[nodiscard]] bool setPadding(SetSide setSide, double padding);
    void setInset(SetSide setSide, double inset);
    /// The item is a child from now on, and the one before is gone.
    void take(QPointer<QQuickItem>& place, QQuickItem* item);
    void placeContent();
    void placeBackground();

    QString _text;
    bool _pointed = false;
    bool _pressed = false;
    bool _down = false;
    QPointer<QQuickItem> _content;
    QPointer<QQuickItem> _background;
    QMarginsF _padding;
    QMarginsF _inset;
};

} // namespace selvane
