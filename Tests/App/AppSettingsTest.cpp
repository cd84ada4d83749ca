#include "Selvane/App/AppSettings.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

TEST(AppSettings, DefaultsMakeTheClassicCycle) {
    const AppSettings settings;
    EXPECT_EQ(settings.timerConfig(), (TimerConfig{25, 5, 15, 4, true, false}));
}

TEST(AppSettings, HookRunsAtEveryAssignmentAndViewsHearOnlyOfAChange) {
    AppSettings settings;
    int hooks = 0;
    int changes = 0;
    settings.onNotificationsChange = [&] { ++hooks; };
    const auto subscription = settings.changed.subscribe([&] { ++changes; });
    settings.notificationsEnabled.set(true);
    EXPECT_EQ(hooks, 1);
    EXPECT_EQ(changes, 0);
    settings.notificationsEnabled.set(false);
    EXPECT_EQ(hooks, 2);
    EXPECT_EQ(changes, 1);
}

TEST(AppSettings, ConfigurationFollowsAChangeAtOnce) {
    AppSettings settings;
    settings.focusMinutes.set(50);
    EXPECT_EQ(settings.timerConfig().duration(Phase::focus), Seconds{3000});
}

TEST(AppSettings, OnlyNudgeAndHideReactToDrift) {
    EXPECT_FALSE(reactsToDrift(FocusGuardMode::off));
    EXPECT_FALSE(reactsToDrift(FocusGuardMode::track));
    EXPECT_TRUE(reactsToDrift(FocusGuardMode::nudge));
    EXPECT_TRUE(reactsToDrift(FocusGuardMode::hide));
}

} // namespace
} // namespace selvane
