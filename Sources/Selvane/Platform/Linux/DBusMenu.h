#pragma once

#include "Selvane/Platform/StatusItemHost.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusContext>

#include <functional>
#include <vector>

namespace selvane {

class DBusMenuAdaptor;

/// A flat menu that a panel shows for us, by the protocol com.canonical.dbusmenu. Main thread.
class DBusMenu final : public QObject, public QDBusContext {
    Q_OBJECT
public:
    explicit DBusMenu(const QDBusConnection& sessionBus);
    ~DBusMenu() override;

    /// The path of the object on the bus.
    static QString path();

    void setEntries(const std::vector<StatusMenuEntry>& entries);
    [[nodiscard]] const std::vector<StatusMenuEntry>& entries() const { return _entries; }

    void setPublished(bool published);

    /// Called with the id of an enabled entry that the user chose.
    std::function<void(int)> onEntry;

private:
    friend class DBusMenuAdaptor;

    [[nodiscard]] const StatusMenuEntry* find(int id) const;
    [[nodiscard]] bool contains(int id) const;

    QDBusConnection _bus;
    bool _isPublished = false;
    std::vector<StatusMenuEntry> _entries;
    uint _revision = 1;
    DBusMenuAdaptor* _adaptor;
};

} // namespace selvane
