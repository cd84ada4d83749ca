#pragma once

#include "SelvaneCore/Models.h"
#include "SelvaneCore/Signal.h"

#include <functional>
#include <set>
#include <string>
#include <utility>

namespace selvane {

/// What the status area shows while a phase is under way.
enum class MenuBarDisplay { iconAndTime, iconOnly, timeOnly };
enum class AppearanceMode { system, light, dark };
/// What the guard does about a distraction in front.
enum class FocusGuardMode { off, track, nudge, hide };

/// True for the modes that speak or act when a distraction comes in front.
[[nodiscard]] bool reactsToDrift(FocusGuardMode mode);

class AppSettings;

/// One setting: read by calling it, assigned with `set`. Every assignment calls the setting's hook; the
/// settings' `changed` is emitted only when the value really differs.
template <typename T>
class Setting {
public:
    using Hook = std::function<void()> AppSettings::*;

    Setting(AppSettings& settings, T value, Hook hook = nullptr)
        : _settings(settings), _value(std::move(value)), _hook(hook) {}
    Setting(const Setting&) = delete;
    Setting& operator=(const Setting&) = delete;

    [[nodiscard]] const T& operator()() const { return _value; }
    void set(T value);

private:
    AppSettings& _settings;
    T _value;
    Hook _hook;
};

/// The user's settings. Setting a value doesn't validate it. Main thread.
class AppSettings {
public:
    AppSettings() = default;
    AppSettings(const AppSettings&) = delete;
    AppSettings& operator=(const AppSettings&) = delete;

    std::function<void()> onMusicSettingsChange;
    std::function<void()> onAppearanceChange;
    std::function<void()> onNotificationsChange;
    std::function<void()> onFocusGuardChange;
    std::function<void()> onFocusModeChange;
    std::function<void()> onCalendarChange;

    /// Emitted after a value has really changed, before the hook runs.
    Signal<> changed;

    Setting<int> focusMinutes{*this, 25};
    Setting<int> shortBreakMinutes{*this, 5};
    Setting<int> longBreakMinutes{*this, 15};
    Setting<int> sessionsBeforeLongBreak{*this, 4};
    Setting<bool> autoStartBreaks{*this, true};
    Setting<bool> autoStartFocus{*this, false};
    Setting<bool> playEndSound{*this, true};
    Setting<bool> notificationsEnabled{*this, true, &AppSettings::onNotificationsChange};
    Setting<MenuBarDisplay> menuBarDisplay{*this, MenuBarDisplay::iconAndTime};
    Setting<AppearanceMode> appearance{*this, AppearanceMode::system, &AppSettings::onAppearanceChange};
    Setting<bool> autoPlayMusic{*this, true};
    Setting<bool> pauseMusicOnBreaks{*this, true};
    Setting<int> dailyGoalMinutes{*this, 50};
    Setting<int> dayStartHour{*this, 4};
    Setting<bool> streakFreezesEnabled{*this, true};
    Setting<bool> autoClearCompletedTasks{*this, true};
    Setting<FocusGuardMode> focusGuardMode{*this, FocusGuardMode::track, &AppSettings::onFocusGuardChange};
    /// Identifiers of applications that the user calls distracting.
    Setting<std::set<std::string>> distractingSet{*this, {}, &AppSettings::onFocusGuardChange};
    Setting<bool> keepFocusModeDuringBreaks{*this, false, &AppSettings::onFocusModeChange};
    Setting<bool> calendarEnabled{*this, false, &AppSettings::onCalendarChange};

    /// Made afresh at every call, so that a change takes effect at once.
    [[nodiscard]] TimerConfig timerConfig() const;
};

template <typename T>
void Setting<T>::set(T value) {
    const bool differs = !(_value == value);
    _value = std::move(value);
    if (differs)
        _settings.changed.emit();
    if (_hook && _settings.*_hook)
        (_settings.*_hook)();
}

} // namespace selvane
