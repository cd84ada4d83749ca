#include "Selvane/Platform/Linux/DBusMenu.h"

#include "Selvane/Platform/Linux/DBusMenuAdaptor.h"

#include <algorithm>

namespace selvane {

DBusMenu::DBusMenu(const QDBusConnection& sessionBus)
    : _bus(sessionBus), _adaptor(new DBusMenuAdaptor(this)) {}

DBusMenu::~DBusMenu() {
    setPublished(false);
}

QString DBusMenu::path() {
    return QStringLiteral("/MenuBar");
}

void DBusMenu::setEntries(const std::vector<StatusMenuEntry>& entries) {
    if (_entries == entries)
        return;
    const bool hasSameLines =
        std::ranges::equal(_entries, entries, {}, &StatusMenuEntry::id, &StatusMenuEntry::id);
    const std::vector<StatusMenuEntry> before = std::exchange(_entries, entries);
    if (!hasSameLines) {
        ++_revision;
        if (_isPublished)
            Q_EMIT _adaptor->LayoutUpdated(_revision, 0);
        return;
    }
    if (!_isPublished)
        return;
    DBusMenuItemList updated;
    for (std::size_t index = 0; index < _entries.size(); ++index) {
        if (_entries[index] != before[index])
            updated.append({_entries[index].id, DBusMenuAdaptor::properties(_entries[index], {})});
    }
    Q_EMIT _adaptor->ItemsPropertiesUpdated(updated, {});
}

void DBusMenu::setPublished(bool published) {
    if (_isPublished == published)
        return;
    _isPublished = published;
    if (published)
        _bus.registerObject(path(), this, QDBusConnection::ExportAdaptors);
    else
        _bus.unregisterObject(path());
}

const StatusMenuEntry* DBusMenu::find(int id) const {
    const auto found = std::ranges::find(_entries, id, &StatusMenuEntry::id);
    return found == _entries.end() ? nullptr : &*found;
}

bool DBusMenu::contains(int id) const {
    return id == 0 || find(id) != nullptr;
}

} // namespace selvane
