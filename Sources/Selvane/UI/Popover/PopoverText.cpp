#include "Selvane/UI/Popover/PopoverText.h"

#include "Selvane/App/DateText.h"
#include "Selvane/UI/QtText.h"

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

} // namespace selvane::PopoverText
