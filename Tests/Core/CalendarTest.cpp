#include "SelvaneCore/Calendar.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

using absl::CivilSecond;
using test::utc;
using test::zone;

TEST(Calendar, UnknownZonesAreAbsent) {
    EXPECT_EQ(Calendar::named("Europe/Atlantis"), std::nullopt);
    EXPECT_NE(Calendar::named("Europe/Berlin"), std::nullopt);
}

TEST(Calendar, CalendarsAreEqualIfTheirZonesAre) {
    EXPECT_EQ(zone("Europe/Berlin"), zone("Europe/Berlin"));
    EXPECT_NE(zone("Europe/Berlin"), zone("Asia/Tokyo"));
    EXPECT_EQ(Calendar::utc(), Calendar(absl::UTCTimeZone()));
}

TEST(Calendar, ReadsLocalTimes) {
    const Date date = utc(2026, 7, 1, 22, 30);
    EXPECT_EQ(Calendar::utc().civil(date), CivilSecond(2026, 7, 1, 22, 30, 0));
    EXPECT_EQ(zone("Europe/Berlin").civil(date), CivilSecond(2026, 7, 2, 0, 30, 0));
    EXPECT_EQ(zone("America/Los_Angeles").civil(date), CivilSecond(2026, 7, 1, 15, 30, 0));
    EXPECT_EQ(zone("Asia/Kolkata").civil(date), CivilSecond(2026, 7, 2, 4, 0, 0));
}

TEST(Calendar, FractionsOfASecondBelongToTheSecondBefore) {
    EXPECT_EQ(Calendar::utc().civil(utc(2026, 1, 1) - std::chrono::microseconds{1}),
              CivilSecond(2025, 12, 31, 23, 59, 59));
    EXPECT_EQ(Calendar::utc().civil(utc(1960, 1, 1) - std::chrono::microseconds{1}),
              CivilSecond(1959, 12, 31, 23, 59, 59));
}

TEST(Calendar, LocalTimesMakeInstants) {
    EXPECT_EQ(zone("Europe/Berlin").date(CivilSecond(2026, 1, 15, 12, 0, 0)), utc(2026, 1, 15, 11));
    EXPECT_EQ(zone("Europe/Berlin").date(CivilSecond(2026, 7, 15, 12, 0, 0)), utc(2026, 7, 15, 10));
}

TEST(Calendar, ASkippedTimeTakesTheOffsetBeforeTheGap) {
    const Calendar berlin = zone("Europe/Berlin");
    const Date date = berlin.date(CivilSecond(2026, 3, 29, 2, 30, 0));
    EXPECT_EQ(date, utc(2026, 3, 29, 1, 30));
    EXPECT_EQ(berlin.civil(date), CivilSecond(2026, 3, 29, 3, 30, 0));
}

TEST(Calendar, ATimeThatComesTwiceMeansTheFirst) {
    EXPECT_EQ(zone("Europe/Berlin").date(CivilSecond(2026, 10, 25, 2, 30, 0)), utc(2026, 10, 25, 0, 30));
}

} // namespace
} // namespace selvane
