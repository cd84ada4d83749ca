#include "Selvane/UI/Controls/HoverTip.h"

#include "Selvane/UI/Controls/CardMargin.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

/// Between the bubble and the item that it explains.
constexpr double gap = 6;
/// Between the bubble and the edges of the window's card.
constexpr double inset = 6;
/// Above everything, also above menus.
constexpr double top = 2'000'000;

/// Above the item, in its middle; below it where there is no room above.
QPointF beside(const QRectF& item, const QSizeF& bubble, const QWindow& window) {
    const double margin = inset + CardMargin::of(window);
    const double x = std::clamp(item.center().x() - bubble.width() / 2, margin,
                                std::max(margin, window.width() - margin - bubble.width()));
    const double above = item.top() - gap - bubble.height();
    const double y = above >= margin ? above : item.bottom() + gap;
    return {std::round(x), std::round(y)};
}

} // namespace

HoverTip::HoverTip(QObject* parent) : QObject(parent) {}

HoverTip::~HoverTip() {
    hide();
}

void HoverTip::setText(const QString& text) {
    if (std::exchange(_text, text) == text)
        return;
    if (_bubble) {
        hide();
        show();
    } else if (_visible && !_timer.isActive()) {
        _timer.start(_delay, this);
    }
    Q_EMIT textChanged();
}

void HoverTip::setVisible(bool visible) {
    if (std::exchange(_visible, visible) == visible)
        return;
    if (visible)
        _timer.start(_delay, this);
    else
        hide();
    Q_EMIT visibleChanged();
}

void HoverTip::setDelay(int delay) {
    if (std::exchange(_delay, delay) != delay)
        Q_EMIT delayChanged();
}

QQuickItem* HoverTip::bubble() const {
    return _bubble;
}

void HoverTip::timerEvent(QTimerEvent* event) {
    if (event->timerId() != _timer.timerId()) {
        QObject::timerEvent(event);
        return;
    }
    _timer.stop();
    show();
}

QQuickItem* HoverTip::target() const {
    return qobject_cast<QQuickItem*>(parent());
}

void HoverTip::show() {
    QQuickItem* const item = target();
    QQmlEngine* const engine = qmlEngine(this);
    if (_text.isEmpty() || !item || !item->window() || !item->isVisible() || !engine)
        return;
    QQuickWindow* const window = item->window();
    QQmlComponent component(
        engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/Selvane/Controls/TipBubble.qml")));
    const double room = window->width() - 2 * (inset + CardMargin::of(*window));
    QObject* const made = component.createWithInitialProperties(
        {{QStringLiteral("text"), _text}, {QStringLiteral("maximumWidth"), room}});
    _bubble = qobject_cast<QQuickItem*>(made);
    if (!_bubble) {
        delete made;
        return;
    }
    QQmlEngine::setObjectOwnership(_bubble, QQmlEngine::CppOwnership);
    _bubble->setParent(window->contentItem());
    _bubble->setParentItem(window->contentItem());
    _bubble->setZ(top);
    place();
    // A window or a menu that goes away with the pointer on it takes the words with it.
    _withItem = connect(item, &QQuickItem::visibleChanged, this, &HoverTip::hide);
    _withWindow = connect(window, &QWindow::visibleChanged, this, &HoverTip::hide);
    // An item moves with everything that it lies in, and only a frame shows that.
    _withFrames = connect(window, &QQuickWindow::afterAnimating, this, &HoverTip::place);
}

void HoverTip::place() {
    const QQuickItem* const item = target();
    const QQuickWindow* const window = item ? item->window() : nullptr;
    if (!_bubble || !window)
        return;
    _bubble->setPosition(
        beside(item->mapRectToScene(QRectF(0, 0, item->width(), item->height())), _bubble->size(), *window));
}

void HoverTip::hide() {
    _timer.stop();
    if (!_bubble)
        return;
    disconnect(_withItem);
    disconnect(_withWindow);
    disconnect(_withFrames);
    delete _bubble;
}

} // namespace selvane
