#include "Selvane/Platform/Linux/LinuxScheduler.h"

#include "SelvaneCore/Log.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>

#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <string>
#include <utility>

namespace selvane {

namespace {

/// Nanoseconds of CLOCK_BOOTTIME.
using Nanoseconds = std::int64_t;

constexpr Nanoseconds perSecond = 1'000'000'000;
/// A hundred years, so that sums of moments and lengths always fit.
constexpr double longest = 100.0 * 366 * 86'400;

Nanoseconds bootTime() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return time.tv_sec * perSecond + time.tv_nsec;
}

/// Rounded up, so that no work runs before its moment. What is not a number counts as zero.
Nanoseconds nanoseconds(Seconds length) {
    const double seconds = length.count() > 0 ? std::min(length.count(), longest) : 0;
    return static_cast<Nanoseconds>(std::ceil(seconds * static_cast<double>(perSecond)));
}

} // namespace

class LinuxScheduler::Queue final : public QObject {
public:
    Queue() : _timer(timerfd_create(CLOCK_BOOTTIME, TFD_NONBLOCK | TFD_CLOEXEC)) {
        if (_timer < 0) {
            Log::line(std::string("the system gives no timer (") + std::strerror(errno) +
                      "), without which the program can't wait for anything; it ends");
            std::exit(EXIT_FAILURE);
        }
        _notifier.emplace(_timer, QSocketNotifier::Read);
        connect(&*_notifier, &QSocketNotifier::activated, this, [this] {
            std::uint64_t expirations = 0;
            // Nothing to read means that the timer was set anew meanwhile; then nothing is due, and that is
            // all.
            [[maybe_unused]] const auto length = read(_timer, &expirations, sizeof expirations);
            _armedFor = 0;
            runDue();
        });
    }

    ~Queue() override {
        _notifier.reset();
        close(_timer);
    }

    std::uint64_t insert(Nanoseconds delay, Nanoseconds interval, Nanoseconds tolerance, Work work) {
        const Nanoseconds due = bootTime() + delay;
        const std::uint64_t id = ++_lastID;
        _entries.emplace(Key{due, id}, Entry{interval, tolerance, std::make_shared<Work>(std::move(work))});
        if (delay == 0)
            requestTurn();
        else
            arm();
        return id;
    }

    void remove(std::uint64_t id) {
        // What is cancelled is destroyed after the queue is whole again: its end may come back here.
        const auto found = std::find_if(_entries.begin(), _entries.end(),
                                        [id](const auto& item) { return item.first.second == id; });
        if (found == _entries.end())
            return;
        const auto node = _entries.extract(found);
        arm();
    }

    /// Takes everything out, so that work that refers to the scheduler ends before it.
    void clear() {
        while (!_entries.empty())
            _entries.extract(_entries.begin());
        arm();
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        _turnRequested = false;
        runDue();
        return true;
    }

private:
    struct Entry {
        /// Zero for work that runs once.
        Nanoseconds interval;
        Nanoseconds tolerance;
        std::shared_ptr<Work> work;
    };
    using Key = std::pair<Nanoseconds, std::uint64_t>;

    void requestTurn() {
        if (!std::exchange(_turnRequested, true))
            QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    void runDue() {
        // Work that this turn schedules waits for the next one, or work that posts itself would stop the
        // loop.
        const Nanoseconds now = bootTime();
        const std::uint64_t newest = _lastID;
        std::optional<Key> last;
        while (true) {
            auto next = last ? _entries.upper_bound(*last) : _entries.begin();
            while (next != _entries.end() && next->first.second > newest)
                ++next;
            if (next == _entries.end() || next->first.first > now)
                break;
            const auto node = _entries.extract(next);
            const auto [due, id] = node.key();
            const auto [interval, tolerance, work] = node.mapped();
            last = node.key();
            if (interval > 0) {
                const Nanoseconds turns = (now - due) / interval + 1;
                _entries.emplace(Key{due + turns * interval, id}, node.mapped());
            }
            (*work)();
        }
        if (!_entries.empty() && _entries.begin()->first.first <= now)
            requestTurn();
        arm();
    }

    void arm() {
        Nanoseconds wanted = 0;
        for (const auto& [key, entry] : _entries) {
            const Nanoseconds latest = key.first + entry.tolerance;
            wanted = wanted == 0 ? latest : std::min(wanted, latest);
        }
        if (wanted == _armedFor)
            return;
        itimerspec setting{};
        setting.it_value.tv_sec = wanted / perSecond;
        setting.it_value.tv_nsec = wanted % perSecond;
        timerfd_settime(_timer, TFD_TIMER_ABSTIME, &setting, nullptr);
        _armedFor = wanted;
    }

    int _timer;
    std::optional<QSocketNotifier> _notifier;
    /// The moment that the timer is set to, zero while it is off.
    Nanoseconds _armedFor = 0;
    bool _turnRequested = false;
    std::uint64_t _lastID = 0;
    std::map<Key, Entry> _entries;
};

LinuxScheduler::LinuxScheduler() : _queue(std::make_shared<Queue>()) {}

LinuxScheduler::~LinuxScheduler() {
    _queue->clear();
}

void LinuxScheduler::post(Work work) {
    _queue->insert(0, 0, 0, std::move(work));
}

Subscription LinuxScheduler::after(Seconds delay, Work work) {
    const std::uint64_t id = _queue->insert(nanoseconds(delay), 0, 0, std::move(work));
    return Subscription([queue = std::weak_ptr(_queue), id] {
        if (const auto alive = queue.lock())
            alive->remove(id);
    });
}

Subscription LinuxScheduler::every(Seconds interval, Seconds tolerance, Work work) {
    const Nanoseconds length = std::max<Nanoseconds>(nanoseconds(interval), 1);
    const std::uint64_t id = _queue->insert(length, length, nanoseconds(tolerance), std::move(work));
    return Subscription([queue = std::weak_ptr(_queue), id] {
        if (const auto alive = queue.lock())
            alive->remove(id);
    });
}

Seconds LinuxScheduler::now() const {
    return std::chrono::duration<double, std::nano>(static_cast<double>(bootTime()));
}

} // namespace selvane
