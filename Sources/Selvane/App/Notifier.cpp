#include "Selvane/App/Notifier.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

constexpr std::array allActions{Notifier::Action::snooze, Notifier::Action::hideApp};
/// Nothing that is scheduled comes sooner by itself, or it would come with the click that asked for it.
constexpr Seconds shortestDelay{1.0};

NotificationAction button(Notifier::Action action) {
    std::string id(rawValue(action));
    switch (action) {
    case Notifier::Action::snooze:
        return {std::move(id), "Allow 5 min"};
    case Notifier::Action::hideApp:
        return {std::move(id), "Hide App"};
    }
    return {};
}

NotificationCategory category(Notifier::DriftStyle style) {
    using enum Notifier::Action;
    switch (style) {
    case Notifier::DriftStyle::nudge:
        return {"selvane.drift.nudge", {button(hideApp), button(snooze)}};
    case Notifier::DriftStyle::hidden:
        return {"selvane.drift.hidden", {button(snooze)}};
    case Notifier::DriftStyle::site:
        return {"selvane.drift.site", {button(snooze)}};
    }
    return {};
}

} // namespace

std::string_view rawValue(Notifier::Action action) {
    switch (action) {
    case Notifier::Action::snooze:
        return "selvane.drift.snooze";
    case Notifier::Action::hideApp:
        return "selvane.drift.hide";
    }
    return {};
}

Notifier::Notifier(NotificationCenter* center, std::function<Date()> clock)
    : _center(center), _clock(std::move(clock)) {}

NotificationCenter* Notifier::center() {
    if (_center == nullptr || std::exchange(_didSetDelegate, true))
        return _center;
    _center->onAction = _lifetime.guard([this](std::string_view, std::string_view chosen) {
        // A click on the notification itself, or its dismissal, is none of these.
        const auto action =
            std::ranges::find(allActions, chosen, [](Action candidate) { return rawValue(candidate); });
        if (action != allActions.end() && onAction)
            onAction(*action);
    });
    _center->setCategories(
        {category(DriftStyle::nudge), category(DriftStyle::hidden), category(DriftStyle::site)});
    return _center;
}

Seconds Notifier::untilDate(Date date) const {
    return elapsed(_clock(), date);
}

void Notifier::requestAuthorization() {
    if (auto* const center = this->center())
        center->requestAuthorization();
}

void Notifier::schedule(Phase phase, Date end) {
    auto* const center = this->center();
    if (center == nullptr)
        return;
    center->removePending(std::array{phaseEndID});
    NotificationRequest request{.id = std::string(phaseEndID), .title = {}, .body = {}, .category = {}};
    if (isBreak(phase)) {
        request.title = "Break's over";
        request.body = "Ready for the next focus session?";
    } else {
        request.title = "Focus complete";
        request.body = "Nice work. Time for a break.";
    }
    center->postLater(std::move(request), std::max(untilDate(end), shortestDelay));
}

void Notifier::scheduleMeetingHeadsUp(const std::string& title, Date start, Seconds lead) {
    auto* const center = this->center();
    if (center == nullptr)
        return;
    center->removePending(std::array{meetingID});
    const Seconds left = untilDate(start);
    // Halves go to the even number, so that half a minute is none.
    const auto minutes = std::lrint(std::min(left, lead).count() / 60.0);
    center->postLater({.id = std::string(meetingID),
                       .title = title + (minutes < 1 ? std::string(" is starting")
                                                     : " in " + std::to_string(minutes) + " min"),
                       .body = "Time to wrap up this session.",
                       .category = {}},
                      std::max(left - lead, shortestDelay));
}

void Notifier::notifyDrift(const std::string& name, const std::optional<std::string>& task,
                           DriftStyle style) {
    auto* const center = this->center();
    if (center == nullptr)
        return;
    NotificationRequest request{
        .id = std::string(driftID), .title = {}, .body = {}, .category = category(style).id};
    switch (style) {
    case DriftStyle::hidden:
        request.title = "Hid " + name;
        request.body = task ? "Still focusing on " + *task + "." : "Still in a focus session.";
        break;
    case DriftStyle::nudge:
    case DriftStyle::site:
        request.title = task ? "Back to " + *task + "?" : "Back to focus?";
        request.body = name + " is on your distractions list.";
        break;
    }
    center->post(std::move(request));
}

void Notifier::notifyDataNotice(const std::string& title, const std::string& body) {
    if (auto* const center = this->center())
        center->post({.id = std::string(dataID), .title = title, .body = body, .category = {}});
}

void Notifier::removePending(std::span<const std::string_view> ids) {
    if (auto* const center = this->center())
        center->removePending(ids);
}

void Notifier::deliverPending(std::string_view id) {
    if (auto* const center = this->center())
        center->deliverPending(id);
}

void Notifier::removeDelivered(std::span<const std::string_view> ids) {
    if (auto* const center = this->center())
        center->removeDelivered(ids);
}

} // namespace selvane
