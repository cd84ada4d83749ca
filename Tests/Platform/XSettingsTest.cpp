#include "Selvane/Platform/Linux/XSettings.h"

#include "FakeSettingsManager.h"
#include "Support/EventLoop.h"
#include "Support/XServer.h"
#include "XSettingsBytes.h"

#include <QtCore/QAbstractEventDispatcher>

#include <gtest/gtest.h>

#include <bit>
#include <memory>
#include <optional>

namespace selvane::test {
namespace {

std::vector<std::uint8_t> themed(const std::string& name) {
    return XSettingsBytes(std::endian::little).string("Net/ThemeName", name).bytes();
}

class XSettingsTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_FALSE(_server.display().empty()) << "Xvfb didn't start"; }

    void open() {
        _settings = std::make_unique<XSettings>(_server.display());
        _settings->onChange = [this] { ++_changes; };
    }

    bool becomes(const XSettingValues& values) {
        return waitUntil([&] { return _settings->values() == values; });
    }

    XServer _server;
    std::unique_ptr<XSettings> _settings;
    int _changes = 0;
};

TEST_F(XSettingsTest, AManagerThatRunsAlreadyIsReadAtOnce) {
    FakeSettingsManager manager(_server.display());
    manager.tell(themed("Adwaita"));
    manager.appear();
    open();
    EXPECT_EQ(_settings->values(), (XSettingValues{{"Net/ThemeName", "Adwaita"}}));
}

TEST_F(XSettingsTest, WhatTheManagerChangesIsFollowed) {
    FakeSettingsManager manager(_server.display());
    manager.tell(themed("Adwaita"));
    manager.appear();
    open();
    manager.tell(themed("Adwaita-dark"));
    EXPECT_TRUE(becomes({{"Net/ThemeName", "Adwaita-dark"}}));
    EXPECT_EQ(_changes, 1);
    // The same again is no change.
    manager.tell(themed("Adwaita-dark"));
    manager.tell(themed("Greybird"));
    EXPECT_TRUE(becomes({{"Net/ThemeName", "Greybird"}}));
    EXPECT_EQ(_changes, 2);
}

TEST_F(XSettingsTest, AManagerThatStartsLaterIsRead) {
    open();
    EXPECT_EQ(_settings->values(), XSettingValues());
    FakeSettingsManager manager(_server.display());
    manager.tell(themed("Adwaita"));
    manager.appear();
    EXPECT_TRUE(becomes({{"Net/ThemeName", "Adwaita"}}));
    EXPECT_EQ(_changes, 1);
}

TEST_F(XSettingsTest, WithTheManagerGoWhatItTold) {
    auto manager = std::make_optional<FakeSettingsManager>(_server.display());
    manager->tell(themed("Adwaita"));
    manager->appear();
    open();
    manager.reset();
    EXPECT_TRUE(becomes({}));
    manager.emplace(_server.display());
    manager->tell(themed("Greybird"));
    manager->appear();
    EXPECT_TRUE(becomes({{"Net/ThemeName", "Greybird"}}));
    EXPECT_EQ(_changes, 2);
}

TEST_F(XSettingsTest, WhatCantBeReadIsNothing) {
    FakeSettingsManager manager(_server.display());
    manager.tell(themed("Adwaita"));
    manager.appear();
    open();
    manager.tell({0, 0, 0, 0, 1});
    EXPECT_TRUE(becomes({}));
    manager.tell(themed("Adwaita"));
    EXPECT_TRUE(becomes({{"Net/ThemeName", "Adwaita"}}));
}

TEST_F(XSettingsTest, WithTheServerGoTheSettings) {
    FakeSettingsManager manager(_server.display());
    manager.tell(themed("Adwaita"));
    manager.appear();
    open();
    _server.stop();
    EXPECT_TRUE(becomes({}));
    EXPECT_EQ(_changes, 1);
}

TEST_F(XSettingsTest, AfterTheServerNothingIsLeftToDo) {
    open();
    _server.stop();
    // A turn of the main loop that finds nothing to do.
    auto& loop = *QAbstractEventDispatcher::instance();
    EXPECT_TRUE(waitUntil([&] {
        int turns = 0;
        while (loop.processEvents(QEventLoop::AllEvents) && turns < 100)
            ++turns;
        return turns < 100;
    }));
    EXPECT_EQ(_changes, 0);
}

TEST(XSettingsWithoutServer, AreNone) {
    const XSettings settings(":4000000");
    EXPECT_EQ(settings.values(), XSettingValues());
}

TEST(XSettingsOfSession, AreNoneWithoutWindows) {
    EXPECT_EQ(XSettings::ofSession(), nullptr);
}

} // namespace
} // namespace selvane::test
