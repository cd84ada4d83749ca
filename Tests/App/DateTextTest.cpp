#include "Selvane/App/DateText.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <string>

namespace selvane {
namespace {

struct DateRow {
    const char* name;
    const char* locale;
    const char* date;
    const char* both;
};

class DateTexts : public testing::TestWithParam<DateRow> {};

TEST_P(DateTexts, AreInTheLocalesWords) {
    const QLocale locale(QString::fromLatin1(GetParam().locale));
    const Calendar calendar = test::zone("Europe/Berlin");
    const Date date = test::utc(2026, 3, 5, 23, 6);
    EXPECT_EQ(abbreviatedDate(date, calendar, locale).toStdString(), GetParam().date);
    // Unicode's newer data sets a narrow space before "AM".
    EXPECT_EQ(dateAndTime(date, calendar, locale).replace(QChar(0x202f), QLatin1Char(' ')).toStdString(),
              GetParam().both);
}

INSTANTIATE_TEST_SUITE_P(
    DateText, DateTexts,
    testing::Values(DateRow{"none", "C", "6 Mar 2026", "6 Mar 2026, 00:06"},
                    DateRow{"american", "en_US", "Mar 6, 2026", "Mar 6, 2026, 12:06 AM"},
                    DateRow{"british", "en_GB", "6 Mar 2026", "6 Mar 2026, 00:06"},
                    DateRow{"german", "de_DE", "6. März 2026", "6. März 2026, 00:06"},
                    DateRow{"japanese", "ja_JP", "2026年3月6日", "2026年3月6日, 0:06"},
                    DateRow{"danish", "da_DK", "6. mar. 2026", "6. mar. 2026, 00.06"},
                    DateRow{"thai", "th_TH", "6 มี.ค. 2026", "6 มี.ค. 2026, 00:06"},
                    DateRow{"hungarian", "hu_HU", "2026. márc. 6.", "2026. márc. 6., 0:06"},
                    DateRow{"mongolian", "mn_MN", "2026 оны 3-р сарын 6", "2026 оны 3-р сарын 6, 00:06"},
                    DateRow{"arabic", "ar_EG", "٦ مارس ٢٠٢٦", "٦ مارس ٢٠٢٦, ١٢:٠٦ ص"}),
    [](const auto& row) { return row.param.name; });

TEST(DateText, NoLocaleKeepsTheDayOfTheWeek) {
    const Date friday = test::utc(2026, 3, 6, 12);
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
        const QString text = abbreviatedDate(friday, Calendar::utc(), locale);
        const std::string told = locale.name().toStdString() + ": " + text.toStdString();
        EXPECT_FALSE(text.contains(locale.dayName(5, QLocale::LongFormat))) << told;
        EXPECT_FALSE(text.contains(locale.standaloneDayName(5, QLocale::LongFormat))) << told;
        EXPECT_TRUE(text.contains(locale.toString(26))) << told;
        // Nor what stood between the two.
        EXPECT_FALSE(text.front().isPunct() || text.front().isMark() || text.front().isSpace()) << told;
        EXPECT_FALSE(text.back() == u',' || text.back() == u'(' || text.back().isSpace()) << told;
    }
}

struct DayRow {
    const char* name;
    const char* locale;
    const char* day;
};

class DayTexts : public testing::TestWithParam<DayRow> {};

TEST_P(DayTexts, HaveNoYear) {
    const QLocale locale(QString::fromLatin1(GetParam().locale));
    EXPECT_EQ(abbreviatedDay({2026, 3, 5}, locale).toStdString(), GetParam().day);
}

INSTANTIATE_TEST_SUITE_P(
    DateText, DayTexts,
    testing::Values(DayRow{"none", "C", "5 Mar"}, DayRow{"american", "en_US", "Mar 5"},
                    DayRow{"british", "en_GB", "5 Mar"}, DayRow{"german", "de_DE", "5. März"},
                    DayRow{"spanish", "es_ES", "5 de mar"}, DayRow{"russian", "ru_RU", "5 мар."},
                    DayRow{"bulgarian", "bg_BG", "5 март"}, DayRow{"japanese", "ja_JP", "3月5日"},
                    DayRow{"korean", "ko_KR", "3월 5일"}, DayRow{"hungarian", "hu_HU", "márc. 5."},
                    DayRow{"latvian", "lv_LV", "5. marts"}, DayRow{"lithuanian", "lt_LT", "kov. 5 d."}),
    [](const auto& row) { return row.param.name; });

TEST(DateText, NoLocaleKeepsTheYearOfADay) {
    for (const QLocale& locale :
         QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
        const QString text = abbreviatedDay({1987, 3, 5}, locale);
        EXPECT_FALSE(text.contains(locale.toString(87)) || text.contains(QStringLiteral("87")))
            << locale.name().toStdString() << ": " << text.toStdString();
        EXPECT_TRUE(text.contains(locale.toString(5)))
            << locale.name().toStdString() << ": " << text.toStdString();
    }
}

} // namespace
} // namespace selvane
