#include "SelvaneCore/Calendar.h"

namespace selvane {

Calendar Calendar::utc() {
    return Calendar(absl::UTCTimeZone());
}

std::optional<Calendar> Calendar::named(std::string_view zone) {
    absl::TimeZone found;
    if (!absl::LoadTimeZone(absl::string_view(zone.data(), zone.size()), &found))
        return std::nullopt;
    return Calendar(found);
}

absl::CivilSecond Calendar::civil(Date date) const {
    return absl::ToCivilSecond(absl::FromUnixMicros(date.time_since_epoch().count()), _zone);
}

Date Calendar::date(absl::CivilSecond civil) const {
    // `pre` uses the offset before a transition: in a gap that is the one asked for, in a repeat the first.
    return Date{Date::duration{absl::ToUnixMicros(_zone.At(civil).pre)}};
}

} // namespace selvane
