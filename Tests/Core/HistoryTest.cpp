#include "SelvaneCore/History.h"

#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::utc;
using test::zone;

/// Random sessions and random questions, the same in every run.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : _random(seed) {}

    std::uint64_t below(std::uint64_t end) { return _random() % end; }

    template <typename Choices>
    const auto& oneOf(const Choices& choices) {
        return choices[below(choices.size())];
    }

    Date instant() { return utc(2026, 1, 1) + std::chrono::seconds{below(60 * 86'400)}; }

    FocusSession session(Date start) {
        static const std::vector<std::string> apps{"a", "b", "c", "site:d.example", "away"};
        const auto random = [this] { return static_cast<std::uint8_t>(below(256)); };
        UUID::Bytes id{};
        std::ranges::generate(id, random);
        FocusSession result{.id = UUID(id),
                            .start = start,
                            .end = start + std::chrono::minutes{30},
                            .phase = below(4) == 0 ? oneOf(allPhases) : Phase::focus,
                            .plannedSeconds = Seconds{1500},
                            .actualSeconds = Seconds{0.1} * static_cast<double>(below(20'000)),
                            .completed = below(3) != 0,
                            .taskID = std::nullopt,
                            .apps = std::nullopt};
        if (below(3) != 0) {
            result.apps.emplace();
            for (auto left = below(4); left > 0; --left) {
                const std::string& app = oneOf(apps);
                result.apps->push_back(
                    {app, app + std::to_string(below(2)), Seconds{0.1} * static_cast<double>(below(9000))});
            }
        }
        return result;
    }

private:
    std::mt19937_64 _random;
};

struct Questions {
    Calendar calendar;
    int dayStartHour;
    Date since;
    int goal;
    DayKey today;
    bool freezes;
    DistractingSet distracting;
};

Questions anyQuestions(Dice& dice) {
    static const std::vector<Calendar> calendars{zone("Europe/Berlin"), zone("Pacific/Apia"),
                                                 zone("America/New_York")};
    static const std::vector<DistractingSet> distractions{{}, {"a"}, {"b", "site:d.example"}};
    const Calendar calendar = dice.oneOf(calendars);
    const int dayStartHour = static_cast<int>(dice.below(7));
    return {.calendar = calendar,
            .dayStartHour = dayStartHour,
            .since =
                dice.below(3) == 0 ? distantPast : utc(2026, 1, 1) + std::chrono::days{dice.below(4) * 20},
            .goal = static_cast<int>(dice.below(40)),
            .today = DayKey(dice.instant(), dayStartHour, calendar),
            .freezes = dice.below(2) == 0,
            .distracting = dice.oneOf(distractions)};
}

/// What the history tells, asked twice, is what the plain functions tell.
void expectTrueFigures(const History& history, const Questions& asked) {
    const auto& sessions = history.sessions();
    const auto& [calendar, dayStartHour, since, goal, today, freezes, distracting] = asked;
    const MinutesByDay minutes = Stats::focusMinutesByDay(sessions, dayStartHour, calendar);
    for (int twice = 0; twice < 2; ++twice) {
        ASSERT_EQ(history.focusMinutesByDay(dayStartHour, calendar), minutes);
        ASSERT_EQ(history.summary(calendar), Stats::summary(sessions, calendar));
        ASSERT_EQ(history.appTotals(since), Stats::appTotals(sessions, since));
        ASSERT_EQ(history.averageFocusScore(distracting, since),
                  Stats::averageFocusScore(sessions, distracting, since));
        for (const int otherGoal : {goal, goal + 1})
            ASSERT_EQ(history.streak({otherGoal, today, freezes, dayStartHour, calendar}),
                      StreakCalculator::compute(minutes, otherGoal, today, freezes, calendar));
    }
}

TEST(History, ItsFiguresNeverDisagreeWithThePlainFunctions) {
    Dice dice(42);
    History history;
    Date latest = utc(2026, 1, 1);
    Questions asked = anyQuestions(dice);
    for (int edit = 0; edit < 6'000; ++edit) {
        SCOPED_TRACE(edit);
        auto edited = history.sessions();
        switch (dice.below(40)) {
        case 0:
            history = History();
            break;
        case 1:
            std::ranges::reverse(edited);
            history = History(std::move(edited));
            break;
        case 2:
            // As many sessions as before, one of them another.
            if (!edited.empty()) {
                edited[dice.below(edited.size())] = dice.session(dice.instant());
                history = History(std::move(edited));
            }
            break;
        case 3:
            if (!edited.empty()) {
                edited.erase(edited.begin() + static_cast<std::ptrdiff_t>(dice.below(edited.size())));
                history = History(std::move(edited));
            }
            break;
        case 4: {
            // A copy goes its own way.
            History copy = history;
            copy.append(dice.session(dice.instant()));
            ASSERT_NO_FATAL_FAILURE(expectTrueFigures(copy, asked));
            break;
        }
        case 5:
            history.append(dice.session(dice.instant()));
            break;
        default:
            latest += std::chrono::seconds{dice.below(20'000)};
            history.append(dice.session(latest));
        }
        // Mostly what was asked before the edit, as by a view that stays open.
        if (dice.below(8) == 0)
            asked = anyQuestions(dice);
        if (dice.below(3) == 0) {
            ASSERT_NO_FATAL_FAILURE(expectTrueFigures(history, asked));
        }
    }
}

TEST(History, WhatIsLeftBehindByAMoveIsEmpty) {
    Dice dice(7);
    const Questions asked = anyQuestions(dice);
    History history({dice.session(utc(2026, 1, 1)), dice.session(utc(2026, 1, 2))});
    expectTrueFigures(history, asked);
    const History moved = std::move(history);
    history = History({dice.session(utc(2026, 1, 3))});
    expectTrueFigures(history, asked);
    expectTrueFigures(moved, asked);
    EXPECT_EQ(moved.sessions().size(), 2U);
}

TEST(History, AppendedSessionsCountOnBothSidesOfAQuestion) {
    const Calendar calendar = Calendar::utc();
    Dice dice(3);
    FocusSession session = dice.session(utc(2026, 3, 5, 9));
    session.phase = Phase::focus;
    session.actualSeconds = Seconds{90};
    History history({session});
    EXPECT_EQ(history.focusMinutesByDay(4, calendar).at(DayKey(2026, 3, 5)), 1);
    history.append(session);
    EXPECT_EQ(history.focusMinutesByDay(4, calendar).at(DayKey(2026, 3, 5)), 3) << "truncated after the sum";
}

} // namespace
} // namespace selvane
