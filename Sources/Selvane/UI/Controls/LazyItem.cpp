#include "Selvane/UI/Controls/LazyItem.h"

#include <utility>

namespace selvane {

// An item that measured itself anew as it goes would tell half of this place.
LazyItem::~LazyItem() {
    delete made();
}

void LazyItem::setSource(const QUrl& source) {
    if (source == _part.source())
        return;
    _part.setSource(source);
    Q_EMIT sourceChanged();
}

void LazyItem::setProperties(const QVariantMap& properties) {
    if (properties == _part.properties())
        return;
    _part.setProperties(properties);
    Q_EMIT propertiesChanged();
}

void LazyItem::setWanted(bool wanted) {
    if (std::exchange(_wanted, wanted) == wanted)
        return;
    follow();
    Q_EMIT wantedChanged();
}

void LazyItem::setKept(bool kept) {
    if (std::exchange(_kept, kept) == kept)
        return;
    follow();
    Q_EMIT keptChanged();
}

void LazyItem::componentComplete() {
    QQuickItem::componentComplete();
    follow();
}

void LazyItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (auto* const item = qobject_cast<QQuickItem*>(made()))
        item->setSize(now.size());
}

void LazyItem::follow() {
    if (!isComponentComplete())
        return;
    if (!_wanted) {
        if (!_kept && made()) {
            _part.dismiss();
            takeMeasure();
            Q_EMIT madeChanged();
        }
        return;
    }
    if (made() || !_part.make(*this))
        return;
    Q_EMIT madeChanged();
    auto* const item = qobject_cast<QQuickItem*>(made());
    if (!item)
        return;
    connect(item, &QQuickItem::implicitWidthChanged, this, &LazyItem::takeMeasure);
    connect(item, &QQuickItem::implicitHeightChanged, this, &LazyItem::takeMeasure);
    takeMeasure();
    item->setSize(size());
}

void LazyItem::takeMeasure() {
    const auto* const item = qobject_cast<QQuickItem*>(made());
    setImplicitSize(item ? item->implicitWidth() : 0, item ? item->implicitHeight() : 0);
}

} // namespace selvane
