#include "Selvane/Platform/Linux/XEmbedTray.h"

#include "PlainImage.h"
#include "Selvane/Platform/InkColor.h"
#include "Support/PlainTitles.h"
#include "TrayDesktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <future>
#include <memory>
#include <ostream>
#include <string>
#include <thread>
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
        _look.image = std::make_shared<PlainImage>(0xff000000 | darkInk, 0xff000000 | lightInk);
        _tray->setLook(_look);
    }

    /// Returns once the item is seen in the tray.
    void dock() {
        _tray->setShown(true);
        _desktop.startTray();
        ASSERT_TRUE(isShownIn(lightInk));
    }

    /// The smallest area of the item that holds every pixel of that colour, counted from its corner.
    ScreenRect areaOf(std::uint32_t color) {
        const ScreenRect place = _tray->geometry().value();
        const auto pixels = _desktop.photograph(place);
        ScreenRect area{place.width, place.height, 0, 0};
        for (int index = 0; index < static_cast<int>(pixels.size()); ++index) {
            if (pixels[static_cast<std::size_t>(index)] != color)
                continue;
            area.x = std::min(area.x, index % place.width);
            area.y = std::min(area.y, index / place.width);
            area.width = std::max(area.width, index % place.width + 1 - area.x);
            area.height = std::max(area.height, index / place.width + 1 - area.y);
        }
        return area;
    }

    void setImage(std::uint32_t color) {
        _look.image = std::make_shared<PlainImage>(color, color);
        _tray->setLook(_look);
    }

    void setTitle(const std::string& title, ItemLook::Company company = ItemLook::Company::image) {
        _look.title = title;
        _look.company = company;
        _tray->setLook(_look);
    }

    /// Returns once the pointer lies on the item and the item's tooltip is seen, in `_below`.
    void showTooltip() {
        _tray->onPointerEnter = [this] { ++_entered; };
        dock();
        const ScreenRect place = _tray->geometry().value();
        _below = {0, place.y + place.height, 300, 60};
        _desktop.movePointer(place);
        ASSERT_TRUE(waitUntil([&] { return _entered == 1; }));
        _tray->showTooltip("Selvane", 16, std::nullopt);
        ASSERT_TRUE(waitUntil([&] { return _desktop.shows(_below, lightWords); }));
    }

    /// Once the tray has granted the width that the item wishes for, which depends on the tray's height.
    bool isShownIn(std::uint32_t color) {
        return waitUntil([&] {
            const auto place = _tray->geometry();
            return place && place->width >= place->height && _desktop.shows(*place, color);
        });
    }

    TrayDesktop _desktop;
    PlainTitles _titles{0xff000000 | darkWords, 0xff000000 | lightWords};
    ItemLook _look;
    std::unique_ptr<XEmbedTray> _tray;
    int _entered = 0;
    ScreenRect _below{};
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
    later.setLook({std::make_shared<PlainImage>(0xff123456, 0xff123456), Ink::light, "", {}});
    later.setShown(true);
    EXPECT_TRUE(waitUntil([&] {
        const auto place = later.geometry();
        return place && _desktop.shows(*place, 0x123456);
    }));
}

TEST_F(XEmbedTrayTest, ATrayThatRestartsGetsTheIconAgain) {
    dock();
    _desktop.stopTray();
    ASSERT_TRUE(waitUntil([&] { return !_tray->isAvailable(); }));
    EXPECT_EQ(_tray->geometry(), std::nullopt);
    _desktop.startTray();
    EXPECT_TRUE(isShownIn(lightInk));
}

TEST_F(XEmbedTrayTest, ANewImageIsDrawn) {
    dock();
    setImage(0xff00ff00);
    EXPECT_TRUE(isShownIn(0x00ff00));
    EXPECT_FALSE(_desktop.shows(_tray->geometry().value(), lightInk));
}

