#pragma once

#include "Support/EndWithTest.h"
#include "Support/EventLoop.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>

#include <memory>
#include <utility>
#include <vector>

namespace selvane::test {

/// A message bus of the test's own, which knows no services that it could start. Ends with the object.
///
///     PrivateBus bus;
///     QDBusConnection ours = bus.connect();
///     QDBusConnection theirs = bus.connect();
class PrivateBus {
public:
    /// `names` is the one name that may be owned there, "*" for all.
    explicit PrivateBus(const QByteArray& names = "*") {
        QFile configuration(_folder.filePath(QStringLiteral("bus.conf")));
        if (!configuration.open(QIODevice::WriteOnly))
            return;
        configuration.write("<busconfig><type>session</type><listen>unix:dir=" + _folder.path().toUtf8() +
                            "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow user=\"*\"/>"
                            "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                            "<allow own=\"" +
                            names + "\"/></policy></busconfig>");
        configuration.close();
        start();
    }

    ~PrivateBus() {
        for (const QString& name : _names)
            QDBusConnection::disconnectFromBus(name);
        stop();
    }

    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;

    [[nodiscard]] QString address() const { return _address; }

    /// Lets programs of other users come, which otherwise don't find the way.
    void letOthersIn() const {
        QFile::setPermissions(_folder.path(), QFile::permissions(_folder.path()) | QFile::ReadOther |
                                                  QFile::ExeOther | QFile::ReadGroup | QFile::ExeGroup);
    }

    /// A new connection, closed together with the bus.
    QDBusConnection connect() {
        static int count = 0;
        _names.push_back(QStringLiteral("private-bus-%1").arg(++count));
        return QDBusConnection::connectToBus(_address, _names.back());
    }

    /// Ends the daemon, as the end of a session does.
    void stop() {
        if (_daemon.state() == QProcess::NotRunning)
            return;
        _daemon.terminate();
        if (!_daemon.waitForFinished(5000))
            _daemon.kill();
        _daemon.waitForFinished();
    }

private:
    void start() {
        endWithTest(_daemon);
        _daemon.start(QStringLiteral("dbus-daemon"),
                      {QStringLiteral("--config-file=") + _folder.filePath(QStringLiteral("bus.conf")),
                       QStringLiteral("--print-address"), QStringLiteral("--nofork"),
                       QStringLiteral("--nopidfile")});
        while (!_daemon.canReadLine() && _daemon.waitForReadyRead(10'000)) {
        }
        _address = QString::fromUtf8(_daemon.readLine().trimmed());
    }

    QTemporaryDir _folder;
    QProcess _daemon;
    QString _address;
    std::vector<QString> _names;
};

/// Sends `message` and runs the main loop until the answer is there, so that the called object may live in
/// this process too. What this connection received before the answer has reached its receivers then.
inline QDBusMessage ask(const QDBusConnection& bus, const QDBusMessage& message) {
    QDBusPendingCallWatcher call(bus.asyncCall(message));
    // The call itself knows of the answer on the bus's thread already, ahead of what waits for the main loop.
    bool isAnswered = false;
    QObject::connect(&call, &QDBusPendingCallWatcher::finished, &call, [&] { isAnswered = true; });
    if (!waitUntil([&] { return isAnswered; }))
        return {};
    return call.reply();
}

inline QDBusMessage ask(const QDBusConnection& bus, const QString& service, const QString& path,
                        const QString& interface, const QString& method, const QVariantList& arguments = {}) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return ask(bus, message);
}

/// Whether somebody has that name.
inline bool hasOwner(const QDBusConnection& bus, const QString& name) {
    return ask(bus, QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
               QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameHasOwner"), {name})
        .arguments()
        .value(0)
        .toBool();
}

} // namespace selvane::test
