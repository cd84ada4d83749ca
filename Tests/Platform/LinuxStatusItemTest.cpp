#include "Selvane/Platform/Linux/LinuxStatusItem.h"

#include "FakeNotifierPanel.h"
#include "PlainImage.h"
#include "Selvane/Platform/InkColor.h"
#include "Selvane/Platform/Linux/LinuxAttentionSignal.h"
#include "Selvane/Platform/Linux/LinuxProcessActivity.h"
#include "Support/FakeAppearance.h"
#include "Support/ManualScheduler.h"
#include "Support/PlainTitles.h"
#include "TrayDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <ostream>
#include <vector>

namespace selvane::test {
namespace {

using testing::ElementsAre;

constexpr std::uint32_t darkInk = 0xff2040c0;
constexpr std::uint32_t lightInk = 0xfff0e080;
constexpr std::uint32_t lightWords = 0x60f0c0;
constexpr std::uint32_t badgeInk = inkColor(Ink::light);

class LinuxStatusItemTest : public testing::Test {
protected:
    void make(LinuxStatusItem::Desktop desktop = {}) {
        _item = std::make_unique<LinuxStatusItem>(_bus.connect(), _scheduler, _appearance, _titles,
                                                  std::move(desktop));
        _item->setContent({_image, std::nullopt});
        _item->onActivate = [this](const StatusItemAnchor& anchor) { _activations.push_back(anchor); };
        _scheduler.turn();
    }

    LinuxStatusItem::Desktop x11() {
        LinuxStatusItem::Desktop desktop;
        desktop.isX11 = true;
        desktop.displayName = _desktop.emplace().display();
        desktop.monitors = [this] { return _monitors; };
        return desktop;
    }

    bool isRegistered(FakeNotifierPanel& panel, qsizetype count = 1) {
        return waitUntil([&] { return panel.registered.size() >= count; });
    }

    bool isOnBus() {
        return hasOwner(
            _bus.connect(),
            QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()));
    }

    /// Once the tray has granted the width that the item wishes for, which depends on the tray's height.
    bool isInTray(std::uint32_t color = lightInk) {
        return waitUntil([&] {
            const auto place = _item->anchor().icon;
            return place && place->width >= place->height && _desktop->shows(*place, color & 0xffffffU);
        });
    }

    QByteArray firstPixel() {
        const auto pixmaps = qdbus_cast<NotifierPixmapList>(_panel.property("IconPixmap"));
        return pixmaps.value(0).bytes.first(4);
    }

    PrivateBus _bus;
    std::optional<TrayDesktop> _desktop;
    std::vector<Monitor> _monitors{{{0, 0, 640, 480}, 1}};
    FakeNotifierPanel _panel{_bus.connect()};
    ManualScheduler _scheduler;
    FakeAppearance _appearance;
    PlainTitles _titles{0xff204060, 0xff000000 | lightWords};
    std::shared_ptr<PlainImage> _image = std::make_shared<PlainImage>(darkInk, lightInk);
    std::vector<StatusItemAnchor> _activations;
    std::unique_ptr<LinuxStatusItem> _item;
};

const QByteArray darkPixel("\xff\x20\x40\xc0");
const QByteArray lightPixel("\xff\xf0\xe0\x80");

TEST_F(LinuxStatusItemTest, APanelThatRunsGetsTheItem) {
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(firstPixel(), darkPixel);
}

TEST_F(LinuxStatusItemTest, APanelThatStartsLaterGetsTheItem) {
    make();
    _item->setTooltip("Focus, 24:59");
    EXPECT_FALSE(isOnBus());
    _panel.appear();
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(qdbus_cast<NotifierToolTip>(_panel.property("ToolTip")).title, QStringLiteral("Focus, 24:59"));
}

TEST_F(LinuxStatusItemTest, APanelThatRestartsGetsTheItemOnceAgain) {
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    _panel.vanish();
    ASSERT_TRUE(waitUntil([&] { return !isOnBus(); }));
    _panel.isHosted = false;
    _panel.appear();
    ASSERT_TRUE(isRegistered(_panel)) << "a host that isn't there yet is no reason to stay away";
    _panel.setHosted(true);
    EXPECT_EQ(_panel.property("Id"), QStringLiteral("selvane"));
    EXPECT_EQ(_panel.registered.size(), 1);
}

TEST_F(LinuxStatusItemTest, EqualValuesSendNothing) {
    _panel.setShowsLabels(true);
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    const auto showAll = [&](const std::string& time) {
        _item->setContent({_image, time});
        _item->setTooltip("Focus");
        _item->setAccessibilityLabel("Selvane, Focus");
        _item->setMenu({{1, "Pause", true}});
        _item->setHighlighted(true);
    };
    showAll("24:59");
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewMenu") == 1; })) << "it is the last";
    const QStringList before = _panel.signalNames;
    for (int tick = 0; tick < 5; ++tick)
        showAll("24:59");
    showAll("24:58");
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 2; }));
    EXPECT_EQ(_panel.signalNames, before + QStringList{QStringLiteral("XAyatanaNewLabel")});
}

