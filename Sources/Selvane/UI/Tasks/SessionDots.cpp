#include "Selvane/UI/Tasks/SessionDots.h"

#include "Selvane/UI/Tasks/TaskText.h"

#include <QPainter>

#include <utility>

namespace selvane {

namespace {

constexpr int diameter = 5;
constexpr int spacing = 3;

int widthOf(int circles) {
    return circles == 0 ? 0 : circles * (diameter + spacing) - spacing;
}

} // namespace

SessionDots::SessionDots(QQuickItem* parent) : StillItem(parent) {
    setImplicitSize(0, diameter);
    setAntialiasing(true);
}

void SessionDots::setDone(int done) {
    if (std::exchange(_done, done) == done)
        return;
    update();
    Q_EMIT doneChanged();
}

void SessionDots::setTotal(int total) {
    if (std::exchange(_total, total) == total)
        return;
    setImplicitSize(widthOf(TaskText::dots(_done, total).total), diameter);
    update();
    Q_EMIT totalChanged();
}

void SessionDots::setDoneColor(const QColor& color) {
    if (std::exchange(_doneColor, color) == color)
        return;
    update();
    Q_EMIT doneColorChanged();
}

void SessionDots::setOpenColor(const QColor& color) {
    if (std::exchange(_openColor, color) == color)
        return;
    update();
    Q_EMIT openColorChanged();
}

void SessionDots::paint(QPainter* painter, const QSizeF& /*size*/) {
    const auto [filled, total] = TaskText::dots(_done, _total);
    painter->setPen(Qt::NoPen);
    for (int circle = 0; circle < total; ++circle) {
        painter->setBrush(circle < filled ? _doneColor : _openColor);
        painter->drawEllipse(circle * (diameter + spacing), 0, diameter, diameter);
    }
}

} // namespace selvane
