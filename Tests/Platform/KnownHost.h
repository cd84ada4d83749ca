#pragma once

#include "Support/EndWithTest.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtDBus/QDBusConnection>

namespace selvane::test {

/// A process of that name, and the name that it takes on the bus as a host of status items.
class KnownHost {
public:
    KnownHost(const QDBusConnection& bus, const char* program) : _bus(bus) {
        // The kernel names a process after the file that it was started from.
        const QString file = _folder.filePath(QLatin1String(program));
        QFile::link(QStringLiteral("/bin/sleep"), file);
        endWithTest(_process);
        _process.start(file, {QStringLiteral("1000")});
        _process.waitForStarted();
        _name = QStringLiteral("org.kde.StatusNotifierHost-%1-1").arg(_process.processId());
        _bus.registerService(_name);
    }
    ~KnownHost() {
        _bus.unregisterService(_name);
        _process.kill();
        _process.waitForFinished();
    }
    KnownHost(const KnownHost&) = delete;
    KnownHost& operator=(const KnownHost&) = delete;

private:
    QDBusConnection _bus;
    QTemporaryDir _folder;
    QProcess _process;
    QString _name;
};

} // namespace selvane::test
