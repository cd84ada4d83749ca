#pragma once

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/StatusItemHost.h"

#include <vector>

/// The menu of the status item, for hosts that show one.
namespace selvane::StatusMenu {

/// What a line of the menu does. The values are the ids of its lines.
enum class Command { open = 1, toggle, reset, skip, quit };

[[nodiscard]] std::vector<StatusMenuEntry> entries(const TimerEngine& engine);

} // namespace selvane::StatusMenu
