#pragma once

#include "Selvane/App/AppModel.h"
#include "Selvane/Platform/StatusItemHost.h"
#include "Selvane/UI/DialGlyph.h"

#include <QLocale>
#include <QString>

#include <string>

namespace selvane::MenuBarLabel {

/// The dial that tells the timer's state.
[[nodiscard]] DialGlyph::State glyphState(const AppModel& model);

/// What the status area shows: the dial, and the time beside it while a phase is under way, as far as the
/// user wants them. An idle timer always shows the dial alone.
[[nodiscard]] StatusItemContent content(const AppModel& model, DialGlyph& glyph);

/// The words for a screen reader: "Selvane, Focus, 24:13 remaining".
[[nodiscard]] std::string accessibilityLabel(const AppModel& model);

/// The words shown when the pointer rests on the item: "Selvane, Focus, ends 15:06". They change with the
/// timer's state and not with every second, since panels ask for the whole item anew at each change.
[[nodiscard]] QString tooltip(const AppModel& model, const QLocale& locale);

} // namespace selvane::MenuBarLabel
