#include "Selvane/UI/Controls/Look.h"

#include "Selvane/App/AppSettings.h"
#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/FakeAppearance.h"

#include <gtest/gtest.h>

namespace selvane {
namespace {

class LookTest : public testing::Test {
protected:
    LookTest() {
        QObject::connect(&look, &Look::changed, &look, [this] { ++changes; });
    }

    MemoryDefaultsStore store;
    AppSettings settings{store};
    test::FakeAppearance desktop;
    Look look{settings, desktop};
    int changes = 0;
};

TEST_F(LookTest, FollowsTheDesktopUnlessTheUserChose) {
    EXPECT_FALSE(look.isDark());
    desktop.setDark(true);
    EXPECT_TRUE(look.isDark());
    settings.appearance.set(AppearanceMode::light);
    EXPECT_FALSE(look.isDark());
    desktop.setDark(false);
    settings.appearance.set(AppearanceMode::dark);
    EXPECT_TRUE(look.isDark());
}

TEST_F(LookTest, ContrastAndMotionAreTheDesktops) {
    desktop.setHighContrast(true);
    EXPECT_TRUE(look.isHighContrast());
    EXPECT_FALSE(look.reducesMotion());
    desktop.setReducesMotion(true);
    EXPECT_TRUE(look.reducesMotion());
}

TEST_F(LookTest, GlassIsTheSettingsLevel) {
    EXPECT_EQ(look.glass(), Look::Regular) << "unless it was set";
    settings.glassLevel.set(GlassLevel::off);
    EXPECT_EQ(look.glass(), Look::Flat);
    settings.glassLevel.set(GlassLevel::low);
    EXPECT_EQ(look.glass(), Look::Clear);
    settings.glassLevel.set(GlassLevel::high);
    EXPECT_EQ(look.glass(), Look::Tinted);
}

TEST_F(LookTest, TellsOfWhatIsDifferentAndOfNothingElse) {
    desktop.setDark(true);
    EXPECT_EQ(changes, 1);
    settings.appearance.set(AppearanceMode::dark);
    EXPECT_EQ(changes, 1) << "it was dark before";
    desktop.setDark(false);
    EXPECT_EQ(changes, 1) << "the user chose";
    settings.focusMinutes.set(30);
    EXPECT_EQ(changes, 1) << "no matter of looks";
    settings.glassLevel.set(GlassLevel::high);
    EXPECT_EQ(changes, 2);
    settings.glassLevel.set(GlassLevel::high);
    EXPECT_EQ(changes, 2);
}

} // namespace
} // namespace selvane
