#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/DayKey.h"

#include <QLocale>
#include <QString>

/// Dates and times as the user's locale writes them, local to a calendar.
namespace selvane {

/// The hour and minute of `date`, in the short form of `locale`: "15:06" or "3:06 PM".
[[nodiscard]] QString timeOfDay(Date date, const Calendar& calendar, const QLocale& locale);

/// Day, short month and year: "Mar 5, 2026" or "5. März 2026".
[[nodiscard]] QString abbreviatedDate(Date date, const Calendar& calendar, const QLocale& locale);

/// Short month and day, without the year: "Mar 5" or "5. März".
[[nodiscard]] QString abbreviatedDay(DayKey day, const QLocale& locale);

/// Date and time, as in "Mar 5, 2026, 3:06 PM".
[[nodiscard]] QString dateAndTime(Date date, const Calendar& calendar, const QLocale& locale);

} // namespace selvane
