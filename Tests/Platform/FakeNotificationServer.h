#pragma once

#include "Support/PrivateBus.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariantMap>
#include <QtDBus/QDBusAbstractAdaptor>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>

#include <map>
#include <string>
#include <vector>

namespace selvane::test {

/// What a notification server was told.
struct ToldNotification {
    QString application;
    uint replacedID;
    QString icon;
    QString summary;
    QString body;
    QStringList actions;
    QVariantMap hints;
    int expiry;
    /// The number that it was given.
    uint id;
};

/// A notification server whose whims a test sets. Ends with the object, as a process does.
///
///     FakeNotificationServer server(bus);
///     server.appear();
///     waitUntil([&] { return server.told.size() == 1; });
///     server.press(server.told[0].id, "action");
class FakeNotificationServer final : public QObject {
    Q_OBJECT
public:
    explicit FakeNotificationServer(PrivateBus& bus);
    ~FakeNotificationServer() override;

    /// Takes the name, also from another server. Nothing else runs meanwhile.
    void appear();
    /// The user presses a button of that notification, or of one that this server never showed.
    void press(uint id, const QString& action);
    void tellClosed(uint id);
    /// Answers all that waits for an answer.
    void answerHeld();
    /// Everything that was sent over that connection before has arrived when this returns.
    void hearAll(const QDBusConnection& from);

    QStringList capabilities{QStringLiteral("actions"), QStringLiteral("body"),
                             QStringLiteral("body-markup")};
    /// Gives a new number to what replaces another.
    bool givesNewNumbers = false;
    /// Refuses to close what isn't there, and to show anything.
    bool refusesToShow = false;
    bool refusesToTellCapabilities = false;
    /// Keeps its answers until `answerHeld`.
    bool holdsAnswers = false;

    std::vector<ToldNotification> told;
    /// What is on the screen: summaries by their numbers.
    std::map<uint, QString> shown;
    std::vector<uint> closed;
    int questions = 0;

private:
    friend class FakeNotificationServerAdaptor;

    void answer(const QDBusMessage& call, const QDBusMessage& reply);

    QDBusConnection _bus;
    class FakeNotificationServerAdaptor* _adaptor;
    std::vector<QDBusMessage> _held;
    uint _lastID = 0;
};

class FakeNotificationServerAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")
public:
    explicit FakeNotificationServerAdaptor(FakeNotificationServer* server)
        : QDBusAbstractAdaptor(server), _server(*server) {}

public Q_SLOTS:
    QStringList GetCapabilities(const QDBusMessage& call);
    uint Notify(const QString& application, uint replacedID, const QString& icon, const QString& summary,
                const QString& body, const QStringList& actions, const QVariantMap& hints, int expiry,
                const QDBusMessage& call);
    void CloseNotification(uint id, const QDBusMessage& call);

Q_SIGNALS:
    void ActionInvoked(uint id, const QString& action);
    void NotificationClosed(uint id, uint reason);

private:
    FakeNotificationServer& _server;
};

} // namespace selvane::test
