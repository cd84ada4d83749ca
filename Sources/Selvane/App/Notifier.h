#pragma once

#include "Selvane/Platform/NotificationCenter.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/Lifetime.h"
#include "SelvaneCore/Models.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace selvane {

/// Speaks to the user through the desktop's notifications, of four kinds: the end of a phase, the heads-up
/// before a meeting, a drift, and a notice about the user's data. Each kind has one fixed identifier, so that
/// posting again replaces the earlier one. Main thread; returns at once and fails silently.
class Notifier final {
public:
    static constexpr std::string_view phaseEndID = "selvane.phase-end";
    static constexpr std::string_view meetingID = "selvane.meeting";
    static constexpr std::string_view driftID = "selvane.drift";
    static constexpr std::string_view dataID = "selvane.data";

    /// What the user can do about a drift.
    enum class Action { snooze, hideApp };

    /// What was done about a drift before it is told: nothing yet, its application was hidden, or nothing can
    /// be, since it is a website.
    enum class DriftStyle { nudge, hidden, site };

    /// Without a `center` every operation does nothing. It is not touched before the first operation that
    /// needs it, and outlives this.
    Notifier(NotificationCenter* center, std::function<Date()> clock);

    /// Asks for the right to show and to sound.
    void requestAuthorization();
    /// One pending notification for the end of `phase`, under `phaseEndID`. At the earliest in a second.
    void schedule(Phase phase, Date end);
    /// One pending notification `lead` before `start`, under `meetingID`. At the earliest in a second; it
    /// tells the minutes that are really left then.
    void scheduleMeetingHeadsUp(const std::string& title, Date start, Seconds lead);
    /// Tells at once that the user is in a distraction called `name`, away from `task` if there is one.
    void notifyDrift(const std::string& name, const std::optional<std::string>& task, DriftStyle style);
    /// Tells at once what happened to the user's data.
    void notifyDataNotice(const std::string& title, const std::string& body);
    /// Drops the pending notifications with these identifiers. Unknown ones do nothing.
    void removePending(std::span<const std::string_view> ids);
    /// Shows now what is pending under this identifier, also what was to come a second after it was
    /// scheduled. Does nothing where nothing is pending.
    void deliverPending(std::string_view id);
    /// Takes the notifications with these identifiers off the screen. Unknown ones do nothing.
    void removeDelivered(std::span<const std::string_view> ids);

    /// The user chose a button of the notification of a drift. Runs from the main loop.
    std::function<void(Action)> onAction;

private:
    [[nodiscard]] NotificationCenter* center();
    [[nodiscard]] Seconds untilDate(Date date) const;

    NotificationCenter* _center;
    std::function<Date()> _clock;
    bool _didSetDelegate = false;
    Lifetime _lifetime;
};

/// The action's name among the desktop's notifications.
[[nodiscard]] std::string_view rawValue(Notifier::Action action);

} // namespace selvane
