#include "Selvane/Platform/Linux/LinuxStatusItem.h"
#include "Support/EnvironmentVariable.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include <gtest/gtest.h>

#include <utility>

namespace selvane::test {
namespace {

/// What the desktop is called, and whether its panel is dark whatever its colours.
using Case = std::pair<const char*, bool>;

class StatusItemDesktopNames : public testing::TestWithParam<Case> {};

TEST_P(StatusItemDesktopNames, TellWhetherThePanelIsDark) {
    const auto& [names, isDark] = GetParam();
    const EnvironmentVariable desktops("XDG_CURRENT_DESKTOP", names);
    EXPECT_EQ(LinuxStatusItem::Desktop::current().hasDarkPanel, isDark);
}

INSTANTIATE_TEST_SUITE_P(Of, StatusItemDesktopNames,
                         testing::Values(Case("GNOME", true), Case("ubuntu:GNOME", true),
                                         Case("GNOME-Classic:GNOME", true), Case("XFCE", false),
                                         Case("X-Cinnamon", false), Case("", false)));

TEST(StatusItemDesktop, IsAnX11SessionWithItsScreens) {
    const auto desktop = LinuxStatusItem::Desktop::current();
    EXPECT_TRUE(desktop.isX11);
    EXPECT_TRUE(desktop.displayName.empty()) << "that of the session";
    const auto monitors = desktop.monitors();
    ASSERT_EQ(monitors.size(), 1U);
    const QSize size =
        QGuiApplication::primaryScreen()->size() * QGuiApplication::primaryScreen()->devicePixelRatio();
    EXPECT_EQ(monitors[0].pixels, (ScreenRect{0, 0, size.width(), size.height()}));
}

} // namespace
} // namespace selvane::test
