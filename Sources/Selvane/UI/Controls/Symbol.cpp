#include "Selvane/UI/Controls/Symbol.h"

#include <QPainter>

#include <utility>

namespace selvane {

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setSize(_size);
    setImplicitSize(_size * 1.25, _size * 1.25);
}

void Symbol::setName(const QString& name) {
    if (std::exchange(_name, name) == name)
        return;
    update();
    Q_EMIT nameChanged();
}

void Symbol::setSize(double size) {
    if (std::exchange(_size, size) == size)
        return;
    setImplicitSize(size * 1.25, size * 1.25);
    update();
    Q_EMIT sizeChanged();
}

void Symbol::setWeight(Weight weight) {
    if (std::exchange(_weight, weight) == weight)
        return;
    update();
    Q_EMIT weightChanged();
}

void Symbol::setColor(const QColor& color) {
    if (std::exchange(_color, color) == color)
        return;
    update();
    Q_EMIT colorChanged();
}

void Symbol::paint(QPainter* painter) {
    painter->setPen(_color);
    painter->drawRect(QRectF(0, 0, width() - 1, height() - 1));
}

} // namespace selvane
