#include "Selvane/UI/Timer/SweepItem.h"

#include <utility>

namespace selvane {

SweepItem::SweepItem(QQuickItem* parent) : SteppedItem(parent) {}

void SweepItem::setProgress(double progress) {
    if (std::exchange(_progress, progress) == progress)
        return;
    // Where to move and how is decided when all that changed with the progress is known.
    decideSoon();
    Q_EMIT progressChanged();
}

void SweepItem::setRunning(bool running) {
    if (std::exchange(_isRunning, running) != running)
        Q_EMIT isRunningChanged();
}

void SweepItem::setReducesMotion(bool reducesMotion) {
    if (std::exchange(_reducesMotion, reducesMotion) == reducesMotion)
        return;
    decideSoon();
    Q_EMIT reducesMotionChanged();
}

void SweepItem::setInk(const QColor& ink) {
    if (std::exchange(_ink, ink) == ink)
        return;
    repaint();
    Q_EMIT inkChanged();
}

void SweepItem::componentComplete() {
    SteppedItem::componentComplete();
    _sweep.jump(_progress);
    show();
}

void SweepItem::shownChanged() {
    // Whoever opens the window sees the present, not the way there.
    _sweep.jump(_progress);
    show();
}

void SweepItem::decide() {
    Sweep::Motion motion = Sweep::Motion::spring;
    if (_reducesMotion || !isShown())
        motion = Sweep::Motion::none;
    else if (_isRunning)
        motion = Sweep::Motion::linear;
    if (motion == Sweep::Motion::none || _sweep.target() != _progress)
        _sweep.aim(_progress, motion, pathLength() * pixelRatio(), now());
    show();
}

void SweepItem::step() {
    show();
}

void SweepItem::show() {
    const Seconds present = now();
    const double before = std::exchange(_shown, _sweep.shown(present));
    const double head = _sweep.headPresence(present);
    if (std::exchange(_headPresence, head) != head || _shown != before)
        repaint(changedArea(before, _shown));
    if (const auto delay = isShown() ? _sweep.untilNextStep(present) : std::nullopt)
        stepAfter(*delay);
    else
        stopSteps();
}

} // namespace selvane
