#include "SelvaneCore/Subscription.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

TEST(Subscription, EndsAtDestruction) {
    int ends = 0;
    {
        const Subscription subscription([&] { ++ends; });
        EXPECT_EQ(ends, 0);
    }
    EXPECT_EQ(ends, 1);
}

TEST(Subscription, EndsAtMostOnce) {
    int ends = 0;
    {
        Subscription subscription([&] { ++ends; });
        EXPECT_TRUE(subscription);
        subscription.end();
        EXPECT_FALSE(subscription);
        subscription.end();
    }
    EXPECT_EQ(ends, 1);
}

TEST(Subscription, EndingInsideItsOwnEndIsHarmless) {
    int ends = 0;
    Subscription subscription;
    subscription = Subscription([&] {
        ++ends;
        subscription.end();
    });
    subscription.end();
    EXPECT_EQ(ends, 1);
}

TEST(Subscription, AnEmptyHandleStandsForNothing) {
    Subscription subscription;
    EXPECT_FALSE(subscription);
    subscription.end();
    EXPECT_FALSE(subscription);
}

TEST(Subscription, MovingHandsOverTheEnd) {
    int ends = 0;
    Subscription first([&] { ++ends; });
    Subscription second(std::move(first));
    EXPECT_TRUE(second);
    first.end();
    EXPECT_EQ(ends, 0);
    second.end();
    EXPECT_EQ(ends, 1);
}

TEST(Subscription, AssignmentEndsWhatTheHandleStoodFor) {
    int firstEnds = 0;
    int secondEnds = 0;
    Subscription subscription([&] { ++firstEnds; });
    subscription = Subscription([&] { ++secondEnds; });
    EXPECT_EQ(firstEnds, 1);
    EXPECT_EQ(secondEnds, 0);
    subscription = Subscription();
    EXPECT_EQ(secondEnds, 1);
}

TEST(Subscription, AssigningAHandleToItselfKeepsIt) {
    int ends = 0;
    Subscription subscription([&] { ++ends; });
    Subscription& same = subscription;
    subscription = std::move(same);
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(subscription);
}

} // namespace
} // namespace selvane
