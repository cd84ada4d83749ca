#pragma once

#include "Support/EndWithTest.h"

#include <QtCore/QProcess>
#include <QtCore/QString>

#include <sys/types.h>

#include <csignal>
#include <string>

namespace selvane::test {

/// A screen in memory, on a display number that the server chooses itself. Ends with the object.
class XServer {
public:
    XServer() {
        endWithTest(_server);
        _server.start(QStringLiteral("Xvfb"),
                      {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                       QStringLiteral("0"), QStringLiteral("640x480x24"), QStringLiteral("-nolisten"),
                       QStringLiteral("tcp")});
        while (!_server.canReadLine() && _server.waitForReadyRead(10'000)) {
        }
        const QByteArray number = _server.readLine().trimmed();
        if (!number.isEmpty())
            _display = ":" + number.toStdString();
    }

    ~XServer() { stop(); }

    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    /// Empty if the server didn't start.
    [[nodiscard]] const std::string& display() const { return _display; }

    void signal(int number) const { ::kill(static_cast<pid_t>(_server.processId()), number); }

    void stop() {
        _server.kill();
        _server.waitForFinished();
    }

private:
    QProcess _server;
    std::string _display;
};

} // namespace selvane::test
