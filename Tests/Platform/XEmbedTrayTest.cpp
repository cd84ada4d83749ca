#include "Selvane/Platform/Linux/XEmbedTray.h"

#include "PlainImage.h"
#include "Support/PlainTitles.h"
#include "TrayDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <ostream>
#include <vector>

namespace selvane::test {
namespace {

constexpr std::uint32_t darkInk = 0x2040c0;
constexpr std::uint32_t lightInk = 0xf0e080;
constexpr std::uint32_t darkWords = 0x802060;
constexpr std::uint32_t lightWords = 0x60f0c0;

class XEmbedTrayTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(_desktop.display().empty()) << "Xvfb didn't start";
        _tray = std::make_unique<XEmbedTray>(_titles, _desktop.display());
        _tray->setImage(std::make_shared<PlainImage>(0xff000000 | darkInk, 0xff000000 | lightInk),
                        Ink::light);
    }

    bool isShownIn(std::uint32_t color) {
        return waitUntil([&] {
            const auto place = _tray->geometry();
            return place && _desktop.shows(*place, color);
        });
    }

    TrayDesktop _desktop;
    PlainTitles _titles{0xff000000 | darkWords, 0xff000000 | lightWords};
    std::unique_ptr<XEmbedTray> _tray;
};

TEST_F(XEmbedTrayTest, WithoutATrayItIsNowhere) {
    _tray->setShown(true);
    EXPECT_FALSE(_tray->isAvailable());
    EXPECT_EQ(_tray->geometry(), std::nullopt);
}

TEST_F(XEmbedTrayTest, ATrayThatStartsLaterGetsTheIcon) {
    int changes = 0;
    _tray->onAvailabilityChange = [&] { ++changes; };
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(waitUntil([&] { return _tray->isAvailable(); }));
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();
    EXPECT_GE(place.width, 16);
    EXPECT_GE(place.height, 16);
    EXPECT_LE(place.y + place.height, 40) << "the tray lies along the upper edge";
}

TEST_F(XEmbedTrayTest, ATrayThatRunsAlreadyGetsTheIcon) {
    _desktop.startTray();
    ASSERT_TRUE(waitUntil([&] { return _tray->isAvailable(); }));
    XEmbedTray later(_titles, _desktop.display());
    EXPECT_TRUE(later.isAvailable());
    later.setImage(std::make_shared<PlainImage>(0xff123456, 0xff123456), Ink::light);
    later.setShown(true);
    EXPECT_TRUE(waitUntil([&] {
        const auto place = later.geometry();
        return place && _desktop.shows(*place, 0x123456);
    }));
}

TEST_F(XEmbedTrayTest, ATrayThatRestartsGetsTheIconAgain) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    _desktop.stopTray();
    ASSERT_TRUE(waitUntil([&] { return !_tray->isAvailable(); }));
    EXPECT_EQ(_tray->geometry(), std::nullopt);
    _desktop.startTray();
    EXPECT_TRUE(isShownIn(lightInk));
}

TEST_F(XEmbedTrayTest, ANewImageIsDrawn) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    _tray->setImage(std::make_shared<PlainImage>(0xff00ff00, 0xff00ff00), Ink::light);
    EXPECT_TRUE(isShownIn(0x00ff00));
    EXPECT_FALSE(_desktop.shows(_tray->geometry().value(), lightInk));
}

TEST_F(XEmbedTrayTest, TheTrayShinesThroughAClearImage) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();
    const std::uint32_t ground = _desktop.photograph({place.x, place.y - 1, 1, 1}).at(0);
    _tray->setImage(std::make_shared<PlainImage>(0x00ff0000, 0x00ff0000), Ink::light);
    ASSERT_TRUE(waitUntil([&] { return !_desktop.shows(place, lightInk); }));
    EXPECT_THAT(_desktop.photograph(place), testing::Each(ground));
}

TEST_F(XEmbedTrayTest, ANewImageIsDrawnWhileTheTrayLiesPartlyBesideTheScreen) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();
    const int hidden = place.x + place.width / 2;
    _desktop.moveTray(-hidden);
    ASSERT_TRUE(waitUntil([&] { return _tray->geometry().value().x == place.x - hidden; }));
    const ScreenRect rest{0, place.y, place.width - place.width / 2, place.height};
    _tray->setImage(std::make_shared<PlainImage>(0xff00ff00, 0xff00ff00), Ink::light);
    EXPECT_TRUE(waitUntil([&] { return _desktop.shows(rest, 0x00ff00); }));
    EXPECT_FALSE(_desktop.shows(rest, lightInk));
    _desktop.moveTray(0);
    EXPECT_TRUE(waitUntil([&] {
        const auto pixels = _desktop.photograph(place);
        return std::ranges::count(pixels, 0x00ff00U) ==
               std::min(place.width, place.height) * std::min(place.width, place.height);
    }));
}

