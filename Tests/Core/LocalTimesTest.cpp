#include "SelvaneCore/LocalTimes.h"

#include "SelvaneCore/DayKeys.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using std::chrono::microseconds;
using test::utc;
using test::zone;

/// The names of the zones in which people live.
std::vector<std::string> inhabitedZones() {
    std::ifstream table("/usr/share/zoneinfo/zone1970.tab");
    std::vector<std::string> names;
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string countries, coordinates, name;
        if (!line.starts_with('#') && fields >> countries >> coordinates >> name)
            names.push_back(name);
    }
    return names;
}

absl::CivilSecond civil(Date date, const LocalTimes::Stretch& stretch) {
    const auto local = std::chrono::floor<std::chrono::seconds>(date + stretch.offset);
    return absl::CivilSecond(1970, 1, 1) + local.time_since_epoch().count();
}

/// Random instants: whole centuries, the present, and crowds around one day.
class Instants {
public:
    explicit Instants(std::uint64_t seed) : _random(seed) {}

    Date operator()() {
        switch (_random() % 4) {
        case 0:
            return between(utc(1800, 1, 1), utc(2400, 1, 1));
        case 1:
            return between(utc(2015, 1, 1), utc(2030, 1, 1));
        case 2:
            return _day = between(utc(1990, 1, 1), utc(2040, 1, 1));
        default:
            return between(_day, _day + std::chrono::days{2});
        }
    }

    Date between(Date from, Date until) {
        return from + microseconds{static_cast<std::int64_t>(
                          _random() % static_cast<std::uint64_t>((until - from).count()))};
    }

private:
    std::mt19937_64 _random;
    Date _day = utc(2026, 3, 29);
};

TEST(LocalTimes, StretchesOfEveryZoneJoinAndTellTheLocalTime) {
    const auto zones = inhabitedZones();
    ASSERT_GT(zones.size(), 200U);
    Instants instants(1);
    std::size_t stretches = 0;
    for (const std::string& name : zones) {
        const Calendar calendar = zone(name);
        LocalTimes times(calendar);
        Date date = utc(1850, 1, 1);
        while (date < utc(2100, 1, 1)) {
            const LocalTimes::Stretch* const found = times.stretch(date);
            ASSERT_NE(found, nullptr);
            const LocalTimes::Stretch stretch = *found;
            ++stretches;
            ASSERT_TRUE(stretch.contains(date)) << name;
            for (const Date each :
                 {stretch.from, instants.between(stretch.from, stretch.until),
                  instants.between(stretch.from, stretch.until), stretch.until - microseconds{1}})
                ASSERT_EQ(civil(each, stretch), calendar.civil(each)) << name;
            date = stretch.until;
        }
    }
    RecordProperty("stretches", static_cast<int>(stretches));
    EXPECT_GT(stretches, zones.size() * 10);
}

TEST(LocalTimes, AStretchIsFoundAgainInAnyOrder) {
    const Calendar calendar = zone("Europe/Berlin");
    LocalTimes times(calendar);
    Instants instants(2);
    for (int round = 0; round < 20'000; ++round) {
        const Date date = instants.between(utc(1, 1, 1), utc(2300, 1, 1));
        const LocalTimes::Stretch* const stretch = times.stretch(date);
        ASSERT_NE(stretch, nullptr);
        ASSERT_TRUE(stretch->contains(date));
        ASSERT_EQ(civil(date, *stretch), calendar.civil(date));
        ASSERT_EQ(times.hour(date), calendar.civil(date).hour());
    }
}

TEST(LocalTimes, OutsideTheListedYearsOnlyTheCalendarTells) {
    LocalTimes times(zone("America/New_York"));
    for (const Date date :
         {Date::min(), utc(1, 1, 1) - microseconds{1}, utc(2300, 1, 1), utc(2500, 7, 1, 12), Date::max()}) {
        EXPECT_EQ(times.stretch(date), nullptr);
        EXPECT_EQ(times.hour(date), times.calendar().civil(date).hour());
    }
    EXPECT_NE(times.stretch(utc(1, 1, 1)), nullptr);
    EXPECT_NE(times.stretch(utc(2300, 1, 1) - microseconds{1}), nullptr);
}

