#include "Selvane/UI/TimeOfDay.h"

#include <QTime>

namespace selvane {

QString timeOfDay(Date date, const Calendar& calendar, const QLocale& locale) {
    const absl::CivilSecond civil = calendar.civil(date);
    const QTime time(civil.hour(), civil.minute(), civil.second());
    // The short form of the C locale is no short form: it has seconds.
    if (locale.language() == QLocale::C)
        return time.toString(QStringLiteral("HH:mm"));
    return locale.toString(time, QLocale::ShortFormat);
}

} // namespace selvane
