#include "Selvane/UI/Tasks/TaskText.h"

#include <algorithm>

namespace selvane::TaskText {

namespace {

/// So many leave a title room for a word or two.
constexpr std::int64_t mostDots = 20;

QString plural(std::int64_t count) {
    return count == 1 ? QString() : QStringLiteral("s");
}

} // namespace

QString count(std::size_t done, std::size_t all) {
    return QStringLiteral("%1 / %2").arg(done).arg(all);
}

QString checkLabel(bool isDone) {
    return isDone ? QStringLiteral("Mark as not done") : QStringLiteral("Mark as done");
}

QString focusLabel(bool isCurrent) {
    return isCurrent ? QStringLiteral("Stop focusing on this") : QStringLiteral("Focus on this");
}

QString estimateLabel(std::int64_t sessions) {
    return QStringLiteral("%1 session%2").arg(QString::number(sessions), plural(sessions));
}

QString progress(std::int64_t done, std::int64_t total) {
    if (total <= 0)
        return {};
    return QStringLiteral("%1 of %2 session%3")
        .arg(QString::number(done), QString::number(total), plural(total));
}

QString moved(std::size_t place, std::size_t all) {
    return QStringLiteral("moved to %1 of %2").arg(place).arg(all);
}

Dots dots(std::int64_t done, std::int64_t total) {
    done = std::clamp<std::int64_t>(done, 0, std::max<std::int64_t>(total, 0));
    if (total <= mostDots)
        return {static_cast<int>(done), static_cast<int>(std::max<std::int64_t>(total, 0))};
    if (done == 0 || done == total)
        return {static_cast<int>(done == 0 ? 0 : mostDots), static_cast<int>(mostDots)};
    const double share = static_cast<double>(done) / static_cast<double>(total);
    return {std::clamp(static_cast<int>(share * static_cast<double>(mostDots)), 1,
                       static_cast<int>(mostDots) - 1),
            static_cast<int>(mostDots)};
}

} // namespace selvane::TaskText
