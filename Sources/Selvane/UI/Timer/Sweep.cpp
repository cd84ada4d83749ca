#include "Selvane/UI/Timer/Sweep.h"

#include "Selvane/UI/Controls/Spring.h"

#include <algorithm>
#include <cmath>

namespace selvane {

namespace {

constexpr Seconds linearLength{1};
constexpr double springResponse = 0.5;
/// Of a motion that the eye follows.
constexpr Seconds smoothStep{1.0 / 60};
/// Of the slow sweep from tick to tick.
constexpr double mostStepsOfATick = 10;
/// No tick goes as far: the shortest phase has 60 of them.
constexpr double farthestTick = 0.05;

} // namespace

void Sweep::jump(double target) {
    _target = target;
    _from = target;
    _to = target;
    _headFrom = target > 0 ? 1 : 0;
    _headTo = _headFrom;
    _motion = Motion::none;
    _length = Seconds{0};
}

void Sweep::aim(double target, Motion motion, double pathPixels, Seconds now) {
    const double from = shown(now);
    const double distance = std::abs(target - from);
    // Half a pixel is the least that smoothed edges show.
    const double head = headPresence(now);
    const bool headChanges = head != (target > 0 ? 1 : 0);
    const double visibleSteps =
        headChanges ? std::max(distance * pathPixels * 2, mostStepsOfATick) : distance * pathPixels * 2;
    _target = target;
    if (motion == Motion::linear && visibleSteps < 1 && std::abs(target - _to) * pathPixels * 2 < 1)
        return;
    if (motion == Motion::none || visibleSteps < 1.5) {
        jump(target);
        return;
    }
    _from = from;
    _to = target;
    _headFrom = head;
    _headTo = target > 0 ? 1 : 0;
    _motion = motion;
    _start = now;
    switch (motion) {
    case Motion::none:
        break;
    case Motion::linear: {
        const double most = distance > farthestTick ? linearLength / smoothStep : mostStepsOfATick;
        _step = linearLength / std::min(std::round(visibleSteps), most);
        _length = linearLength;
        break;
    }
    case Motion::spring:
        _step = smoothStep;
        _length = Seconds{Spring::settlingTime(springResponse, 1)};
        break;
    }
}

double Sweep::travelled(Seconds now) const {
    const Seconds passed = now - _start;
    switch (_motion) {
    case Motion::none:
        return 1;
    case Motion::linear: {
        // The first step is made at once: the frame is drawn anyway.
        const double steps = std::floor(passed / _step + 1e-6) + 1;
        return std::clamp(steps * (_step / _length), 0.0, 1.0);
    }
    case Motion::spring:
        return passed >= _length ? 1 : Spring::position(springResponse, 1, passed.count());
    }
    __builtin_unreachable();
}

double Sweep::shown(Seconds now) const {
    return std::lerp(_from, _to, travelled(now));
}

double Sweep::headPresence(Seconds now) const {
    return std::lerp(_headFrom, _headTo, travelled(now));
}

std::optional<Seconds> Sweep::untilNextStep(Seconds now) const {
    const Seconds passed = now - _start;
    switch (_motion) {
    case Motion::none:
        return std::nullopt;
    case Motion::linear: {
        const double steps = std::floor(passed / _step + 1e-6) + 1;
        const Seconds next = steps * _step;
        if (next > _length - _step / 2)
            return std::nullopt;
        return next - passed;
    }
    case Motion::spring:
        if (passed >= _length)
            return std::nullopt;
        return _step;
    }
    __builtin_unreachable();
}

} // namespace selvane
