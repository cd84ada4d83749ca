#include "Selvane/App/Notifier.h"
#include "Selvane/Platform/Linux/FreedesktopNotifications.h"
#include "Selvane/Platform/Linux/LinuxScheduler.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtDBus/QDBusConnection>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

// Speaks as Selvane does, on command: each line of the pipe that the first argument names is a command with
// arguments, separated by tabs. Prints what the user answers.
//
//     phase focus 0.5      drift nudge|hidden|site NAME [TASK]      data TITLE BODY
//     meeting TITLE 30     unschedule ID     deliver ID             takeDown ID

namespace selvane {
namespace {

Date wallClock() {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

void obey(Notifier& notifier, const QStringList& words) {
    const auto text = [&](qsizetype index) { return words.value(index).toStdString(); };
    const auto in = [&](qsizetype index) {
        return adding(Seconds{words.value(index).toDouble()}, wallClock());
    };
    const std::string command = text(0);
    const std::string id = text(1);
    if (command == "phase")
        notifier.schedule(phaseFromRawValue(id).value_or(Phase::focus), in(2));
    else if (command == "meeting")
        notifier.scheduleMeetingHeadsUp(id, in(2), Seconds{120});
    else if (command == "drift") {
        using Style = Notifier::DriftStyle;
        const Style style = id == "nudge" ? Style::nudge : id == "hidden" ? Style::hidden : Style::site;
        notifier.notifyDrift(text(2), words.size() > 3 ? std::optional(text(3)) : std::nullopt, style);
    } else if (command == "data")
        notifier.notifyDataNotice(id, text(2));
    else if (command == "unschedule")
        notifier.removePending(std::array<std::string_view, 1>{id});
    else if (command == "deliver")
        notifier.deliverPending(id);
    else if (command == "takeDown")
        notifier.removeDelivered(std::array<std::string_view, 1>{id});
    std::printf("did %s\n", command.c_str());
}

} // namespace
} // namespace selvane

int main(int argc, char* argv[]) {
    using namespace selvane;
    const QCoreApplication application(argc, argv);
    // Open for writing too, so that it doesn't end with the first writer.
    const int pipe = argc > 1 ? open(argv[1], O_RDWR | O_CLOEXEC) : -1;
    if (pipe < 0)
        return EXIT_FAILURE;
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    LinuxScheduler scheduler;
    FreedesktopNotifications center(QDBusConnection::sessionBus(), scheduler);
    Notifier notifier(&center, wallClock);
    notifier.onAction = [](Notifier::Action action) {
        std::printf("answer %s\n", std::string(rawValue(action)).c_str());
    };
    QString unread;
    QSocketNotifier commands(pipe, QSocketNotifier::Read);
    QObject::connect(&commands, &QSocketNotifier::activated, &commands, [&] {
        std::array<char, 4096> buffer{};
        const ssize_t length = read(pipe, buffer.data(), buffer.size());
        if (length <= 0)
            return;
        unread += QString::fromUtf8(buffer.data(), static_cast<qsizetype>(length));
        QStringList lines = unread.split(QLatin1Char('\n'));
        unread = lines.takeLast();
        for (const QString& line : std::as_const(lines))
            obey(notifier, line.split(QLatin1Char('\t')));
    });
    std::printf("ready\n");
    return QCoreApplication::exec();
}
