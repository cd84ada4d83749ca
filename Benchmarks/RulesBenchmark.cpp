#include "GeneratedHistory.h"
#include "Measure.h"
#include "SelvaneCore/DayKeys.h"
#include "SelvaneCore/History.h"
#include "SelvaneCore/Stats.h"
#include "SelvaneCore/StreakCalculator.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <random>
#include <span>
#include <vector>

namespace {

using namespace selvane;
using namespace selvane::benchmarks;

constexpr int dayStartHour = 4;

Calendar berlin() {
    const auto calendar = Calendar::named("Europe/Berlin");
    if (!calendar)
        std::abort();
    return *calendar;
}

/// Everything that a view shows of a history.
void countFigures(std::span<const FocusSession> sessions, const Calendar& calendar) {
    const MinutesByDay minutes = Stats::focusMinutesByDay(sessions, dayStartHour, calendar);
    const DayKey today(sessions.back().start, dayStartHour, calendar);
    benchmark::DoNotOptimize(StreakCalculator::compute(minutes, 50, today, true, calendar));
    benchmark::DoNotOptimize(Stats::summary(sessions, calendar));
    benchmark::DoNotOptimize(Stats::appTotals(sessions, distantPast));
}

/// The days of 100,000 sorted instants, against their civil days without any zone.
void FindDayKeys(benchmark::State& state) {
    const Calendar calendar = berlin();
    std::mt19937_64 random(1);
    std::vector<Date> dates;
    Date date = std::chrono::sys_days{std::chrono::year{2016} / 1 / 1};
    for (std::int64_t left = state.range(0); left > 0; --left)
        dates.push_back(date += std::chrono::seconds{random() % 6000});
    measure(
        state, Limit{.ratio = 4}, [] {},
        [&] {
            DayKeys dayOf(dayStartHour, calendar);
            for (const Date& each : dates)
                benchmark::DoNotOptimize(dayOf(each));
        },
        [&] {
            for (const Date& each : dates) {
                const std::chrono::year_month_day day(std::chrono::floor<std::chrono::days>(each));
                benchmark::DoNotOptimize(DayKey(int{day.year()}, static_cast<int>(unsigned{day.month()}),
                                                static_cast<int>(unsigned{day.day()})));
            }
        });
}

/// All figures of a history, against those of its ten tenths one after another: the same sessions in the same
/// memory, so that only what grows faster than the history shows.
void CountFigures(benchmark::State& state) {
    const Calendar calendar = berlin();
    const auto sessions = generatedHistory(static_cast<std::size_t>(state.range(0)));
    Limit limit{.ratio = 1.1};
    // Ten years; a hundred only show that the cost grows no faster than the history.
    if (state.range(0) == 60'000)
        limit.milliseconds = 12;
    measure(
        state, limit, [] {}, [&] { countFigures(sessions, calendar); },
        [&] {
            const std::size_t tenth = sessions.size() / 10;
            for (std::size_t part = 0; part < 10; ++part)
                countFigures(std::span(sessions).subspan(part * tenth, tenth), calendar);
        });
}

/// All figures again after one more session, against counting them from the start.
void RefreshFigures(benchmark::State& state) {
    const Calendar calendar = berlin();
    const auto sessions = generatedHistory(static_cast<std::size_t>(state.range(0)));
    History history(sessions);
    FocusSession next = sessions.back();
    const auto refresh = [&] {
        const DayKey today(next.start, dayStartHour, calendar);
        benchmark::DoNotOptimize(&history.focusMinutesByDay(dayStartHour, calendar));
        benchmark::DoNotOptimize(history.streak({.goalMinutes = 50,
                                                 .today = today,
                                                 .freezesEnabled = true,
                                                 .dayStartHour = dayStartHour,
                                                 .calendar = calendar}));
        benchmark::DoNotOptimize(history.summary(calendar));
        benchmark::DoNotOptimize(history.appTotals(distantPast));
    };
    refresh();
    measure(
        state, Limit{.ratio = 0.25}, [&] { history.append(next); }, refresh,
        [&] { countFigures(sessions, calendar); });
}

BENCHMARK(FindDayKeys)->Arg(100'000)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(CountFigures)
    ->Arg(60'000)
    ->Arg(600'000)
    ->Iterations(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK(RefreshFigures)->Arg(60'000)->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
