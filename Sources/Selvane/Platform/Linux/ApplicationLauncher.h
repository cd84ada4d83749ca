#pragma once

#include "Selvane/Platform/Linux/DesktopEntry.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// Starts applications as the desktop does, without files and detached: they outlive this program. What this
/// program changed in its environment for itself they don't get. Main thread; returns at once. What can't be
/// started is told in the log.
class ApplicationLauncher final : public QObject {
    Q_OBJECT
public:
    /// `withheld` are the names of the variables that this program set for itself.
    ApplicationLauncher(const QDBusConnection& sessionBus, std::vector<std::string> withheld);

    /// `name` is that of the desktop entry.
    void launch(const std::string& name, const DesktopEntry& entry);

private:
    void activate(const std::string& name, const std::vector<std::string>& command);
    void run(const std::string& name, const std::vector<std::string>& command) const;

    QDBusConnection _bus;
    std::vector<std::string> _withheld;
};

} // namespace selvane