TEST(LocalTimes, AChangeBelongsToTheStretchThatItBegins) {
    LocalTimes times(zone("Europe/Berlin"));
    const Date change = utc(2026, 3, 29, 1);
    const LocalTimes::Stretch winter = *times.stretch(change - microseconds{1});
    const LocalTimes::Stretch summer = *times.stretch(change);
    EXPECT_EQ(winter.until, change);
    EXPECT_EQ(summer.from, change);
    EXPECT_EQ(summer.until, utc(2026, 10, 25, 1));
    EXPECT_EQ(winter.offset, std::chrono::hours{1});
    EXPECT_EQ(summer.offset, std::chrono::hours{2});
}

TEST(DayKeys, AreThoseOfTheDayKeyInEveryZone) {
    Instants instants(3);
    for (const std::string& name : inhabitedZones()) {
        const Calendar calendar = zone(name);
        for (const int dayStartHour : {0, 4, 23, -5}) {
            DayKeys dayOf(dayStartHour, calendar);
            for (int round = 0; round < 200; ++round) {
                const Date date = instants();
                ASSERT_EQ(dayOf(date), DayKey(date, dayStartHour, calendar)) << name;
            }
        }
    }
}

TEST(DayKeys, SortedInstantsAcrossClockChangesHaveTheirDays) {
    // Forward and back; by half an hour; a day that never was; at midnight, so that a day begins late or
    // twice.
    for (const char* const name : {"Europe/Berlin", "Australia/Lord_Howe", "Pacific/Apia",
                                   "America/Sao_Paulo", "America/Havana", "Africa/Casablanca"}) {
        const Calendar calendar = zone(name);
        for (const int dayStartHour : {0, 3, 6}) {
            DayKeys dayOf(dayStartHour, calendar);
            for (Date date = utc(2008, 1, 1); date < utc(2019, 1, 1); date += std::chrono::minutes{47})
                ASSERT_EQ(dayOf(date), DayKey(date, dayStartHour, calendar)) << name;
        }
    }
}

TEST(DayKeys, InstantsInAnyOrderAroundAClockChangeHaveTheirDays) {
    const std::pair<const char*, Date> changes[] = {{"Europe/Berlin", utc(2026, 3, 29, 1)},
                                                    {"Europe/Berlin", utc(2026, 10, 25, 1)},
                                                    {"America/Sao_Paulo", utc(2018, 11, 4, 3)},
                                                    {"America/Sao_Paulo", utc(2018, 2, 18, 2)},
                                                    {"Pacific/Apia", utc(2011, 12, 30, 10)}};
    Instants instants(4);
    for (const auto& [name, change] : changes) {
        const Calendar calendar = zone(name);
        DayKeys dayOf(0, calendar);
        for (int round = 0; round < 5'000; ++round) {
            const Date date =
                instants.between(change - std::chrono::hours{30}, change + std::chrono::hours{30});
            ASSERT_EQ(dayOf(date), DayKey(date, 0, calendar)) << name;
        }
    }
}

TEST(DayKeys, TheFirstAndLastInstantsHaveTheirDays) {
    constexpr std::array dates{Date::min(),
                               Date::min() + std::chrono::hours{1},
                               distantPast,
                               distantPast + std::chrono::hours{3},
                               Date::max() - std::chrono::hours{1},
                               Date::max()};
    for (const int dayStartHour : {0, 6, -6, 2'000'000'000, -2'000'000'000}) {
        const Calendar calendar = zone("America/New_York");
        DayKeys dayOf(dayStartHour, calendar);
        for (const Date date : dates)
            EXPECT_EQ(dayOf(date), DayKey(date, dayStartHour, calendar));
    }
}

} // namespace
} // namespace selvane
