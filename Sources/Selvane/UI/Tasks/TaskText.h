#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>

/// The words and numbers of the list of tasks.
namespace selvane::TaskText {

/// How many sessions can be chosen as an estimate: from 1 to this.
constexpr std::int64_t largestChoice = 8;

/// Done tasks over all: "1 / 4".
[[nodiscard]] QString count(std::size_t done, std::size_t all);

/// What a press of a task's circle does.
[[nodiscard]] QString checkLabel(bool isDone);
/// What the first entry of a task's menu does.
[[nodiscard]] QString focusLabel(bool isCurrent);

/// An estimate to be chosen: "1 session", "2 sessions".
[[nodiscard]] QString estimateLabel(std::int64_t sessions);
/// How far a task has come: "2 of 4 sessions". The plural is the total's. Empty without an estimate.
[[nodiscard]] QString progress(std::int64_t done, std::int64_t total);

/// Where a task stands after it was moved by a key. Places count from 1.
[[nodiscard]] QString moved(std::size_t place, std::size_t all);

/// The circles that stand for the sessions of a task.
struct Dots {
    int filled;
    int total;

    friend bool operator==(const Dots&, const Dots&) = default;
};

/// One circle a session, filled as far as sessions are done.
///
/// From 21 sessions on, which only a damaged or foreign file estimates, that rule isn't kept: the circles
/// would push the title out of the row. Then 20 are drawn and filled in the same proportion, none only if
/// nothing is done and all only if all is. The words tell the numbers as they are.
[[nodiscard]] Dots dots(std::int64_t done, std::int64_t total);

} // namespace selvane::TaskText
