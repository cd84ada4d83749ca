#include "Selvane/App/AppSettings.h"

#include "SelvaneCore/MemoryDefaultsStore.h"
#include "SelvaneCore/SettingValueCoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <variant>
#include <vector>

namespace selvane {

namespace {

bool isNumber(const SettingValue& value) {
    return std::holds_alternative<std::int64_t>(value.payload) ||
           std::holds_alternative<double>(value.payload);
}

/// Whether an import may put one in place of the other.
bool isCompatible(const SettingValue& left, const SettingValue& right) {
    return left.payload.index() == right.payload.index() || (isNumber(left) && isNumber(right));
}

bool isImported(std::string_view key) {
    return std::ranges::find(AppSettings::keysNotImported, key) == AppSettings::keysNotImported.end();
}

} // namespace

AppSettings::AppSettings(DefaultsStore& defaults) : SettingTable(defaults) {
    for (AnySetting* const setting : all())
        setting->load();
    sanitize();
}

void AppSettings::sanitize() {
    for (const SettingRepair step : allSettingRepairs) {
        for (AnySetting* const setting : all())
            setting->sanitize(step);
    }
}

std::span<const std::string_view> AppSettings::keys() {
    static const std::vector<std::string_view> keys = [] {
        MemoryDefaultsStore nothing;
        const AppSettings settings(nothing);
        std::vector<std::string_view> result;
        for (const AnySetting* const setting : settings.all())
            result.push_back(setting->key());
        return result;
    }();
    return keys;
}

void AppSettings::setMinutes(int minutes, Phase phase) {
    const int clamped = DurationPreset::range(phase).clamp(minutes);
    switch (phase) {
    case Phase::focus:
        focusMinutes.set(clamped);
        return;
    case Phase::shortBreak:
        shortBreakMinutes.set(clamped);
        return;
    case Phase::longBreak:
        longBreakMinutes.set(clamped);
        return;
    }
}

void AppSettings::apply(const DurationPreset& preset) {
    setMinutes(preset.focusMinutes, Phase::focus);
    setMinutes(preset.shortBreakMinutes, Phase::shortBreak);
    setMinutes(preset.longBreakMinutes, Phase::longBreak);
}

TimerConfig AppSettings::timerConfig() const {
    return {static_cast<double>(focusMinutes()),
            static_cast<double>(shortBreakMinutes()),
            static_cast<double>(longBreakMinutes()),
            sessionsBeforeLongBreak(),
            autoStartBreaks(),
            autoStartFocus()};
}

DistractingSet AppSettings::distractingSet() const {
    DistractingSet result(distractingApps().begin(), distractingApps().end());
    for (const std::string& site : distractingSites())
        result.insert(AppUsage::siteID(site));
    return result;
}

SettingValues AppSettings::exportValues() const {
    SettingValues map;
    for (const AnySetting* const setting : all()) {
        // One that can't be written would keep everything else out of a backup.
        if (auto stored = defaults().value(setting->key()); stored && hasForm(setting->key(), *stored))
            map.emplace(setting->key(), std::move(*stored));
    }
    return map;
}

void AppSettings::importValues(const SettingValues& map) {
    for (const std::string_view key : keys()) {
        // 1. A key that must not be imported stays as it is.
        if (!isImported(key))
            continue;
        // 2. So does one that doesn't come.
        const auto incoming = map.find(key);
        if (incoming == map.end())
            continue;
        // 3. What is stored decides the kind.
        const auto stored = defaults().value(key);
        if (stored && !isCompatible(*stored, incoming->second))
            continue;
        // 4. Anything else of that kind goes into the store; reading it again validates it.
        defaults().set(key, incoming->second);
    }
    reload();
}

void AppSettings::reload() {
    // Construction also stores what it mends.
    const AppSettings stored(defaults());
    for (std::size_t index = 0; index < all().size(); ++index)
        all()[index]->take(*stored.all()[index]);
}

} // namespace selvane
