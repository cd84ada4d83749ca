#include "Selvane/Platform/Linux/DBusMenuAdaptor.h"

#include "Selvane/Platform/Linux/ActivationToken.h"
#include "Selvane/Platform/Linux/DBusMenu.h"

#include <QtDBus/QDBusContext>
#include <QtDBus/QDBusMetaType>

#include <algorithm>

namespace selvane {

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuItemKeys& keys) {
    argument.beginStructure();
    argument << keys.id << keys.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuItemKeys& keys) {
    argument.beginStructure();
    argument >> keys.id >> keys.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuLayoutItem& item) {
    argument.beginStructure();
    argument << item.id << item.properties;
    argument.beginArray(QMetaType::fromType<QDBusVariant>());
    for (const DBusMenuLayoutItem& child : item.children)
        argument << QDBusVariant(QVariant::fromValue(child));
    argument.endArray();
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuLayoutItem& item) {
    argument.beginStructure();
    argument >> item.id >> item.properties;
    argument.beginArray();
    item.children.clear();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        item.children.append(qdbus_cast<DBusMenuLayoutItem>(child.variant()));
    }
    argument.endArray();
    argument.endStructure();
    return argument;
}

QDBusArgument& operator<<(QDBusArgument& argument, const DBusMenuEvent& event) {
    argument.beginStructure();
    argument << event.id << event.eventID << event.data << event.timestamp;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, DBusMenuEvent& event) {
    argument.beginStructure();
    argument >> event.id >> event.eventID >> event.data >> event.timestamp;
    argument.endStructure();
    return argument;
}

DBusMenuAdaptor::DBusMenuAdaptor(DBusMenu* menu) : QDBusAbstractAdaptor(menu), _menu(*menu) {
    qDBusRegisterMetaType<DBusMenuItem>();
    qDBusRegisterMetaType<DBusMenuItemList>();
    qDBusRegisterMetaType<DBusMenuItemKeys>();
    qDBusRegisterMetaType<DBusMenuItemKeysList>();
    qDBusRegisterMetaType<DBusMenuLayoutItem>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<DBusMenuEventList>();
    qDBusRegisterMetaType<QList<int>>();
}

QVariantMap DBusMenuAdaptor::properties(const StatusMenuEntry& entry, const QStringList& names) {
    QVariantMap all;
    if (entry.label.empty()) {
        all.insert(QStringLiteral("type"), QStringLiteral("separator"));
    } else {
        // A single underscore would mark the letter after it as the entry's key.
        QString label = QString::fromStdString(entry.label);
        label.replace(QLatin1Char('_'), QLatin1String("__"));
        all.insert(QStringLiteral("label"), label);
        all.insert(QStringLiteral("enabled"), entry.isEnabled);
    }
    all.insert(QStringLiteral("visible"), true);
    if (names.isEmpty())
        return all;
    all.removeIf([&](const auto& property) { return !names.contains(property.key()); });
    return all;
}

uint DBusMenuAdaptor::GetLayout(int parentId, int recursionDepth, const QStringList& propertyNames,
                                DBusMenuLayoutItem& layout) {
    layout = {parentId, {}, {}};
    if (parentId != 0) {
        if (const StatusMenuEntry* entry = _menu.find(parentId))
            layout.properties = properties(*entry, propertyNames);
        else
            replyUnknown(parentId);
        return _menu._revision;
    }
    const QString display = QStringLiteral("children-display");
    if (propertyNames.isEmpty() || propertyNames.contains(display))
        layout.properties.insert(display, QStringLiteral("submenu"));
    if (recursionDepth != 0) {
        for (const StatusMenuEntry& entry : _menu.entries())
            layout.children.append({entry.id, properties(entry, propertyNames), {}});
    }
    return _menu._revision;
}

DBusMenuItemList DBusMenuAdaptor::GetGroupProperties(const QList<int>& ids,
                                                     const QStringList& propertyNames) {
    DBusMenuItemList items;
    for (const StatusMenuEntry& entry : _menu.entries()) {
        // No ids stand for all entries.
        if (ids.isEmpty() || ids.contains(entry.id))
            items.append({entry.id, properties(entry, propertyNames)});
    }
    return items;
}

QDBusVariant DBusMenuAdaptor::GetProperty(int id, const QString& name) {
    const StatusMenuEntry* entry = _menu.find(id);
    const QVariantMap all = entry == nullptr ? QVariantMap{} : properties(*entry, {name});
    if (all.isEmpty()) {
        replyUnknown(id);
        return {};
    }
    return QDBusVariant(all.first());
}

void DBusMenuAdaptor::Event(int id, const QString& eventId, const QDBusVariant&, uint) {
    if (_menu.contains(id))
        handle(id, eventId);
    else
        replyUnknown(id);
}

QList<int> DBusMenuAdaptor::EventGroup(const DBusMenuEventList& events) {
    QList<int> unknown;
    for (const DBusMenuEvent& event : events) {
        if (_menu.contains(event.id))
            handle(event.id, event.eventID);
        else
            unknown.append(event.id);
    }
    if (!events.isEmpty() && unknown.size() == events.size())
        replyUnknown(unknown.first());
    return unknown;
}

bool DBusMenuAdaptor::AboutToShow(int id) {
    if (!_menu.contains(id))
        replyUnknown(id);
    // Changes are told when they happen, so there is never one that is held back for this moment.
    return false;
}

QList<int> DBusMenuAdaptor::AboutToShowGroup(const QList<int>& ids, QList<int>& idErrors) {
    for (const int id : ids) {
        if (!_menu.contains(id))
            idErrors.append(id);
    }
    return {};
}

void DBusMenuAdaptor::replyUnknown(int id) {
    if (_menu.calledFromDBus())
        _menu.sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("The menu has no item %1.").arg(id));
}

void DBusMenuAdaptor::handle(int id, const QString& eventID) {
    if (eventID != QLatin1String("clicked"))
        return;
    const StatusMenuEntry* entry = _menu.find(id);
    if (entry != nullptr && entry->isEnabled && !entry->label.empty() && _menu.onEntry)
        _menu.onEntry(id);
    ActivationToken::drop();
}

} // namespace selvane
