#include "Selvane/Platform/Linux/LogindAwayMonitor.h"

#include <utility>

namespace selvane {

LogindAwayMonitor::LogindAwayMonitor(Scheduler& scheduler, std::function<QDBusConnection()> systemBus) {
    scheduler.post(_lifetime.guard([this, systemBus = std::move(systemBus)] {
        QDBusConnection bus = systemBus();
        if (!bus.isConnected())
            return;
        // Taken from any sender: naming the service would make Qt wait for the bus's answer who owns it. A
        // false waking costs no more than a look at the clock.
        bus.connect(QString(), QStringLiteral("/org/freedesktop/login1"),
                    QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"), this,
                    SLOT(prepareForSleep(bool)));
    }));
}

void LogindAwayMonitor::prepareForSleep(bool goesToSleep) {
    // The first signal may be the end of a sleep that began before we listened.
    const std::optional<bool> before = std::exchange(_isAsleep, goesToSleep);
    if (!goesToSleep && before != false)
        didWake.emit();
}

} // namespace selvane
