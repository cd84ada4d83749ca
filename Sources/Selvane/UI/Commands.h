#pragma once

#include "Selvane/App/AppModel.h"

#include <string_view>

namespace selvane {

class WindowCoordinator;

/// The commands of the program as the user sees them: their words, when they apply and what they do.
namespace Commands {

/// "Pause" while running, "Resume" while paused, otherwise "Start".
[[nodiscard]] std::string_view primaryLabel(const TimerEngine& engine);
inline constexpr std::string_view resetLabel = "Reset";
inline constexpr std::string_view skipLabel = "Skip";
inline constexpr std::string_view resetTooltip = "Reset this phase";
inline constexpr std::string_view statisticsLabel = "Statistics";
inline constexpr std::string_view settingsLabel = "Settings";
inline constexpr std::string_view whatsNewLabel = "What's New";
inline constexpr std::string_view quitLabel = "Quit Selvane";
[[nodiscard]] std::string_view skipTooltip(const TimerEngine& engine);
/// "Update Available…" while there is one, otherwise "Check for Updates…".
[[nodiscard]] std::string_view updateLabel(const Updater& updater);

// The keys of the popover's commands, as the user reads them and as the window takes them.

inline constexpr std::string_view tasksShortcut = "Ctrl+1";
inline constexpr std::string_view progressShortcut = "Ctrl+2";
inline constexpr std::string_view statisticsShortcut = "Ctrl+S";
inline constexpr std::string_view settingsShortcut = "Ctrl+,";
inline constexpr std::string_view quitShortcut = "Ctrl+Q";

[[nodiscard]] bool canReset(const TimerEngine& engine);

/// What the popover's Reset button does: abandons the run, and the music that the timer started goes with it.
void resetFromPopover(AppModel& model);

/// Shows a pane in the main window. Nothing without a window.
void openPane(AppModel& model, WindowCoordinator* windows, Pane pane);

} // namespace Commands

} // namespace selvane