TEST_F(XEmbedTrayTest, TheTrayShinesThroughAClearImage) {
    dock();
    const ScreenRect place = _tray->geometry().value();
    const std::uint32_t ground = _desktop.photograph({place.x, place.y - 1, 1, 1}).at(0);
    setImage(0x00ff0000);
    ASSERT_TRUE(waitUntil([&] { return !_desktop.shows(place, lightInk); }));
    EXPECT_THAT(_desktop.photograph(place), testing::Each(ground));
}

TEST_F(XEmbedTrayTest, ANewImageIsDrawnWhileTheTrayLiesPartlyBesideTheScreen) {
    dock();
    const ScreenRect place = _tray->geometry().value();
    const ScreenRect before = areaOf(lightInk);
    const int hidden = place.x + place.width / 2;
    _desktop.moveTray(-hidden);
    ASSERT_TRUE(waitUntil([&] { return _tray->geometry().value().x == place.x - hidden; }));
    const ScreenRect rest{0, place.y, place.width - place.width / 2, place.height};
    setImage(0xff00ff00);
    EXPECT_TRUE(waitUntil([&] { return _desktop.shows(rest, 0x00ff00); }));
    EXPECT_FALSE(_desktop.shows(rest, lightInk));
    _desktop.moveTray(0);
    EXPECT_TRUE(waitUntil([&] {
        const ScreenRect image = areaOf(0x00ff00);
        return image.width == image.height && image.x == before.x && image.width == before.width;
    })) << "all of it";
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
    dock();
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
    dock();
    const int square = _tray->geometry().value().width;
    setTitle("24:59");
    ASSERT_TRUE(isShownIn(lightWords));
    EXPECT_TRUE(isShownIn(lightInk)) << "beside it";
    EXPECT_EQ(_titles.drawn, " 24:59");
    const ScreenRect wide = _tray->geometry().value();
    const int image = areaOf(lightInk).width;
    EXPECT_GE(wide.width, image + 6 * image / 2);

    setTitle("24:59", ItemLook::Company::nothing);
    ASSERT_TRUE(waitUntil([&] { return !_desktop.shows(_tray->geometry().value(), lightInk); }));
    EXPECT_TRUE(isShownIn(lightWords));

    setTitle("");
    ASSERT_TRUE(waitUntil([&] { return _tray->geometry().value().width == square; }));
    EXPECT_TRUE(isShownIn(lightInk));
    EXPECT_FALSE(_desktop.shows(_tray->geometry().value(), lightWords));
}

TEST_F(XEmbedTrayTest, TheImageHasTheSameSizeWithTheTitleAndWithout) {
    dock();
    const ScreenRect place = _tray->geometry().value();
    const ScreenRect alone = areaOf(lightInk);
    EXPECT_GT(alone.height, place.height * 3 / 4) << "as large as other icons";
    EXPECT_LT(alone.height, place.height);
    EXPECT_EQ(alone.y, (place.height - alone.height) / 2) << "in the middle";
    EXPECT_EQ(alone.x, alone.y) << "with the same margin beside it";
    setTitle("24:59");
    ASSERT_TRUE(isShownIn(lightWords));
    EXPECT_EQ(areaOf(lightInk), alone);
    setTitle("");
    ASSERT_TRUE(waitUntil([&] { return _tray->geometry().value().width == place.width; }));
    ASSERT_TRUE(isShownIn(lightInk));
    EXPECT_EQ(areaOf(lightInk), alone);
}

TEST_F(XEmbedTrayTest, ANewTitleIsDrawnWithoutWaitingForTheServer) {
    setTitle("24:59");
    dock();
    ASSERT_TRUE(isShownIn(lightWords));
    _desktop.freezeServer();
    std::promise<void> returned;
    bool hasWaited = true;
    std::thread watch([&, future = returned.get_future()] {
        hasWaited = future.wait_for(std::chrono::seconds{5}) != std::future_status::ready;
        _desktop.thawServer();
    });
    setTitle("24:58");
    returned.set_value();
    watch.join();
    EXPECT_FALSE(hasWaited);
    EXPECT_EQ(_titles.drawn, " 24:58");
    EXPECT_TRUE(isShownIn(lightWords));
}

