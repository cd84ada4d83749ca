#include "Selvane/UI/MenuBarLabel.h"

#include "SelvaneCore/TimeFormat.h"

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
        content.image.reset();
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

} // namespace selvane::MenuBarLabel
