#pragma once

#include "Support/EndWithTest.h"
#include "Support/PrivateBus.h"

#include <QtCore/QProcess>

namespace selvane::test {

/// A system bus with a logind that sleeps and wakes when a test says so.
///
///     MockLogind logind;
///     ASSERT_TRUE(logind.start());
///     logind.prepareForSleep(true);
class MockLogind {
public:
    ~MockLogind() {
        _process.kill();
        _process.waitForFinished();
    }

    /// False if it doesn't come up.
    [[nodiscard]] bool start() {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), bus.address());
        _process.setProcessEnvironment(environment);
        _process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        endWithTest(_process);
        _process.start(QStringLiteral("/usr/bin/python3"),
                       {QStringLiteral("-m"), QStringLiteral("dbusmock"), QStringLiteral("--system"),
                        QStringLiteral("--template"), QStringLiteral("logind")});
        return _process.waitForStarted() && waitUntil([&] { return hasOwner(_control, name()); });
    }

    /// Says that the machine goes to sleep, or that it has woken. False if it can't.
    bool prepareForSleep(bool goesToSleep) {
        const QDBusMessage reply =
            ask(_control, name(), QStringLiteral("/org/freedesktop/login1"),
                QStringLiteral("org.freedesktop.DBus.Mock"), QStringLiteral("EmitSignal"),
                {name() + QStringLiteral(".Manager"), QStringLiteral("PrepareForSleep"), QStringLiteral("b"),
                 QVariantList{goesToSleep}});
        return reply.type() == QDBusMessage::ReplyMessage;
    }

    PrivateBus bus;

private:
    static QString name() { return QStringLiteral("org.freedesktop.login1"); }

    QDBusConnection _control = bus.connect();
    QProcess _process;
};

} // namespace selvane::test
