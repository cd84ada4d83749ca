#pragma once

#include "Selvane/Platform/Linux/PortalSettings.h"
#include "Selvane/Platform/Linux/XSettingValues.h"

#include <QtCore/QStringList>

namespace selvane {

/// How the desktop wants programs to look.
struct DesktopWishes {
    bool isDark = false;
    bool isHighContrast = false;
    bool reducesMotion = false;
    friend bool operator==(const DesktopWishes&, const DesktopWishes&) = default;

    /// The colours of the toolkit's own palette, which know only light and dark.
    enum class Palette { light, dark };

    /// The groups of the portal's settings that `from` looks at.
    static QStringList portalGroups();

    /// What the desktop wishes, put together from all that it tells. Of each wish the first source that says
    /// something counts.
    ///
    /// Dark:
    /// 1. portal, org.freedesktop.appearance color-scheme: 1 is yes, 2 is no;
    /// 2. XSETTINGS, Net/ThemeName: "...-dark", "...-dark-...", "...:dark" and "HighContrastInverse" are yes;
    /// 3. XSETTINGS, Gtk/ApplicationPreferDarkTheme: 1 is yes;
    /// 4. the palette.
    ///
    /// High contrast, otherwise no:
    /// 1. portal, org.freedesktop.appearance contrast: 1 is yes;
    /// 2. portal, org.gnome.desktop.a11y.interface high-contrast: true is yes;
    /// 3. XSETTINGS, Net/ThemeName: "HighContrast" and "HighContrastInverse" are yes.
    ///
    /// Less motion, otherwise no:
    /// 1. portal, org.freedesktop.appearance reduced-motion: 1 is yes;
    /// 2. portal, org.gnome.desktop.interface enable-animations: false is yes;
    /// 3. portal, org.kde.kdeglobals.KDE AnimationDurationFactor: 0 is yes;
    /// 4. XSETTINGS, Gtk/EnableAnimations: 0 is yes.
    ///
    /// All that isn't named here says nothing, neither yes nor no: the next source is asked. So does a value
    /// of a type other than the portal documents.
    static DesktopWishes from(const PortalValues& portal, const XSettingValues& xsettings, Palette palette);
};

} // namespace selvane
