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
        QStringLiteral("^dddd?\\s*[,.،፣]?\\s*(?:'[^']*'[^\\sdMy]*\\s*|ที่\\s*)?"
                       "|\\s*[,.(]?\\s*dddd?(?:'[^']*'|[^'dMy])*$"));
    QString format = locale.dateFormat(QLocale::LongFormat);
    format.remove(weekday);
    return format.replace(QStringLiteral("MMMM"), QStringLiteral("MMM"));
}

/// The part of a date's format that has the day and the month: all after the year, or all before it but what
/// leads over to it.
QString withoutYear(const QString& format) {
    qsizetype year = -1;
    qsizetype dayAndMonth = -1;
    qsizetype end = -1;
    bool quoted = false;
    for (qsizetype index = 0; index < format.size(); ++index) {
        const QChar letter = format[index];
        if (letter == u'\'')
            quoted = !quoted;
        else if (!quoted && letter == u'y' && year < 0)
            year = index;
        else if (!quoted && (letter == u'd' || letter == u'M')) {
            dayAndMonth = dayAndMonth < 0 ? index : dayAndMonth;
            end = index + 1;
        }
    }
    if (year < 0 || dayAndMonth < 0)
        return format;
    return year < dayAndMonth ? format.mid(dayAndMonth) : format.left(end);
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

QString abbreviatedDay(DayKey day, const QLocale& locale) {
    return locale.toString(QDate(day.year, day.month, day.day), withoutYear(abbreviatedFormat(locale)));
}

QString dateAndTime(Date date, const Calendar& calendar, const QLocale& locale) {
    return abbreviatedDate(date, calendar, locale) + QStringLiteral(", ") + timeOfDay(date, calendar, locale);
}

} // namespace selvane
