#include "SelvaneCore/TimeFormat.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace selvane {
namespace {

struct ClockRow {
    const char* name;
    double seconds;
    const char* text;
};

class ClockTable : public testing::TestWithParam<ClockRow> {};

TEST_P(ClockTable, CountsDownToTheLastFraction) {
    EXPECT_EQ(TimeFormat::clock(Seconds{GetParam().seconds}), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    TimeFormat, ClockTable,
    testing::Values(ClockRow{"wholeMinutes", 1500, "25:00"}, ClockRow{"roundsUpToAMinute", 59.2, "1:00"},
                    ClockRow{"lastFraction", 0.4, "0:01"}, ClockRow{"zero", 0, "0:00"},
                    ClockRow{"negativeZero", -0.0, "0:00"}, ClockRow{"negative", -5, "0:00"},
                    ClockRow{"negativeFraction", -0.3, "0:00"}, ClockRow{"oneSecond", 1, "0:01"},
                    ClockRow{"justAboveASecond", 1.000001, "0:02"},
                    ClockRow{"roundsUpToAnHour", 3599.5, "1:00:00"},
                    ClockRow{"lastSecondOfTheHour", 3599, "59:59"}, ClockRow{"anHour", 3600, "1:00:00"},
                    ClockRow{"hoursMinutesSeconds", 3725, "1:02:05"}, ClockRow{"aDay", 86400, "24:00:00"},
                    ClockRow{"beyondAllMeasure", 1e300, "2501999792983:36:32"},
                    ClockRow{"infinite", std::numeric_limits<double>::infinity(), "2501999792983:36:32"},
                    ClockRow{"notANumber", std::numeric_limits<double>::quiet_NaN(), "0:00"}),
    [](const auto& test) { return std::string(test.param.name); });

struct DurationRow {
    const char* name;
    int minutes;
    const char* text;
};

class DurationTable : public testing::TestWithParam<DurationRow> {};

TEST_P(DurationTable, LeavesOutWhatIsZero) {
    EXPECT_EQ(TimeFormat::duration(GetParam().minutes), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    TimeFormat, DurationTable,
    testing::Values(DurationRow{"zero", 0, "0m"}, DurationRow{"minutes", 45, "45m"},
                    DurationRow{"lastMinute", 59, "59m"}, DurationRow{"anHour", 60, "1h"},
                    DurationRow{"hourAndMinutes", 90, "1h 30m"}, DurationRow{"noDays", 1500, "25h"},
                    DurationRow{"negativeMinutes", -59, "-59m"}, DurationRow{"negativeHour", -60, "-1h"},
                    DurationRow{"negativeBoth", -90, "-1h -30m"},
                    DurationRow{"least", std::numeric_limits<int>::min(), "-35791394h -8m"},
                    DurationRow{"most", std::numeric_limits<int>::max(), "35791394h 7m"}),
    [](const auto& test) { return std::string(test.param.name); });

} // namespace
} // namespace selvane
