#include "Selvane/UI/PanelPlacement.h"
#include "Selvane/UI/Popover/PopoverPanel.h"
#include "Support/FakeAppearance.h"
#include "Support/FakeWindowPlacer.h"
#include "Support/ModelHarness.h"
#include "Support/ScreenPrinters.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace selvane {
namespace {

using testing::Contains;
using testing::Not;

/// The panel on a desktop with a bar at the bottom that lets no window choose its own place.
class PopoverPanelPlacementTest : public testing::Test {
protected:
    PopoverPanelPlacementTest()
        : panel({&harness.launch(), &appearance, &harness.scheduler, nullptr, &placer}) {
        window = qobject_cast<QQuickWindow*>(QGuiApplication::topLevelWindows().constFirst());
    }

    /// Where a panel of its present height belongs.
    [[nodiscard]] ScreenPoint place() const {
        const ScreenRect& free = placer.screen.available;
        return {free.width - panel.frame().width - PanelPlacement::edgeMargin,
                free.height - panel.frame().height - PanelPlacement::itemGap};
    }

    test::ModelHarness harness;
    test::FakeAppearance appearance;
    test::FakeWindowPlacer placer;
    PopoverPanel panel;
    QQuickWindow* window = nullptr;
};

TEST_F(PopoverPanelPlacementTest, DesktopIsAskedForThePlaceAtTheEndOfTheBar) {
    panel.show({});
    EXPECT_EQ(placer.awaited, window->title().toStdString());
    placer.appear();
    EXPECT_EQ(placer.corner, place());
}

TEST_F(PopoverPanelPlacementTest, PanelIsAwaitedByATitleThatNoOtherWindowHas) {
    panel.show({});
    std::vector<std::string> titles{"Selvane", QGuiApplication::applicationName().toStdString(), ""};
    for (const char* const pane : {"Statistics", "General", "Timer", "Focus", "Music", "Goals", "What's New"})
        titles.emplace_back(pane);
    EXPECT_THAT(titles, Not(Contains(placer.awaited)));
}

TEST_F(PopoverPanelPlacementTest, PanelOfAnotherHeightIsPlacedAgain) {
    panel.show({});
    placer.appear();
    const auto before = placer.corner;
    harness.model().settings().timerStyle.set(TimerStyle::bar);
    ASSERT_TRUE(QTest::qWaitFor([&] { return placer.corner != before; }));
    EXPECT_EQ(placer.corner, place()) << "its lower edge stays where it is";
    EXPECT_EQ(placer.asked, 1);
}

TEST_F(PopoverPanelPlacementTest, PanelShownOnceMoreIsPlacedAgain) {
    panel.show({});
    placer.appear();
    placer.screen.available.height = 760;
    panel.show({});
    EXPECT_EQ(placer.corner, place());
    EXPECT_EQ(placer.asked, 1) << "its window doesn't appear a second time";
}

TEST_F(PopoverPanelPlacementTest, DesktopIsNotListenedToForAWindowThatDoesNotCome) {
    panel.show({});
    harness.scheduler.advance(Seconds{4.9});
    EXPECT_TRUE(placer.isPlacing());
    harness.scheduler.advance(Seconds{0.2});
    EXPECT_FALSE(placer.isPlacing());
}

TEST_F(PopoverPanelPlacementTest, WindowThatCameCanBePlacedForAsLongAsItIsShown) {
    panel.show({});
    placer.appear();
    harness.scheduler.advance(Seconds{10});
    EXPECT_TRUE(placer.isPlacing());
    panel.hide();
    EXPECT_FALSE(placer.isPlacing());
    panel.show({});
    EXPECT_EQ(placer.asked, 2);
}

} // namespace
} // namespace selvane
