#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"

#include <QLocale>
#include <QString>

namespace selvane {

/// The hour and minute of `date`, local to `calendar` and in the short form of `locale`: "15:06" or "3:06
/// PM".
[[nodiscard]] QString timeOfDay(Date date, const Calendar& calendar, const QLocale& locale);

} // namespace selvane
