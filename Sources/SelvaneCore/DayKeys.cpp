#include "SelvaneCore/DayKeys.h"

#include <algorithm>
#include <chrono>

namespace selvane {

DayKey DayKeys::find(Date date) {
    const std::chrono::hours shift{_dayStartHour};
    const Date shifted = adding(-shift, date);
    const LocalTimes::Stretch* const stretch = _times.stretch(shifted);
    if (!stretch)
        return DayKey(date, _dayStartHour, _times.calendar());

    const auto day = std::chrono::floor<std::chrono::days>(shifted + stretch->offset);
    const std::chrono::year_month_day civil(day);
    _last = DayKey(int{civil.year()}, static_cast<int>(unsigned{civil.month()}),
                   static_cast<int>(unsigned{civil.day()}));
    const Date start = day - stretch->offset;
    _from = adding(shift, std::max(start, stretch->from));
    _until = adding(shift, std::min<Date>(start + std::chrono::days{1}, stretch->until));
    return _last;
}

} // namespace selvane
