#include "Selvane/Platform/Linux/DesktopWishes.h"

#include <QtCore/QVariant>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace selvane {

namespace {

const auto appearanceGroup = QLatin1String("org.freedesktop.appearance");
const auto gnomeAccessibilityGroup = QLatin1String("org.gnome.desktop.a11y.interface");
const auto gnomeInterfaceGroup = QLatin1String("org.gnome.desktop.interface");
const auto kdeGroup = QLatin1String("org.kde.kdeglobals.KDE");

constexpr std::string_view highContrastTheme = "HighContrast";
constexpr std::string_view darkHighContrastTheme = "HighContrastInverse";

QVariant value(const PortalValues& portal, QLatin1String group, QLatin1String key) {
    const auto found = portal.constFind(group);
    return found == portal.constEnd() ? QVariant() : found->value(key);
}

bool isNumber(const QVariant& value, uint number) {
    return value.metaType() == QMetaType::fromType<uint>() && value.toUInt() == number;
}

bool isBool(const QVariant& value, bool wanted) {
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool() == wanted;
}

/// KDE's own settings are texts; portals of others may send the number that the text means.
bool isZero(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::QString:
    case QMetaType::Double:
    case QMetaType::Int:
    case QMetaType::UInt: {
        bool isRead = false;
        const double number = value.toDouble(&isRead);
        return isRead && number == 0;
    }
    default:
        return false;
    }
}

template <typename T>
std::optional<T> value(const XSettingValues& xsettings, std::string_view name) {
    const auto found = xsettings.find(name);
    if (found == xsettings.end() || !std::holds_alternative<T>(found->second))
        return std::nullopt;
    return std::get<T>(found->second);
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(), [](char character) {
        return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
    });
    return text;
}

bool isDarkTheme(const std::string& name) {
    const std::string lower = lowerCase(name);
    return lower.ends_with("-dark") || lower.ends_with(":dark") ||
           lower.find("-dark-") != std::string::npos || name == darkHighContrastTheme;
}

bool isDark(const PortalValues& portal, const XSettingValues& xsettings, DesktopWishes::Palette palette) {
    const QVariant scheme = value(portal, appearanceGroup, QLatin1String("color-scheme"));
    if (isNumber(scheme, 1))
        return true;
    if (isNumber(scheme, 2))
        return false;
    return isDarkTheme(value<std::string>(xsettings, "Net/ThemeName").value_or(std::string())) ||
           value<std::int32_t>(xsettings, "Gtk/ApplicationPreferDarkTheme") == 1 ||
           palette == DesktopWishes::Palette::dark;
}

bool isHighContrast(const PortalValues& portal, const XSettingValues& xsettings) {
    const auto theme = value<std::string>(xsettings, "Net/ThemeName");
    return isNumber(value(portal, appearanceGroup, QLatin1String("contrast")), 1) ||
           isBool(value(portal, gnomeAccessibilityGroup, QLatin1String("high-contrast")), true) ||
           theme == highContrastTheme || theme == darkHighContrastTheme;
}

bool reducesMotion(const PortalValues& portal, const XSettingValues& xsettings) {
    return isNumber(value(portal, appearanceGroup, QLatin1String("reduced-motion")), 1) ||
           isBool(value(portal, gnomeInterfaceGroup, QLatin1String("enable-animations")), false) ||
           isZero(value(portal, kdeGroup, QLatin1String("AnimationDurationFactor"))) ||
           value<std::int32_t>(xsettings, "Gtk/EnableAnimations") == 0;
}

} // namespace

QStringList DesktopWishes::portalGroups() {
    return {appearanceGroup, gnomeAccessibilityGroup, gnomeInterfaceGroup, kdeGroup};
}

DesktopWishes DesktopWishes::from(const PortalValues& portal, const XSettingValues& xsettings,
                                  Palette palette) {
    return {.isDark = selvane::isDark(portal, xsettings, palette),
            .isHighContrast = selvane::isHighContrast(portal, xsettings),
            .reducesMotion = selvane::reducesMotion(portal, xsettings)};
}

} // namespace selvane
