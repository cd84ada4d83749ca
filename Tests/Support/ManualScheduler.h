#pragma once

#include "Selvane/Platform/Scheduler.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>

namespace selvane::test {

/// A scheduler whose time moves only when a test says so.
///
///     ManualScheduler scheduler;
///     auto timer = scheduler.after(Seconds{5}, [&] { rang = true; });
///     scheduler.advance(Seconds{5});
class ManualScheduler final : public Scheduler {
public:
    void post(Work work) override { insert(_now, std::nullopt, std::move(work)); }

    Subscription after(Seconds delay, Work work) override {
        return handle(insert(_now + std::max(delay, Seconds{0}), std::nullopt, std::move(work)));
    }

    Subscription every(Seconds interval, Seconds, Work work) override {
        return handle(insert(_now + interval, interval, std::move(work)));
    }

    [[nodiscard]] Seconds now() const override { return _now; }

    /// One turn of the main loop: runs what was posted and what is due, without moving time. Work that this
    /// schedules waits for the next turn.
    void turn() {
        const std::uint64_t newest = _lastID;
        while (const auto next = nextDue(newest))
            run(*next);
    }

    /// Lets time pass, with as many turns as it takes to run everything that falls due, each at its own
    /// moment.
    void advance(Seconds length) {
        const Seconds target = _now + length;
        while (!_queue->empty() && _queue->begin()->first.first <= target) {
            _now = std::max(_now, _queue->begin()->first.first);
            turn();
        }
        _now = target;
    }

    /// Jumps ahead as a suspend does: repeated work runs once for all the turns that it missed.
    void suspend(Seconds length) {
        standStill(length);
        turn();
    }

    /// Jumps ahead without a turn: what fell due meanwhile has yet to run.
    void standStill(Seconds length) { _now += length; }

    /// How many pieces of work wait.
    [[nodiscard]] std::size_t waiting() const { return _queue->size(); }

private:
    struct Entry {
        std::optional<Seconds> interval;
        std::shared_ptr<Work> work;
    };
    using Key = std::pair<Seconds, std::uint64_t>;
    using Queue = std::map<Key, Entry>;

    std::uint64_t insert(Seconds due, std::optional<Seconds> interval, Work work) {
        const std::uint64_t id = ++_lastID;
        _queue->emplace(Key{due, id}, Entry{interval, std::make_shared<Work>(std::move(work))});
        return id;
    }

    Subscription handle(std::uint64_t id) {
        return Subscription([queue = std::weak_ptr<Queue>(_queue), id] {
            const auto alive = queue.lock();
            if (alive == nullptr)
                return;
            const auto found =
                std::ranges::find_if(*alive, [id](const auto& item) { return item.first.second == id; });
            // What is cancelled is destroyed after the queue is whole again: its end may come back here.
            if (found != alive->end())
                const auto node = alive->extract(found);
        });
    }

    /// The first that is due of the work that was scheduled no later than `newest`.
    [[nodiscard]] std::optional<Key> nextDue(std::uint64_t newest) const {
        for (const auto& [key, entry] : *_queue) {
            if (key.first > _now)
                break;
            if (key.second <= newest)
                return key;
        }
        return std::nullopt;
    }

    void run(const Key& key) {
        const auto node = _queue->extract(key);
        const auto [due, id] = key;
        const Entry entry = node.mapped();
        if (entry.interval) {
            Seconds next = due + *entry.interval;
            while (next <= _now)
                next += *entry.interval;
            _queue->emplace(Key{next, id}, entry);
        }
        (*entry.work)();
    }

    Seconds _now{0};
    std::uint64_t _lastID = 0;
    std::shared_ptr<Queue> _queue = std::make_shared<Queue>();
};

} // namespace selvane::test
