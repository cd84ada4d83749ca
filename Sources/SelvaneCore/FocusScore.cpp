#include "SelvaneCore/FocusScore.h"

#include <algorithm>
#include <cmath>

namespace selvane::FocusScore {

namespace {

constexpr Seconds leastTotal{1.0};

} // namespace

std::optional<double> compute(std::span<const AppUsage> apps, const DistractingSet& distracting) {
    Seconds total{0.0};
    Seconds lost{0.0};
    for (const AppUsage& usage : apps) {
        if (usage.isAway())
            continue;
        total += usage.seconds;
        if (distracting.contains(usage.bundleID))
            lost += usage.seconds;
    }
    if (!(total >= leastTotal) || !std::isfinite(total.count()))
        return std::nullopt;
    // Records made by hand may hold negative times.
    return std::clamp(1.0 - lost / total, 0.0, 1.0);
}

} // namespace selvane::FocusScore
