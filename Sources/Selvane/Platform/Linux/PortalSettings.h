#pragma once

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusServiceWatcher>
#include <QtDBus/QDBusVariant>

#include <functional>

namespace selvane {

/// Values by their keys, by the groups that these belong to.
using PortalValues = QMap<QString, QVariantMap>;

/// Groups of settings that the desktop tells through its settings portal, read and followed. A portal that
/// starts, or starts again, is read again; of one that went away the last word stands, since one that crashed
/// is the same desktop a moment later. Main thread. Every question is asynchronous.
class PortalSettings final : public QObject {
    Q_OBJECT
public:
    /// A portal that is installed but doesn't run yet is started by the bus.
    PortalSettings(const QDBusConnection& sessionBus, QStringList groups);

    /// What the portal has told of the groups: nothing until it has answered.
    [[nodiscard]] const PortalValues& values() const { return _values; }

    /// The portal has told values, which may be the same as before: variants of different types are equal to
    /// each other too easily to tell.
    std::function<void()> onUpdate;

private Q_SLOTS:
    void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    void readAll();

    QDBusConnection _bus;
    QDBusServiceWatcher _portal;
    QStringList _groups;
    PortalValues _values;
};

} // namespace selvane
