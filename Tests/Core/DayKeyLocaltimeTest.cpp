// Day keys against the C library, which reads the rules of the zones by itself and knows nothing of abseil.

#include "SelvaneCore/DayKey.h"
#include "SelvaneCore/DayKeys.h"
#include "Support/CLibraryZone.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <iterator>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::localTime;
using test::ZoneInForce;

constexpr std::time_t hour = 3600;
constexpr std::time_t quarter = hour / 4;
constexpr std::time_t day = 24 * hour;
constexpr int latestStartHour = 6;
constexpr int noonHour = 12;

std::time_t seconds(Date date) {
    return std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
}

Date toDate(std::time_t time) {
    return Date{std::chrono::seconds{time}};
}

DayKey dayOf(const std::tm& local) {
    return DayKey(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

/// For messages: the instant in UTC.
std::string text(Date date) {
    const std::time_t time = seconds(date);
    std::tm utc{};
    ::gmtime_r(&time, &utc);
    char buffer[32];
    std::strftime(buffer, sizeof buffer, "%Y-%m-%dT%H:%M:%SZ", &utc);
    return buffer;
}

/// Every instant from 2000 to 2040 from which on clocks differ from UTC by another amount than before.
std::vector<std::time_t> transitions() {
    std::vector<std::time_t> result;
    const std::time_t last = seconds(test::utc(2041, 1, 1));
    for (std::time_t time = seconds(test::utc(2000, 1, 1)); time < last; time += 6 * hour) {
        std::time_t low = time;
        std::time_t high = time + 6 * hour;
        const long before = localTime(low).tm_gmtoff;
        if (localTime(high).tm_gmtoff == before)
            continue;
        while (high - low > 1) {
            const std::time_t middle = low + (high - low) / 2;
            (localTime(middle).tm_gmtoff == before ? low : high) = middle;
        }
        result.push_back(high);
    }
    return result;
}

struct ZoneRow {
    const char* name;
    const char* zone;
    /// Fewer than there were from 2000 to 2025, which no later law changes.
    std::size_t leastTransitions;
};

class DayKeyLocaltime : public testing::TestWithParam<ZoneRow> {
protected:
    /// A few days around an instant, as the C library tells them.
    struct Window {
        std::time_t first;
        /// The local time of each quarter hour from `first` on.
        std::vector<std::tm> quarters;
        /// The local time of the second before each.
        std::vector<std::tm> secondsBefore;
    };

    [[nodiscard]] static Window windowAround(std::time_t middle) {
        // Keys reach back by the day-start hour.
        Window result{middle - 2 * day - latestStartHour * hour, {}, {}};
        for (std::time_t time = result.first; time <= middle + 2 * day; time += quarter) {
            result.quarters.push_back(localTime(time));
            result.secondsBefore.push_back(localTime(time - 1));
        }
        return result;
    }

    /// Around each transition, and around the end of each February.
    [[nodiscard]] std::vector<Window> windows() const {
        std::vector<std::time_t> middles = transitions();
        EXPECT_GE(middles.size(), GetParam().leastTransitions) << "the C library doesn't know the zone";
        std::cout << GetParam().zone << ": " << middles.size() << " transitions, ";
        for (int year = 2000; year <= 2040; ++year)
            middles.push_back(seconds(test::utc(year, 3, 1)));
        std::vector<Window> result;
        std::ranges::transform(middles, std::back_inserter(result), windowAround);
        return result;
    }

private:
    ZoneInForce _zoneInForce{GetParam().zone};
};

TEST_P(DayKeyLocaltime, TheKeyIsTheDayOfTheShiftedInstant) {
    const Calendar calendar = test::zone(GetParam().zone);
    std::vector<DayKeys> many;
    for (int startHour = 0; startHour <= latestStartHour; ++startHour)
        many.emplace_back(startHour, calendar);

    std::size_t compared = 0;
    for (const Window& window : windows()) {
        constexpr std::size_t quartersPerHour = hour / quarter;
        for (std::size_t i = latestStartHour * quartersPerHour; i < window.quarters.size(); ++i) {
            const Date date = toDate(window.first + static_cast<std::time_t>(i) * quarter);
            const Date before = date - std::chrono::microseconds{1};
            for (std::size_t startHour = 0; startHour < many.size(); ++startHour) {
                const std::size_t shifted = i - startHour * quartersPerHour;
                const DayKey key = dayOf(window.quarters[shifted]);
                const DayKey keyBefore = dayOf(window.secondsBefore[shifted]);
                const auto where = [&] {
                    return text(date) + " when days start at " + std::to_string(startHour);
                };
                const int number = static_cast<int>(startHour);
                ASSERT_EQ(DayKey(date, number, calendar), key) << where();
                ASSERT_EQ(DayKey(before, number, calendar), keyBefore) << "a microsecond before " << where();
                ASSERT_EQ(many[startHour](date), key) << "one of many: " << where();
                ASSERT_EQ(many[startHour](before), keyBefore)
                    << "one of many: a microsecond before " << where();
                compared += 2;
            }
        }
    }
    std::cout << compared << " keys compared\n";
    EXPECT_GT(compared, 100'000U);
}

// An hour that comes twice means the first; one that never comes has no local time to compare with.
TEST_P(DayKeyLocaltime, AnHourOfTheDayIsTheFirstInstantThatTellsIt) {
    const Calendar calendar = test::zone(GetParam().zone);
    std::size_t compared = 0;
    for (const Window& window : windows()) {
        const DayKey firstDay = dayOf(window.quarters.front());
        std::map<std::pair<DayKey, int>, std::time_t> firstInstants;
        for (std::size_t i = 0; i < window.quarters.size(); ++i) {
            const std::tm& local = window.quarters[i];
            // The first day may have begun before the window, and one of its hours may have come already.
            if (local.tm_min == 0 && local.tm_sec == 0 && dayOf(local) != firstDay)
                firstInstants.try_emplace({dayOf(local), local.tm_hour},
                                          window.first + static_cast<std::time_t>(i) * quarter);
        }
        for (const auto& [hourOfDay, time] : firstInstants) {
            const auto& [key, hourNumber] = hourOfDay;
            if (hourNumber <= latestStartHour) {
                ASSERT_EQ(text(key.start(hourNumber, calendar)), text(toDate(time)))
                    << key.description() << " at " << hourNumber;
                ++compared;
            }
            if (hourNumber == noonHour) {
                ASSERT_EQ(text(key.date(calendar)), text(toDate(time))) << "noon of " << key.description();
                ASSERT_EQ(key.weekday(calendar), localTime(time).tm_wday + 1) << key.description();
                compared += 2;
            }
        }
    }
    std::cout << compared << " starts, noons and weekdays compared\n";
    EXPECT_GT(compared, 1000U);
}

INSTANTIATE_TEST_SUITE_P(DayKey, DayKeyLocaltime,
                         testing::Values(ZoneRow{"NewYork", "America/New_York", 50},
                                         ZoneRow{"Cairo", "Africa/Cairo", 30},
                                         ZoneRow{"Kolkata", "Asia/Kolkata", 0},
                                         ZoneRow{"Apia", "Pacific/Apia", 20},
                                         ZoneRow{"LordHowe", "Australia/Lord_Howe", 50},
                                         ZoneRow{"SaoPaulo", "America/Sao_Paulo", 38}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(DayKeyLocaltimeZone, IsPutBack) {
    const std::time_t time = seconds(test::utc(2026, 7, 1));
    const char* const before = std::getenv("TZ");
    const std::optional<std::string> zoneBefore = before ? std::optional<std::string>(before) : std::nullopt;
    const long offsetBefore = localTime(time).tm_gmtoff;
    {
        const ZoneInForce zone("Australia/Lord_Howe");
        EXPECT_EQ(localTime(time).tm_gmtoff, 10 * hour + hour / 2);
    }
    const char* const after = std::getenv("TZ");
    EXPECT_EQ(after ? std::optional<std::string>(after) : std::nullopt, zoneBefore);
    EXPECT_EQ(localTime(time).tm_gmtoff, offsetBefore);
}

} // namespace
} // namespace selvane
