#include "Selvane/Platform/Linux/ApplicationLauncher.h"

#include "Selvane/Platform/Linux/DBusCall.h"
#include "SelvaneCore/Log.h"

#include <QtCore/QDir>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

/// How long the bus may take to start a program.
constexpr std::chrono::seconds startPatience{15};

constexpr std::string_view ending = ".desktop";

} // namespace

ApplicationLauncher::ApplicationLauncher(const QDBusConnection& sessionBus, std::vector<std::string> withheld)
    : _bus(sessionBus), _withheld(std::move(withheld)) {}

void ApplicationLauncher::launch(const std::string& name, const DesktopEntry& entry) {
    const std::vector<std::string> command = entry.command();
    if (entry.truth("DBusActivatable").value_or(false) && name.ends_with(ending))
        activate(name, command);
    else
        run(name, command);
}

void ApplicationLauncher::activate(const std::string& name, const std::vector<std::string>& command) {
    const std::string service = name.substr(0, name.size() - ending.size());
    std::string path = "/" + service;
    std::ranges::replace(path, '.', '/');
    std::ranges::replace(path, '-', '_');
    auto activate = QDBusMessage::createMethodCall(
        QString::fromStdString(service), QString::fromStdString(path),
        QStringLiteral("org.freedesktop.Application"), QStringLiteral("Activate"));
    activate << QVariantMap();
    callAsync(
        _bus, activate, this,
        [this, name, command](const QDBusMessage& reply) {
            // Whoever doesn't answer may be starting all the same.
            if (reply.type() == QDBusMessage::ErrorMessage &&
                reply.errorName() != QLatin1String("org.freedesktop.DBus.Error.NoReply"))
                run(name, command);
        },
        startPatience);
}

void ApplicationLauncher::run(const std::string& name, const std::vector<std::string>& command) const {
    QProcess process;
    if (!command.empty()) {
        process.setProgram(QString::fromStdString(command.front()));
        QStringList arguments;
        for (auto word = command.begin() + 1; word != command.end(); ++word)
            arguments.append(QString::fromStdString(*word));
        process.setArguments(arguments);
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const std::string& variable : _withheld)
        environment.remove(QString::fromStdString(variable));
    // They stand for the user's start of this program.
    environment.remove(QStringLiteral("XDG_ACTIVATION_TOKEN"));
    environment.remove(QStringLiteral("DESKTOP_STARTUP_ID"));
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(QDir::homePath());
    process.setStandardInputFile(QProcess::nullDevice());
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (command.empty() || !process.startDetached())
        Log::line(name + " can't be started");
}

} // namespace selvane
