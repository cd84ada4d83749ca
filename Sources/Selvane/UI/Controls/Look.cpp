#include "Selvane/UI/Controls/Look.h"

#include "Selvane/App/AppSettings.h"
#include "Selvane/Platform/Appearance.h"

namespace selvane {

Look::Look(AppSettings& settings, Appearance& appearance, QObject* parent)
    : QObject(parent), _settings(settings), _appearance(appearance) {
    _subscriptions.push_back(settings.changed.subscribe([this] { Q_EMIT changed(); }));
    _subscriptions.push_back(appearance.changed.subscribe([this] { Q_EMIT changed(); }));
}

bool Look::isDark() const {
    switch (_settings.appearance()) {
    case AppearanceMode::light:
        return false;
    case AppearanceMode::dark:
        return true;
    case AppearanceMode::system:
        break;
    }
    return _appearance.isDark();
}

bool Look::isHighContrast() const {
    return _appearance.isHighContrast();
}

bool Look::reducesMotion() const {
    return _appearance.reducesMotion();
}

Look::Glass Look::glass() const {
    switch (_settings.glassLevel()) {
    case GlassLevel::off:
        return Flat;
    case GlassLevel::low:
        return Clear;
    case GlassLevel::medium:
        return Regular;
    case GlassLevel::high:
        return Tinted;
    }
    return Flat;
}

} // namespace selvane
