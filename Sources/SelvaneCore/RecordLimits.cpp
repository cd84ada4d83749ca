#include "SelvaneCore/RecordLimits.h"

#include "SelvaneCore/Text.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace selvane::RecordLimits {

namespace {

void fit(Seconds& length) {
    length = std::isnan(length.count()) ? Seconds{0.0} : std::clamp(length, Seconds{0.0}, longest);
}

void fit(std::string& text) {
    // What is no text has no place in a file, and would take the whole history with it.
    if (!Text::isValid(text))
        text = Text::wellFormed(text);
    text.resize(Text::prefix(text, maxAppTextLength).size());
}

} // namespace

FocusSession fitted(FocusSession session, Date now) {
    session.start = std::clamp(session.start, earliestStart, std::max(earliestStart, adding(mostAhead, now)));
    session.end = std::max(session.end, session.start);
    fit(session.plannedSeconds);
    fit(session.actualSeconds);
    if (session.apps) {
        for (AppUsage& usage : *session.apps) {
            fit(usage.bundleID);
            fit(usage.name);
            fit(usage.seconds);
        }
    }
    return session;
}

} // namespace selvane::RecordLimits