TEST_F(LinuxStatusItemTest, ASignalAsksForAttentionForAMoment) {
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    LinuxAttentionSignal signal(*_item, _scheduler);
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("Active"));
    signal.perform();
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("NeedsAttention"));
    _scheduler.advance(Seconds{3});
    signal.perform();
    _scheduler.advance(Seconds{3});
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("NeedsAttention")) << "the second one counts";
    _scheduler.advance(Seconds{1});
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("Active"));
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewStatus") == 2; }));
}

TEST_F(LinuxStatusItemTest, AClickIsTheAttentionThatWasAskedFor) {
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    LinuxAttentionSignal signal(*_item, _scheduler);
    signal.perform();
    _panel.tell("Activate", {10, 20});
    EXPECT_EQ(_panel.property("Status"), QStringLiteral("Active"));
    EXPECT_EQ(_activations.size(), 1);
    _scheduler.advance(Seconds{10});
    EXPECT_EQ(_panel.count("NewStatus"), 2);
}

TEST_F(LinuxStatusItemTest, InATrayTheItemIsABadgeForAMoment) {
    make(x11());
    LinuxAttentionSignal signal(*_item, _scheduler);
    signal.perform();
    _desktop->startTray();
    ASSERT_TRUE(isInTray(badgeInk)) << "a tray that comes meanwhile shows it too";
    EXPECT_FALSE(_desktop->shows(*_item->anchor().icon, lightInk & 0xffffffU));
    _scheduler.advance(Seconds{3.9});
    _item->setContent({_image, "24:59"});
    EXPECT_TRUE(isInTray(badgeInk)) << "whatever it shows";
    _scheduler.advance(Seconds{0.1});
    ASSERT_TRUE(isInTray());
    EXPECT_FALSE(_desktop->shows(*_item->anchor().icon, badgeInk));
}

TEST_F(LinuxStatusItemTest, AClickInATrayIsTheAttentionThatWasAskedFor) {
    make(x11());
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    LinuxAttentionSignal signal(*_item, _scheduler);
    signal.perform();
    ASSERT_TRUE(isInTray(badgeInk));
    _desktop->click(_item->anchor().icon.value(), 1);
    EXPECT_TRUE(isInTray());
    EXPECT_EQ(_activations.size(), 1);
    EXPECT_FALSE(_desktop->shows(*_item->anchor().icon, badgeInk));
}

TEST_F(LinuxStatusItemTest, WithoutAnImageTheLastOneStays) {
    _panel.setShowsLabels(true);
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    _item->setContent({nullptr, "24:59"});
    ASSERT_TRUE(waitUntil([&] { return _panel.count("XAyatanaNewLabel") == 1; }));
    EXPECT_EQ(_panel.property("XAyatanaLabel"), QStringLiteral("24:59"));
    EXPECT_EQ(firstPixel(), darkPixel);
    _appearance.setDark(true);
    EXPECT_EQ(firstPixel(), lightPixel);
    _item->setContent({std::make_shared<PlainImage>(0xff111111, 0xff222222), "24:58"});
    EXPECT_EQ(firstPixel(), QByteArray("\xff\x22\x22\x22"));
}

