#include "SelvaneCore/Models.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

TEST(Models, DurationIsNeverBelowOneSecond) {
    for (const double minutes : {0.0, -3.0, 1.0 / 60.0}) {
        const TimerConfig config{minutes, minutes, minutes, 4, true, false};
        for (const Phase phase : allPhases)
            EXPECT_EQ(config.duration(phase), Seconds{1.0}) << minutes;
    }
}

} // namespace
} // namespace selvane
