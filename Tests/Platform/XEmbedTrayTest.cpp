#include "Selvane/Platform/Linux/XEmbedTray.h"

#include "PlainImage.h"
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

class XEmbedTrayTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(_desktop.display().empty()) << "Xvfb didn't start";
        _tray = std::make_unique<XEmbedTray>(_desktop.display());
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
    XEmbedTray later(_desktop.display());
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
    XEmbedTray tray(":no such display");
    tray.setImage(std::make_shared<PlainImage>(0, 0), Ink::dark);
    tray.setShown(true);
    EXPECT_FALSE(tray.isAvailable());
    EXPECT_EQ(tray.geometry(), std::nullopt);
}

} // namespace
} // namespace selvane::test
