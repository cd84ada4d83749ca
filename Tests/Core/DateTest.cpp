#include "SelvaneCore/Date.h"

#include "Support/LocalTime.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace selvane {
namespace {

using test::utc;

constexpr double infinity = std::numeric_limits<double>::infinity();

struct SumRow {
    const char* name;
    double seconds;
    std::int64_t microseconds;
};

class DateSums : public testing::TestWithParam<SumRow> {};

TEST_P(DateSums, RoundToTheMicrosecond) {
    const Date start = utc(2026, 3, 1, 9);
    const Date sum = adding(Seconds{GetParam().seconds}, start);
    EXPECT_EQ((sum - start).count(), GetParam().microseconds);
}

INSTANTIATE_TEST_SUITE_P(Date, DateSums,
                         testing::Values(SumRow{"nothing", 0.0, 0},
                                         SumRow{"wholeSeconds", 1500.0, 1'500'000'000},
                                         SumRow{"negative", -2.5, -2'500'000},
                                         SumRow{"belowHalf", 0.0000004, 0}, SumRow{"half", 0.0000005, 1},
                                         SumRow{"negativeHalf", -0.0000005, -1},
                                         SumRow{"aboveHalf", 0.0000006, 1},
                                         SumRow{"notANumber", std::numeric_limits<double>::quiet_NaN(), 0}),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Date, SumsStopAtTheFirstAndLastInstant) {
    const Date start = utc(2026, 3, 1);
    for (const double seconds : {1e300, infinity, 9.3e12})
        EXPECT_EQ(adding(Seconds{seconds}, start), Date::max()) << seconds;
    for (const double seconds : {-1e300, -infinity})
        EXPECT_EQ(adding(Seconds{seconds}, start), Date::min()) << seconds;
    // Further than the last instant is from 1970, yet not from here.
    EXPECT_LT(adding(Seconds{9.3e12}, Date::min()), Date::max());
    EXPECT_GT(adding(Seconds{9.3e12}, Date::min()), start);
    EXPECT_EQ(adding(Seconds{1}, Date::max()), Date::max());
    EXPECT_EQ(adding(Seconds{-1}, Date::min()), Date::min());
}

TEST(Date, WhatWasAddedIsWhatElapsed) {
    const Date start = utc(2026, 3, 1, 9, 41, 7) + std::chrono::microseconds{123'457};
    for (const double seconds : {0.0, 1.0, 0.25, 1500.0, -90.0, 86400.0 * 366})
        EXPECT_EQ(elapsed(start, adding(Seconds{seconds}, start)), Seconds{seconds});
}

TEST(Date, ElapsedTimeOfDistantInstantsDoesNotOverflow) {
    EXPECT_NEAR(elapsed(Date::min(), Date::max()).count(), 1.8446744073709552e13, 1.0);
    EXPECT_NEAR(elapsed(Date::max(), Date::min()).count(), -1.8446744073709552e13, 1.0);
}

TEST(Date, TheDistantPastIsTheFirstDayOfTheFirstYear) {
    EXPECT_EQ(distantPast, utc(1, 1, 1));
    EXPECT_EQ(std::chrono::duration_cast<std::chrono::seconds>(distantPast.time_since_epoch()).count(),
              -62'135'596'800);
}

} // namespace
} // namespace selvane
