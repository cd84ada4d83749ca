#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Controls/Palette.h"

#include <QColor>

#include <optional>

namespace selvane {

/// A kind of glass. Nothing shines through it here: it is told by how much of the ground it covers and by the
/// light on its rim.
struct GlassMaterial {
    enum class Kind { clear, regular };

    Kind kind = Kind::clear;
    /// Opacity of the white in it, from 0 to 1.
    double whiteTint = 0;
    /// Answers to the pointer.
    bool isInteractive = false;

    bool operator==(const GlassMaterial&) const = default;
};

/// What a capsule does about the pointer.
enum class CapsuleUse { passive, interactive };
enum class CapsuleState { resting, hovered, pressed };

/// The colours of a capsule, from its top to its bottom. The edge lies inside the shape.
struct CapsuleColors {
    QColor top;
    QColor bottom;
    QColor edgeTop;
    QColor edgeBottom;

    bool operator==(const CapsuleColors&) const = default;
};

/// The material for a level of glass; absent where surfaces are flat.
[[nodiscard]] std::optional<GlassMaterial> glassMaterial(Look::Glass level, CapsuleUse use,
                                                         Palette::Scheme scheme);

/// How a capsule is drawn on the windows' surface: in the level's glass, or flat.
[[nodiscard]] CapsuleColors capsuleColors(Look::Glass level, CapsuleUse use, CapsuleState state,
                                          Palette::Scheme scheme);

} // namespace selvane
