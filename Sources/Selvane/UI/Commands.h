#pragma once

#include "Selvane/App/AppModel.h"

#include <string_view>

/// The commands of the program as the user sees them: their words, when they apply and what they do.
namespace selvane::Commands {

/// "Pause" while running, "Resume" while paused, otherwise "Start".
[[nodiscard]] std::string_view primaryLabel(const TimerEngine& engine);
inline constexpr std::string_view resetLabel = "Reset";
inline constexpr std::string_view skipLabel = "Skip";
inline constexpr std::string_view resetTooltip = "Reset this phase";
inline constexpr std::string_view quitLabel = "Quit";
inline constexpr std::string_view quitTooltip = "Quit Selvane (Ctrl+Q)";
inline constexpr std::string_view quitDescription = "Quit Selvane";
[[nodiscard]] std::string_view skipTooltip(const TimerEngine& engine);

[[nodiscard]] bool canReset(const TimerEngine& engine);

/// What the popover's Reset button does: abandons the run, and the music that the timer started goes with it.
void resetFromPopover(AppModel& model);

} // namespace selvane::Commands
