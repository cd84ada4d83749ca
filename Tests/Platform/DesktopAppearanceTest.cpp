#include "Selvane/Platform/Linux/DesktopAppearance.h"

#include "FakeSettingsManager.h"
#include "Support/PrivateBus.h"
#include "Support/XServer.h"
#include "XSettingsBytes.h"

#include <QtDBus/QDBusAbstractAdaptor>
#include <QtDBus/QDBusMetaType>
#include <QtDBus/QDBusVariant>

#include <gtest/gtest.h>

#include <bit>
#include <memory>
#include <utility>

namespace selvane::test {
namespace {

const auto portalName = QStringLiteral("org.freedesktop.portal.Desktop");
const auto portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");

} // namespace

/// The settings portal of a desktop that wishes what a test says.
class FakePortal final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")
public:
    FakePortal(QDBusConnection bus, QObject* owner) : QDBusAbstractAdaptor(owner), _bus(bus) {
        qDBusRegisterMetaType<PortalValues>();
    }

    void start() {
        _bus.registerObject(portalPath, parent(), QDBusConnection::ExportAdaptors);
        _bus.registerService(portalName);
    }
    void stop() {
        _bus.unregisterService(portalName);
        _bus.unregisterObject(portalPath);
    }
    void choose(const QString& group, const QString& key, const QVariant& value) {
        values[group].insert(key, value);
        Q_EMIT SettingChanged(group, key, QDBusVariant(value));
    }
    void chooseScheme(uint scheme) { choose(appearanceGroup, QStringLiteral("color-scheme"), scheme); }

    PortalValues values;
    QStringList askedFor;
    int questions = 0;

public Q_SLOTS:
    // Tells more than it is asked for, as portals may.
    PortalValues ReadAll(const QStringList& groups) {
        ++questions;
        askedFor = groups;
        return values;
    }

Q_SIGNALS:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection _bus;
};

namespace {

class DesktopAppearanceTest : public testing::Test {
protected:
    void make(std::unique_ptr<XSettings> xsettings = nullptr) {
        _appearance = std::make_unique<DesktopAppearance>(_bus.connect(), std::move(xsettings));
        _subscription = _appearance->changed.subscribe([this] { ++_changes; });
    }

