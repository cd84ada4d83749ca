#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>

namespace selvane {

/// Sends a method call and calls `answered` with the reply or the error, as long as `context` lives. Never
/// waits. Main thread.
template <typename Answered>
void callAsync(QDBusConnection bus, const QDBusMessage& message, QObject* context, Answered answered) {
    auto* const watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, answered] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

} // namespace selvane