TEST_F(LinuxStatusItemTest, WithoutWordsTheDialFollowsThePhaseAlsoInTimeOnly) {
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    _item->setContent({nullptr, "24:59", std::make_shared<PlainImage>(0xff111111, 0xff222222)});
    EXPECT_EQ(firstPixel(), QByteArray("\xff\x11\x11\x11"));
    _item->setContent({nullptr, "24:58", std::make_shared<PlainImage>(0xff333333, 0xff444444)});
    EXPECT_EQ(firstPixel(), QByteArray("\xff\x33\x33\x33"));
}

TEST_F(LinuxStatusItemTest, ATrayShowsTheTimeWithTheImageOrAlone) {
    make(x11());
    _item->setContent({_image, "24:59"});
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    EXPECT_TRUE(isInTray(lightWords));
    _item->setContent({nullptr, "24:58"});
    ASSERT_TRUE(waitUntil([&] { return !_desktop->shows(*_item->anchor().icon, lightInk & 0xffffffU); }));
    EXPECT_TRUE(isInTray(lightWords));
    _item->setContent({_image, std::nullopt});
    ASSERT_TRUE(isInTray());
    EXPECT_TRUE(waitUntil([&] { return !_desktop->shows(*_item->anchor().icon, lightWords); }));
}

TEST_F(LinuxStatusItemTest, ATrayShowsTheTooltipWhenThePointerRests) {
    make(x11());
    _item->setTooltip("Selvane");
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    const ScreenRect place = _item->anchor().icon.value();
    const ScreenRect below{0, place.y + place.height, 300, 60};
    _desktop->movePointer(place);
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 1; }));
    _scheduler.advance(Seconds{0.6});
    EXPECT_EQ(_titles.drawn, "");
    _scheduler.advance(Seconds{0.1});
    EXPECT_EQ(_titles.drawn, "Selvane");
    EXPECT_TRUE(waitUntil([&] { return _desktop->shows(below, lightWords); }));
}

TEST_F(LinuxStatusItemTest, TheTooltipHasTheSizeAndTheEdgesOfItsMonitor) {
    make(x11());
    _item->setTooltip("Selvane, Focus, ends 15:06");
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    _desktop->moveTray(200);
    ASSERT_TRUE(waitUntil([&] { return _item->anchor().icon.value().x >= 200; }));
    // It lies at the left end of a sharp screen.
    const ScreenRect place = _item->anchor().icon.value();
    _monitors = {{{0, 0, place.x, 480}, 1}, {{place.x, 0, 640 - place.x, 480}, 2}};
    _desktop->movePointer(place);
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 1; }));
    _scheduler.advance(Seconds{1});
    EXPECT_EQ(_titles.drawnHeight, 32);
    const int bottom = place.y + place.height;
    EXPECT_TRUE(waitUntil([&] { return _desktop->shows({place.x, bottom, 640 - place.x, 60}, lightWords); }));
    EXPECT_FALSE(_desktop->shows({0, bottom, place.x, 60}, lightWords));
}

TEST_F(LinuxStatusItemTest, APointerThatOnlyPassesSeesNoTooltip) {
    make(x11());
    _item->setTooltip("Selvane");
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    _desktop->movePointer(_item->anchor().icon.value());
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 1; }));
    _desktop->movePointer({300, 300, 1, 1});
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 0; }));
    _scheduler.advance(Seconds{1});
    EXPECT_EQ(_titles.drawn, "");
}

TEST_F(LinuxStatusItemTest, TheInkFollowsTheColorsOfTheDesktop) {
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(firstPixel(), darkPixel);
    _appearance.setDark(true);
    ASSERT_TRUE(waitUntil([&] { return _panel.count("NewIcon") == 1; }));
    EXPECT_EQ(firstPixel(), lightPixel);
}

