#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>

#include <chrono>

namespace selvane {

/// How long an answer is waited for where nothing else is said: as long as Qt does.
inline constexpr std::chrono::milliseconds usualPatience{-1};

/// Sends a method call and calls `answered` with the reply or the error, as long as `context` lives. Never
/// waits. Main thread.
template <typename Answered>
void callAsync(QDBusConnection bus, const QDBusMessage& message, QObject* context, Answered answered,
               std::chrono::milliseconds patience = usualPatience) {
    auto* const watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(message, static_cast<int>(patience.count())), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, answered] {
        watcher->deleteLater();
        answered(watcher->reply());
    });
}

} // namespace selvane
