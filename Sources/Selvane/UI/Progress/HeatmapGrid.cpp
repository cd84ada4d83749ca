#include "Selvane/UI/Progress/HeatmapGrid.h"

#include "Selvane/App/DateText.h"
#include "SelvaneCore/Stats.h"
#include "SelvaneCore/TimeFormat.h"

#include <algorithm>
#include <optional>

namespace selvane {

namespace {

HeatmapGrid::Outline outlineOf(DayKey day, const HeatmapDays& days) {
    if (days.frozenDays.contains(day))
        return HeatmapGrid::Outline::frozen;
    return day == days.today ? HeatmapGrid::Outline::today : HeatmapGrid::Outline::none;
}

/// The grade of a day that reached its goal.
constexpr int levelOfGoal = 3;

QString counted(std::ptrdiff_t count, const QString& noun) {
    return QStringLiteral("%1 %2%3").arg(count).arg(noun, count == 1 ? QString() : QStringLiteral("s"));
}

} // namespace

HeatmapGrid::HeatmapGrid(const HeatmapDays& days, int weeks, const QLocale& locale)
    : _columns(std::max(weeks, 0)) {
    // 1. The first day is the Sunday of the oldest week, whatever day the user's weeks begin with.
    const int daysSinceSunday = days.today.weekday(days.calendar) - 1;
    const DayKey first = days.today.adding(-((_columns - 1) * rows + daysSinceSunday), days.calendar);

    // 2. A square for each day up to today.
    for (int offset = 0; offset < _columns * rows; ++offset) {
        const DayKey day = first.adding(offset, days.calendar);
        if (day > days.today)
            break;
        const auto found = days.minutesByDay.find(day);
        const int minutes = found == days.minutesByDay.end() ? 0 : found->second;
        _squares.push_back({day, minutes, Stats::heatLevel(minutes, days.goal), outlineOf(day, days)});
    }
    nameMonths(locale);
}

int HeatmapGrid::offsetOf(DayKey day) const {
    const auto found = std::ranges::lower_bound(_squares, day, {}, &Square::day);
    return std::min(static_cast<int>(found - _squares.begin()), last());
}

void HeatmapGrid::nameMonths(const QLocale& locale) {
    // 1. A column is of the month of its first day. One that begins a month gets its name, unless too little
    // of the month is in sight.
    std::optional<int> lastMonth;
    for (int column = 0; column * rows < static_cast<int>(_squares.size()); ++column) {
        const int month = _squares[static_cast<std::size_t>(column * rows)].day.month;
        if (lastMonth == month)
            continue;
        lastMonth = month;
        if (column < _columns - 2 || _monthLabels.empty())
            _monthLabels.push_back({column, locale.monthName(month, QLocale::ShortFormat)});
    }

    // 2. The stub of a month at the left edge makes way for the next name.
    if (_monthLabels.size() >= 2 && _monthLabels[1].column - _monthLabels[0].column < 3)
        _monthLabels.erase(_monthLabels.begin());
}

int HeatmapGrid::stepped(int offset, Step step) const {
    const auto to = [&](int target) { return target < 0 || target > last() ? offset : target; };
    switch (step) {
    case Step::dayBack:
        return to(offset - 1);
    case Step::dayForth:
        return to(offset + 1);
    case Step::weekBack:
        return to(offset - rows);
    case Step::weekForth:
        return to(offset + rows);
    case Step::first:
        return 0;
    case Step::last:
        return last();
    }
    return offset;
}

QString HeatmapGrid::tooltip(const Square& square, const QLocale& locale) {
    QString text = abbreviatedDay(square.day, locale);
    const bool frozen = square.outline == Outline::frozen;
    if (square.minutes != 0)
        text += QStringLiteral(" · ") + QString::fromStdString(TimeFormat::duration(square.minutes));
    if (frozen)
        text += QStringLiteral(" · streak freeze used");
    if (square.minutes == 0 && !frozen)
        text += QStringLiteral(" · no focus");
    return text;
}

QString HeatmapGrid::summary() const {
    const auto focused =
        std::ranges::count_if(_squares, [](const Square& square) { return square.minutes > 0; });
    const auto met =
        std::ranges::count_if(_squares, [](const Square& square) { return square.level >= levelOfGoal; });
    return QStringLiteral("Last %1: focus on %2, goal met on %3")
        .arg(counted(_columns, QStringLiteral("week")), counted(focused, QStringLiteral("day")))
        .arg(met);
}

} // namespace selvane
