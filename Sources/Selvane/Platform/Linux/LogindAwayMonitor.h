#pragma once

#include "Selvane/Platform/AwayMonitor.h"
#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/Lifetime.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include <functional>
#include <optional>

namespace selvane {

/// Hears from systemd-logind, or what stands in for it, when the machine wakes. Main thread.
class LogindAwayMonitor final : public QObject, public AwayMonitor {
    Q_OBJECT
public:
    /// `systemBus` is called once, at the first turn of the main loop, so that connecting delays no start. A
    /// connection that isn't connected means that nothing is ever heard.
    LogindAwayMonitor(Scheduler& scheduler, std::function<QDBusConnection()> systemBus);

private Q_SLOTS:
    void prepareForSleep(bool goesToSleep);

private:
    std::optional<bool> _isAsleep;
    Lifetime _lifetime;
};

} // namespace selvane
