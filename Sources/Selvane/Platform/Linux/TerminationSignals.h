#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>
#include <optional>

namespace selvane {

/// Hears when the session ends, a terminal goes away or somebody kills the process politely, so that it can
/// come to its end in order. The signals SIGTERM, SIGINT and SIGHUP then no longer end the process by
/// themselves; one that was ignored, as under nohup, still is.
///
/// One object at a time. Main thread, after the QCoreApplication was made; at destruction the signals mean
/// again what they meant before. Where the system refuses, the signals keep their meaning.
class TerminationSignals final {
public:
    /// `onSignal` runs at a turn of the main loop, once for any number of signals that came before it.
    explicit TerminationSignals(std::function<void()> onSignal);
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals();

private:
    static constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};

    int _event;
    std::optional<QSocketNotifier> _notifier;
    std::array<struct sigaction, signals.size()> _before{};
};

} // namespace selvane
