#pragma once

#include "Selvane/Platform/Appearance.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusServiceWatcher>
#include <QtDBus/QDBusVariant>

namespace selvane {

/// Reads the desktop's preference for dark colours from the settings portal and follows it. Without a portal,
/// or without a preference, the palette of the QGuiApplication decides; without that, the answer is light.
/// All questions are asynchronous. Main thread.
class DesktopAppearance final : public QObject, public Appearance {
    Q_OBJECT
public:
    /// A portal that is installed but doesn't run yet is started by the bus.
    explicit DesktopAppearance(const QDBusConnection& sessionBus);
    ~DesktopAppearance() override;

    [[nodiscard]] bool isDark() const override { return _isDark; }
    [[nodiscard]] bool isHighContrast() const override { return false; }
    [[nodiscard]] bool reducesMotion() const override { return false; }
    [[nodiscard]] bool isComposited() const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    enum class Preference { none, dark, light };
    static Preference preferenceIn(const QVariant& value);

    void readPreference();
    void setPreference(Preference preference);
    void update();

    QDBusConnection _bus;
    QDBusServiceWatcher _portal;
    Preference _preference = Preference::none;
    bool _isDark = false;
};

} // namespace selvane
