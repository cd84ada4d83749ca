#include "Selvane/UI/Controls/SpringValue.h"

#include "Selvane/UI/Controls/Spring.h"

#include <QSignalBlocker>

#include <utility>

namespace selvane {

void SpringValue::setTarget(double target) {
    if (std::exchange(_target, target) == target)
        return;
    if (_animated && _isComplete)
        move();
    else
        jump();
    Q_EMIT targetChanged();
}

void SpringValue::setAnimated(bool animated) {
    if (std::exchange(_animated, animated) == animated)
        return;
    if (!animated)
        jump();
    Q_EMIT animatedChanged();
}

void SpringValue::setResponse(double response) {
    if (std::exchange(_response, response) != response)
        Q_EMIT responseChanged();
}

void SpringValue::setDampingFraction(double dampingFraction) {
    if (std::exchange(_dampingFraction, dampingFraction) != dampingFraction)
        Q_EMIT dampingFractionChanged();
}

void SpringValue::componentComplete() {
    _isComplete = true;
    jump();
}

void SpringValue::jump() {
    if (_motion)
        _motion->stop();
    setValue(_target);
}

void SpringValue::move() {
    if (!_motion) {
        _motion = new QVariantAnimation(this);
        connect(_motion, &QVariantAnimation::valueChanged, this,
                [this](const QVariant& value) { setValue(value.toDouble()); });
    }
    Spring spring;
    spring.setResponse(_response);
    spring.setDampingFraction(_dampingFraction);
    {
        // What is set tells at once where the motion would be by now, one that has ended too.
        const QSignalBlocker quiet(_motion);
        _motion->stop();
        _motion->setStartValue(_value);
        _motion->setEndValue(_target);
        _motion->setDuration(spring.duration());
        _motion->setEasingCurve(spring.curve());
    }
    _motion->start();
}

void SpringValue::setValue(double value) {
    if (std::exchange(_value, value) != value)
        Q_EMIT valueChanged();
}

} // namespace selvane
