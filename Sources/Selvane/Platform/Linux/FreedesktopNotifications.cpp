#include "Selvane/Platform/Linux/FreedesktopNotifications.h"

#include "Selvane/Platform/Linux/DBusCall.h"

#include <QtCore/QStringList>
#include <QtCore/QVariantMap>

#include <algorithm>
#include <utility>

namespace selvane {

namespace {

const auto serverName = QLatin1String("org.freedesktop.Notifications");
const auto serverPath = QLatin1String("/org/freedesktop/Notifications");
const auto desktopEntry = QLatin1String("com.lorbin.selvane");

/// The server decides how long a notification stays.
constexpr int defaultExpiry = -1;
constexpr unsigned char normalUrgency = 1;

QDBusMessage serverCall(const QString& method) {
    return QDBusMessage::createMethodCall(serverName, serverPath, serverName, method);
}

QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

QString escaped(QString text) {
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    return text;
}

} // namespace

FreedesktopNotifications::FreedesktopNotifications(const QDBusConnection& sessionBus, Scheduler& scheduler)
    : _bus(sessionBus),
      _pending(scheduler, [this](NotificationRequest request) { post(std::move(request)); }) {}

void FreedesktopNotifications::setCategories(std::vector<NotificationCategory> categories) {
    _categories = std::move(categories);
}

// What is pending

void FreedesktopNotifications::postLater(NotificationRequest request, Seconds delay) {
    _pending.add(std::move(request), delay);
}

void FreedesktopNotifications::removePending(std::span<const std::string_view> ids) {
    _pending.remove(ids);
}

void FreedesktopNotifications::deliverPending(std::string_view id) {
    _pending.deliver(id);
}

// What is shown

void FreedesktopNotifications::post(NotificationRequest request) {
    if (!_bus.isConnected())
        return;
    Notice& notice = _notices[request.id];
    notice.next = std::move(request);
    notice.closesWhenSent = false;
    listen();
    sendWaiting();
}

void FreedesktopNotifications::removeDelivered(std::span<const std::string_view> ids) {
    for (const auto id : ids) {
        const auto found = _notices.find(id);
        if (found == _notices.end())
            continue;
        Notice& notice = found->second;
        if (notice.underWay) {
            notice.next.reset();
            notice.closesWhenSent = true;
            continue;
        }
        if (notice.serverID != 0)
            close(notice.serverID);
        _notices.erase(found);
    }
}

void FreedesktopNotifications::listen() {
    if (_watcher != nullptr)
        return;
    _watcher =
        std::make_unique<QDBusServiceWatcher>(serverName, _bus, QDBusServiceWatcher::WatchForOwnerChange);
    connect(_watcher.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { serverChanged(owner); });
    // Without it Qt looks for the type of the slot before it has made its own types known, and finds no slot.
    qRegisterMetaType<QDBusMessage>();
    // Taken from any sender: naming the server would make Qt wait for the bus's answer who it is.
    _bus.connect(QString(), serverPath, serverName, QStringLiteral("ActionInvoked"), this,
                 SLOT(actionInvoked(uint, QString, QDBusMessage)));
}

void FreedesktopNotifications::askForCapabilities() {
    if (std::exchange(_isAsking, true))
        return;
    callAsync(_bus, serverCall(QStringLiteral("GetCapabilities")), this,
              [this, generation = _generation](const QDBusMessage& reply) {
                  if (generation != _generation)
                      return;
                  _isAsking = false;
                  if (reply.type() != QDBusMessage::ReplyMessage) {
                      // There is no server, or none that works.
                      dropWaiting();
                      return;
                  }
                  const QStringList names = reply.arguments().value(0).toStringList();
                  _capabilities = {.actions = names.contains(QLatin1String("actions")),
                                   .bodyMarkup = names.contains(QLatin1String("body-markup"))};
                  _server = reply.service();
                  sendWaiting();
              });
}

void FreedesktopNotifications::serverChanged(const QString& newOwner) {
    // One that our own question started may have answered before the bus told of it.
    if (!newOwner.isEmpty() && newOwner == _server)
        return;
    ++_generation;
    _server = newOwner;
    _capabilities.reset();
    _isAsking = false;
    for (auto& [id, notice] : _notices)
        notice.serverID = 0;
    // What waits is for the next server. Without one it is dropped: asking again would start one that has
    // just fallen over. Whom that reached which is under way, its answer will tell.
    if (newOwner.isEmpty())
        dropWaiting();
    else
        std::erase_if(_notices, [](const auto& item) { return !item.second.next && !item.second.underWay; });
    sendWaiting();
}

void FreedesktopNotifications::dropWaiting() {
    for (auto& [id, notice] : _notices)
        notice.next.reset();
    std::erase_if(_notices, [](const auto& item) { return !item.second.underWay; });
}

void FreedesktopNotifications::sendWaiting() {
    for (auto& [id, notice] : _notices) {
        if (!notice.next || notice.underWay)
            continue;
        if (!_capabilities) {
            askForCapabilities();
            return;
        }
        send(id, notice);
    }
}

void FreedesktopNotifications::send(const std::string& id, Notice& notice) {
    notice.underWay = std::exchange(notice.next, std::nullopt);
    callAsync(
        _bus, notifyCall(*notice.underWay, notice.serverID), this,
        [this, id, generation = _generation](const QDBusMessage& reply) { sent(id, generation, reply); });
}

void FreedesktopNotifications::sent(const std::string& id, unsigned generation, const QDBusMessage& reply) {
    // What is under way stays here, whatever happens, until this takes it out.
    const auto found = _notices.find(id);
    Notice& notice = found->second;
    auto request = std::exchange(notice.underWay, std::nullopt);
    notice.serverID = 0;
    if (reply.service() == _server) {
        // Always the number that it gives now: some give a new one for what took the place of a closed one.
        if (reply.type() == QDBusMessage::ReplyMessage)
            notice.serverID = reply.arguments().value(0).toUInt();
    } else if (generation != _generation && !_server.isEmpty() && !notice.closesWhenSent && !notice.next) {
        // It went to a server that another has taken the place of meanwhile.
        notice.next = std::move(request);
    }
    if (notice.closesWhenSent && notice.serverID != 0)
        close(notice.serverID);
    if (!notice.next && (notice.closesWhenSent || notice.serverID == 0)) {
        _notices.erase(found);
        return;
    }
    sendWaiting();
}

QDBusMessage FreedesktopNotifications::notifyCall(const NotificationRequest& request, uint replacedID) const {
    QStringList actions;
    if (_capabilities->actions) {
        const auto category = std::ranges::find(_categories, request.category, &NotificationCategory::id);
        if (category != _categories.end()) {
            for (const NotificationAction& action : category->actions)
                actions << text(action.id) << text(action.title);
        }
    }
    const QVariantMap hints{
        {QStringLiteral("desktop-entry"), QString(desktopEntry)},
        {QStringLiteral("urgency"), QVariant::fromValue(normalUrgency)},
        // By it users make rules for one kind alone.
        {QStringLiteral("category"), QStringLiteral("x-") + text(request.id)},
        {QStringLiteral("suppress-sound"), true},
    };
    const QString body = text(request.body);
    auto call = serverCall(QStringLiteral("Notify"));
    call << QStringLiteral("Selvane") << replacedID << QString(desktopEntry) << text(request.title)
         << (_capabilities->bodyMarkup ? escaped(body) : body) << actions << hints << defaultExpiry;
    return call;
}

void FreedesktopNotifications::close(uint serverID) {
    auto call = serverCall(QStringLiteral("CloseNotification"));
    call << serverID;
    call.setAutoStartService(false);
    // A server that has closed it already calls the number invalid, and that is all.
    _bus.asyncCall(call);
}

void FreedesktopNotifications::actionInvoked(uint serverID, const QString& action,
                                             const QDBusMessage& signal) {
    // Told to everybody on the bus, also of the notifications of others.
    if (signal.service() != _server)
        return;
    const auto found = std::ranges::find_if(
        _notices, [serverID](const auto& item) { return serverID != 0 && item.second.serverID == serverID; });
    if (found == _notices.end())
        return;
    const std::string request = found->first;
    // Some leave on the screen what was answered. What is just being replaced goes by itself, and what comes
    // in its place has the same number.
    if (!found->second.underWay) {
        close(serverID);
        _notices.erase(found);
    }
    if (onAction)
        onAction(request, action.toStdString());
}

} // namespace selvane