TEST_F(LinuxStatusItemTest, ADarkPanelAlwaysHasLightInk) {
    _panel.appear();
    LinuxStatusItem::Desktop desktop;
    desktop.hasDarkPanel = true;
    make(desktop);
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(firstPixel(), lightPixel);
    _appearance.setDark(true);
    EXPECT_EQ(firstPixel(), lightPixel);
    EXPECT_EQ(_panel.count("NewIcon"), 0);
}

struct Click {
    const char* name;
    bool isX11;
    ScreenPoint sent;
    std::optional<ScreenPoint> told;
    std::optional<ScreenPoint> pointer = std::nullopt;
};

void PrintTo(const Click& click, std::ostream* stream) {
    *stream << click.name;
}

class LinuxStatusItemClicks : public LinuxStatusItemTest, public testing::WithParamInterface<Click> {};

TEST_P(LinuxStatusItemClicks, TellThePointerWhereItCanBeTrusted) {
    _panel.appear();
    LinuxStatusItem::Desktop desktop = x11();
    desktop.isX11 = GetParam().isX11;
    desktop.pointer = [] { return GetParam().pointer; };
    make(desktop);
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(_item->anchor(), StatusItemAnchor{});
    _panel.tell("Activate", {GetParam().sent.x, GetParam().sent.y});
    const StatusItemAnchor expected{std::nullopt, GetParam().told};
    EXPECT_THAT(_activations, ElementsAre(expected));
    EXPECT_EQ(_item->anchor(), expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, LinuxStatusItemClicks,
    testing::Values(Click{"OnAScreen", true, {600, 10}, ScreenPoint{600, 10}},
                    Click{"WithThePointer", true, {600, 10}, ScreenPoint{600, 10}, ScreenPoint{600, 10}},
                    Click{"WithoutThePointer", true, {300, 5}, ScreenPoint{300, 5}, ScreenPoint{90, 400}},
                    Click{"InUnitsOfTwoPixels", true, {300, 5}, ScreenPoint{600, 10}, ScreenPoint{601, 11}},
                    Click{"InUnitsOfThreePixels", true, {200, 5}, ScreenPoint{600, 15}, ScreenPoint{600, 15}},
                    Click{"InUnitsNearTheCorner", true, {10, 5}, ScreenPoint{20, 10}, ScreenPoint{21, 11}},
                    Click{"AndThePointerGoesOn", true, {300, 5}, ScreenPoint{600, 10}, ScreenPoint{620, 2}},
                    Click{"FarOutside", true, {2000000000, 5}, std::nullopt, ScreenPoint{600, 10}},
                    Click{"BesideTheScreens", true, {640, 10}, std::nullopt},
                    Click{"NoPlaceAtAll", true, {0, 0}, std::nullopt},
                    Click{"NoPlaceWithThePointerElsewhere", true, {0, 0}, std::nullopt, ScreenPoint{300, 5}},
                    Click{"InTheVeryCorner", true, {0, 0}, ScreenPoint{0, 0}, ScreenPoint{0, 0}},
                    Click{"AtTheEdge", true, {0, 10}, ScreenPoint{0, 10}},
                    Click{"BelowZero", true, {-1, -1}, std::nullopt},
                    Click{"Wayland", false, {600, 10}, std::nullopt}),
    [](const auto& test) { return test.param.name; });

TEST_F(LinuxStatusItemTest, AMenuEntryIsPassedOn) {
    _panel.appear();
    make();
    std::vector<int> chosen;
    int secondary = 0;
    _item->onMenuEntry = [&](int id) { chosen.push_back(id); };
    _item->onSecondaryActivate = [&] { ++secondary; };
    _item->setMenu({{4, "Skip", true}});
    ASSERT_TRUE(isRegistered(_panel));
    _panel.tellMenu("Event", {4, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
    _panel.tell("SecondaryActivate", {0, 0});
    EXPECT_THAT(chosen, ElementsAre(4));
    EXPECT_EQ(secondary, 1);
}

// With a tray of the old kind

TEST_F(LinuxStatusItemTest, WithoutAWatcherTheTrayGetsTheItem) {
    make(x11());
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    EXPECT_FALSE(isOnBus());
    _desktop->click(_item->anchor().icon.value(), 1);
    ASSERT_TRUE(waitUntil([&] { return _activations.size() == 1; }));
    EXPECT_EQ(_activations[0].icon, _item->anchor().icon);
}

TEST_F(LinuxStatusItemTest, UnderWaylandATrayIsNotUsed) {
    LinuxStatusItem::Desktop desktop = x11();
    desktop.isX11 = false;
    make(desktop);
    _desktop->startTray();
    _panel.appear();
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(_item->anchor().icon, std::nullopt);
}

TEST_F(LinuxStatusItemTest, TheItemMovesToAWatcherAndBack) {
    make(x11());
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    const ScreenRect place = _item->anchor().icon.value();
    _panel.appear();
    ASSERT_TRUE(isRegistered(_panel));
    EXPECT_EQ(_item->anchor().icon, std::nullopt);
    ASSERT_TRUE(waitUntil([&] { return !_desktop->shows(place, lightInk & 0xffffffU); }));
    _panel.vanish();
    ASSERT_TRUE(isInTray());
    EXPECT_FALSE(isOnBus());
}

TEST_F(LinuxStatusItemTest, AWatcherWithoutAPanelLosesTheItemToATrayAfterAWhile) {
    _panel.isHosted = false;
    _panel.appear();
    make(x11());
    ASSERT_TRUE(isRegistered(_panel));
    // The scheduler waits for the panel from the moment when the watcher said that it has none.
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 1; }));
    _desktop->startTray();
    _scheduler.advance(Seconds{2.9});
    EXPECT_TRUE(isOnBus());
    _scheduler.advance(Seconds{0.1});
    ASSERT_TRUE(isInTray());
    EXPECT_FALSE(isOnBus());
    _panel.setHosted(true);
    ASSERT_TRUE(isRegistered(_panel, 2));
    EXPECT_EQ(_item->anchor().icon, std::nullopt);
}

