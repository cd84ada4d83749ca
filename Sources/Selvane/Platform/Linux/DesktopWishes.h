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

    /// What the desktop wishes, put together from all that it tells, in this order:
    ///
    /// | wish     | settings portal                                  | XSETTINGS                            |
    /// else |
    /// |----------|--------------------------------------------------|--------------------------------------|------|
    /// | dark     | org.freedesktop.appearance color-scheme          | Net/ThemeName "...-dark", "...:dark" |
    /// the  | |          | 1: yes, 2: no                                    | or "HighContrastInverse", |
    /// pal- | |          |                                                  | Gtk/ApplicationPreferDarkTheme
    /// 1     | ette | | contrast | org.freedesktop.appearance contrast 1            | Net/ThemeName
    /// "HighContrast" or      | no   | |          | org.gnome.desktop.a11y.interface high-contrast   |
    /// "HighContrastInverse"                |      | | less     | org.freedesktop.appearance reduced-motion 1
    /// | Gtk/EnableAnimations 0               | no   | | motion   | org.gnome.desktop.interface
    /// enable-animations no |                                      |      | |          |
    /// org.kde.kdeglobals.KDE AnimationDurationFactor 0 |                                      |      |
    ///
    /// All that isn't named here says nothing, neither yes nor no: the next source is asked. So does a value
    /// of a type other than the portal documents.
    static DesktopWishes from(const PortalValues& portal, const XSettingValues& xsettings, Palette palette);
};

} // namespace selvane
