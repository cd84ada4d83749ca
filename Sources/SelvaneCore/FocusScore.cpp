#include "SelvaneCore/FocusScore.h"

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
    if (!(total >= leastTotal))
        return std::nullopt;
    return 1.0 - lost / total;
}

} // namespace selvane::FocusScore
