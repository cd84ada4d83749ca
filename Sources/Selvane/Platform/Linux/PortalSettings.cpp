#include "Selvane/Platform/Linux/PortalSettings.h"

#include "Selvane/Platform/Linux/DBusCall.h"

#include <QtDBus/QDBusArgument>

#include <utility>

namespace selvane {

namespace {

const auto portalName = QLatin1String("org.freedesktop.portal.Desktop");
const auto portalPath = QLatin1String("/org/freedesktop/portal/desktop");
const auto settingsInterface = QLatin1String("org.freedesktop.portal.Settings");

} // namespace

PortalSettings::PortalSettings(const QDBusConnection& sessionBus, QStringList groups)
    : _bus(sessionBus),
      _portal(portalName, sessionBus, QDBusServiceWatcher::WatchForOwnerChange),
      _groups(std::move(groups)) {
    if (!_bus.isConnected())
        return;
    connect(&_portal, &QDBusServiceWatcher::serviceRegistered, this, &PortalSettings::readAll);
    // Without it Qt looks for the type of the slot before it has made its own types known, and finds no slot.
    qRegisterMetaType<QDBusVariant>();
    _bus.connect(QString(), portalPath, settingsInterface, QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    readAll();
}

void PortalSettings::readAll() {
    auto question =
        QDBusMessage::createMethodCall(portalName, portalPath, settingsInterface, QStringLiteral("ReadAll"));
    question << _groups;
    callAsync(_bus, question, this, [this](const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sa{sv}}"))
            return;
        const auto answer = qdbus_cast<PortalValues>(reply.arguments().constFirst());
        _values.clear();
        for (const QString& group : std::as_const(_groups)) {
            if (answer.contains(group))
                _values.insert(group, answer.value(group));
        }
        if (onUpdate)
            onUpdate();
    });
}

void PortalSettings::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    if (!_groups.contains(group))
        return;
    _values[group].insert(key, value.variant());
    if (onUpdate)
        onUpdate();
}

} // namespace selvane
