#pragma once

#include <QString>

/// The words of the progress tab.
namespace selvane::ProgressText {

/// The count of the streak in words: "12 day streak".
[[nodiscard]] QString streak(int days);

/// How far it is to the next milestone of 7, 30, 100 and 365 days: "1 day to your 7-day milestone".
[[nodiscard]] QString milestone(int streak);

/// The longest streak: "31 best".
[[nodiscard]] QString best(int longest);

/// The freezes held: "1 freeze".
[[nodiscard]] QString freezes(int count);
[[nodiscard]] QString freezesTooltip();

/// A focus score from 0 to 1 in whole hundredths: "87% focused".
[[nodiscard]] QString score(double score);
[[nodiscard]] QString scoreTooltip();

/// The part of a daily goal that has been reached, from 0 to 1. A goal below 1 counts as 1.
[[nodiscard]] double goalFraction(int minutes, int goal);
/// The goal, under the minutes: "/50m".
[[nodiscard]] QString goalCaption(int goal);
/// "Today: 25m of your 50m goal".
[[nodiscard]] QString goalTooltip(int minutes, int goal);

} // namespace selvane::ProgressText
