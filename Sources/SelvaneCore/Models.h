#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/UUID.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// What the timer counts down: focused work or one of two kinds of break.
enum class Phase { focus, shortBreak, longBreak };

/// Every phase, in the order in which choices are offered.
inline constexpr std::array allPhases{Phase::focus, Phase::shortBreak, Phase::longBreak};

/// The phase's name in files: "focus", "shortBreak" or "longBreak". Also its identity.
[[nodiscard]] std::string_view rawValue(Phase phase);
/// The phase with that name in files; absent for any other text.
[[nodiscard]] std::optional<Phase> phaseFromRawValue(std::string_view text);
/// The phase's name for the user.
[[nodiscard]] std::string_view title(Phase phase);
[[nodiscard]] bool isBreak(Phase phase);

/// The lengths and rules of the cycle. Rebuilt from the settings whenever it is asked for, never stored.
struct TimerConfig {
    double focusMinutes;
    double shortBreakMinutes;
    double longBreakMinutes;
    /// Completed focus sessions per long break. Values below 1 count as 1.
    int sessionsBeforeLongBreak;
    /// A break starts by itself when the focus phase before it ended.
    bool autoStartBreaks;
    /// A focus phase starts by itself when the break before it ended.
    bool autoStartFocus;

    /// The configured length of `phase`, at least one second.
    [[nodiscard]] Seconds duration(Phase phase) const;

    friend bool operator==(const TimerConfig&, const TimerConfig&) = default;
};

/// One application's share of a focus session.
struct AppUsage {
    /// The pseudo identifier of time in which nothing was in front: asleep or locked.
    static constexpr std::string_view away = "away";
    /// What the pseudo identifier of a website begins with; its domain follows.
    static constexpr std::string_view sitePrefix = "site:";

    /// The application's identifier, or a pseudo identifier for a website or for time away.
    std::string bundleID;
    /// Its display name at the time of recording.
    std::string name;
    /// Time in front.
    Seconds seconds;

    /// The pseudo identifier of a website; its display name is the domain too.
    [[nodiscard]] static std::string siteID(std::string_view domain);

    [[nodiscard]] bool isAway() const { return bundleID == away; }
    /// The website's domain as `siteID` was given it; absent for anything but a website.
    [[nodiscard]] std::optional<std::string> siteDomain() const;

    friend bool operator==(const AppUsage&, const AppUsage&) = default;
};

/// One recorded run of a phase.
struct FocusSession {
    UUID id;
    /// When the phase was started, not when it was last resumed.
    Date start;
    Date end;
    Phase phase;
    /// The length that the phase was planned for, after any shortening.
    Seconds plannedSeconds;
    /// How long the countdown really ran; pauses don't count.
    Seconds actualSeconds;
    /// True if the phase ran out by itself, false if it was cut short.
    bool completed;
    /// The task that the session was credited to.
    std::optional<UUID> taskID;
    /// Where the session's time went.
    std::optional<std::vector<AppUsage>> apps;

    friend bool operator==(const FocusSession&, const FocusSession&) = default;
};

/// One task of the user's list.
struct TaskItem {
    UUID id;
    std::string title;
    bool isDone;
    Date createdAt;
    /// When it was ticked off.
    std::optional<Date> completedAt;
    /// How many focus sessions the user expects it to take.
    std::int64_t estimatedPomodoros;
    /// How many completed focus sessions were credited to it.
    std::int64_t completedPomodoros;

    friend bool operator==(const TaskItem&, const TaskItem&) = default;
};

} // namespace selvane
