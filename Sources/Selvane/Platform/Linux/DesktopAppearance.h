#pragma once

#include "Selvane/Platform/Appearance.h"
#include "Selvane/Platform/Linux/DesktopWishes.h"
#include "Selvane/Platform/Linux/PortalSettings.h"
#include "Selvane/Platform/Linux/XSettings.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include <cstdint>
#include <memory>

namespace selvane {

/// Reads the desktop's wishes from the settings portal, from the settings manager of an X11 session and from
/// the palette of the QGuiApplication, and follows them; `DesktopWishes` says which counts. Questions to the
/// portal are asynchronous. Main thread.
class DesktopAppearance final : public QObject, public Appearance {
    Q_OBJECT
public:
    /// Without `xsettings` there is no settings manager.
    explicit DesktopAppearance(const QDBusConnection& sessionBus,
                               std::unique_ptr<XSettings> xsettings = XSettings::ofSession());
    ~DesktopAppearance() override;

    [[nodiscard]] bool isDark() const override { return _wishes.isDark; }
    [[nodiscard]] bool isHighContrast() const override { return _wishes.isHighContrast; }
    [[nodiscard]] bool reducesMotion() const override { return _wishes.reducesMotion; }
    [[nodiscard]] bool isComposited() const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] DesktopWishes currentWishes() const;
    void update();

    PortalSettings _portal;
    std::unique_ptr<XSettings> _xsettings;
    DesktopWishes _wishes;
    /// An atom of the X server, 0 until it was asked.
    mutable std::uint32_t _compositorSelection = 0;
};

} // namespace selvane
