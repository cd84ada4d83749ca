#include "Selvane/Platform/Linux/TerminationSignals.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace selvane {

namespace {

/// Where the handler, which knows nothing but this, leaves its word.
std::atomic<int> event{-1};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler must not wait");

void note(int) {
    const int before = errno;
    const std::uint64_t one = 1;
    // A full counter has been heard anyway.
    [[maybe_unused]] const auto written = ::write(event.load(), &one, sizeof one);
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : _event(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (_event < 0)
        return;
    event = _event;
    _notifier.emplace(_event, QSocketNotifier::Read);
    QObject::connect(&*_notifier, &QSocketNotifier::activated, &*_notifier,
                     [this, onSignal = std::move(onSignal)] {
                         std::uint64_t count = 0;
                         if (::read(_event, &count, sizeof count) == sizeof count)
                             onSignal();
                     });
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    for (std::size_t index = 0; index < signals.size(); ++index) {
        ::sigaction(signals[index], &action, &_before[index]);
        if (_before[index].sa_handler == SIG_IGN)
            ::sigaction(signals[index], &_before[index], nullptr);
    }
}

TerminationSignals::~TerminationSignals() {
    if (_event < 0)
        return;
    for (std::size_t index = 0; index < signals.size(); ++index)
        ::sigaction(signals[index], &_before[index], nullptr);
    event = -1;
    _notifier.reset();
    ::close(_event);
}

} // namespace selvane
