#include "Selvane/UI/Progress/HeatmapData.h"

#include "Selvane/UI/Progress/HeatmapDays.h"

#include <utility>

namespace selvane {

HeatmapData::HeatmapData(HeatmapDays days) : _days(std::make_shared<const HeatmapDays>(std::move(days))) {}

} // namespace selvane