TEST_F(XEmbedTrayTest, AsksForAttentionAsABadge) {
    constexpr std::uint32_t badge = inkColor(Ink::light);
    dock();
    const ScreenRect place = _tray->geometry().value();
    const std::uint32_t ground = _desktop.photograph({place.x, place.y - 1, 1, 1}).at(0);
    const ScreenRect image = areaOf(lightInk);
    _tray->setNeedsAttention(true);
    ASSERT_TRUE(isShownIn(badge));
    EXPECT_EQ(areaOf(badge), (ScreenRect{0, 0, place.width, place.height})) << "around the image";
    EXPECT_THAT(_desktop.photograph({place.x + image.x, place.y + image.y, image.width, image.height}),
                testing::Each(ground))
        << "which is cut out";
    EXPECT_NE(_desktop.photograph(place).front(), badge) << "its corners are round";
    _tray->setNeedsAttention(false);
    ASSERT_TRUE(isShownIn(lightInk));
    EXPECT_FALSE(_desktop.shows(place, badge));
}

TEST_F(XEmbedTrayTest, ATrayThatStartsLaterShowsTheTitle) {
    setTitle("24:59");
    _tray->setShown(true);
    _desktop.startTray();
    EXPECT_TRUE(isShownIn(lightWords));
    EXPECT_TRUE(isShownIn(lightInk));
}

TEST_F(XEmbedTrayTest, TheWindowTakesItsNameWhenItLiesInTheTray) {
    _tray->setName("Selvane, Focus, ends 15:06");
    dock();
    EXPECT_TRUE(waitUntil([&] { return _desktop.hasWindow("Selvane, Focus, ends 15:06"); }));
    _tray->setName("Selvane");
    EXPECT_TRUE(waitUntil([&] { return _desktop.hasWindow("Selvane"); }));
    EXPECT_FALSE(_desktop.hasWindow("Selvane, Focus, ends 15:06"));
}

// The tooltip

TEST_F(XEmbedTrayTest, ThePointerIsToldAndTheTooltipGoesWithIt) {
    int left = 0;
    _tray->onPointerLeave = [&] { ++left; };
    showTooltip();
    EXPECT_EQ(_titles.drawn, "Selvane");
    _desktop.movePointer({300, 300, 1, 1});
    ASSERT_TRUE(waitUntil([&] { return left == 1; }));
    EXPECT_TRUE(waitUntil([&] { return !_desktop.shows(_below, lightWords); }));
}

TEST_F(XEmbedTrayTest, APressTakesTheTooltipAwayAndItStaysAway) {
    int pressed = 0;
    _tray->onActivate = [&](const StatusItemAnchor&) { ++pressed; };
    showTooltip();
    const ScreenRect place = _tray->geometry().value();
    _desktop.click(place, 1);
    ASSERT_TRUE(waitUntil([&] { return pressed == 1; }));
    EXPECT_TRUE(waitUntil([&] { return !_desktop.shows(_below, lightWords); }));
    _desktop.click(place, 2);
    EXPECT_EQ(_entered, 1) << "the pointer has never left";
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
    dock();
    const ScreenRect place = _tray->geometry().value();
    _tray->setShown(false);
    EXPECT_EQ(_tray->geometry(), std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return !_desktop.shows(place, lightInk); }));
    _tray->setShown(true);
    EXPECT_TRUE(isShownIn(lightInk));
}

TEST_F(XEmbedTrayTest, ALostServerIsNoTray) {
    dock();
    _desktop.stopServer();
    EXPECT_TRUE(waitUntil([&] { return !_tray->isAvailable(); }));
    EXPECT_EQ(_tray->geometry(), std::nullopt);
    _tray->setShown(false);
    _tray->setShown(true);
}

TEST(XEmbedTrayWithoutServer, IsNowhere) {
    const PlainTitles titles{0, 0};
    XEmbedTray tray(titles, ":no such display");
    tray.setLook({std::make_shared<PlainImage>(0, 0), Ink::dark, "", {}});
    tray.setShown(true);
    EXPECT_FALSE(tray.isAvailable());
    EXPECT_EQ(tray.geometry(), std::nullopt);
}

} // namespace
} // namespace selvane::test
