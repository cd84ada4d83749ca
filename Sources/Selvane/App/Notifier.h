#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"

#include <span>
#include <string>
#include <string_view>

namespace selvane {

/// Speaks to the user through the desktop's notifications. Each kind has one fixed identifier, so that
/// posting again replaces the earlier one. Main thread; returns at once and fails silently.
class Notifier {
public:
    static constexpr std::string_view phaseEndID = "selvane.phase-end";
    static constexpr std::string_view meetingID = "selvane.meeting";

    virtual ~Notifier() = default;

    /// One pending notification for the end of `phase`, under `phaseEndID`.
    virtual void schedule(Phase phase, Date end) = 0;
    /// One pending notification `lead` before `start`, under `meetingID`.
    virtual void scheduleMeetingHeadsUp(const std::string& title, Date start, Seconds lead) = 0;
    /// Tells at once what happened to the user's data.
    virtual void notifyDataNotice(const std::string& title, const std::string& body) = 0;
    /// Drops the pending notifications with these identifiers. Unknown ones do nothing.
    virtual void removePending(std::span<const std::string_view> ids) = 0;
    /// Asks once for the right to show and to sound.
    virtual void requestAuthorization() = 0;
};

} // namespace selvane
