#include "Selvane/UI/Timer/CycleDashes.h"

#include "Selvane/UI/Controls/Ink.h"
#include "Selvane/UI/Timer/CycleDash.h"
#include "Selvane/UI/Timer/DigitRoll.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace selvane {

namespace {

constexpr double dashWidth = 7;
constexpr double dashHeight = 3;
constexpr double spacing = 4;

Phase phaseOf(TimerFaceModel::Phase phase) {
    switch (phase) {
    case TimerFaceModel::Focus:
        return Phase::focus;
    case TimerFaceModel::ShortBreak:
        return Phase::shortBreak;
    case TimerFaceModel::LongBreak:
        return Phase::longBreak;
    }
    __builtin_unreachable();
}

std::vector<CycleDash::Look> rowOf(const CycleDashes& dashes) {
    const bool moves = dashes.isRunning() && !dashes.reducesMotion();
    return CycleDash::row(phaseOf(dashes.phase()), dashes.position(), dashes.length(),
                          moves ? CycleDash::Pulse::moving : CycleDash::Pulse::still);
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
    return std::ranges::count(rowOf(*this), CycleDash::Look::pulsing) > 0;
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
    repaint(dash(_position - 1));
    if (!follows) {
        stopSteps();
        return;
    }
    _pulseStart = now();
    stepAfter(CycleDash::pulseStep);
}

void CycleDashes::setTime(const QString& time) {
    if (std::exchange(_time, time) == time)
        return;
    if (_follows) {
        repaint(dash(_position - 1));
        // The end of the digits' roll is another frame that is drawn anyway.
        stepAfter(DigitRoll::tickLength);
    }
    Q_EMIT timeChanged();
}

void CycleDashes::step() {
    repaint(dash(_position - 1));
    stepAfter(CycleDash::pulseStep);
}

QRectF CycleDashes::dash(int index) const {
    const double left = std::floor((width() - rowWidth(_length)) / 2);
    return {left + index * (dashWidth + spacing), 0, dashWidth, dashHeight};
}

void CycleDashes::draw(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    const Seconds sinceStart = _follows ? now() - _pulseStart : Seconds{0};
    const QRectF wanted = painter.hasClipping() ? painter.clipBoundingRect() : boundingRect();
    int index = -1;
    for (const CycleDash::Look look : rowOf(*this)) {
        ++index;
        if (!dash(index).intersects(wanted))
            continue;
        painter.setBrush(faded(_ink, lifted(CycleDash::opacity(look, sinceStart), _lift)));
        painter.drawRoundedRect(dash(index), dashHeight / 2, dashHeight / 2);
    }
}

} // namespace selvane
