#include "Selvane/UI/Controls/PressArea.h"

#include "Selvane/UI/Controls/PressKeys.h"

#include <QHoverEvent>
#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace selvane {

PressArea::PressArea(QQuickItem* parent) : KeyboardStop(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
}

void PressArea::setText(const QString& text) {
    if (std::exchange(_text, text) != text)
        Q_EMIT textChanged();
}

void PressArea::setDown(bool down) {
    const bool before = isDown();
    _down = down;
    if (isDown() != before)
        Q_EMIT downChanged();
}

void PressArea::setPointed(bool pointed) {
    if (std::exchange(_pointed, pointed) == pointed)
        return;
    Q_EMIT pointedChanged();
    if (isEnabled())
        Q_EMIT hoveredChanged();
}

void PressArea::setPressed(bool pressed) {
    if (std::exchange(_pressed, pressed) == pressed)
        return;
    Q_EMIT pressedChanged();
    if (!_down)
        Q_EMIT downChanged();
}

void PressArea::release() {
    if (!_pressed)
        return;
    setPressed(false);
    Q_EMIT clicked();
}

// The pointer

void PressArea::hoverEnterEvent(QHoverEvent* event) {
    setPointed(true);
    event->ignore();
}

void PressArea::hoverMoveEvent(QHoverEvent* event) {
    setPointed(contains(event->position()));
    event->ignore();
}

void PressArea::hoverLeaveEvent(QHoverEvent* event) {
    setPointed(false);
    event->ignore();
}

void PressArea::mousePressEvent(QMouseEvent* /*event*/) {
    setPressed(true);
}

void PressArea::mouseMoveEvent(QMouseEvent* event) {
    setPressed(contains(event->position()));
}

void PressArea::mouseReleaseEvent(QMouseEvent* /*event*/) {
    release();
}

void PressArea::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    // It only follows the second press, and isn't for what lies below.
}

void PressArea::mouseUngrabEvent() {
    setPressed(false);
}

// The keyboard

void PressArea::keyPressEvent(QKeyEvent* event) {
    const bool isSpace = event->key() == Qt::Key_Space;
    if (!isSpace && !PressKeys::isReturnAlone(*event)) {
        KeyboardStop::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat())
        return;
    if (isSpace)
        setPressed(true);
    else
        Q_EMIT clicked();
}

void PressArea::keyReleaseEvent(QKeyEvent* event) {
    const bool isSpace = event->key() == Qt::Key_Space;
    if (!isSpace && !PressKeys::isReturnAlone(*event))
        KeyboardStop::keyReleaseEvent(event);
    else if (isSpace && !event->isAutoRepeat())
        release();
}

void PressArea::focusOutEvent(QFocusEvent* event) {
    KeyboardStop::focusOutEvent(event);
    setPressed(false);
}

void PressArea::itemChange(ItemChange change, const ItemChangeData& data) {
    KeyboardStop::itemChange(change, data);
    if (change != ItemEnabledHasChanged && change != ItemVisibleHasChanged)
        return;
    if (change == ItemVisibleHasChanged && !data.boolValue)
        setPointed(false);
    if (change == ItemEnabledHasChanged && _pointed)
        Q_EMIT hoveredChanged();
    if (!data.boolValue)
        setPressed(false);
}

// What it holds

void PressArea::setContentItem(QQuickItem* item) {
    if (item == _content)
        return;
    const QSizeF before(implicitContentWidth(), implicitContentHeight());
    take(_content, item);
    if (item) {
        connect(item, &QQuickItem::implicitWidthChanged, this, &PressArea::implicitContentWidthChanged);
        connect(item, &QQuickItem::implicitHeightChanged, this, &PressArea::implicitContentHeightChanged);
    }
    placeContent();
    Q_EMIT contentItemChanged();
    if (implicitContentWidth() != before.width())
        Q_EMIT implicitContentWidthChanged();
    if (implicitContentHeight() != before.height())
        Q_EMIT implicitContentHeightChanged();
}

void PressArea::setBackground(QQuickItem* item) {
    if (item == _background)
        return;
    take(_background, item);
    if (item)
        item->setZ(-1);
    placeBackground();
    Q_EMIT backgroundChanged();
}

void PressArea::take(QPointer<QQuickItem>& place, QQuickItem* item) {
    if (place) {
        place->disconnect(this);
        place->setParentItem(nullptr);
        // QML may not have finished it yet.
        place->deleteLater();
    }
    place = item;
    if (item)
        item->setParentItem(this);
}

void PressArea::setLeftPadding(double padding) {
    if (setPadding(&QMarginsF::setLeft, padding))
        Q_EMIT leftPaddingChanged();
}

void PressArea::setTopPadding(double padding) {
    if (setPadding(&QMarginsF::setTop, padding))
        Q_EMIT topPaddingChanged();
}

void PressArea::setRightPadding(double padding) {
    if (setPadding(&QMarginsF::setRight, padding))
        Q_EMIT rightPaddingChanged();
}

void PressArea::setBottomPadding(double padding) {
    if (setPadding(&QMarginsF::setBottom, padding))
        Q_EMIT bottomPaddingChanged();
}

bool PressArea::setPadding(SetSide setSide, double padding) {
    const QMarginsF before = _padding;
    (_padding.*setSide)(padding);
    if (_padding == before)
        return false;
    placeContent();
    return true;
}

void PressArea::setInset(SetSide setSide, double inset) {
    const QMarginsF before = _inset;
    (_inset.*setSide)(inset);
    if (_inset == before)
        return;
    placeBackground();
    Q_EMIT insetChanged();
}

void PressArea::geometryChange(const QRectF& now, const QRectF& before) {
    KeyboardStop::geometryChange(now, before);
    if (now.size() == before.size())
        return;
    placeContent();
    placeBackground();
}

void PressArea::placeContent() {
    if (!_content)
        return;
    const QRectF place = boundingRect().marginsRemoved(_padding);
    _content->setPosition(place.topLeft());
    _content->setSize(place.size().expandedTo({0, 0}));
}

void PressArea::placeBackground() {
    if (!_background)
        return;
    const QRectF place = boundingRect().marginsRemoved(_inset);
    _background->setPosition(place.topLeft());
    _background->setSize(place.size());
}

} // namespace selvane
