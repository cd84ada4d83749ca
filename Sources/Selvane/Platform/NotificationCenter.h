#pragma once

#include "SelvaneCore/Date.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// A button of a notification.
struct NotificationAction {
    std::string id;
    std::string title;

    bool operator==(const NotificationAction&) const = default;
};

/// The buttons that all notifications of one category have, in their order.
struct NotificationCategory {
    std::string id;
    std::vector<NotificationAction> actions;

    bool operator==(const NotificationCategory&) const = default;
};

/// A notification that is to be shown. Title and body are plain text.
struct NotificationRequest {
    std::string id;
    std::string title;
    std::string body;
    /// Empty, or unknown to the center, for a notification without buttons.
    std::string category;

    bool operator==(const NotificationRequest&) const = default;
};

/// The desktop's notifications. At most one notification of each request identifier is pending, and at most
/// one is on the screen: a newer one takes the place of the older.
///
/// Main thread. Every call returns at once. What can't be shown vanishes silently, also for good: nothing is
/// shown later that was to be shown while nothing could show it. Nothing makes a sound. A desktop may show no
/// buttons.
class NotificationCenter {
public:
    virtual ~NotificationCenter() = default;

    /// The categories of all notifications posted from now on.
    virtual void setCategories(std::vector<NotificationCategory> categories) = 0;

    /// Asks the user, where the platform wants that, for the right to show alerts and to sound.
    virtual void requestAuthorization() = 0;

    /// Shows a notification now.
    virtual void post(NotificationRequest request) = 0;

    /// Shows a notification once `delay` has passed, on the continuous clock: one that falls due while the
    /// machine sleeps is shown when it wakes.
    virtual void postLater(NotificationRequest request, Seconds delay) = 0;

    /// Drops what `postLater` has not shown yet. One whose moment has come is not pending any more, whatever
    /// else the machine was busy with then: it is shown. Unknown identifiers do nothing.
    virtual void removePending(std::span<const std::string_view> ids) = 0;

    /// Shows now what `postLater` has not shown yet. Does nothing where nothing is pending.
    virtual void deliverPending(std::string_view id) = 0;

    /// Takes notifications off the screen. Unknown identifiers do nothing.
    virtual void removeDelivered(std::span<const std::string_view> ids) = 0;

    /// Called with the identifiers of the request and of the button that the user chose on it. Runs from the
    /// main loop, never within a call of this object.
    std::function<void(std::string_view request, std::string_view action)> onAction;
};

} // namespace selvane
