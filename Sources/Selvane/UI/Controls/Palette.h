#pragma once

#include <QColor>

namespace selvane {

/// The colours of the windows under one appearance: one ink on one ground. There is no accent colour;
/// emphasis is opacity and weight. Where the desktop asks for strong contrast, edges are drawn in full ink,
/// every text has at least seven times the luminance of its ground, else four and a half times, and faint
/// marks are lifted. A value.
struct Palette {
    /// What the colours follow.
    struct Scheme {
        bool isDark = false;
        bool isHighContrast = false;

        bool operator==(const Scheme&) const = default;
    };

    [[nodiscard]] static Palette of(Scheme scheme);

    // Grounds

    /// Windows.
    QColor surface;
    /// Lies over what shines through behind the popover.
    QColor backdrop;
    /// Menus, cards: what opens above a window.
    QColor popup;
    /// Capsules and cards, on the surface.
    QColor card;
    QColor cardPressed;
    /// The chosen one of several, on a capsule.
    QColor selectedSegment;
    /// The ground of text, as ink on something filled with the primary ink.
    QColor inverse;

    // Edges

    /// Within a window.
    QColor hairline;
    /// Around a window and what opens above it.
    QColor windowEdge;
    QColor focusRing;
    /// Below the selected segment.
    QColor segmentShadow;
    /// Below what opens above a window.
    QColor popupShadow;

    // Inks

    /// What `Theme.ink` makes shades of: darker than text, so that small text at 0.6 of it can be read.
    QColor primary;
    /// Filled shapes that bear text: the prominent button, a switch that is on.
    QColor solidPrimary;
    QColor onSolidPrimary;
    QColor primaryText;
    QColor secondaryText;
    /// Words in the place of something that is still to be chosen.
    QColor promptText;
    /// Only what is disabled, and large text that matters little. Without strong contrast it has no more than
    /// three times the luminance of its ground.
    QColor tertiaryText;

    // Lifts of the ink's opacity: what is drawn at 0 is drawn at the lift, what is drawn at 1 stays.

    /// Of what a mark says without words: a dash to come, an edge. The faintest has three times the luminance
    /// of its ground where strong contrast is asked for.
    double markLift = 0;
    /// Of what others fill, which stand out from it: a track, a day without focus.
    double trackLift = 0;
};

} // namespace selvane
