#include "Selvane/UI/Controls/Palette.h"

namespace selvane {

namespace {

QColor grey(double white, double alpha = 1) {
    return QColor::fromRgbF(static_cast<float>(white), static_cast<float>(white), static_cast<float>(white),
                            static_cast<float>(alpha));
}

QColor rgb(double red, double green, double blue, double alpha = 1) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green), static_cast<float>(blue),
                            static_cast<float>(alpha));
}

Palette light() {
    return {
        .surface = grey(0.985),
        .backdrop = grey(1, 0.88),
        .popup = grey(1),
        .card = grey(0, 0.045),
        .cardPressed = grey(0, 0.09),
        .selectedSegment = grey(1),
        .inverse = grey(1),
        .hairline = grey(0, 0.07),
        .windowEdge = grey(0, 0.16),
        .focusRing = grey(0, 0.5),
        .segmentShadow = grey(0, 0.12),
        .popupShadow = grey(0, 0.2),
        .primary = rgb(0.05, 0.05, 0.06),
        .solidPrimary = rgb(0.11, 0.11, 0.12),
        .onSolidPrimary = grey(1),
        .primaryText = rgb(0.11, 0.11, 0.12),
        .secondaryText = grey(0, 0.6),
        .promptText = rgb(0.05, 0.05, 0.06, 0.6),
        .tertiaryText = grey(0, 0.43),
    };
}

Palette dark() {
    return {
        .surface = rgb(0.05, 0.05, 0.055),
        .backdrop = grey(0, 0.75),
        .popup = rgb(0.13, 0.13, 0.14),
        .card = grey(1, 0.08),
        .cardPressed = grey(1, 0.14),
        .selectedSegment = grey(1, 0.16),
        .inverse = rgb(0.06, 0.06, 0.07),
        .hairline = grey(1, 0.07),
        .windowEdge = grey(1, 0.16),
        .focusRing = grey(1, 0.6),
        .segmentShadow = grey(0, 0),
        .popupShadow = grey(0, 0.5),
        .primary = grey(1),
        .solidPrimary = grey(1),
        .onSolidPrimary = rgb(0.06, 0.06, 0.07),
        .primaryText = grey(1, 0.95),
        .secondaryText = grey(1, 0.67),
        .promptText = grey(1, 0.6),
        .tertiaryText = grey(1, 0.38),
    };
}

/// The same with nothing faint in it.
Palette strong(Palette palette, bool isDark) {
    const double full = isDark ? 1 : 0;
    palette.surface = grey(1 - full);
    palette.backdrop = grey(1 - full);
    palette.popup = grey(1 - full);
    palette.inverse = grey(1 - full);
    palette.hairline = grey(full);
    palette.windowEdge = grey(full);
    palette.focusRing = grey(full);
    palette.primary = grey(full);
    palette.solidPrimary = grey(full);
    palette.onSolidPrimary = grey(1 - full);
    palette.primaryText = grey(full);
    palette.secondaryText = grey(full, 0.88);
    palette.promptText = grey(full, 0.8);
    palette.tertiaryText = grey(full, 0.7);
    palette.markLift = 0.45;
    palette.trackLift = 0.16;
    return palette;
}

} // namespace

Palette Palette::of(Scheme scheme) {
    const Palette palette = scheme.isDark ? dark() : light();
    return scheme.isHighContrast ? strong(palette, scheme.isDark) : palette;
}

} // namespace selvane
