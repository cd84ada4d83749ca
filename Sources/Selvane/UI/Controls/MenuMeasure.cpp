#include "Selvane/UI/Controls/MenuMeasure.h"

#include <QQuickItem>

#include <algorithm>
#include <utility>

namespace selvane {

void MenuMeasure::setMenu(QObject* menu) {
    if (menu == _menu)
        return;
    if (_menu)
        _menu->disconnect(this);
    _menu = menu;
    if (_menu) {
        // The class of menus has no header; its signals are known by name.
        connect(_menu, SIGNAL(countChanged()), this, SLOT(measure()));
        connect(_menu, SIGNAL(aboutToShow()), this, SLOT(measure()));
    }
    measure();
    Q_EMIT menuChanged();
}

void MenuMeasure::measure() {
    const int count = _menu ? _menu->property("count").toInt() : 0;
    double widest = 0;
    bool markable = false;
    for (int index = 0; index < count; ++index) {
        const QQuickItem* const item = row(index);
        if (!item)
            continue;
        markable = markable || item->property("markable").toBool();
        widest = std::max(widest, item->implicitWidth());
        connect(item, &QQuickItem::implicitWidthChanged, this, &MenuMeasure::measure, Qt::UniqueConnection);
    }
    if (std::exchange(_width, widest) != widest)
        Q_EMIT widthChanged();
    // Where this changes the rows' widths, they bring us here again.
    if (std::exchange(_markable, markable) != markable)
        Q_EMIT markableChanged();
}

QQuickItem* MenuMeasure::row(int index) const {
    QQuickItem* item = nullptr;
    QMetaObject::invokeMethod(_menu, "itemAt", Q_RETURN_ARG(QQuickItem*, item), Q_ARG(int, index));
    return item;
}

} // namespace selvane
