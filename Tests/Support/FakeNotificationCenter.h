#pragma once

#include "Selvane/Platform/NotificationCenter.h"
#include "Selvane/Platform/PendingRequests.h"
#include "Selvane/Platform/Scheduler.h"

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace selvane::test {

/// A desktop whose notifications are values. Time is the scheduler's.
///
///     FakeNotificationCenter center(scheduler);
///     center.post({.id = "id", .title = "Title", .body = "", .category = "category"});
///     center.choose("id", "action");
class FakeNotificationCenter final : public NotificationCenter {
public:
    explicit FakeNotificationCenter(Scheduler& scheduler)
        : _pending(scheduler, [this](NotificationRequest request) { post(std::move(request)); }) {}

    void setCategories(std::vector<NotificationCategory> categories) override {
        ++timesCategoriesWereSet;
        _categories = std::move(categories);
    }

    void requestAuthorization() override { ++authorizationRequests; }

    void post(NotificationRequest request) override {
        if (isDenied)
            return;
        titles.push_back(request.title);
        std::erase_if(shown, [&](const auto& other) { return other.id == request.id; });
        shown.push_back(std::move(request));
    }

    void postLater(NotificationRequest request, Seconds delay) override {
        _pending.add(std::move(request), delay);
    }

    void removePending(std::span<const std::string_view> ids) override { _pending.remove(ids); }

    void deliverPending(std::string_view id) override { _pending.deliver(id); }

    void removeDelivered(std::span<const std::string_view> ids) override {
        for (const auto id : ids)
            std::erase_if(shown, [&](const auto& request) { return request.id == id; });
    }

    /// The user presses a button, or the notification itself where `action` names none.
    void choose(const std::string& id, const std::string& action) {
        removeDelivered(std::array<std::string_view, 1>{id});
        if (onAction)
            onAction(id, action);
    }

    [[nodiscard]] const PendingRequests& pending() const { return _pending; }

    /// The titles of the buttons that a notification of this category has.
    [[nodiscard]] std::vector<std::string> buttons(std::string_view category) const {
        std::vector<std::string> words;
        for (const NotificationCategory& one : _categories) {
            if (one.id != category)
                continue;
            for (const NotificationAction& action : one.actions)
                words.push_back(action.title);
        }
        return words;
    }

    [[nodiscard]] const std::vector<NotificationCategory>& categories() const { return _categories; }

    /// The user doesn't want to see anything of this program.
    bool isDenied = false;
    /// What is on the screen, the latest last.
    std::vector<NotificationRequest> shown;
    /// The titles of all that was ever shown, in order.
    std::vector<std::string> titles;
    int timesCategoriesWereSet = 0;
    int authorizationRequests = 0;

private:
    std::vector<NotificationCategory> _categories;
    PendingRequests _pending;
};

} // namespace selvane::test
