#include "Selvane/UI/Timer/CycleDash.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace selvane::CycleDash {

namespace {

constexpr double faintest = 0.3;
constexpr double strongest = 0.75;
/// From one end of the pulse to the other.
constexpr Seconds halfPulse{1.4};

double pulseOpacity(Seconds sinceStart) {
    // Eases in and out of both ends.
    const double part = (1 - std::cos(sinceStart / halfPulse * std::numbers::pi)) / 2;
    return std::lerp(faintest, strongest, part);
}

} // namespace

std::vector<Look> row(Phase phase, int position, int length, Pulse pulse) {
    const int count = std::max(length, 1);
    std::vector<Look> looks(static_cast<std::size_t>(count), Look::full);
    if (phase == Phase::longBreak)
        return looks;
    const bool pulses = phase == Phase::focus && pulse == Pulse::moving;
    for (int index = std::max(position - 1, 0); index < count; ++index) {
        Look& look = looks[static_cast<std::size_t>(index)];
        if (index == position - 1)
            look = pulses ? Look::pulsing : Look::current;
        else
            look = Look::ahead;
    }
    return looks;
}

double opacity(Look look, Seconds sinceStart) {
    switch (look) {
    case Look::full:
        return 1;
    case Look::pulsing:
        return pulseOpacity(sinceStart);
    case Look::current:
        return 0.5;
    case Look::ahead:
        return 0.15;
    }
    __builtin_unreachable();
}

QString label(int position, int length) {
    const int count = std::max(length, 1);
    return QStringLiteral("Session %1 of %2").arg(std::min(position, count)).arg(count);
}

QString tooltip(int position, int length) {
    return label(position, length) + QStringLiteral(" before a long break");
}

} // namespace selvane::CycleDash
