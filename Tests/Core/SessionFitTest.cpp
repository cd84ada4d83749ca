#include "SelvaneCore/SessionFit.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace selvane {
namespace {

const Date start = test::utc(2026, 3, 5, 9);
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double largest = std::numeric_limits<double>::max();

SessionFit shorten(double seconds) {
    return SessionFit::shorten(Seconds{seconds});
}

struct FitRow {
    const char* name;
    /// Seconds from the start, absent without an event.
    std::optional<double> event;
    double buffer;
    double duration;
    SessionFit fit;
};

class FitTable : public testing::TestWithParam<FitRow> {};

TEST_P(FitTable, EndsBeforeTheBuffer) {
    const FitRow& row = GetParam();
    std::optional<Date> event;
    if (row.event)
        event = adding(Seconds{*row.event}, start);
    EXPECT_EQ(SessionFit::evaluate(start, Seconds{row.duration}, event, Seconds{row.buffer}), row.fit);
}

INSTANTIATE_TEST_SUITE_P(
    SessionFit, FitTable,
    testing::Values(
        FitRow{"justFits", 30 * 60, 5 * 60, 25 * 60, SessionFit::fits()},
        FitRow{"shortenedToWholeMinutes", 30 * 60 + 59, 5 * 60, 50 * 60, shorten(1500)},
        FitRow{"tooLittleRoom", 14 * 60, 5 * 60, 25 * 60, SessionFit::noRoom()},
        FitRow{"aShortSessionFitsIntoLittleRoom", 15 * 60, 5 * 60, 8 * 60, SessionFit::fits()},
        FitRow{"aShortSessionFitsIntoLessThanTheMinimum", 10 * 60, 5 * 60, 4 * 60, SessionFit::fits()},
        FitRow{"eventNow", 0, 5 * 60, 25 * 60, SessionFit::fits()},
        FitRow{"eventUnderWay", -60, 5 * 60, 25 * 60, SessionFit::fits()},
        FitRow{"eventAMicrosecondAhead", 1e-6, 0, 25 * 60, SessionFit::noRoom()},
        FitRow{"noEvent", std::nullopt, 5 * 60, 25 * 60, SessionFit::fits()},
        FitRow{"theMinimumItself", 15 * 60, 5 * 60, 25 * 60, shorten(600)},
        FitRow{"aMicrosecondBelowTheMinimum", 15 * 60 - 1e-6, 5 * 60, 25 * 60, SessionFit::noRoom()},
        FitRow{"aMicrosecondTooLong", 30 * 60 - 1e-6, 5 * 60, 25 * 60, shorten(24 * 60)},
        FitRow{"withoutBuffer", 25 * 60, 0, 25 * 60, SessionFit::fits()},
        FitRow{"aNegativeBufferIsNone", 24 * 60, -5 * 60, 25 * 60, shorten(24 * 60)},
        FitRow{"aBufferBeyondTheEvent", 4 * 60, 5 * 60, 25 * 60, SessionFit::noRoom()},
        FitRow{"aFractionOfABuffer", 25 * 60, 0.5, 25 * 60, shorten(24 * 60)}),
    [](const auto& test) { return std::string(test.param.name); });

INSTANTIATE_TEST_SUITE_P(
    SessionFitExtremes, FitTable,
    testing::Values(FitRow{"infiniteDuration", 30 * 60, 0, infinity, shorten(1800)},
                    FitRow{"infiniteDurationWithoutRoom", 60, 0, infinity, SessionFit::noRoom()},
                    FitRow{"infiniteDurationWithoutEvent", std::nullopt, 0, infinity, SessionFit::fits()},
                    FitRow{"largestDuration", 30 * 60, 0, largest, shorten(1800)},
                    FitRow{"durationThatIsNoNumber", 30 * 60, 0, notANumber, shorten(1800)},
                    FitRow{"durationThatIsNoNumberWithoutRoom", 60, 0, notANumber, SessionFit::noRoom()},
                    FitRow{"durationThatIsNoNumberWithoutEvent", std::nullopt, 0, notANumber,
                           SessionFit::fits()},
                    FitRow{"noDuration", 60, 0, 0, SessionFit::fits()},
                    FitRow{"negativeDuration", 60, 0, -infinity, SessionFit::fits()},
                    FitRow{"infiniteBuffer", 30 * 60, infinity, 25 * 60, SessionFit::noRoom()},
                    FitRow{"infiniteBufferWithoutEvent", std::nullopt, infinity, 25 * 60, SessionFit::fits()},
                    FitRow{"largestBuffer", 30 * 60, largest, 25 * 60, SessionFit::noRoom()},
                    FitRow{"negativeInfiniteBuffer", 30 * 60, -infinity, 25 * 60, SessionFit::fits()},
                    FitRow{"bufferThatIsNoNumber", 30 * 60, notANumber, 30 * 60, SessionFit::fits()},
                    FitRow{"everythingInfinite", 30 * 60, infinity, infinity, SessionFit::noRoom()},
                    FitRow{"nothingIsANumber", 30 * 60, notANumber, notANumber, shorten(1800)}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(SessionFit, TheMostDistantEventLimitsOnlyWhatIsLonger) {
    constexpr Seconds hour{3600};
    EXPECT_EQ(SessionFit::evaluate(Date::min(), hour, Date::max(), hour), SessionFit::fits());
    EXPECT_EQ(SessionFit::evaluate(Date::max(), hour, Date::min(), hour), SessionFit::fits());
    EXPECT_EQ(SessionFit::evaluate(Date::max(), hour, Date::max(), hour), SessionFit::fits());
    EXPECT_EQ(SessionFit::evaluate(distantPast, hour, start, hour), SessionFit::fits());

    const SessionFit longest = SessionFit::evaluate(Date::min(), Seconds{infinity}, Date::max(), Seconds{0});
    ASSERT_EQ(longest.kind(), SessionFit::Kind::shorten);
    // All instants together are 2^64 microseconds.
    EXPECT_NEAR(longest.length()->count(), 0x1p64 / 1e6, 60.0);
    EXPECT_EQ(std::fmod(longest.length()->count(), 60.0), 0.0);
}

TEST(SessionFit, IsComparedByKindAndLength) {
    EXPECT_EQ(shorten(600), shorten(600));
    EXPECT_NE(shorten(600), shorten(660));
    EXPECT_NE(shorten(600), SessionFit::fits());
    EXPECT_NE(SessionFit::fits(), SessionFit::noRoom());
    EXPECT_EQ(SessionFit::noRoom(), SessionFit::noRoom());
}

TEST(SessionFit, OnlyAShortenedSessionHasALength) {
    EXPECT_EQ(shorten(900).length(), Seconds{900});
    EXPECT_EQ(SessionFit::fits().length(), std::nullopt);
    EXPECT_EQ(SessionFit::noRoom().length(), std::nullopt);
}

TEST(SessionFit, TheMinimumIsTenMinutes) {
    EXPECT_EQ(SessionFit::minimumSession, Seconds{600});
}

// What every answer must keep to, for all whole and half minutes around the limits.
TEST(SessionFit, AShortenedSessionEndsBeforeTheBufferAndIsWorthwhile) {
    int shortened = 0;
    for (int event = 0; event <= 90 * 60; event += 30) {
        for (int buffer = -60; buffer <= 30 * 60; buffer += 90) {
            for (const int minutes : {1, 9, 10, 11, 25, 50, 90}) {
                const Seconds duration{minutes * 60.0};
                const SessionFit fit =
                    SessionFit::evaluate(start, duration, start + std::chrono::seconds{event},
                                         Seconds{static_cast<double>(buffer)});
                if (fit.kind() != SessionFit::Kind::shorten)
                    continue;
                ++shortened;
                const double length = fit.length()->count();
                ASSERT_LT(length, duration.count());
                ASSERT_GE(length, 600);
                ASSERT_LE(length, event - std::max(buffer, 0));
                ASSERT_GT(length + 60, event - std::max(buffer, 0));
                ASSERT_EQ(std::fmod(length, 60.0), 0.0);
            }
        }
    }
    EXPECT_GT(shortened, 1000);
}

} // namespace
} // namespace selvane
