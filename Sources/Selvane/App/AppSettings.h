#pragma once

#include "Selvane/App/Setting.h"
#include "Selvane/App/SettingChoices.h"
#include "Selvane/App/SettingRules.h"
#include "SelvaneCore/DefaultsStore.h"
#include "SelvaneCore/DurationPreset.h"
#include "SelvaneCore/FocusScore.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/SettingValue.h"

#include <array>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace selvane {

/// The user's settings, each kept in the store under its name. This is the one place that knows them: to add
/// one, declare it below.
///
/// Setting a value doesn't validate it; that happens to what is read from the store. Nothing fails: what is
/// missing or of a wrong type reads as the default. Main thread.
class AppSettings final : public SettingTable {
public:
    /// Reads every setting, mends those that break their rule, and stores what was mended. The store outlives
    /// the settings, and nobody else changes what it has under their keys.
    explicit AppSettings(DefaultsStore& defaults);

    // Hooks: each runs at every assignment of the settings that name it, also of an equal value. They are
    // absent during construction, so that mending runs none.

    std::function<void()> onMusicSettingsChange;
    std::function<void()> onAppearanceChange;
    std::function<void()> onNotificationsChange;
    std::function<void()> onFocusGuardChange;
    std::function<void()> onFocusModeChange;
    std::function<void()> onCalendarChange;

    // Settings: their key, their default, the rule that what is read holds to, and the hook. Their order is
    // that in which they are read, exported and imported.

    Setting<int> focusMinutes{*this, "focusMinutes", 25, Valid::minutesOf<Phase::focus>};
    Setting<int> shortBreakMinutes{*this, "shortBreakMinutes", 5, Valid::minutesOf<Phase::shortBreak>};
    Setting<int> longBreakMinutes{*this, "longBreakMinutes", 15, Valid::minutesOf<Phase::longBreak>};
    /// Completed focus sessions per long break.
    Setting<int> sessionsBeforeLongBreak{*this, "sessionsBeforeLongBreak", 4, Valid::within<2, 8>};
    Setting<bool> autoStartBreaks{*this, "autoStartBreaks", true};
    Setting<bool> autoStartFocus{*this, "autoStartFocus", false};
    Setting<bool> playEndSound{*this, "playEndSound", true};
    Setting<bool> notificationsEnabled{*this, "notificationsEnabled", true, &onNotificationsChange};
    Setting<TimerStyle> timerStyle{*this, "timerStyle", TimerStyle::ring};
    Setting<MenuBarDisplay> menuBarDisplay{*this, "menuBarDisplay", MenuBarDisplay::iconAndTime};
    Setting<AppearanceMode> appearance{*this, "appearance", AppearanceMode::system, &onAppearanceChange};
    Setting<GlassLevel> glassLevel{*this, "glassLevel", GlassLevel::medium};
    /// One of `symbolChoices`, or empty for none.
    Setting<std::string> focusSymbol{*this, "focusSymbol", "eye", Valid::symbol};
    Setting<std::string> breakSymbol{*this, "breakSymbol", "cup.and.saucer", Valid::symbol};
    Setting<MusicSource> musicSource{*this, "musicSource", MusicSource::ambient, &onMusicSettingsChange};
    Setting<AmbientSound> ambientSound{*this, "ambientSound", AmbientSound::rain, &onMusicSettingsChange};
    /// From 0 to 1.
    Setting<double> musicVolume{*this, "musicVolume", 0.6, Valid::volume, &onMusicSettingsChange};
    Setting<bool> autoPlayMusic{*this, "autoPlayMusic", true};
    Setting<bool> pauseMusicOnBreaks{*this, "pauseMusicOnBreaks", true};
    Setting<std::string> appleMusicPlaylist{*this, "appleMusicPlaylist", "", Valid::playlist};
    Setting<std::string> spotifyPlaylist{*this, "spotifyPlaylist", "", Valid::playlist};
    Setting<int> dailyGoalMinutes{*this, "dailyGoalMinutes", 50, Valid::within<10, 600>};
    /// The hour at which the user's day begins.
    Setting<int> dayStartHour{*this, "dayStartHour", 4, Valid::within<0, 6>};
    Setting<bool> streakFreezesEnabled{*this, "streakFreezesEnabled", true};
    Setting<bool> autoClearCompletedTasks{*this, "autoClearCompletedTasks", true};
    Setting<FocusGuardMode> focusGuardMode{*this, "focusGuardMode", FocusGuardMode::track,
                                           &onFocusGuardChange};
    /// Identifiers of applications that the user calls distracting.
    Setting<SettingValue::Texts> distractingApps{
        *this, "distractingApps", {}, Valid::applications, &onFocusGuardChange};
    /// Website rules of the user's distractions.
    Setting<SettingValue::Texts> distractingSites{
        *this, "distractingSites", {}, Valid::sites, &onFocusGuardChange};
    /// How long a distraction may be in front before it counts.
    Setting<int> driftGraceSeconds{*this, "driftGraceSeconds", 15, Valid::within<0, 120>};
    Setting<bool> focusModeEnabled{*this, "focusModeEnabled", false, &onFocusModeChange};
    /// Names of the user's shortcuts that turn Do Not Disturb on and off.
    Setting<std::string> focusOnShortcut{*this, "focusOnShortcut", "", &onFocusModeChange};
    Setting<std::string> focusOffShortcut{*this, "focusOffShortcut", "", &onFocusModeChange};
    Setting<bool> keepFocusModeDuringBreaks{*this, "keepFocusModeDuringBreaks", false, &onFocusModeChange};
    Setting<bool> calendarEnabled{*this, "calendarEnabled", false, &onCalendarChange};
    Setting<SettingValue::Texts> ignoredCalendarIDs{*this, "ignoredCalendarIDs", {}, &onCalendarChange};
    Setting<bool> fitSessionsToCalendar{*this, "fitSessionsToCalendar", true};
    /// How long before an event a session ends.
    Setting<int> meetingBufferMinutes{*this, "meetingBufferMinutes", 2, Valid::within<0, 15>};

    /// Every setting's key, in the order of the settings.
    [[nodiscard]] static std::span<const std::string_view> keys();

    /// The keys that no import changes: the names of shortcuts mean something only on the machine that has
    /// them, and others would point Do Not Disturb at shortcuts that don't exist.
    static constexpr std::array<std::string_view, 3> keysNotImported{"focusModeEnabled", "focusOnShortcut",
                                                                     "focusOffShortcut"};

    /// Assigns the length of a phase, clamped to what the phase may take.
    void setMinutes(int minutes, Phase phase);
    /// Assigns the lengths of all phases, each clamped in the same way.
    void apply(const DurationPreset& preset);

    /// Made afresh at every call, so that a change takes effect at once.
    [[nodiscard]] TimerConfig timerConfig() const;
    /// What counts as a distraction in a record of usage: the applications, and the websites by their pseudo
    /// identifiers.
    [[nodiscard]] DistractingSet distractingSet() const;

    /// What is stored under the keys; nothing for a setting that was never written.
    [[nodiscard]] SettingValues exportValues() const;
    /// Stores the values of known keys and reads them as construction does. Left out are those that must not
    /// be imported, and those of another kind than what is stored; integers and floats are of one kind here.
    void importValues(const SettingValues& map);
    /// Reads the store again, and assigns the settings that are then different.
    void reload();

private:
    void sanitize();
};

} // namespace selvane
