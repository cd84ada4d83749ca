#pragma once

#include "SelvaneCore/Date.h"

#include <QChar>
#include <QString>

#include <optional>
#include <vector>

namespace selvane {

/// A time whose changing digits roll from the old one to the new. A value; the caller tells the time, on any
/// clock that only goes forward.
class DigitRoll {
public:
    /// A place of the time, from the left.
    struct Cell {
        QChar shown;
        /// What rolls out of the cell; absent if the cell stands still, null if it was empty.
        std::optional<QChar> before;

        friend bool operator==(const Cell&, const Cell&) = default;
    };

    enum class Pace {
        /// At once.
        none,
        /// The small change of every second, in as few steps as look well.
        tick,
        /// A change that the eye follows.
        smooth
    };

    /// How long a roll of the pace `tick` takes.
    static constexpr Seconds tickLength{0.18};

    void change(const QString& time, Pace pace, Seconds now);
    /// Ends what is rolling.
    void settle() { _before = _time; }

    [[nodiscard]] const QString& time() const { return _time; }
    [[nodiscard]] std::vector<Cell> cells() const;
    /// How far the rolling cells have come: from 0 to 1, and beyond while they swing.
    [[nodiscard]] double position(Seconds now) const;
    /// Until the cells have to be drawn again; absent once they rest.
    [[nodiscard]] std::optional<Seconds> untilNextStep(Seconds now) const;

private:
    [[nodiscard]] Seconds length() const;

    QString _time;
    QString _before;
    Pace _pace = Pace::none;
    Seconds _start{0};
};

} // namespace selvane
