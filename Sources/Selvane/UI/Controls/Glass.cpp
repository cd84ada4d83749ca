#include "Selvane/UI/Controls/Glass.h"

#include "Selvane/UI/Controls/Ink.h"

namespace selvane {

namespace {

QColor white(double alpha) {
    return QColor::fromRgbF(1, 1, 1, static_cast<float>(alpha));
}

QColor black(double alpha) {
    return QColor::fromRgbF(0, 0, 0, static_cast<float>(alpha));
}

void coat(CapsuleColors& colors, const QColor& color) {
    colors.top = over(color, colors.top);
    colors.bottom = over(color, colors.bottom);
}

/// Without tint and at rest. In the dark the light comes from above and catches the rim; in the light a rim
/// would be lost on the ground, and a hairline takes its place.
CapsuleColors bareGlass(GlassMaterial::Kind kind, const Palette& palette, bool isDark) {
    switch (kind) {
    case GlassMaterial::Kind::clear:
        return isDark ? CapsuleColors{white(0.03), white(0.01), white(0.2), white(0.09)}
                      : CapsuleColors{black(0), black(0.012), palette.hairline, palette.hairline};
    case GlassMaterial::Kind::regular:
        return isDark ? CapsuleColors{white(0.11), white(0.055), white(0.26), white(0.09)}
                      : CapsuleColors{black(0.025), black(0.085), palette.hairline, palette.hairline};
    }
    return {};
}

CapsuleColors flatCapsule(CapsuleState state, const Palette& palette) {
    const QColor fill = state == CapsuleState::pressed ? palette.cardPressed : palette.card;
    return {fill, fill, palette.hairline, palette.hairline};
}

CapsuleColors glassCapsule(const GlassMaterial& material, CapsuleState state, const Palette& palette,
                           bool isDark) {
    CapsuleColors colors = bareGlass(material.kind, palette, isDark);
    if (material.whiteTint > 0)
        coat(colors, white(material.whiteTint));
    if (!material.isInteractive)
        return colors;
    switch (state) {
    case CapsuleState::resting:
        break;
    case CapsuleState::hovered:
        coat(colors, isDark ? white(0.04) : black(0.025));
        break;
    case CapsuleState::pressed:
        coat(colors, isDark ? white(0.08) : black(0.06));
        break;
    }
    return colors;
}

} // namespace

std::optional<GlassMaterial> glassMaterial(Look::Glass level, CapsuleUse use, Palette::Scheme scheme) {
    const bool interactive = use == CapsuleUse::interactive;
    // Glass would take from the contrast that was asked for.
    if (scheme.isHighContrast)
        return std::nullopt;
    switch (level) {
    case Look::Flat:
        return std::nullopt;
    case Look::Clear:
        return GlassMaterial{.kind = GlassMaterial::Kind::clear};
    case Look::Regular:
        return GlassMaterial{.kind = GlassMaterial::Kind::regular, .isInteractive = interactive};
    case Look::Tinted:
        return GlassMaterial{.kind = GlassMaterial::Kind::regular,
                             .whiteTint = scheme.isDark ? 0.2 : 0.45,
                             .isInteractive = interactive};
    }
    return std::nullopt;
}

CapsuleColors capsuleColors(Look::Glass level, CapsuleUse use, CapsuleState state, Palette::Scheme scheme) {
    const Palette palette = Palette::of(scheme);
    const std::optional<GlassMaterial> material = glassMaterial(level, use, scheme);
    return material ? glassCapsule(*material, state, palette, scheme.isDark) : flatCapsule(state, palette);
}

} // namespace selvane
