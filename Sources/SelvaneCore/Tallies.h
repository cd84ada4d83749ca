#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/DayKeys.h"
#include "SelvaneCore/LocalTimes.h"
#include "SelvaneCore/MinutesByDay.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/Stats.h"

#include <absl/container/flat_hash_map.h>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// The figures of `Stats`, counted session by session: one more session costs the same however long the
/// history before it is. Each tally answers one `Question`; what it tells after some sessions is what the
/// function of its name tells of them in the same order, to the last bit.
namespace selvane::Tallies {

class FocusMinutesByDay {
public:
    struct Question {
        int dayStartHour;
        Calendar calendar;

        friend bool operator==(const Question&, const Question&) = default;
    };

    explicit FocusMinutesByDay(const Question& question) : _dayOf(question.dayStartHour, question.calendar) {}

    void add(const FocusSession& session);
    /// Not constant, since it settles the open day.
    [[nodiscard]] const MinutesByDay& answer();

private:
    struct Day {
        DayKey key;
        Seconds total;
    };
    /// Brings the maps up to date with the open day.
    void settle();

    DayKeys _dayOf;
    absl::flat_hash_map<DayKey, Seconds> _totals;
    MinutesByDay _minutes;
    /// The day of the session before, whose total the maps don't have yet: most sessions share a day with it.
    std::optional<Day> _open;
};

class Summary {
public:
    struct Question {
        Calendar calendar;

        friend bool operator==(const Question&, const Question&) = default;
    };

    explicit Summary(const Question& question) : _times(question.calendar) {}

    void add(const FocusSession& session);
    [[nodiscard]] Stats::Summary answer() const;

private:
    static constexpr std::size_t hoursPerDay = 24;

    LocalTimes _times;
    Seconds _total{0.0};
    std::size_t _count = 0;
    int _completed = 0;
    std::array<std::optional<Seconds>, hoursPerDay> _hours{};
};

class AppTotals {
public:
    struct Question {
        Date since;

        friend bool operator==(const Question&, const Question&) = default;
    };

    explicit AppTotals(const Question& question) : _since(question.since) {}

    void add(const FocusSession& session);
    [[nodiscard]] std::vector<AppUsage> answer() const;

private:
    Date _since;
    /// In the order in which the applications were met.
    std::vector<AppUsage> _totals;
    absl::flat_hash_map<std::string, std::size_t> _places;
};

} // namespace selvane::Tallies
