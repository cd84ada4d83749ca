#include "SelvaneCore/History.h"

#include "Support/Dice.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace selvane {
namespace {

using test::utc;
using test::zone;

using test::Dice;

template <typename Choices>
const auto& oneOf(const Choices& choices, Dice& dice) {
    return choices[dice.below(choices.size())];
}

Date anyInstant(Dice& dice) {
    return utc(2026, 1, 1) + std::chrono::seconds{dice.below(60 * 86'400)};
}

FocusSession sessionAt(Date start, Dice& dice) {
    static const std::vector<std::string> apps{"a", "b", "c", "site:d.example", "away"};
    UUID::Bytes id{};
    std::ranges::generate(id, [&dice] { return static_cast<std::uint8_t>(dice.below(256)); });
    FocusSession result{.id = UUID(id),
                        .start = start,
                        .end = start + std::chrono::minutes{30},
                        .phase = dice.oneIn(4) ? oneOf(allPhases, dice) : Phase::focus,
                        .plannedSeconds = Seconds{1500},
                        // Tenths, of which floats know no exact sum: the order of adding shows.
                        .actualSeconds = Seconds{0.1} * dice.below(20'000),
                        .completed = !dice.oneIn(3),
                        .taskID = std::nullopt,
                        .apps = std::nullopt};
    if (!dice.oneIn(3)) {
        result.apps.emplace();
        for (int left = dice.below(4); left > 0; --left) {
            const std::string& app = oneOf(apps, dice);
            result.apps->push_back(
                {app, app + std::to_string(dice.below(2)), Seconds{0.1} * dice.below(9000)});
        }
    }
    return result;
}

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
    const Calendar calendar = oneOf(calendars, dice);
    const int dayStartHour = dice.below(7);
    return {.calendar = calendar,
            .dayStartHour = dayStartHour,
            .since = dice.oneIn(3) ? distantPast : utc(2026, 1, 1) + std::chrono::days{dice.below(4) * 20},
            .goal = dice.below(40),
            .today = DayKey(anyInstant(dice), dayStartHour, calendar),
            .freezes = dice.oneIn(2),
            .distracting = oneOf(distractions, dice)};
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
        // Twice in a row, and another one.
        for (const int otherGoal : {goal, goal, goal + 1})
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
                edited[dice.below(edited.size())] = sessionAt(anyInstant(dice), dice);
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
            copy.append(sessionAt(anyInstant(dice), dice));
            ASSERT_NO_FATAL_FAILURE(expectTrueFigures(copy, asked));
            break;
        }
        case 5:
            history.append(sessionAt(anyInstant(dice), dice));
            break;
        default:
            latest += std::chrono::seconds{dice.below(20'000)};
            history.append(sessionAt(latest, dice));
        }
        // Mostly what was asked before the edit, as by a view that stays open.
        if (dice.oneIn(8))
            asked = anyQuestions(dice);
        if (dice.oneIn(3)) {
            ASSERT_NO_FATAL_FAILURE(expectTrueFigures(history, asked));
        }
    }
}

TEST(History, WhatIsLeftBehindByAMoveIsEmpty) {
    Dice dice(7);
    const Questions asked = anyQuestions(dice);
    for (const bool byAssignment : {false, true}) {
        History history({sessionAt(utc(2026, 1, 1), dice), sessionAt(utc(2026, 1, 2), dice)});
        expectTrueFigures(history, asked);
        History other({sessionAt(utc(2026, 1, 3), dice)});
        expectTrueFigures(other, asked);
        if (byAssignment)
            other = std::move(history);
        else
            other = History(History(std::move(history)));
        expectTrueFigures(other, asked);
        EXPECT_EQ(other.sessions().size(), 2U);

        EXPECT_TRUE(history.sessions().empty());
        expectTrueFigures(history, asked);
        // As many as there were before, but other ones.
        for (int day = 5; day < 7; ++day)
            history.append(sessionAt(utc(2026, 2, day), dice));
        expectTrueFigures(history, asked);
    }
}

// Each difference alone between two questions in a row.

struct StreakRow {
    const char* name;
    void (*change)(History::StreakQuestion&);
    int current;
};

class StreakQuestions : public testing::TestWithParam<StreakRow> {};

TEST_P(StreakQuestions, AreToldApart) {
    // Eight days of an hour each at 03:00, a missed one, and one that is met at noon.
    std::vector<FocusSession> sessions;
    for (const int day : {1, 2, 3, 4, 5, 6, 7, 8, 10}) {
        const Date start = utc(2026, 3, day, day == 10 ? 12 : 3);
        sessions.push_back({.id = UUID(),
                            .start = start,
                            .end = start + std::chrono::hours{1},
                            .phase = Phase::focus,
                            .plannedSeconds = Seconds{3600},
                            .actualSeconds = Seconds{3600},
                            .completed = true,
                            .taskID = std::nullopt,
                            .apps = std::nullopt});
    }
    const History history(std::move(sessions));
    History::StreakQuestion question{.goalMinutes = 60,
                                     .today = DayKey(2026, 3, 10),
                                     .freezesEnabled = true,
                                     .dayStartHour = 0,
                                     .calendar = Calendar::utc()};
    ASSERT_EQ(history.streak(question).current, 9);
    GetParam().change(question);
    EXPECT_EQ(history.streak(question).current, GetParam().current);
}

INSTANTIATE_TEST_SUITE_P(
    History, StreakQuestions,
    testing::Values(StreakRow{"goal", [](auto& question) { question.goalMinutes = 61; }, 0},
                    StreakRow{"today", [](auto& question) { question.today = DayKey(2026, 3, 5); }, 5},
                    StreakRow{"freezes", [](auto& question) { question.freezesEnabled = false; }, 1},
                    // The eight days end a day earlier then, and one freeze doesn't bridge two.
                    StreakRow{"dayStart", [](auto& question) { question.dayStartHour = 4; }, 1},
                    StreakRow{"calendar",
                              [](auto& question) { question.calendar = zone("America/New_York"); }, 1}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(History, AppendedSessionsCountOnBothSidesOfAQuestion) {
    const Calendar calendar = Calendar::utc();
    Dice dice(3);
    FocusSession session = sessionAt(utc(2026, 3, 5, 9), dice);
    session.phase = Phase::focus;
    session.actualSeconds = Seconds{90};
    History history({session});
    EXPECT_EQ(history.focusMinutesByDay(4, calendar).at(DayKey(2026, 3, 5)), 1);
    history.append(session);
    EXPECT_EQ(history.focusMinutesByDay(4, calendar).at(DayKey(2026, 3, 5)), 3) << "truncated after the sum";
}

} // namespace
} // namespace selvane
