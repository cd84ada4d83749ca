#include "Selvane/Platform/Linux/PictureHosts.h"

#include "Selvane/Platform/Linux/DBusCall.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>

#include <utility>

namespace selvane {

namespace {

/// The name of the program that took a host's name such as "org.kde.StatusNotifierHost-1234-1".
QByteArray programOf(const QString& hostName) {
    const QString process = hostName.section(QLatin1Char('-'), 1, 1);
    QFile file(QStringLiteral("/proc/%1/comm").arg(process.toLongLong()));
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

bool allKeepShape(const QStringList& names) {
    bool isAny = false;
    for (const QString& name : names) {
        if (!name.startsWith(QLatin1String("org.kde.StatusNotifierHost-")))
            continue;
        isAny = true;
        if (programOf(name) != "waybar")
            return false;
    }
    return isAny;
}

} // namespace

PictureHosts::PictureHosts(const QDBusConnection& sessionBus) : _bus(sessionBus) {
    ask();
}

void PictureHosts::ask() {
    if (!_bus.isConnected())
        return;
    const QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ListNames"));
    callAsync(_bus, question, this, [this](const QDBusMessage& reply) {
        const bool keepShape = allKeepShape(reply.arguments().value(0).toStringList());
        if (std::exchange(_keepShape, keepShape) != keepShape && onChange)
            onChange();
    });
}

} // namespace selvane