TEST_F(LinuxStatusItemTest, APanelThatComesInTimeKeepsTheItem) {
    _panel.isHosted = false;
    _panel.appear();
    make(x11());
    ASSERT_TRUE(isRegistered(_panel));
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 1; }));
    _panel.setHosted(true);
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 0; }));
    EXPECT_TRUE(isOnBus());
    EXPECT_EQ(_panel.registered.size(), 1);
}

TEST_F(LinuxStatusItemTest, WithoutATrayTheItemStaysWithAWatcherThatHasNoPanel) {
    _panel.isHosted = false;
    _panel.appear();
    make(x11());
    ASSERT_TRUE(isRegistered(_panel));
    ASSERT_TRUE(waitUntil([&] { return _scheduler.waiting() == 1; }));
    _scheduler.advance(Seconds{10});
    EXPECT_TRUE(isOnBus());
    _desktop->startTray();
    EXPECT_TRUE(isInTray());
    EXPECT_FALSE(isOnBus());
}

TEST_F(LinuxStatusItemTest, MayEndAnywhere) {
    make(x11());
    _desktop->startTray();
    ASSERT_TRUE(isInTray());
    _item.reset();
    make();
    _item.reset();
    _panel.appear();
    make();
    ASSERT_TRUE(isRegistered(_panel));
    _item.reset();
    EXPECT_TRUE(waitUntil([&] { return !isOnBus(); }));
}

TEST(LinuxProcessActivity, ItsHandlesCanBeHeldAndEnded) {
    LinuxProcessActivity activity;
    Subscription handle = activity.begin("a timer runs");
    EXPECT_TRUE(static_cast<bool>(handle));
    handle.end();
    EXPECT_FALSE(static_cast<bool>(handle));
}

} // namespace
} // namespace selvane::test
