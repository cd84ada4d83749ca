#include "Selvane/UI/MenuBarLabel.h"

#include "Selvane/App/DateText.h"
#include "SelvaneCore/TimeFormat.h"

#include <utility>

namespace selvane::MenuBarLabel {

namespace {

DialGlyph::Style style(const TimerEngine& engine) {
    if (engine.isPaused())
        return DialGlyph::Style::paused;
    return isBreak(engine.phase()) ? DialGlyph::Style::onBreak : DialGlyph::Style::running;
}

} // namespace

DialGlyph::State glyphState(const AppModel& model) {
    const TimerEngine& engine = model.engine();
    if (engine.isIdle())
        return DialGlyph::resting;
    return {1.0 - engine.progress(), style(engine), model.focusGuard().driftAppName().has_value()};
}

StatusItemContent content(const AppModel& model, DialGlyph& glyph) {
    const TimerEngine& engine = model.engine();
    StatusItemContent content{glyph.image(glyphState(model)), TimeFormat::clock(engine.remaining())};
    if (engine.isIdle()) {
        content.title.reset();
        return content;
    }
    switch (model.settings().menuBarDisplay()) {
    case MenuBarDisplay::iconAndTime:
        break;
    case MenuBarDisplay::iconOnly:
        content.title.reset();
        break;
    case MenuBarDisplay::timeOnly:
        content.substitute = std::exchange(content.image, nullptr);
        break;
    }
    return content;
}

std::string accessibilityLabel(const AppModel& model) {
    const TimerEngine& engine = model.engine();
    if (engine.isIdle())
        return "Selvane";
    return "Selvane, " + std::string(title(engine.phase())) + ", " + TimeFormat::clock(engine.remaining()) +
           (engine.isPaused() ? " paused" : " remaining");
}

QString tooltip(const AppModel& model, const QLocale& locale) {
    const TimerEngine& engine = model.engine();
    if (!engine.isRunning())
        return QString::fromStdString(accessibilityLabel(model));
    const std::string_view phase = title(engine.phase());
    return QStringLiteral("Selvane, %1, ends %2")
        .arg(QLatin1String(phase.data(), static_cast<qsizetype>(phase.size())),
             timeOfDay(adding(engine.remaining(), engine.now()), model.localCalendar(), locale));
}

} // namespace selvane::MenuBarLabel