struct Ground {
    const char* name;
    const char* tint;
    std::uint32_t ink;
};

void PrintTo(const Ground& ground, std::ostream* stream) {
    *stream << ground.name;
}

class XEmbedTrayGrounds : public XEmbedTrayTest, public testing::WithParamInterface<Ground> {};

TEST_P(XEmbedTrayGrounds, TheInkStandsOutFromTheTray) {
    _tray->setShown(true);
    _desktop.startTray(QLatin1String(GetParam().tint));
    EXPECT_TRUE(isShownIn(GetParam().ink));
}

INSTANTIATE_TEST_SUITE_P(All, XEmbedTrayGrounds,
                         testing::Values(Ground{"Dark", "0x202020", lightInk},
                                         Ground{"Light", "0xf0f0f0", darkInk}),
                         [](const auto& test) { return test.param.name; });

TEST_F(XEmbedTrayTest, ClicksArriveWithTheirPlace) {
    std::vector<StatusItemAnchor> activations;
    int secondary = 0;
    _tray->onActivate = [&](const StatusItemAnchor& anchor) { activations.push_back(anchor); };
    _tray->onSecondaryActivate = [&] { ++secondary; };
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();

    _desktop.click(place, 1);
    ASSERT_TRUE(waitUntil([&] { return activations.size() == 1; }));
    EXPECT_EQ(activations[0].icon, place);
    EXPECT_EQ(activations[0].pointer, (ScreenPoint{place.x + place.width / 2, place.y + place.height / 2}));
    _desktop.click(place, 4);
    _desktop.click(place, 2);
    ASSERT_TRUE(waitUntil([&] { return secondary == 1; }));
    EXPECT_EQ(activations.size(), 1U);
    _desktop.click(place, 3);
    EXPECT_TRUE(waitUntil([&] { return activations.size() == 2; }));
    EXPECT_EQ(secondary, 1);
}

// Words

TEST_F(XEmbedTrayTest, ATrayThatGrantsTheWidthShowsTheTitle) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const int square = _tray->geometry().value().width;
    _tray->setTitle("24:59", ItemPicture::Company::image);
    ASSERT_TRUE(isShownIn(lightWords));
    EXPECT_TRUE(isShownIn(lightInk)) << "beside it";
    EXPECT_EQ(_titles.drawn, " 24:59");
    const ScreenRect wide = _tray->geometry().value();
    EXPECT_GE(wide.width, wide.height + 6 * wide.height / 2);

    _tray->setTitle("24:59", ItemPicture::Company::nothing);
    ASSERT_TRUE(waitUntil([&] { return !_desktop.shows(_tray->geometry().value(), lightInk); }));
    EXPECT_TRUE(isShownIn(lightWords));

    _tray->setTitle("", ItemPicture::Company::image);
    ASSERT_TRUE(waitUntil([&] { return _tray->geometry().value().width == square; }));
    EXPECT_TRUE(isShownIn(lightInk));
    EXPECT_FALSE(_desktop.shows(_tray->geometry().value(), lightWords));
}

TEST_F(XEmbedTrayTest, ATrayThatStartsLaterShowsTheTitle) {
    _tray->setTitle("24:59", ItemPicture::Company::image);
    _tray->setShown(true);
    _desktop.startTray();
    EXPECT_TRUE(isShownIn(lightWords));
    EXPECT_TRUE(isShownIn(lightInk));
}

TEST_F(XEmbedTrayTest, TheWindowTakesItsNameWhenItLiesInTheTray) {
    _tray->setName("Selvane, Focus, ends 15:06");
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    EXPECT_TRUE(waitUntil([&] { return _desktop.hasWindow("Selvane, Focus, ends 15:06"); }));
    _tray->setName("Selvane");
    EXPECT_TRUE(waitUntil([&] { return _desktop.hasWindow("Selvane"); }));
    EXPECT_FALSE(_desktop.hasWindow("Selvane, Focus, ends 15:06"));
}

// The tooltip

