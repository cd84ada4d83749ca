#pragma once

#include "SelvaneCore/Date.h"

#include <absl/time/civil_time.h>
#include <absl/time/time.h>

#include <optional>
#include <string_view>

namespace selvane {

/// The Gregorian calendar in one time zone. A value, passed to whatever turns instants into days; the core
/// never asks for the zone of the machine by itself.
class Calendar {
public:
    explicit Calendar(absl::TimeZone zone) : _zone(zone) {}

    /// The calendar in UTC.
    [[nodiscard]] static Calendar utc();
    /// The calendar of the named zone ("Europe/Berlin"); absent if the system has no such zone.
    [[nodiscard]] static std::optional<Calendar> named(std::string_view zone);

    /// The local date and time of `date`.
    [[nodiscard]] absl::CivilSecond civil(Date date) const;

    /// The instant of a local date and time. A time that the clocks skip takes the offset in force before the
    /// gap; a time that comes twice means the first.
    [[nodiscard]] Date date(absl::CivilSecond civil) const;

    [[nodiscard]] const absl::TimeZone& zone() const { return _zone; }

    friend bool operator==(const Calendar&, const Calendar&) = default;

private:
    absl::TimeZone _zone;
};

} // namespace selvane
