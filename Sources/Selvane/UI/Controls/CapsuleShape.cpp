#include "Selvane/UI/Controls/CapsuleShape.h"

#include "Selvane/UI/Controls/Glass.h"

#include <QBrush>
#include <QLinearGradient>

namespace selvane {

namespace {

QBrush downward(const QRectF& shape, const QColor& top, const QColor& bottom) {
    if (top == bottom)
        return top;
    QLinearGradient gradient(shape.topLeft(), shape.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    return gradient;
}

} // namespace

QBrush CapsuleShape::fill(const QRectF& shape) const {
    // A plain colour takes the material's place.
    if (color().alpha() > 0)
        return color();
    const CapsuleColors now = colors();
    return downward(shape, now.top, now.bottom);
}

QBrush CapsuleShape::edge(const QRectF& shape) const {
    if (color().alpha() > 0)
        return edgeColor();
    const CapsuleColors now = colors();
    return downward(shape, now.edgeTop, now.edgeBottom);
}

CapsuleColors CapsuleShape::colors() const {
    const CapsuleState state = _pressed   ? CapsuleState::pressed
                               : _hovered ? CapsuleState::hovered
                                          : CapsuleState::resting;
    return capsuleColors(_level, _interactive ? CapsuleUse::interactive : CapsuleUse::passive, state,
                         {.isDark = _dark, .isHighContrast = _highContrast});
}

} // namespace selvane
