#include "Selvane/Platform/Linux/DesktopAppearance.h"

#include "Support/PrivateBus.h"

#include <QtDBus/QDBusAbstractAdaptor>
#include <QtDBus/QDBusVariant>

#include <gtest/gtest.h>

namespace selvane::test {
namespace {

const auto portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

} // namespace

/// The settings portal of a desktop whose colour scheme a test chooses.
class FakePortal final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    FakePortal(QDBusConnection bus, QObject* owner) : QDBusAbstractAdaptor(owner), _bus(bus) {}

    void start() {
        _bus.registerObject(portalPath, parent(), QDBusConnection::ExportAdaptors);
        _bus.registerService(portalName);
    }
    void stop() {
        _bus.unregisterService(portalName);
        _bus.unregisterObject(portalPath);
    }
    void choose(uint scheme) {
        colorScheme = scheme;
        Q_EMIT SettingChanged(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("color-scheme"),
                              QDBusVariant(colorScheme));
    }

    uint colorScheme = 0;
    int questions = 0;

public Q_SLOTS:
    QDBusVariant Read(const QString& group, const QString& key) {
        ++questions;
        const bool isKnown =
            group == QLatin1String("org.freedesktop.appearance") && key == QLatin1String("color-scheme");
        return QDBusVariant(
            QVariant::fromValue(QDBusVariant(isKnown ? QVariant(colorScheme) : QVariant(QString()))));
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection _bus;
};

namespace {

class DesktopAppearanceTest : public testing::Test {
protected:
    PrivateBus _bus;
    QObject _portalObject;
    FakePortal* _portal = new FakePortal(_bus.connect(), &_portalObject);
};

TEST_F(DesktopAppearanceTest, ReadsThePreferenceAndFollowsIt) {
    _portal->colorScheme = 1;
    _portal->start();
    DesktopAppearance appearance(_bus.connect());
    int changes = 0;
    const auto subscription = appearance.changed.subscribe([&] { ++changes; });
    EXPECT_FALSE(appearance.isDark());
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    EXPECT_EQ(changes, 1);
    _portal->choose(2);
    ASSERT_TRUE(waitUntil([&] { return !appearance.isDark(); }));
    EXPECT_EQ(changes, 2);
    // No preference is the light palette that a program without windows has: no change.
    _portal->choose(0);
    _portal->choose(1);
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    EXPECT_EQ(changes, 3);
}

TEST_F(DesktopAppearanceTest, OtherSettingsChangeNothing) {
    _portal->colorScheme = 2;
    _portal->start();
    DesktopAppearance appearance(_bus.connect());
    ASSERT_TRUE(waitUntil([&] { return _portal->questions == 1; }));
    int changes = 0;
    const auto subscription = appearance.changed.subscribe([&] { ++changes; });
    Q_EMIT _portal->SettingChanged(QStringLiteral("org.gnome.desktop.interface"),
                                   QStringLiteral("color-scheme"), QDBusVariant(1U));
    Q_EMIT _portal->SettingChanged(QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast"),
                                   QDBusVariant(1U));
    _portal->choose(1);
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    EXPECT_EQ(changes, 1);
}

TEST_F(DesktopAppearanceTest, APortalThatStartsLaterIsAsked) {
    DesktopAppearance appearance(_bus.connect());
    _portal->colorScheme = 1;
    _portal->start();
    ASSERT_TRUE(waitUntil([&] { return appearance.isDark(); }));
    // The last word of a portal that went away stands.
    _portal->stop();
    _portal->colorScheme = 2;
    EXPECT_TRUE(appearance.isDark());
    _portal->start();
    EXPECT_TRUE(waitUntil([&] { return !appearance.isDark(); }));
}

TEST_F(DesktopAppearanceTest, WithoutABusItIsLight) {
    DesktopAppearance appearance(QDBusConnection(QStringLiteral("there is no such connection")));
    EXPECT_FALSE(appearance.isDark());
}

} // namespace
} // namespace selvane::test

#include "DesktopAppearanceTest.moc"
