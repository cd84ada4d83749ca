#pragma once

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include <functional>

namespace selvane {

/// Tells whether the panels that show status items keep the shape of a picture that is wider than high. Most
/// make it fit into a square, so that nothing is left of it to see.
///
/// The protocol has no question for it. waybar does so, and is known by the name that each host takes on the
/// bus, which holds the number of its process. Where any other host is named too, the answer is no.
///
/// Main thread. Every question is asynchronous; the answer is no until the bus has answered.
class PictureHosts final : public QObject {
    Q_OBJECT
public:
    explicit PictureHosts(const QDBusConnection& sessionBus);

    /// To be called when a host may have come or gone.
    void ask();

    [[nodiscard]] bool keepShape() const { return _keepShape; }

    std::function<void()> onChange;

private:
    QDBusConnection _bus;
    bool _keepShape = false;
};

} // namespace selvane
