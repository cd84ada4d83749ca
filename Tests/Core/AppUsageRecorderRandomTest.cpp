#include "SelvaneCore/AppUsageRecorder.h"
#include "Support/Dice.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"
#include "Support/Repeats.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::Dice;

constexpr int histories = test::repeats(20'000);
constexpr int entriesPerHistory = 30;

struct Front {
    std::string bundleID;
    std::string name;
};

enum class LoggedOperation { begin, activate, suspend, resume, finish };

/// One line of the log of what a recorder was told.
struct Entry {
    LoggedOperation operation;
    std::optional<Front> front;
    /// Quarters of a second, which floats add up exactly.
    std::int64_t time;
};

using Log = std::vector<Entry>;

Date instant(std::int64_t quarters) {
    return test::utc(2026, 3, 5, 9) + std::chrono::milliseconds{quarters * 250};
}

/// The same questions, answered by looking through the log instead of keeping a state.
class Reading {
public:
    explicit Reading(const Log& log) : _log(log) {}

    /// What was in front after an entry: what the last entry with a front says.
    [[nodiscard]] std::optional<Front> frontAfter(std::size_t place) const {
        for (std::size_t i = place + 1; i > 0; --i) {
            if (_log[i - 1].front)
                return _log[i - 1].front;
        }
        return std::nullopt;
    }

    /// Whether time counted after an entry: the last one that turned it on or off says.
    [[nodiscard]] bool countsAfter(std::size_t place) const {
        for (std::size_t i = place + 1; i > 0; --i) {
            const LoggedOperation operation = _log[i - 1].operation;
            if (operation == LoggedOperation::suspend || operation == LoggedOperation::finish)
                return false;
            if ((operation == LoggedOperation::begin || operation == LoggedOperation::resume) &&
                frontAfter(i - 1))
                return true;
        }
        return false;
    }

    /// Whether a segment begins with an entry.
    [[nodiscard]] bool opens(std::size_t place) const {
        if (!countsAfter(place))
            return false;
        return _log[place].operation != LoggedOperation::resume || place == 0 || !countsAfter(place - 1);
    }

    /// The result of the `finish` at `place`.
    [[nodiscard]] std::vector<AppUsage> usage(std::size_t place) const {
        std::size_t first = place;
        while (first > 0 && _log[first].operation != LoggedOperation::begin &&
               _log[first - 1].operation != LoggedOperation::finish)
            --first;

        std::map<std::string, std::int64_t> quarters;
        std::vector<Front> order;
        for (std::size_t i = first; i < place; ++i) {
            if (!opens(i))
                continue;
            std::size_t end = i + 1;
            while (_log[end].operation == LoggedOperation::resume)
                ++end;
            const Front front = *frontAfter(i);
            if (quarters.try_emplace(front.bundleID, 0).second)
                order.push_back(front);
            if (_log[end].time > _log[i].time)
                quarters[front.bundleID] += _log[end].time - _log[i].time;
        }

        // The best of the rest, again and again. All names are ASCII, so bytes order them.
        std::vector<AppUsage> result;
        while (!order.empty()) {
            std::size_t best = 0;
            for (std::size_t i = 1; i < order.size(); ++i) {
                const std::int64_t more = quarters[order[i].bundleID] - quarters[order[best].bundleID];
                if (more > 0 || (more == 0 && order[i].name < order[best].name))
                    best = i;
            }
            const std::int64_t total = quarters[order[best].bundleID];
            if (total >= 4)
                result.push_back(
                    {order[best].bundleID, order[best].name, Seconds{static_cast<double>(total) / 4.0}});
            order.erase(order.begin() + static_cast<std::ptrdiff_t>(best));
        }
        return result;
    }

private:
    const Log& _log;
};

/// Few identifiers and fewer names, so that segments meet again and entries tie in full.
Front randomFront(Dice& dice) {
    return {std::string(1, static_cast<char>('a' + dice.below(5))),
            std::string(1, static_cast<char>('X' + dice.below(2)))};
}

Entry randomEntry(Dice& dice, std::int64_t& time) {
    // Now and then no time passes, or the clock is set back.
    time += dice.below(10) == 0 ? -dice.below(20) : dice.below(6);
    switch (dice.below(8)) {
    case 0:
        return {LoggedOperation::begin, dice.below(2) == 0 ? std::optional(randomFront(dice)) : std::nullopt,
                time};
    case 1:
        return {LoggedOperation::suspend, std::nullopt, time};
    case 2:
    case 3:
        return {LoggedOperation::resume, std::nullopt, time};
    case 4:
        return {LoggedOperation::finish, std::nullopt, time};
    default:
        return {LoggedOperation::activate, randomFront(dice), time};
    }
}

std::vector<AppUsage> tell(AppUsageRecorder& recorder, const Entry& entry) {
    const Date at = instant(entry.time);
    switch (entry.operation) {
    case LoggedOperation::begin:
        if (entry.front)
            recorder.begin(entry.front->bundleID, entry.front->name, at);
        else
            recorder.begin(std::nullopt, "", at);
        return {};
    case LoggedOperation::activate:
        recorder.activate(entry.front->bundleID, entry.front->name, at);
        return {};
    case LoggedOperation::suspend:
        recorder.suspend(at);
        return {};
    case LoggedOperation::resume:
        recorder.resume(at);
        return {};
    case LoggedOperation::finish:
        return recorder.finish(at);
    }
    __builtin_unreachable();
}

TEST(AppUsageRecorderRandom, AgreesWithAReadingOfTheLog) {
    std::size_t compared = 0;
    for (int seed = 0; seed < histories; ++seed) {
        Dice dice(static_cast<std::uint64_t>(seed));
        AppUsageRecorder recorder;
        Log log;
        std::int64_t time = 0;
        for (int step = 0; step < entriesPerHistory; ++step) {
            log.push_back(randomEntry(dice, time));
            const std::vector<AppUsage> usage = tell(recorder, log.back());
            const Reading reading(log);
            ASSERT_EQ(recorder.isRecording(), reading.countsAfter(log.size() - 1))
                << "seed " << seed << ", step " << step;
            if (log.back().operation != LoggedOperation::finish)
                continue;
            ASSERT_EQ(usage, reading.usage(log.size() - 1)) << "seed " << seed << ", step " << step;
            compared += usage.size();
        }
    }
    EXPECT_GT(compared, static_cast<std::size_t>(histories));
}

} // namespace
} // namespace selvane
