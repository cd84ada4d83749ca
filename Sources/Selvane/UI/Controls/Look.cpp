#include "Selvane/UI/Controls/Look.h"

#include "Selvane/App/AppSettings.h"
#include "Selvane/Platform/Appearance.h"

#include <utility>

namespace selvane {

namespace {

bool isDark(AppearanceMode mode, const Appearance& desktop) {
    switch (mode) {
    case AppearanceMode::light:
        return false;
    case AppearanceMode::dark:
        return true;
    case AppearanceMode::system:
        break;
    }
    return desktop.isDark();
}

Look::Glass glassOf(GlassLevel level) {
    switch (level) {
    case GlassLevel::off:
        return Look::Flat;
    case GlassLevel::low:
        return Look::Clear;
    case GlassLevel::medium:
        return Look::Regular;
    case GlassLevel::high:
        return Look::Tinted;
    }
    return Look::Flat;
}

} // namespace

Look::Look(AppSettings& settings, Appearance& appearance, QObject* parent)
    : QObject(parent), _settings(settings), _appearance(appearance), _state(read()) {
    _subscriptions.push_back(settings.changed.subscribe([this] { refresh(); }));
    _subscriptions.push_back(appearance.changed.subscribe([this] { refresh(); }));
}

Look::State Look::read() const {
    return {.isDark = selvane::isDark(_settings.appearance(), _appearance),
            .isHighContrast = _appearance.isHighContrast(),
            .reducesMotion = _appearance.reducesMotion(),
            .glass = glassOf(_settings.glassLevel())};
}

void Look::refresh() {
    const State now = read();
    if (std::exchange(_state, now) != now)
        Q_EMIT changed();
}

} // namespace selvane
