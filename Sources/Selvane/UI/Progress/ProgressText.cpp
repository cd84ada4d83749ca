#include "Selvane/UI/Progress/ProgressText.h"

#include "SelvaneCore/TimeFormat.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace selvane::ProgressText {

namespace {

constexpr std::array<int, 4> milestones{7, 30, 100, 365};

} // namespace

QString streak(int days) {
    return QStringLiteral("%1 day streak").arg(days);
}

QString milestone(int streak) {
    const auto next = std::ranges::lower_bound(milestones, streak);
    if (next == milestones.end())
        return QStringLiteral("Over a year of focus. Legendary.");
    if (*next == streak)
        return QStringLiteral("%1-day milestone reached").arg(streak);
    const int left = *next - streak;
    return QStringLiteral("%1 day%2 to your %3-day milestone")
        .arg(left)
        .arg(left == 1 ? QString() : QStringLiteral("s"))
        .arg(*next);
}

QString best(int longest) {
    return QStringLiteral("%1 best").arg(longest);
}

QString freezes(int count) {
    return (count == 1 ? QStringLiteral("%1 freeze") : QStringLiteral("%1 freezes")).arg(count);
}

QString freezesTooltip() {
    return QStringLiteral(
        "Earn a streak freeze every 7 days (hold up to 2). A missed day uses one automatically.");
}

QString score(double score) {
    return QStringLiteral("%1% focused").arg(std::lround(score * 100));
}

QString scoreTooltip() {
    return QStringLiteral("Share of today's focus time spent outside apps on your distractions list");
}

double goalFraction(int minutes, int goal) {
    return std::clamp(static_cast<double>(minutes) / std::max(goal, 1), 0.0, 1.0);
}

QString goalCaption(int goal) {
    return QStringLiteral("/%1m").arg(goal);
}

QString goalTooltip(int minutes, int goal) {
    return QStringLiteral("Today: %1 of your %2 goal")
        .arg(QString::fromStdString(TimeFormat::duration(minutes)),
             QString::fromStdString(TimeFormat::duration(goal)));
}

} // namespace selvane::ProgressText
