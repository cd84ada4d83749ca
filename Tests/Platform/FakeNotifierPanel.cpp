#include "FakeNotifierPanel.h"

namespace selvane::test {

namespace {

const auto watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const auto watcherPath = QStringLiteral("/StatusNotifierWatcher");
const auto itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const auto itemPath = QStringLiteral("/StatusNotifierItem");
const auto menuInterface = QStringLiteral("com.canonical.dbusmenu");
const auto menuPath = QStringLiteral("/MenuBar");

} // namespace

FakeNotifierPanel::FakeNotifierPanel(const QDBusConnection& connection)
    : _bus(connection), _adaptor(new FakeWatcherAdaptor(this)) {
    for (const char* name : {"NewTitle", "NewIcon", "NewAttentionIcon", "NewToolTip", "NewStatus", "NewMenu",
                             "XAyatanaNewLabel"})
        _bus.connect(QString(), itemPath, itemInterface, QLatin1String(name), this,
                     SLOT(heard(QDBusMessage)));
    for (const char* name : {"LayoutUpdated", "ItemsPropertiesUpdated"})
        _bus.connect(QString(), menuPath, menuInterface, QLatin1String(name), this,
                     SLOT(heard(QDBusMessage)));
}

void FakeNotifierPanel::appear() {
    _bus.registerObject(watcherPath, this, QDBusConnection::ExportAdaptors);
    _bus.registerService(watcherName);
}

void FakeNotifierPanel::vanish() {
    _bus.unregisterService(watcherName);
    _bus.unregisterObject(watcherPath);
    registered.clear();
}

void FakeNotifierPanel::setHosted(bool hosted) {
    isHosted = hosted;
    if (hosted)
        Q_EMIT _adaptor->StatusNotifierHostRegistered();
    else
        Q_EMIT _adaptor->StatusNotifierHostUnregistered();
}

void FakeNotifierPanel::setShowsLabels(bool shows) {
    const auto name = QStringLiteral("org.gnome.Shell");
    if (shows)
        _bus.registerService(name);
    else
        _bus.unregisterService(name);
}

void FakeNotifierPanel::hearAll(const QDBusConnection& from) {
    ask(from, _bus.baseService(), QStringLiteral("/"), QStringLiteral("org.freedesktop.DBus.Peer"),
        QStringLiteral("Ping"));
    // The answer is known as soon as it is read; what was read before it still waits for a turn of the loop.
    QCoreApplication::processEvents();
}

QDBusMessage FakeNotifierPanel::tell(const char* method, const QVariantList& arguments) {
    return ask(_bus, registered.value(registered.size() - 1), itemPath, itemInterface, QLatin1String(method),
               arguments);
}

QVariant FakeNotifierPanel::property(const char* name) {
    return get(itemPath, itemInterface, name);
}

QDBusMessage FakeNotifierPanel::tellMenu(const char* method, const QVariantList& arguments) {
    return ask(_bus, registered.value(registered.size() - 1), menuPath, menuInterface, QLatin1String(method),
               arguments);
}

QVariant FakeNotifierPanel::menuProperty(const char* name) {
    return get(menuPath, menuInterface, name);
}

void FakeNotifierPanel::heard(const QDBusMessage& message) {
    signalNames.append(message.member());
    lastArguments = message.arguments();
}

QVariant FakeNotifierPanel::get(const QString& path, const QString& interface, const char* name) {
    const QDBusMessage reply = ask(_bus, registered.value(registered.size() - 1), path,
                                   QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"),
                                   {interface, QString(QLatin1String(name))});
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

} // namespace selvane::test
