#pragma once

#include "Selvane/Platform/NotificationCenter.h"
#include "Selvane/Platform/PendingRequests.h"
#include "Selvane/Platform/Scheduler.h"

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusServiceWatcher>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// Notifications by org.freedesktop.Notifications, on whichever server has that name when one is to be shown.
/// Such servers know no schedule: what is pending is held here.
///
/// Main thread. Every call to the server is asynchronous, and none is made before there is something to show,
/// since a question alone would start a server. A server that ends takes with it what it showed; the next
/// notification finds the one that runs then.
class FreedesktopNotifications final : public QObject, public NotificationCenter {
    Q_OBJECT
public:
    FreedesktopNotifications(const QDBusConnection& sessionBus, Scheduler& scheduler);

    void setCategories(std::vector<NotificationCategory> categories) override;
    /// Does nothing: these desktops ask nobody.
    void requestAuthorization() override {}
    void post(NotificationRequest request) override;
    void postLater(NotificationRequest request, Seconds delay) override;
    void removePending(std::span<const std::string_view> ids) override;
    void deliverPending(std::string_view id) override;
    void removeDelivered(std::span<const std::string_view> ids) override;

private Q_SLOTS:
    void actionInvoked(uint serverID, const QString& action, const QDBusMessage& signal);

private:
    /// One notification on its way to the screen, or on it.
    struct Notice {
        /// What the server has yet to be told.
        std::optional<NotificationRequest> next;
        /// What a server was told and has not answered yet.
        std::optional<NotificationRequest> underWay;
        /// The server's number for what it shows. Zero as long as it has given none.
        uint serverID = 0;
        /// Taken back before the answer with its number came.
        bool closesWhenSent = false;
    };
    using Notices = std::map<std::string, Notice, std::less<>>;

    struct Capabilities {
        bool actions;
        bool bodyMarkup;
    };

    void listen();
    void askForCapabilities();
    void serverChanged(const QString& newOwner);
    void dropWaiting();
    void sendWaiting();
    void send(const std::string& id, Notice& notice);
    void sent(const std::string& id, unsigned generation, const QDBusMessage& reply);
    void close(uint serverID);
    [[nodiscard]] QDBusMessage notifyCall(const NotificationRequest& request, uint replacedID) const;

    QDBusConnection _bus;
    std::vector<NotificationCategory> _categories;
    PendingRequests _pending;

    /// Made when there is something to show for the first time.
    std::unique_ptr<QDBusServiceWatcher> _watcher;
    /// The connection that has the name of the server; empty while none is known to.
    QString _server;
    /// Of that server, once it has told.
    std::optional<Capabilities> _capabilities;
    bool _isAsking = false;
    /// Grows with each change of server, so that what was sent before is known for such.
    unsigned _generation = 0;
    Notices _notices;
};

} // namespace selvane
