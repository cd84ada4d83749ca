#pragma once

#include <optional>

namespace selvane {

/// How the panel lies among the windows of the screen.
enum class PanelLevel {
    /// As any window: those that get the keyboard come in front of it.
    normal,
    /// In front of everything.
    floating,
};

/// What a window of this program is to the panel.
enum class ProgramWindow { panel, main, other };

/// The panel floats, but lets the main window in front of it while that has the keyboard.
///
/// `key` is the window of this program that has the keyboard, if one has; `closing` one that is about to
/// close, though it may still have the keyboard.
[[nodiscard]] PanelLevel panelLevel(std::optional<ProgramWindow> key, std::optional<ProgramWindow> closing);

} // namespace selvane
