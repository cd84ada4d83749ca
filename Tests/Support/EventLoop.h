#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <chrono>
#include <functional>

namespace selvane::test {

/// Runs the main loop until `condition` holds. False if it doesn't within `limit`, which is only there to end
/// a test that fails.
inline bool waitUntil(const std::function<bool()>& condition,
                      std::chrono::milliseconds limit = std::chrono::seconds{20}) {
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer pulse;
    pulse.start(std::chrono::milliseconds{10});
    while (!condition()) {
        if (elapsed.hasExpired(limit.count()))
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    return true;
}

} // namespace selvane::test
