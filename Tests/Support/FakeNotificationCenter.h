#pragma once

#include "Selvane/Platform/NotificationCenter.h"
#include "Selvane/Platform/Scheduler.h"

#include <algorithm>
#include <array>
#include <map>
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
    struct Pending {
        NotificationRequest request;
        Seconds delay;
        Seconds due;
        Subscription timer;
    };

    explicit FakeNotificationCenter(Scheduler& scheduler) : _scheduler(scheduler) {}

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
        const std::string id = request.id;
        dropPending(id);
        auto timer = _scheduler.after(delay, [this, id] {
            auto node = _pending.extract(id);
            post(std::move(node.mapped().request));
        });
        _pending.insert_or_assign(
            id, Pending{std::move(request), delay, _scheduler.now() + delay, std::move(timer)});
    }

    void removePending(std::span<const std::string_view> ids) override {
        for (const auto id : ids)
            dropPending(id);
    }

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

    [[nodiscard]] const std::map<std::string, Pending, std::less<>>& pending() const { return _pending; }

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
    void dropPending(std::string_view id) {
        const auto found = _pending.find(id);
        if (found == _pending.end())
            return;
        auto node = _pending.extract(found);
        if (node.mapped().due <= _scheduler.now())
            post(std::move(node.mapped().request));
    }

    Scheduler& _scheduler;
    std::vector<NotificationCategory> _categories;
    std::map<std::string, Pending, std::less<>> _pending;
};

} // namespace selvane::test