TEST_F(XEmbedTrayTest, ThePointerIsToldAndTheTooltipGoesWithIt) {
    int entered = 0;
    int left = 0;
    _tray->onPointerEnter = [&] { ++entered; };
    _tray->onPointerLeave = [&] { ++left; };
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();
    _desktop.movePointer(place);
    ASSERT_TRUE(waitUntil([&] { return entered == 1; }));
    _tray->showTooltip("Selvane", 16, std::nullopt);
    const ScreenRect below{0, place.y + place.height, 300, 60};
    ASSERT_TRUE(waitUntil([&] { return _desktop.shows(below, lightWords); }));
    EXPECT_EQ(_titles.drawn, "Selvane");
    _desktop.movePointer({300, 300, 1, 1});
    ASSERT_TRUE(waitUntil([&] { return left == 1; }));
    EXPECT_TRUE(waitUntil([&] { return !_desktop.shows(below, lightWords); }));
}

TEST_F(XEmbedTrayTest, APressTakesTheTooltipAwayAndItStaysAway) {
    int entered = 0;
    int pressed = 0;
    _tray->onPointerEnter = [&] { ++entered; };
    _tray->onActivate = [&](const StatusItemAnchor&) { ++pressed; };
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();
    _desktop.movePointer(place);
    ASSERT_TRUE(waitUntil([&] { return entered == 1; }));
    _tray->showTooltip("Selvane", 16, std::nullopt);
    const ScreenRect below{0, place.y + place.height, 300, 60};
    ASSERT_TRUE(waitUntil([&] { return _desktop.shows(below, lightWords); }));
    _desktop.click(place, 1);
    ASSERT_TRUE(waitUntil([&] { return pressed == 1; }));
    EXPECT_TRUE(waitUntil([&] { return !_desktop.shows(below, lightWords); }));
    _desktop.click(place, 2);
    EXPECT_EQ(entered, 1) << "the pointer has never left";
}

TEST_F(XEmbedTrayTest, TheTooltipStaysOnTheMonitorOfTheItem) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    _desktop.moveTray(200);
    ASSERT_TRUE(waitUntil([&] { return _tray->geometry().value().x >= 200; }));
    const ScreenRect place = _tray->geometry().value();
    const ScreenRect below{0, place.y + place.height, 640, 60};
    const ScreenRect right{place.x, below.y, 640 - place.x, below.height};
    const ScreenRect left{0, below.y, place.x, below.height};
    const ScreenRect monitor{place.x, 0, 640 - place.x, 480};
    _tray->showTooltip("Selvane, Focus, ends 15:06", 16, monitor);
    ASSERT_TRUE(waitUntil([&] { return _desktop.shows(right, lightWords); }));
    EXPECT_FALSE(_desktop.shows(left, lightWords));
    _tray->showTooltip("Selvane, Focus, ends 15:06", 16, std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return _desktop.shows(left, lightWords); })) << "it is wider than the item";
}

TEST_F(XEmbedTrayTest, WithoutATrayThereIsNoTooltip) {
    _tray->showTooltip("Selvane", 16, std::nullopt);
    EXPECT_FALSE(_desktop.shows({0, 0, 640, 480}, lightWords));
}

TEST_F(XEmbedTrayTest, LeavesTheTrayWhenItIsNotShown) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    const ScreenRect place = _tray->geometry().value();
    _tray->setShown(false);
    EXPECT_EQ(_tray->geometry(), std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return !_desktop.shows(place, lightInk); }));
    _tray->setShown(true);
    EXPECT_TRUE(isShownIn(lightInk));
}

TEST_F(XEmbedTrayTest, ALostServerIsNoTray) {
    _tray->setShown(true);
    _desktop.startTray();
    ASSERT_TRUE(isShownIn(lightInk));
    _desktop.stopServer();
    EXPECT_TRUE(waitUntil([&] { return !_tray->isAvailable(); }));
    EXPECT_EQ(_tray->geometry(), std::nullopt);
    _tray->setShown(false);
    _tray->setShown(true);
}

TEST(XEmbedTrayWithoutServer, IsNowhere) {
    const PlainTitles titles{0, 0};
    XEmbedTray tray(titles, ":no such display");
    tray.setImage(std::make_shared<PlainImage>(0, 0), Ink::dark);
    tray.setShown(true);
    EXPECT_FALSE(tray.isAvailable());
    EXPECT_EQ(tray.geometry(), std::nullopt);
}

} // namespace
} // namespace selvane::test
