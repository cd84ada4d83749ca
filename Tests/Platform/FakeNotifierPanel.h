#pragma once

#include "Selvane/Platform/Linux/DBusMenuAdaptor.h"
#include "Selvane/Platform/Linux/StatusNotifierItemAdaptor.h"
#include "Support/PrivateBus.h"

#include <QtDBus/QDBusAbstractAdaptor>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusVariant>

namespace selvane::test {

/// A panel with its watcher, as a desktop has them: items register with it, and it asks and clicks them.
///
///     panel.appear();
///     waitUntil([&] { return panel.registered.size() == 1; });
///     panel.tell("Activate", {10, 20});
class FakeNotifierPanel final : public QObject {
    Q_OBJECT
public:
    explicit FakeNotifierPanel(const QDBusConnection& connection);

    void appear();
    /// The end of the panel's process: everything that it knew is lost.
    void vanish();
    /// Whether somebody shows what is registered.
    void setHosted(bool hosted);
    /// Whether it is one of the panels that show words beside an item.
    void setShowsLabels(bool shows);
    /// Everything that was sent over that connection before has arrived when this returns.
    void hearAll(const QDBusConnection& from);

    /// The answer of the item that registered last.
    QDBusMessage tell(const char* method, const QVariantList& arguments);
    QVariant property(const char* name);
    QDBusMessage tellMenu(const char* method, const QVariantList& arguments);
    QVariant menuProperty(const char* name);

    /// How often the items have emitted this signal.
    [[nodiscard]] qsizetype count(const char* signal) const {
        return signalNames.count(QLatin1String(signal));
    }

    QStringList registered;
    QStringList signalNames;
    QVariantList lastArguments;
    bool isHosted = true;

private Q_SLOTS:
    void heard(const QDBusMessage& message);

private:
    friend class FakeWatcherAdaptor;

    QVariant get(const QString& path, const QString& interface, const char* name);

    QDBusConnection _bus;
    class FakeWatcherAdaptor* _adaptor;
};

class FakeWatcherAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHosted)
public:
    explicit FakeWatcherAdaptor(FakeNotifierPanel* panel) : QDBusAbstractAdaptor(panel), _panel(*panel) {}

    [[nodiscard]] bool isHosted() const { return _panel.isHosted; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString& service) { _panel.registered.append(service); }

Q_SIGNALS:
    void StatusNotifierHostRegistered();
    void StatusNotifierHostUnregistered();

private:
    FakeNotifierPanel& _panel;
};

} // namespace selvane::test
