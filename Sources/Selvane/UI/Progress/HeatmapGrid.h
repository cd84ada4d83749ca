#pragma once

#include "Selvane/UI/Progress/HeatmapDays.h"

#include <QLocale>
#include <QString>

#include <array>
#include <string_view>
#include <vector>

namespace selvane {

/// The squares of a heatmap and the words around them. Columns are weeks, from Sunday at the top to Saturday,
/// the last one cut off at today. A day is told by its offset from the first day, the Sunday that begins the
/// oldest column; column c and row r hold the day of offset 7 c + r.
class HeatmapGrid {
public:
    static constexpr int rows = 7;
    /// Beside the rows.
    static constexpr std::array<std::string_view, rows> weekdayLabels{"", "Mon", "", "Wed", "", "Fri", ""};

    enum class Outline { none, today, frozen };

    struct Square {
        DayKey day;
        int minutes;
        /// From 0 to 4, as `Stats::heatLevel` grades it.
        int level;
        Outline outline;

        friend bool operator==(const Square&, const Square&) = default;
    };

    struct MonthLabel {
        int column;
        QString name;

        friend bool operator==(const MonthLabel&, const MonthLabel&) = default;
    };

    /// A way to go from day to day.
    enum class Step { dayBack, dayForth, weekBack, weekForth, first, last };

    /// Nothing at all.
    HeatmapGrid() = default;
    /// Months are named as `locale` names them.
    HeatmapGrid(const HeatmapDays& days, int weeks, const QLocale& locale);

    [[nodiscard]] int columns() const { return _columns; }
    /// By offset: every day up to today, the days after it not.
    [[nodiscard]] const std::vector<Square>& squares() const { return _squares; }
    /// Today's offset; -1 without days.
    [[nodiscard]] int last() const { return static_cast<int>(_squares.size()) - 1; }
    /// The offset of the day, or of the nearest one that is in the grid; -1 without days.
    [[nodiscard]] int offsetOf(DayKey day) const;
    /// From left to right.
    [[nodiscard]] const std::vector<MonthLabel>& monthLabels() const { return _monthLabels; }

    /// Where a step leads from the day of this offset; to the day itself where the grid ends. Of a grid with
    /// days.
    [[nodiscard]] int stepped(int offset, Step step) const;

    /// A day in words: "Mar 5 · 1h 30m · streak freeze used".
    [[nodiscard]] static QString tooltip(const Square& square, const QLocale& locale);

    /// All days in words: "Last 18 weeks: focus on 40 days, goal met on 31".
    [[nodiscard]] QString summary() const;

private:
    void nameMonths(const QLocale& locale);

    int _columns = 0;
    std::vector<Square> _squares;
    std::vector<MonthLabel> _monthLabels;
};

} // namespace selvane
