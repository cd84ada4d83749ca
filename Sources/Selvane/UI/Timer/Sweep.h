#pragma once

#include "SelvaneCore/Date.h"

#include <optional>

namespace selvane {

/// Where the end of an arc or a bar is drawn while it is on its way to a new place. A value; the caller tells
/// the time, on any clock that only goes forward.
///
/// It steps only as often as a step can be seen, so that a long phase costs nothing between its ticks, and
/// not even at every tick.
class Sweep {
public:
    enum class Motion {
        /// At once.
        none,
        /// Evenly within a second, so that ticks of a second join into one motion.
        linear,
        /// As a spring that doesn't pass its target.
        spring
    };

    /// Goes to a share from 0 to 1 at once.
    void jump(double target);
    /// Sets out for a share. `pathPixels` is how many pixels of the screen the whole path has.
    void aim(double target, Motion motion, double pathPixels, Seconds now);

    [[nodiscard]] double target() const { return _target; }
    /// Where it is drawn now.
    [[nodiscard]] double shown(Seconds now) const;
    /// How much of the head at the end is there, from 0 to 1: it goes with the last of the line, and comes
    /// with the first.
    [[nodiscard]] double headPresence(Seconds now) const;
    /// Until it has to be drawn again; absent once it has arrived.
    [[nodiscard]] std::optional<Seconds> untilNextStep(Seconds now) const;

private:
    /// How far it has come on its way, from 0 to 1.
    [[nodiscard]] double travelled(Seconds now) const;

    double _target = 0;
    double _from = 0;
    double _to = 0;
    double _headFrom = 0;
    double _headTo = 0;
    Motion _motion = Motion::none;
    Seconds _start{0};
    Seconds _step{0};
    Seconds _length{0};
};

} // namespace selvane
