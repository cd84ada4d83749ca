#include "Selvane/App/DateText.h"

#include <QDate>
#include <QRegularExpression>
#include <QTime>

namespace selvane {

namespace {

/// The locale's long form without the day of the week and with the month cut short. Qt has no form of its own
/// between one of numbers and one of full words.
QString abbreviatedFormat(const QLocale& locale) {
    static const QRegularExpression weekday(
        QStringLiteral("^dddd?[,.،]?\\s*(?:'[^']*'\\s*|ที่\\s*)?|\\s*[,.(]?\\s*dddd?\\)?$"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(weekday);
    return format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
}

} // namespace

QString timeOfDay(Date date, const Calendar& calendar, const QLocale& locale) {
    const absl::CivilSecond civil = calendar.civil(date);
    const QTime time(civil.hour(), civil.minute(), civil.second());
    // The short form of the C locale is no short form: it has seconds.
    if (locale.language() == QLocale::C)
        return time.toString(QStringLiteral("HH:mm"));
    return locale.toString(time, QLocale::ShortFormat);
}

QString abbreviatedDate(Date date, const Calendar& calendar, const QLocale& locale) {
    const absl::CivilSecond civil = calendar.civil(date);
    return locale.toString(QDate(static_cast<int>(civil.year()), civil.month(), civil.day()),
                           abbreviatedFormat(locale));
}

QString dateAndTime(Date date, const Calendar& calendar, const QLocale& locale) {
    return abbreviatedDate(date, calendar, locale) + QStringLiteral(", ") + timeOfDay(date, calendar, locale);
}

} // namespace selvane
