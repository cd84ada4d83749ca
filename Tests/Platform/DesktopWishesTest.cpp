#include "Selvane/Platform/Linux/DesktopWishes.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace selvane::test {
namespace {

using Palette = DesktopWishes::Palette;

struct Desktop {
    const char* name;
    PortalValues portal;
    XSettingValues xsettings;
    Palette palette;
    DesktopWishes wishes;
};

void PrintTo(const Desktop& desktop, std::ostream* stream) {
    *stream << desktop.name;
}

PortalValues appearance(const QString& key, const QVariant& value) {
    return {{QStringLiteral("org.freedesktop.appearance"), {{key, value}}}};
}
PortalValues scheme(const QVariant& value) {
    return appearance(QStringLiteral("color-scheme"), value);
}
PortalValues contrast(const QVariant& value) {
    return appearance(QStringLiteral("contrast"), value);
}
PortalValues motion(const QVariant& value) {
    return appearance(QStringLiteral("reduced-motion"), value);
}
PortalValues gnomeContrast(const QVariant& value) {
    return {{QStringLiteral("org.gnome.desktop.a11y.interface"), {{QStringLiteral("high-contrast"), value}}}};
}
PortalValues gnomeAnimations(const QVariant& value) {
    return {{QStringLiteral("org.gnome.desktop.interface"), {{QStringLiteral("enable-animations"), value}}}};
}
PortalValues kdeFactor(const QVariant& value) {
    return {{QStringLiteral("org.kde.kdeglobals.KDE"), {{QStringLiteral("AnimationDurationFactor"), value}}}};
}
PortalValues both(PortalValues first, const PortalValues& second) {
    for (auto group = second.begin(); group != second.end(); ++group)
        first[group.key()].insert(group.value());
    return first;
}

XSettingValues theme(const std::string& name) {
    return {{"Net/ThemeName", name}};
}

constexpr DesktopWishes none{};
constexpr DesktopWishes dark{.isDark = true};
constexpr DesktopWishes highContrast{.isHighContrast = true};
constexpr DesktopWishes lessMotion{.reducesMotion = true};

class DesktopWishesTable : public testing::TestWithParam<Desktop> {};

TEST_P(DesktopWishesTable, AreTheseOf) {
    const Desktop& desktop = GetParam();
    const DesktopWishes wishes = DesktopWishes::from(desktop.portal, desktop.xsettings, desktop.palette);
    EXPECT_EQ(wishes.isDark, desktop.wishes.isDark);
    EXPECT_EQ(wishes.isHighContrast, desktop.wishes.isHighContrast);
    EXPECT_EQ(wishes.reducesMotion, desktop.wishes.reducesMotion);
}

INSTANTIATE_TEST_SUITE_P(
    Dark, DesktopWishesTable,
    testing::Values(
        Desktop{"NothingSaid", {}, {}, Palette::light, none},
        Desktop{"DarkPalette", {}, {}, Palette::dark, dark},
        Desktop{"PortalSaysDark", scheme(1U), {}, Palette::light, dark},
        Desktop{"PortalSaysLightOverDarkPalette", scheme(2U), {}, Palette::dark, none},
        Desktop{"PortalSaysLightOverDarkTheme", scheme(2U), theme("Adwaita-dark"), Palette::light, none},
        Desktop{"PortalHasNoPreference", scheme(0U), {}, Palette::light, none},
        Desktop{"PortalHasNoPreferenceThemeHas", scheme(0U), theme("Adwaita-dark"), Palette::light, dark},
        Desktop{"PortalSaysSomethingUnknown", scheme(3U), {}, Palette::dark, dark},
        Desktop{"PortalSaysDarkAsText", scheme(QStringLiteral("1")), {}, Palette::light, none},
        Desktop{"PortalSaysDarkAsSignedNumber", scheme(1), {}, Palette::light, none},
        Desktop{"PortalSaysLightAsBool", scheme(true), {}, Palette::dark, dark},
        Desktop{"ThemeEndsInDark", {}, theme("Greybird-dark"), Palette::light, dark},
        Desktop{"ThemeEndsInCapitalDark", {}, theme("Arc-Dark"), Palette::light, dark},
        Desktop{"ThemeVariantDark", {}, theme("Adwaita:dark"), Palette::light, dark},
        Desktop{"ThemeIsDarkWithAnAccent", {}, theme("Mint-Y-Dark-Aqua"), Palette::light, dark},
        Desktop{"ThemeIsDarkerWithAnAccent", {}, theme("Arc-Darker-solid"), Palette::light, none},
        Desktop{"ThemeBeginsWithDark", {}, theme("dark-Adwaita"), Palette::light, none},
        Desktop{"ThemeEndsInDarker", {}, theme("Arc-Darker"), Palette::light, none},
        Desktop{"ThemeCalledDark", {}, theme("dark"), Palette::light, none},
        Desktop{"ThemeWithoutName", {}, theme(""), Palette::light, none},
        Desktop{"ThemeIsANumber", {}, {{"Net/ThemeName", 1}}, Palette::light, none},
        Desktop{"LightThemeLeavesItToThePalette", {}, theme("Greybird"), Palette::dark, dark},
        Desktop{"ProgramsPreferDark", {}, {{"Gtk/ApplicationPreferDarkTheme", 1}}, Palette::light, dark},
        Desktop{"ProgramsDontPreferDark", {}, {{"Gtk/ApplicationPreferDarkTheme", 0}}, Palette::light, none},
        Desktop{
            "ProgramsPreferDarkAsText", {}, {{"Gtk/ApplicationPreferDarkTheme", "1"}}, Palette::light, none}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Contrast, DesktopWishesTable,
    testing::Values(Desktop{"PortalSaysHigh", contrast(1U), {}, Palette::light, highContrast},
                    Desktop{"PortalHasNoPreference", contrast(0U), {}, Palette::light, none},
                    Desktop{"PortalSaysSomethingUnknown", contrast(2U), {}, Palette::light, none},
                    Desktop{"PortalSaysHighAsBool", contrast(true), {}, Palette::light, none},
                    Desktop{"GNOMESaysHigh", gnomeContrast(true), {}, Palette::light, highContrast},
                    Desktop{"GNOMESaysNormal", gnomeContrast(false), {}, Palette::light, none},
                    Desktop{"GNOMESaysHighAsNumber", gnomeContrast(1U), {}, Palette::light, none},
                    Desktop{"NoPreferenceButGNOMESaysHigh",
                            both(contrast(0U), gnomeContrast(true)),
                            {},
                            Palette::light,
                            highContrast},
                    Desktop{"Theme", {}, theme("HighContrast"), Palette::light, highContrast},
                    Desktop{"DarkTheme",
                            {},
                            theme("HighContrastInverse"),
                            Palette::light,
                            DesktopWishes{.isDark = true, .isHighContrast = true}},
                    Desktop{"ThemeOfALongerName", {}, theme("HighContrastOfMine"), Palette::light, none},
                    Desktop{"NoPreferenceButTheme", contrast(0U), theme("HighContrast"), Palette::light,
                            highContrast}),
    [](const auto& test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Motion, DesktopWishesTable,
    testing::Values(
        Desktop{"PortalSaysLess", motion(1U), {}, Palette::light, lessMotion},
        Desktop{"PortalHasNoPreference", motion(0U), {}, Palette::light, none},
        Desktop{"PortalSaysLessAsText", motion(QStringLiteral("1")), {}, Palette::light, none},
        Desktop{"GNOMESaysNoAnimations", gnomeAnimations(false), {}, Palette::light, lessMotion},
        Desktop{"GNOMESaysAnimations", gnomeAnimations(true), {}, Palette::light, none},
        Desktop{"GNOMESaysNoAnimationsAsNumber", gnomeAnimations(0U), {}, Palette::light, none},
        Desktop{"NoPreferenceButGNOMESaysNoAnimations",
                both(motion(0U), gnomeAnimations(false)),
                {},
                Palette::light,
                lessMotion},
        Desktop{"KDESaysZero", kdeFactor(QStringLiteral("0")), {}, Palette::light, lessMotion},
        Desktop{"KDESaysZeroWithPlaces", kdeFactor(QStringLiteral("0.0")), {}, Palette::light, lessMotion},
        Desktop{"KDESaysZeroAsNumber", kdeFactor(0.0), {}, Palette::light, lessMotion},
        Desktop{"KDESaysZeroAsInteger", kdeFactor(0), {}, Palette::light, lessMotion},
        Desktop{"KDESaysHalf", kdeFactor(QStringLiteral("0.5")), {}, Palette::light, none},
        Desktop{"KDESaysNothing", kdeFactor(QString()), {}, Palette::light, none},
        Desktop{"KDESaysWords", kdeFactor(QStringLiteral("none")), {}, Palette::light, none},
        Desktop{"KDESaysFalse", kdeFactor(false), {}, Palette::light, none},
        Desktop{"NoAnimationsInX11", {}, {{"Gtk/EnableAnimations", 0}}, Palette::light, lessMotion},
        Desktop{"AnimationsInX11", {}, {{"Gtk/EnableAnimations", 1}}, Palette::light, none},
        Desktop{"NoAnimationsInX11AsText", {}, {{"Gtk/EnableAnimations", "0"}}, Palette::light, none}),
    [](const auto& test) { return test.param.name; });

TEST(DesktopWishesTest, TheGroupsThatAreLookedAtAreTheOnesAskedFor) {
    PortalValues all = both(both(both(scheme(1U), gnomeContrast(true)), gnomeAnimations(false)),
                            kdeFactor(QStringLiteral("0")));
    EXPECT_EQ(DesktopWishes::portalGroups(), QStringList(all.keys()));
}

} // namespace
} // namespace selvane::test
