#pragma once

#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/Lifetime.h"

#include <QtCore/QObject>
#include <QtDBus/QDBusConnection>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

namespace selvane {

/// Makes sure that the program runs once per session: the first process owns the name com.lorbin.selvane on
/// the session bus and answers there to org.freedesktop.Application; later ones pass their start on to it.
/// Main thread.
class SingleInstance final : public QObject {
    Q_OBJECT
public:
    /// `noBus`: there is no session bus; `refused`: there is one, but it gave an error for an answer, or
    /// none. In both cases nothing is known of other processes.
    enum class Claim { first, second, refused, noBus };

    /// Who made this process. The session bus does so to deliver a message. One that comes as the main loop
    /// begins is that one, and no more than the start. If the bus had another reason, it never comes.
    enum class Start { byUser, byBus };

    SingleInstance(const QDBusConnection& sessionBus, Scheduler& scheduler, Start start = Start::byUser);
    /// Gives the name back.
    ~SingleInstance() override;

    /// Asks the bus for the name and waits for the bus's answer. Of several processes exactly one is `first`,
    /// and its object is in place before any other can learn of it; calls wait until the main loop runs.
    [[nodiscard]] Claim claim();

    /// Tells the first process that the user started the program again, and waits up to `patience` for it.
    /// Passes XDG_ACTIVATION_TOKEN on, by which the first may take the focus under Wayland. False if it
    /// didn't answer.
    [[nodiscard]] bool activateFirst(std::chrono::milliseconds patience = std::chrono::seconds{5});

    /// The user started the program again, or asked the desktop to open it, while it runs. Called from the
    /// main loop.
    std::function<void()> onActivate;

    /// An X11 desktop gave the start this name, and waits to hear that it is over. Called after `onActivate`,
    /// and not at all for a start without a name.
    std::function<void(const std::string& id)> onNamedStart;

private:
    friend class ApplicationAdaptor;

    /// Whether a message that has come is the one that this process was made for.
    [[nodiscard]] bool isStart();

    QDBusConnection _bus;
    Scheduler& _scheduler;
    bool _startIsToBeHeard;
    /// When that message can no longer come; nothing before the main loop's first turn.
    std::optional<Seconds> _startEnds;
    bool _isFirst = false;
    Lifetime _lifetime;
};

} // namespace selvane
