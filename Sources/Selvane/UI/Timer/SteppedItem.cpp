#include "Selvane/UI/Timer/SteppedItem.h"

#include <QPainter>
#include <QQuickWindow>

#include <chrono>
#include <utility>

namespace selvane {

SteppedItem::SteppedItem(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    _timer.setSingleShot(true);
    _timer.setTimerType(Qt::PreciseTimer);
    connect(&_timer, &QTimer::timeout, this, [this] { step(); });
}

bool SteppedItem::isShown() const {
    return isVisible() && window() && window()->isVisible();
}

double SteppedItem::pixelRatio() const {
    return window() ? window()->effectiveDevicePixelRatio() : 1;
}

Seconds SteppedItem::now() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

void SteppedItem::repaint() {
    _isStale = true;
    update();
}

void SteppedItem::repaint(const QRectF& area) {
    if (!_isStale && !area.isEmpty())
        update(area.toAlignedRect());
}

void SteppedItem::paint(QPainter* painter) {
    _isStale = false;
    painter->setRenderHint(QPainter::Antialiasing);
    draw(*painter);
}

void SteppedItem::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    if (newGeometry.size() != oldGeometry.size())
        repaint();
    QQuickPaintedItem::geometryChange(newGeometry, oldGeometry);
}

void SteppedItem::decideSoon() {
    if (std::exchange(_isDeciding, true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            _isDeciding = false;
            decide();
        },
        Qt::QueuedConnection);
}

void SteppedItem::stepAfter(Seconds delay) {
    _timer.start(std::chrono::ceil<std::chrono::milliseconds>(delay));
}

void SteppedItem::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    // Of what is painted anew nothing is there.
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged)
        repaint();
    if (change == ItemSceneChange) {
        disconnect(_windowVisibility);
        disconnect(_windowContents);
        if (data.window) {
            _windowVisibility =
                connect(data.window, &QWindow::visibleChanged, this, [this] { noticeShown(); });
            _windowContents =
                connect(data.window, &QQuickWindow::sceneGraphInvalidated, this, [this] { repaint(); });
        }
        noticeShown();
    } else if (change == ItemVisibleHasChanged) {
        noticeShown();
    }
}

void SteppedItem::noticeShown() {
    const bool shown = isShown();
    if (std::exchange(_wasShown, shown) == shown)
        return;
    shownChanged();
}

} // namespace selvane
