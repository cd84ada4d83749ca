#include "SelvaneCore/AppUsageOrder.h"

#include "SelvaneCore/Text.h"

#include <compare>

namespace selvane {

bool ranksBefore(const AppUsage& left, const AppUsage& right) {
    const std::weak_ordering bySeconds = std::weak_order(right.seconds.count(), left.seconds.count());
    return bySeconds != 0 ? bySeconds < 0 : Text::compare(left.name, right.name) < 0;
}

} // namespace selvane
