#include "Selvane/Platform/Linux/LabelHosts.h"

#include "Selvane/Platform/Linux/DBusCall.h"

#include <QtCore/QStringList>

namespace selvane {

namespace {

QStringList knownHosts() {
    return {QStringLiteral("org.gnome.Shell"), QStringLiteral("org.ayatana.indicator.application")};
}

} // namespace

LabelHosts::LabelHosts(const QDBusConnection& sessionBus) {
    if (!sessionBus.isConnected())
        return;
    connect(&_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString& name, const QString&, const QString& owner) {
                setPresent(name, !owner.isEmpty());
            });
    _watcher.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
    _watcher.setConnection(sessionBus);
    for (const QString& name : knownHosts()) {
        _watcher.addWatchedService(name);
        QDBusMessage question = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"));
        question << name;
        // The bus works in order: what it says of this name later is newer.
        callAsync(sessionBus, question, this, [this, name](const QDBusMessage& reply) {
            setPresent(name, reply.arguments().value(0).toBool());
        });
    }
}

void LabelHosts::setPresent(const QString& name, bool present) {
    const bool werePresent = arePresent();
    if (present)
        _present.insert(name);
    else
        _present.remove(name);
    if (!werePresent && arePresent() && onAppear)
        onAppear();
}

} // namespace selvane
