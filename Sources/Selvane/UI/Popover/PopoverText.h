#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/TimerEngine.h"

#include <QLocale>
#include <QString>

/// The sentences of the popover.
namespace selvane::PopoverText {

/// Where the timer is in its cycle: "Session 2 of 4 · ends 15:06", or the break's title. The time of day is
/// local to `calendar` and in the short form of `locale`.
[[nodiscard]] QString sessionStatus(const TimerEngine& engine, const Calendar& calendar,
                                    const QLocale& locale);

} // namespace selvane::PopoverText
