#include "SelvaneCore/RecordLimits.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace selvane {
namespace {

using RecordLimits::fitted;
using test::utc;

const Date now = utc(2026, 3, 5, 10);

FocusSession session(Date start, Date end, double seconds = 1500) {
    return {.id = UUID(),
            .start = start,
            .end = end,
            .phase = Phase::focus,
            .plannedSeconds = Seconds{1500},
            .actualSeconds = Seconds{seconds},
            .completed = true,
            .taskID = std::nullopt,
            .apps = {{{"app", "App", Seconds{30}}}}};
}

TEST(RecordLimits, WhatCanBeStaysAsItIs) {
    const FocusSession plain = session(now - std::chrono::minutes{25}, now);
    EXPECT_EQ(fitted(plain, now), plain);
    const FocusSession longest =
        session(RecordLimits::earliestStart, now + std::chrono::hours{10'000}, 86'400);
    EXPECT_EQ(fitted(longest, now), longest);
}

TEST(RecordLimits, AClockSetBackEndsTheSessionWhereItBegan) {
    const FocusSession kept = fitted(session(now, now - std::chrono::hours{3}), now - std::chrono::hours{3});
    EXPECT_EQ(kept.start, now);
    EXPECT_EQ(kept.end, now);
}

TEST(RecordLimits, AClockSetBackByMoreThanADayMovesTheStart) {
    const Date later = now - std::chrono::hours{100};
    const FocusSession kept = fitted(session(now, later), later);
    EXPECT_EQ(kept.start, later + std::chrono::hours{24});
    EXPECT_EQ(kept.end, kept.start);
}

TEST(RecordLimits, AStartInAnEarlierCenturyIsTheFirstThatCanBe) {
    const FocusSession kept = fitted(session(utc(1970, 1, 1), utc(1970, 1, 1, 1)), utc(1970, 1, 1, 1));
    EXPECT_EQ(kept.start, utc(2000, 1, 1));
    EXPECT_EQ(kept.end, utc(2000, 1, 1));
}

TEST(RecordLimits, LengthsAreCutToADay) {
    for (const auto& [given, kept] : {std::pair{86'400.5, 86'400.0},
                                      {1e300, 86'400.0},
                                      {-0.5, 0.0},
                                      {std::numeric_limits<double>::quiet_NaN(), 0.0},
                                      {std::numeric_limits<double>::infinity(), 86'400.0}}) {
        FocusSession odd = session(now, now, given);
        odd.plannedSeconds = Seconds{given};
        odd.apps->front().seconds = Seconds{given};
        odd = fitted(odd, now);
        EXPECT_EQ(odd.actualSeconds, Seconds{kept});
        EXPECT_EQ(odd.plannedSeconds, Seconds{kept});
        EXPECT_EQ(odd.apps->front().seconds, Seconds{kept});
    }
}

TEST(RecordLimits, NamesAreCutToUserPerceivedCharacters) {
    const std::string family = "👩‍👩‍👧";
    FocusSession odd = session(now, now);
    std::string name(299, 'n');
    odd.apps = {{{std::string(301, 'b'), name + family + "x", Seconds{1}}}};
    odd = fitted(odd, now);
    EXPECT_EQ(odd.apps->front().bundleID, std::string(300, 'b'));
    EXPECT_EQ(odd.apps->front().name, name + family);
}

TEST(RecordLimits, NamesThatAreNoTextBecomeText) {
    FocusSession odd = session(now, now);
    odd.apps = {{{"a\xff", std::string(300, 'n') + "\xc3", Seconds{1}}}};
    odd = fitted(odd, now);
    EXPECT_EQ(odd.apps->front().bundleID, "a\ufffd");
    EXPECT_EQ(odd.apps->front().name, std::string(300, 'n'));
}

TEST(RecordLimits, TheClockMayStandAnywhere) {
    for (const Date extreme : {Date::min(), distantPast, Date::max()}) {
        const FocusSession kept = fitted(session(extreme, extreme), extreme);
        EXPECT_GE(kept.start, RecordLimits::earliestStart);
        EXPECT_GE(kept.end, kept.start);
    }
}

} // namespace
} // namespace selvane