    PrivateBus _bus;
    QObject _portalObject;
    FakePortal* _portal = new FakePortal(_bus.connect(), &_portalObject);
    std::unique_ptr<DesktopAppearance> _appearance;
    Subscription _subscription;
    int _changes = 0;
};

TEST_F(DesktopAppearanceTest, ReadsAllWishesAtOnce) {
    _portal->values[appearanceGroup] = {{QStringLiteral("color-scheme"), 1U},
                                        {QStringLiteral("contrast"), 1U},
                                        {QStringLiteral("reduced-motion"), 1U}};
    _portal->start();
    make();
    EXPECT_FALSE(_appearance->isDark());
    EXPECT_FALSE(_appearance->isHighContrast());
    EXPECT_FALSE(_appearance->reducesMotion());
    ASSERT_TRUE(waitUntil([&] { return _appearance->isDark(); }));
    EXPECT_TRUE(_appearance->isHighContrast());
    EXPECT_TRUE(_appearance->reducesMotion());
    EXPECT_EQ(_changes, 1);
    EXPECT_EQ(_portal->questions, 1);
    EXPECT_EQ(_portal->askedFor, DesktopWishes::portalGroups());
}

TEST_F(DesktopAppearanceTest, FollowsTheScheme) {
    _portal->start();
    make();
    _portal->chooseScheme(1);
    ASSERT_TRUE(waitUntil([&] { return _appearance->isDark(); }));
    EXPECT_EQ(_changes, 1);
    _portal->chooseScheme(2);
    ASSERT_TRUE(waitUntil([&] { return !_appearance->isDark(); }));
    EXPECT_EQ(_changes, 2);
    // No preference is the light palette that a program without windows has: no change.
    _portal->chooseScheme(0);
    _portal->chooseScheme(1);
    ASSERT_TRUE(waitUntil([&] { return _appearance->isDark(); }));
    EXPECT_EQ(_changes, 3);
}

TEST_F(DesktopAppearanceTest, FollowsContrastAndMotion) {
    _portal->start();
    make();
    _portal->choose(appearanceGroup, QStringLiteral("contrast"), 1U);
    ASSERT_TRUE(waitUntil([&] { return _appearance->isHighContrast(); }));
    _portal->choose(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("enable-animations"),
                    false);
    ASSERT_TRUE(waitUntil([&] { return _appearance->reducesMotion(); }));
    EXPECT_EQ(_changes, 2);
    _portal->choose(appearanceGroup, QStringLiteral("contrast"), 0U);
    ASSERT_TRUE(waitUntil([&] { return !_appearance->isHighContrast(); }));
    EXPECT_EQ(_changes, 3);
    EXPECT_FALSE(_appearance->isDark());
}

TEST_F(DesktopAppearanceTest, ValuesOfAWrongTypeAndOtherSettingsChangeNothing) {
    _portal->values[appearanceGroup] = {{QStringLiteral("color-scheme"), QStringLiteral("1")}};
    _portal->start();
    make();
    ASSERT_TRUE(waitUntil([&] { return _portal->questions == 1; }));
    _portal->choose(appearanceGroup, QStringLiteral("contrast"), true);
    _portal->choose(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("color-scheme"), 1U);
    _portal->choose(QStringLiteral("org.kde.kdeglobals.General"), QStringLiteral("color-scheme"), 1U);
    _portal->choose(appearanceGroup, QStringLiteral("accent-color"), 1U);
    _portal->chooseScheme(1);
    ASSERT_TRUE(waitUntil([&] { return _appearance->isDark(); }));
    EXPECT_EQ(_changes, 1);
    EXPECT_FALSE(_appearance->isHighContrast());
}

TEST_F(DesktopAppearanceTest, APortalThatStartsLaterIsAsked) {
    make();
    _portal->values[appearanceGroup] = {{QStringLiteral("color-scheme"), 1U}};
    _portal->start();
    ASSERT_TRUE(waitUntil([&] { return _appearance->isDark(); }));
    // The last word of a portal that went away stands.
    _portal->stop();
    _portal->values[appearanceGroup] = {{QStringLiteral("contrast"), 1U}};
    EXPECT_TRUE(_appearance->isDark());
    _portal->start();
    EXPECT_TRUE(waitUntil([&] { return !_appearance->isDark(); }));
    EXPECT_TRUE(_appearance->isHighContrast());
}

TEST_F(DesktopAppearanceTest, WithoutABusItIsLight) {
    const DesktopAppearance appearance(QDBusConnection(QStringLiteral("there is no such connection")));
    EXPECT_FALSE(appearance.isDark());
    EXPECT_FALSE(appearance.isHighContrast());
    EXPECT_FALSE(appearance.reducesMotion());
}

TEST_F(DesktopAppearanceTest, FollowsASettingsManagerWhereThePortalHasNoPreference) {
    const XServer server;
    ASSERT_FALSE(server.display().empty()) << "Xvfb didn't start";
    FakeSettingsManager manager(server.display());
    const XSettingsBytes dark = XSettingsBytes(std::endian::little).string("Net/ThemeName", "Adwaita-dark");
    manager.tell(dark.bytes());
    manager.appear();
    make(std::make_unique<XSettings>(server.display()));
    EXPECT_TRUE(_appearance->isDark());
    EXPECT_EQ(_changes, 0);

    _portal->chooseScheme(2);
    _portal->start();
    ASSERT_TRUE(waitUntil([&] { return !_appearance->isDark(); }));
    manager.tell(XSettingsBytes(dark).integer("Gtk/EnableAnimations", 0).bytes());
    ASSERT_TRUE(waitUntil([&] { return _appearance->reducesMotion(); }));
    EXPECT_FALSE(_appearance->isDark());
    EXPECT_EQ(_changes, 2);
}

} // namespace
} // namespace selvane::test

#include "DesktopAppearanceTest.moc"
