#include "Selvane/UI/Timer/TimerFaceState.h"

#include "Selvane/App/AppSettings.h"
#include "Selvane/UI/QtText.h"
#include "SelvaneCore/TimeFormat.h"
#include "SelvaneCore/TimerEngine.h"

namespace selvane::TimerFaceRules {

TimerFaceState stateOf(const TimerEngine& engine, const AppSettings& settings) {
    return {.style = settings.timerStyle(),
            .remaining = engine.remaining(),
            .progress = engine.progress(),
            .phase = engine.phase(),
            .isRunning = engine.isRunning(),
            .isPaused = engine.isPaused(),
            .cyclePosition = engine.cyclePosition(),
            .cycleLength = settings.sessionsBeforeLongBreak()};
}

TimerFaceState sample(TimerStyle style) {
    return {.style = style,
            .remaining = Seconds{872},
            .progress = 0.42,
            .phase = Phase::focus,
            .isRunning = false,
            .isPaused = false,
            .cyclePosition = 2,
            .cycleLength = 4};
}

double frameHeight(TimerStyle style) {
    switch (style) {
    case TimerStyle::ring:
        return 188;
    case TimerStyle::bar:
        return 128;
    case TimerStyle::minimal:
        return 132;
    }
    __builtin_unreachable();
}

QString timeLabel(Seconds remaining) {
    return QString::fromStdString(TimeFormat::clock(remaining)) + QStringLiteral(" remaining");
}

QString caption(Phase phase, bool isPaused) {
    return isPaused ? QStringLiteral("PAUSED") : qtText(title(phase)).toUpper();
}

double opacity(Phase phase, bool isPaused) {
    if (isPaused)
        return 0.5;
    return isBreak(phase) ? 0.75 : 1.0;
}

std::string_view glyph(const AppSettings& settings, Phase phase, bool isPaused) {
    if (isPaused)
        return "pause.fill";
    return isBreak(phase) ? settings.breakSymbol() : settings.focusSymbol();
}

QString iconLabel(Phase phase) {
    return isBreak(phase) ? QStringLiteral("Break icon") : QStringLiteral("Focus icon");
}

QString iconTitle(Phase phase) {
    return isBreak(phase) ? QStringLiteral("BREAK ICON") : QStringLiteral("FOCUS ICON");
}

} // namespace selvane::TimerFaceRules
