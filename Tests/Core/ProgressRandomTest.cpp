// Day sums, heat, streaks, summaries and totals of random histories against a second way of counting, which
// knows only the rules: days and hours as the C library tells them, sums in whole numbers, and a streak as a
// text that is read block by block.

#include "SelvaneCore/Stats.h"
#include "SelvaneCore/StreakCalculator.h"
#include "Support/CLibraryZone.h"
#include "Support/Dice.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"
#include "Support/Repeats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <iostream>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::Dice;

constexpr int historiesPerZone = test::repeats(12'500);
constexpr std::time_t hour = 3600;
/// Quarters of a second, which floats add up exactly.
constexpr std::int64_t quartersPerMinute = 240;

DayKey dayOf(std::time_t time) {
    const std::tm local = test::localTime(time);
    return DayKey(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

/// One day of the zone in force.
struct LocalDay {
    DayKey key;
    /// An instant in the middle of it.
    std::time_t middle;
};

/// Every day that really came in 2011 and 2012: the one that Samoa skipped is not among its days.
std::vector<LocalDay> daysOfTheZone() {
    std::vector<LocalDay> days;
    const std::time_t first = test::utc(2011, 1, 1).time_since_epoch() / std::chrono::seconds{1};
    const std::time_t last = test::utc(2013, 1, 1).time_since_epoch() / std::chrono::seconds{1};
    for (std::time_t time = first; time < last; time += hour) {
        const DayKey key = dayOf(time);
        if (days.empty() || days.back().key != key)
            days.push_back({key, time + 12 * hour});
    }
    return days;
}

/// A history, and what one asks of it.
struct Question {
    std::vector<FocusSession> sessions;
    int goal;
    int dayStartHour;
    bool freezes;
    /// The days that the history may touch, and the place of today among them.
    std::vector<LocalDay> days;
    std::size_t today;
};

FocusSession session(std::time_t start, std::int64_t quarters, Phase phase, bool completed) {
    const Seconds length{static_cast<double>(quarters) / 4.0};
    const Date date{std::chrono::seconds{start}};
    return {.id = UUID(),
            .start = date,
            .end = adding(length, date),
            .phase = phase,
            // Never the figure that counts.
            .plannedSeconds = Seconds{99999},
            .actualSeconds = length,
            .completed = completed,
            .taskID = std::nullopt,
            .apps = std::nullopt};
}

void addDay(Question& question, std::time_t middle, Dice& dice) {
    const auto start = [&] {
        // Mostly in daytime, so that streaks grow long; now and then at any hour of any day around.
        return middle + (dice.oneIn(5) ? dice.between(-20 * 3600, 20 * 3600) : dice.between(-3600, 3600));
    };
    const auto add = [&](std::int64_t quarters, Phase phase) {
        question.sessions.push_back(session(start(), quarters, phase, dice.oneIn(2)));
    };
    const std::int64_t goal = std::max(question.goal, 1) * quartersPerMinute;
    switch (dice.below(6)) {
    case 0:
        // A quarter of a second too little.
        add(goal - 1, Phase::focus);
        break;
    case 1:
        // Two parts that are enough only together.
        add(goal - goal / 3, Phase::focus);
        add(goal / 3, Phase::focus);
        break;
    case 2:
        add(goal, Phase::focus);
        add(dice.below(quartersPerMinute), Phase::focus);
        break;
    default:
        add(goal + dice.below(static_cast<int>(goal) + 2), Phase::focus);
        break;
    }
    if (dice.oneIn(3))
        add(3 * goal, dice.oneIn(2) ? Phase::shortBreak : Phase::longBreak);
}

void addApps(FocusSession& session, Dice& dice) {
    constexpr std::array apps{"editor", "browser", "site:news.example", "away", "music"};
    if (dice.oneIn(4))
        return;
    session.apps.emplace();
    for (int left = dice.below(4); left > 0; --left) {
        const std::string app = apps[dice.below(apps.size())];
        // Few lengths, so that there are ties, and names that differ from session to session.
        session.apps->push_back({app, app + static_cast<char>('a' + dice.below(3)),
                                 Seconds{static_cast<double>(dice.below(5)) / 4.0}});
    }
}

Question randomQuestion(const std::vector<LocalDay>& days, Dice& dice) {
    constexpr int longest = 60;
    constexpr int mostInFuture = 3;
    const auto first = days.begin() + dice.between(2, static_cast<int>(days.size()) - longest - 10);
    const int length = dice.below(longest + 1);

    Question question{.sessions = {},
                      .goal = dice.oneIn(4) ? dice.between(-5, 2) : dice.between(3, 90),
                      .dayStartHour = dice.below(7),
                      .freezes = !dice.oneIn(4),
                      // A session at night may belong to a day around.
                      .days = std::vector<LocalDay>(first - 2, first + length + mostInFuture + 3),
                      .today = static_cast<std::size_t>(2 + std::max(length - 1, 0))};
    const int oneMissedIn = std::vector<int>{2, 4, 10, 30}[static_cast<std::size_t>(dice.below(4))];
    const int future = dice.oneIn(3) ? dice.between(1, mostInFuture) : 0;
    for (int i = 0; i < length + future; ++i) {
        const std::time_t middle = (first + i)->middle;
        if (!dice.oneIn(oneMissedIn))
            addDay(question, middle, dice);
        else if (dice.oneIn(2))
            question.sessions.push_back(session(middle, dice.below(quartersPerMinute), Phase::focus, true));
    }
    for (FocusSession& session : question.sessions)
        addApps(session, dice);
    for (std::size_t i = question.sessions.size(); i > 1; --i)
        std::swap(question.sessions[i - 1],
                  question.sessions[static_cast<std::size_t>(dice.below(static_cast<int>(i)))]);
    return question;
}

/// Minutes of days that have any, counted by hand.
std::map<DayKey, int> countedMinutes(const Question& question) {
    std::map<DayKey, std::int64_t> quarters;
    for (const FocusSession& session : question.sessions) {
        if (session.phase != Phase::focus)
            continue;
        const std::time_t start = session.start.time_since_epoch() / std::chrono::seconds{1};
        quarters[dayOf(start - question.dayStartHour * hour)] +=
            static_cast<std::int64_t>(session.actualSeconds.count() * 4.0);
    }
    std::map<DayKey, int> minutes;
    for (const auto& [day, sum] : quarters)
        minutes[day] = static_cast<int>(sum / quartersPerMinute);
    return minutes;
}

Stats::Summary countedSummary(const Question& question) {
    Stats::Summary result;
    std::int64_t total = 0;
    std::int64_t count = 0;
    std::map<int, std::int64_t> hours;
    for (const FocusSession& session : question.sessions) {
        if (session.phase != Phase::focus)
            continue;
        const auto quarters = static_cast<std::int64_t>(session.actualSeconds.count() * 4.0);
        total += quarters;
        ++count;
        result.completedFocusSessions += session.completed ? 1 : 0;
        hours[test::localTime(session.start.time_since_epoch() / std::chrono::seconds{1}).tm_hour] +=
            quarters;
    }
    result.totalFocusMinutes = static_cast<int>(total / quartersPerMinute);
    result.averageSessionMinutes = count == 0 ? 0 : static_cast<int>(total / (count * quartersPerMinute));
    const auto most = std::ranges::max_element(hours, {}, &std::pair<const int, std::int64_t>::second);
    if (most != hours.end())
        result.mostProductiveHour = most->first;
    return result;
}

/// Each application's quarters of a second, and the name that it had first, most first.
std::vector<std::tuple<std::int64_t, std::string, std::string>> countedApps(const Question& question,
                                                                            Date since) {
    std::vector<std::tuple<std::int64_t, std::string, std::string>> totals;
    for (const FocusSession& session : question.sessions) {
        if (session.phase != Phase::focus || session.start < since)
            continue;
        for (const AppUsage& usage : session.apps.value_or(std::vector<AppUsage>{})) {
            if (usage.bundleID == "away")
                continue;
            auto found = totals.begin();
            while (found != totals.end() && std::get<2>(*found) != usage.bundleID)
                ++found;
            if (found == totals.end())
                found = totals.insert(found, {0, usage.name, usage.bundleID});
            // Negative, so that the most comes first in ascending order.
            std::get<0>(*found) -= static_cast<std::int64_t>(usage.seconds.count() * 4.0);
        }
    }
    std::ranges::sort(totals);
    return totals;
}

/// How many of the four steps a day has climbed: a minute, half the goal, the goal, twice the goal.
int countedHeat(std::int64_t minutes, std::int64_t goal) {
    goal = std::max<std::int64_t>(goal, 1);
    return (minutes >= 1) + (2 * minutes >= goal) + (minutes >= goal) + (minutes >= 2 * goal);
}

/// A letter for each day up to today: M is a met day, a dash a missed one.
std::string letters(const Question& question, const std::map<DayKey, int>& minutes) {
    std::string result;
    for (std::size_t i = 0; i <= question.today; ++i) {
        const auto found = minutes.find(question.days[i].key);
        const bool isMet = found != minutes.end() && found->second >= std::max(question.goal, 1);
        result += isMet ? 'M' : '-';
    }
    return result;
}

/// Reads blocks of equal letters. Within a block of met days freezes are only earned, and what is beyond two
/// is lost; a block of missed days spends what there is and breaks the run if that is not enough.
StreakResult readStreak(std::string_view days, bool freezes, const std::vector<LocalDay>& calendar) {
    StreakResult result;
    result.todayMet = days.ends_with('M');
    // Today is no missed day yet.
    if (!result.todayMet)
        days.remove_suffix(1);
    for (std::size_t from = std::min(days.find('M'), days.size()); from < days.size();) {
        const std::size_t to = std::min(days.find(days[from] == 'M' ? '-' : 'M', from), days.size());
        const int length = static_cast<int>(to - from);
        if (days[from] == 'M') {
            const int earned = (result.current + length) / 7 - result.current / 7;
            result.current += length;
            result.longest = std::max(result.longest, result.current);
            if (freezes)
                result.freezesAvailable = std::min(result.freezesAvailable + earned, 2);
        } else {
            const int spent = std::min(result.freezesAvailable, length);
            for (int i = 0; i < spent; ++i)
                result.frozenDays.insert(calendar[from + static_cast<std::size_t>(i)].key);
            result.freezesAvailable -= spent;
            if (spent < length)
                result.current = 0;
        }
        from = to;
    }
    return result;
}

struct ZoneRow {
    const char* name;
    const char* zone;
    std::uint64_t firstSeed;
};

class ProgressRandom : public testing::TestWithParam<ZoneRow> {
private:
    test::ZoneInForce _zoneInForce{GetParam().zone};
};

TEST_P(ProgressRandom, AgreesWithASecondWayOfCounting) {
    const Calendar calendar = test::zone(GetParam().zone);
    const std::vector<LocalDay> days = daysOfTheZone();
    int longest = 0;
    std::size_t frozen = 0;
    for (std::uint64_t seed = GetParam().firstSeed; seed < GetParam().firstSeed + historiesPerZone; ++seed) {
        Dice dice(seed);
        const Question question = randomQuestion(days, dice);
        const std::map<DayKey, int> minutes = countedMinutes(question);
        const std::string story = letters(question, minutes);
        const auto where = [&] {
            return testing::Message()
                   << "seed " << seed << ": days start at " << question.dayStartHour << ", goal "
                   << question.goal << ", freezes " << question.freezes << ", from "
                   << question.days.front().key.description() << ": " << story;
        };

        const MinutesByDay ours =
            Stats::focusMinutesByDay(question.sessions, question.dayStartHour, calendar);
        ASSERT_EQ((std::map<DayKey, int>(ours.begin(), ours.end())), minutes) << where();
        for (const auto& [day, sum] : minutes)
            ASSERT_EQ(Stats::heatLevel(sum, question.goal), countedHeat(sum, question.goal)) << where();

        ASSERT_EQ(Stats::summary(question.sessions, calendar), countedSummary(question)) << where();
        const Date since{std::chrono::seconds{question.days[question.today / 2].middle}};
        std::vector<std::tuple<std::int64_t, std::string, std::string>> apps;
        for (const AppUsage& usage : Stats::appTotals(question.sessions, since))
            apps.emplace_back(-static_cast<std::int64_t>(usage.seconds.count() * 4.0), usage.name,
                              usage.bundleID);
        ASSERT_EQ(apps, countedApps(question, since)) << where();

        const StreakResult streak = readStreak(story, question.freezes, question.days);
        ASSERT_EQ(StreakCalculator::compute(ours, question.goal, question.days[question.today].key,
                                            question.freezes, calendar),
                  streak)
            << where();
        longest = std::max(longest, streak.longest);
        frozen += streak.frozenDays.size();
    }
    // Otherwise the histories were too dull to prove anything.
    EXPECT_GT(longest, 21);
    EXPECT_GT(frozen, std::size_t{2 * historiesPerZone / 25});
    std::cout << historiesPerZone << " histories, longest streak " << longest << ", " << frozen
              << " frozen days\n";
}

INSTANTIATE_TEST_SUITE_P(Progress, ProgressRandom,
                         testing::Values(ZoneRow{"UTC", "UTC", 0},
                                         ZoneRow{"Berlin", "Europe/Berlin", 100'000},
                                         ZoneRow{"NewYork", "America/New_York", 200'000},
                                         ZoneRow{"SaoPaulo", "America/Sao_Paulo", 300'000},
                                         ZoneRow{"Kolkata", "Asia/Kolkata", 400'000},
                                         ZoneRow{"Apia", "Pacific/Apia", 500'000},
                                         ZoneRow{"LordHowe", "Australia/Lord_Howe", 600'000},
                                         ZoneRow{"Kiritimati", "Pacific/Kiritimati", 700'000}),
                         [](const auto& test) { return std::string(test.param.name); });

// The grades alone, for every small goal and each number of minutes around its steps.
TEST(ProgressRandom, HeatAgreesForAllSmallGoals) {
    for (int goal = -2; goal <= 200; ++goal) {
        for (int minutes = -2; minutes <= 2 * goal + 2; ++minutes)
            ASSERT_EQ(Stats::heatLevel(minutes, goal), countedHeat(minutes, goal))
                << minutes << " of " << goal;
    }
}

} // namespace
} // namespace selvane
