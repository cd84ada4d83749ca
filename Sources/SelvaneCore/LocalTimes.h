#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"

#include <chrono>
#include <map>

namespace selvane {

/// The local times of many instants in one calendar: what `Calendar::civil` tells, at the price of an
/// addition for an instant between the same two clock changes as the one before, and of a search for one near
/// an earlier one.
///
/// A value; each thread needs its own.
class LocalTimes {
public:
    /// A stretch of time, without its end, in which the local clocks run on evenly.
    struct Stretch {
        Date from;
        Date until;
        /// What local time is ahead of UTC.
        std::chrono::seconds offset;

        [[nodiscard]] bool contains(Date date) const { return from <= date && date < until; }
    };

    explicit LocalTimes(const Calendar& calendar) : _calendar(calendar) {}

    /// A stretch that contains `date`, no longer than the clocks run on. Null outside the years 1 to 2299,
    /// for which only the calendar can tell. Valid until the next call.
    [[nodiscard]] const Stretch* stretch(Date date);

    /// The hour of the local time of `date`, 0 to 23.
    [[nodiscard]] int hour(Date date);

    [[nodiscard]] const Calendar& calendar() const { return _calendar; }

private:
    Calendar _calendar;
    std::map<Date, Stretch> _known;
    Stretch _last{};
};

} // namespace selvane
