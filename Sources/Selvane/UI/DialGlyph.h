#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <QColor>
#include <QRectF>

#include <cstddef>
#include <memory>
#include <unordered_map>

QT_FORWARD_DECLARE_CLASS(QPainter)

namespace selvane {

/// The small dial of the status area. Main thread; keeps the dials that it made, so that most ticks cost a
/// look-up.
class DialGlyph {
public:
    enum class Style { idle, running, paused, onBreak };

    /// What a dial shows.
    struct State {
        /// The share of the phase that is left, 0 to 1.
        double remaining;
        Style style;
        /// A distraction is confirmed: a dot stands in the middle.
        bool drifting;

        friend bool operator==(const State&, const State&) = default;
    };

    /// The dial of a phase that is not under way: three quarters of a ring.
    static constexpr State resting{0.75, Style::idle, false};

    DialGlyph();
    DialGlyph(const DialGlyph&) = delete;
    DialGlyph& operator=(const DialGlyph&) = delete;
    ~DialGlyph();

    /// The dial of `state`, with the share rounded to one of 120 steps. States that round alike share one
    /// image. Images that are one step apart resemble each other.
    [[nodiscard]] std::shared_ptr<const TemplateImage> image(const State& state);

    /// Forgets the dials that nobody holds, and the drawings of the others.
    void forgetUnused();

private:
    class Drawings;
    class Image;
    struct Hash {
        std::size_t operator()(const State& state) const noexcept;
    };

    std::shared_ptr<Drawings> _drawings;
    std::unordered_map<State, std::shared_ptr<const Image>, Hash> _images;
};

/// The dial's drawing.
namespace DialMark {

/// Paints the dial into the square `bounds` with strokes of `lineWidth`, in the bounds' own units.
void paint(QPainter& painter, const QRectF& bounds, const DialGlyph::State& state, double lineWidth,
           QColor ink);

} // namespace DialMark

} // namespace selvane
