#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"

#include <absl/time/civil_time.h>

#include <compare>
#include <cstddef>
#include <functional>
#include <string>
#include <utility>

namespace selvane {

/// One calendar day as the user experiences it; the unit of every figure that counts by day. A value that,
/// once made, no longer depends on a zone. Ordered by year, month and day.
struct DayKey {
    int year;
    /// From 1 to 12.
    int month;
    /// From 1 to 31.
    int day;

    /// The day of these three numbers, which are not checked.
    constexpr DayKey(int yearNumber, int monthNumber, int dayNumber)
        : year(yearNumber), month(monthNumber), day(dayNumber) {}

    /// The day that `date` belongs to when days begin `dayStartHour` hours after midnight. The shift is one
    /// of elapsed hours: on the day of a clock change it still moves exactly that many.
    DayKey(Date date, int dayStartHour, const Calendar& calendar);

    /// Noon of the day: it exists on every day, and no clock change or day-start hour moves it to another.
    /// The distant past if instants don't reach that far.
    [[nodiscard]] Date date(const Calendar& calendar) const;

    /// The moment at which the day begins; it ends at the start of the next one. An hour that the clocks skip
    /// is told by the offset before the gap, one that comes twice means the first. The distant past if
    /// instants don't reach that far.
    [[nodiscard]] Date start(int dayStartHour, const Calendar& calendar) const;

    /// The day that lies `days` dates later, or earlier if negative. A day that the zone skipped as a whole
    /// is stepped over in the direction of travel, so that single steps visit each day once; a longer step
    /// still counts its date. Goes on by dates where instants end, and stops at the first and last year.
    [[nodiscard]] DayKey adding(int days, const Calendar& calendar) const;

    /// From 1 for Sunday to 7 for Saturday. That of its noon: of a day that the zone skipped, the next one's.
    [[nodiscard]] int weekday(const Calendar& calendar) const;

    /// The day as in "2026-03-05".
    [[nodiscard]] std::string description() const;

    friend auto operator<=>(const DayKey&, const DayKey&) = default;

    template <typename Hash>
    friend Hash AbslHashValue(Hash hash, const DayKey& key) {
        return Hash::combine(std::move(hash), key.year, key.month, key.day);
    }
};

} // namespace selvane

template <>
struct std::hash<selvane::DayKey> {
    std::size_t operator()(const selvane::DayKey& key) const noexcept;
};
