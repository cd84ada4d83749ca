#include "Selvane/App/LaunchAtLogin.h"

#include "Support/FakeLoginItem.h"
#include "Support/ModelHarness.h"

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

TEST(LaunchAtLogin, IsWhatItWasSetTo) {
    FakeLoginItem item;
    EXPECT_FALSE(LaunchAtLogin::isEnabled(item));
    EXPECT_TRUE(LaunchAtLogin::set(item, true));
    EXPECT_TRUE(LaunchAtLogin::isEnabled(item));
    EXPECT_TRUE(LaunchAtLogin::set(item, false));
    EXPECT_FALSE(LaunchAtLogin::isEnabled(item));
}

TEST(LaunchAtLogin, IsWhatTheUserMadeOfItElsewhere) {
    FakeLoginItem item;
    ASSERT_TRUE(item.registerItem());
    EXPECT_TRUE(LaunchAtLogin::isEnabled(item));
}

TEST(LaunchAtLogin, TellsTheCallerWhyItFailedAndStaysAsItWas) {
    FakeLoginItem item;
    item.fail("No space left on device");
    EXPECT_EQ(LaunchAtLogin::set(item, true).error(), "No space left on device");
    EXPECT_FALSE(LaunchAtLogin::isEnabled(item));
    item.fail(std::nullopt);
    ASSERT_TRUE(LaunchAtLogin::set(item, true));
    item.fail("Read-only file system");
    EXPECT_EQ(LaunchAtLogin::set(item, false).error(), "Read-only file system");
    EXPECT_TRUE(LaunchAtLogin::isEnabled(item));
}

TEST(LaunchAtLogin, IsReachedThroughTheModel) {
    ModelHarness harness;
    harness.launch();
    ASSERT_TRUE(LaunchAtLogin::set(harness.model().loginItem(), true));
    EXPECT_TRUE(harness.loginItem.isRegistered());
}

} // namespace
} // namespace selvane::test
