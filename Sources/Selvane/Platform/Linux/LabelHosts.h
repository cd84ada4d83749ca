#pragma once

#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusServiceWatcher>

#include <functional>

namespace selvane {

/// Tells whether a panel that shows words beside a status item is on the bus.
///
/// The protocol has no question for it, so the panels that do so are known by their names on the bus: GNOME's
/// shell, by its extension for such items, and the service behind Ayatana's indicators. The panels of Xfce,
/// MATE, Cinnamon, LXQt and waybar don't listen to changes of these words, and a change a second would wake
/// this program and the bus for nothing.
///
/// Main thread. Every question is asynchronous; the answer is no until the bus has answered.
class LabelHosts final : public QObject {
    Q_OBJECT
public:
    explicit LabelHosts(const QDBusConnection& sessionBus);

    [[nodiscard]] bool arePresent() const { return !_present.isEmpty(); }

    /// The first one has appeared.
    std::function<void()> onAppear;

private:
    void setPresent(const QString& name, bool present);

    QDBusServiceWatcher _watcher;
    QSet<QString> _present;
};

} // namespace selvane
