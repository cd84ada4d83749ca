#include "Selvane/UI/Timer/CycleDashes.h"

#include "Selvane/UI/Timer/CycleDash.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr double dashWidth = 7;
constexpr double dashHeight = 3;
constexpr double spacing = 4;
/// A sixth of the way from one end of the pulse to the other; finer steps are hardly seen.
constexpr Seconds pulseStep{1.4 / 6};

CycleDash::Cycle cycle(TimerFaceModel::Phase phase) {
    switch (phase) {
    case TimerFaceModel::Focus:
        return CycleDash::Cycle::focus;
    case TimerFaceModel::ShortBreak:
        return CycleDash::Cycle::shortBreak;
    case TimerFaceModel::LongBreak:
        return CycleDash::Cycle::longBreak;
    }
    __builtin_unreachable();
}

double rowWidth(int length) {
    const int count = std::max(length, 1);
    return count * dashWidth + (count - 1) * spacing;
}

} // namespace

CycleDashes::CycleDashes(QQuickItem* parent) : SteppedItem(parent) {
    setImplicitSize(rowWidth(_length), dashHeight);
}

QString CycleDashes::label() const {
    return CycleDash::label(_position, _length);
}

QString CycleDashes::tooltip() const {
    return CycleDash::tooltip(_position, _length);
}

bool CycleDashes::isPulsing() const {
    return _phase == TimerFaceModel::Focus && _isRunning && !_reducesMotion &&
           _position <= std::max(_length, 1);
}

void CycleDashes::refresh() {
    // An even width, so that the row stands on whole pixels where it is centred.
    setImplicitWidth(std::ceil(rowWidth(_length) / 2) * 2);
    followPulse();
    repaint();
    Q_EMIT changed();
}

void CycleDashes::followPulse() {
    const bool follows = isPulsing() && isShown();
    if (std::exchange(_follows, follows) == follows)
        return;
    if (!follows) {
        stopSteps();
        return;
    }
    _pulseStart = now();
    stepAfter(pulseStep);
}

void CycleDashes::step() {
    repaint(dash(_position - 1));
    stepAfter(pulseStep);
}

QRectF CycleDashes::dash(int index) const {
    const double left = std::floor((width() - rowWidth(_length)) / 2);
    return {left + index * (dashWidth + spacing), 0, dashWidth, dashHeight};
}

void CycleDashes::draw(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    const Seconds sinceStart = _follows ? now() - _pulseStart : Seconds{0};
    const auto pulse = isPulsing() ? CycleDash::Pulse::moving : CycleDash::Pulse::still;
    int index = 0;
    for (const CycleDash::Look look : CycleDash::row(cycle(_phase), _position, _length, pulse)) {
        QColor shade = _ink;
        shade.setAlphaF(static_cast<float>(CycleDash::opacity(look, sinceStart)));
        painter.setBrush(shade);
        painter.drawRoundedRect(dash(index), dashHeight / 2, dashHeight / 2);
        ++index;
    }
}

} // namespace selvane
