#pragma once

#include "SelvaneCore/Calendar.h"

#include <string>

namespace selvane {

/// The calendar in the time zone of this machine, which travellers change while the program runs.
///
/// The variable TZ decides where it is set. Otherwise the zone is the one that the link to the local zone
/// points at, below a folder "zoneinfo". Where neither names a zone (the file is a copy and not a link, or
/// the zone is unknown here), it is the zone that the process found first, and changes are not noticed.
///
/// One thread.
class LocalZone {
public:
    explicit LocalZone(std::string link = "/etc/localtime");

    /// The calendar as of now. Costs the reading of a link, and of a file only after a change.
    [[nodiscard]] Calendar current();

private:
    std::string _link;
    /// What the link pointed at when `_calendar` was made.
    std::string _target;
    Calendar _calendar;
};

} // namespace selvane
