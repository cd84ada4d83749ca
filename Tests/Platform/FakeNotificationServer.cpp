#include "FakeNotificationServer.h"

#include <QtDBus/QDBusConnectionInterface>

#include <utility>

namespace selvane::test {

namespace {

const auto serverName = QStringLiteral("org.freedesktop.Notifications");
const auto serverPath = QStringLiteral("/org/freedesktop/Notifications");

} // namespace

FakeNotificationServer::FakeNotificationServer(PrivateBus& bus)
    : _bus(bus.connect()), _adaptor(new FakeNotificationServerAdaptor(this)) {
    _bus.registerObject(serverPath, this, QDBusConnection::ExportAdaptors);
}

FakeNotificationServer::~FakeNotificationServer() {
    _bus.unregisterObject(serverPath);
    QDBusConnection::disconnectFromBus(_bus.name());
}

void FakeNotificationServer::appear() {
    _bus.interface()->registerService(serverName, QDBusConnectionInterface::ReplaceExistingService,
                                      QDBusConnectionInterface::AllowReplacement);
}

void FakeNotificationServer::press(uint id, const QString& action) {
    Q_EMIT _adaptor->ActionInvoked(id, action);
}

void FakeNotificationServer::tellClosed(uint id) {
    shown.erase(id);
    Q_EMIT _adaptor->NotificationClosed(id, 2);
}

void FakeNotificationServer::answer(const QDBusMessage& call, const QDBusMessage& reply) {
    call.setDelayedReply(true);
    if (holdsAnswers)
        _held.push_back(reply);
    else
        _bus.send(reply);
}

void FakeNotificationServer::answerHeld() {
    for (const QDBusMessage& reply : std::exchange(_held, {}))
        _bus.send(reply);
}

void FakeNotificationServer::hearAll(const QDBusConnection& from) {
    ask(from, _bus.baseService(), serverPath, QStringLiteral("org.freedesktop.DBus.Peer"),
        QStringLiteral("Ping"));
}

QStringList FakeNotificationServerAdaptor::GetCapabilities(const QDBusMessage& call) {
    ++_server.questions;
    _server.answer(call, _server.refusesToTellCapabilities
                             ? call.createErrorReply(QDBusError::Failed, QStringLiteral("no"))
                             : call.createReply(_server.capabilities));
    return {};
}

uint FakeNotificationServerAdaptor::Notify(const QString& application, uint replacedID, const QString& icon,
                                           const QString& summary, const QString& body,
                                           const QStringList& actions, const QVariantMap& hints, int expiry,
                                           const QDBusMessage& call) {
    if (_server.refusesToShow) {
        _server.answer(call, call.createErrorReply(QDBusError::LimitsExceeded, QStringLiteral("no")));
        return 0;
    }
    const uint id = replacedID == 0 || _server.givesNewNumbers ? ++_server._lastID : replacedID;
    _server.shown.erase(replacedID);
    _server.shown[id] = summary;
    _server.told.push_back({application, replacedID, icon, summary, body, actions, hints, expiry, id});
    _server.answer(call, call.createReply(id));
    return 0;
}

void FakeNotificationServerAdaptor::CloseNotification(uint id, const QDBusMessage& call) {
    _server.closed.push_back(id);
    if (_server.shown.erase(id) == 0)
        _server.answer(call, call.createErrorReply(QDBusError::InvalidArgs, QStringLiteral("invalid id")));
}

} // namespace selvane::test
