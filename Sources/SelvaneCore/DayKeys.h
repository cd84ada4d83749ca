#pragma once

#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/LocalTimes.h"

namespace selvane {

/// The days that many instants belong to: what `DayKey`'s constructor tells, at the price of a comparison for
/// an instant in the same day as the one before.
///
/// A value; each thread needs its own.
class DayKeys {
public:
    DayKeys(int dayStartHour, const Calendar& calendar) : _dayStartHour(dayStartHour), _times(calendar) {}

    /// The day that `date` belongs to.
    [[nodiscard]] DayKey operator()(Date date) { return _from <= date && date < _until ? _last : find(date); }

private:
    DayKey find(Date date);

    int _dayStartHour;
    LocalTimes _times;
    /// The day found last, and the instants that are known to belong to it.
    DayKey _last{1970, 1, 1};
    Date _from;
    Date _until;
};

} // namespace selvane
