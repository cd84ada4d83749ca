#include "Selvane/UI/Popover/PopoverText.h"

#include "Selvane/App/DateText.h"
#include "Selvane/UI/QtText.h"
#include "SelvaneCore/TimeFormat.h"

namespace selvane::PopoverText {

QString sessionStatus(const TimerEngine& engine, const Calendar& calendar, const QLocale& locale) {
    QString text = isBreak(engine.phase()) ? qtText(title(engine.phase()))
                                           : QStringLiteral("Session %1 of %2")
                                                 .arg(engine.cyclePosition())
                                                 .arg(engine.config().sessionsBeforeLongBreak);
    if (engine.isPaused())
        text += QStringLiteral(" · paused");
    if (engine.isRunning())
        text += QStringLiteral(" · ends ") +
                timeOfDay(adding(engine.remaining(), engine.now()), calendar, locale);
    return text;
}

QString today(int minutes, int goalMinutes) {
    return QStringLiteral("Today: %1 of your %2 goal")
        .arg(QString::fromStdString(TimeFormat::duration(minutes)),
             QString::fromStdString(TimeFormat::duration(goalMinutes)));
}

} // namespace selvane::PopoverText
