#pragma once

#include <array>
#include <string_view>

/// The symbols that the program can draw.
namespace selvane::Symbols {

/// Every name, sorted. Each has a drawing, a file of its name in Resources/Symbols.
inline constexpr std::array<std::string_view, 47> names{
    "arrow.counterclockwise",
    "arrow.up.forward.app",
    "bolt",
    "book",
    "brain.head.profile",
    "calendar",
    "chart.bar",
    "checklist",
    "checkmark",
    "checkmark.circle",
    "checkmark.circle.fill",
    "chevron.down",
    "circle.slash",
    "clock",
    "cloud.rain",
    "cup.and.saucer",
    "ellipsis",
    "exclamationmark.circle",
    "exclamationmark.circle.fill",
    "exclamationmark.triangle",
    "eye",
    "figure.walk",
    "flame",
    "flame.fill",
    "gearshape",
    "globe",
    "headphones",
    "heart",
    "laptopcomputer",
    "leaf",
    "minus.circle.fill",
    "moon",
    "music.note",
    "paintbrush.pointed",
    "pause.fill",
    "pencil",
    "plus",
    "scope",
    "snowflake",
    "sparkles",
    "speaker.slash",
    "speaker.wave.2.fill",
    "sun.max",
    "target",
    "timer",
    "trophy",
    "waveform",
};

[[nodiscard]] bool contains(std::string_view name);

} // namespace selvane::Symbols
