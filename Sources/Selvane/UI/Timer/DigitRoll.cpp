#include "Selvane/UI/Timer/DigitRoll.h"

#include "Selvane/UI/Controls/Spring.h"

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

constexpr double response = 0.5;
constexpr double dampingFraction = 0.85;
constexpr Seconds smoothStep{1.0 / 60};
/// A tick's roll is cut short: what is left of the way is a few pixels, and a frame less.
constexpr Seconds tickStep = DigitRoll::tickLength / 2;
/// Sums of steps miss the end by less.
constexpr Seconds nothing{1e-6};

} // namespace

void DigitRoll::change(const QString& time, Pace pace, Seconds now) {
    // A roll that is under way ends where it was bound for.
    _before = pace == Pace::none ? time : _time;
    _time = time;
    _pace = pace;
    _start = now;
}

std::vector<DigitRoll::Cell> DigitRoll::cells() const {
    std::vector<Cell> result;
    result.reserve(static_cast<std::size_t>(_time.size()));
    // Seconds stand below seconds, whatever the number of digits.
    const qsizetype shift = _before.size() - _time.size();
    for (qsizetype index = 0; index < _time.size(); ++index) {
        const qsizetype place = index + shift;
        const QChar before = place >= 0 ? _before.at(place) : QChar();
        result.push_back({_time.at(index), before == _time.at(index) ? std::nullopt : std::optional(before)});
    }
    return result;
}

Seconds DigitRoll::length() const {
    switch (_pace) {
    case Pace::none:
        return Seconds{0};
    case Pace::tick:
        return tickLength;
    case Pace::smooth:
        return Seconds{Spring::settlingTime(response, dampingFraction)};
    }
    __builtin_unreachable();
}

double DigitRoll::position(Seconds now) const {
    const Seconds passed = now - _start;
    if (_before == _time || passed >= length() - nothing)
        return 1;
    switch (_pace) {
    case Pace::none:
        return 1;
    case Pace::tick:
        // The first step is made at once: the frame is drawn anyway.
        return Spring::position(response, dampingFraction, (passed + tickStep).count());
    case Pace::smooth:
        return Spring::position(response, dampingFraction, passed.count());
    }
    __builtin_unreachable();
}

std::optional<Seconds> DigitRoll::untilNextStep(Seconds now) const {
    const Seconds left = _start + length() - now;
    if (_before == _time || left <= nothing)
        return std::nullopt;
    return std::min(_pace == Pace::tick ? tickStep : smoothStep, left);
}

} // namespace selvane
