#pragma once

#include "SelvaneCore/Date.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/UUID.h"

#include <cstddef>
#include <functional>
#include <set>
#include <vector>

namespace selvane {

/// The user's tasks in display order, and the only place that changes them: open tasks first in the user's
/// order, then done tasks, latest finished first.
///
/// A value that knows neither clock nor storage. No operation fails: a command with an unknown id does
/// nothing. A list from elsewhere is taken as it stands until `normalize` is called.
struct TaskList {
    std::vector<TaskItem> items;

    /// The items that are not done, in the order of `items`.
    [[nodiscard]] std::vector<TaskItem> open() const;
    /// The items that are done, in the order of `items`.
    [[nodiscard]] std::vector<TaskItem> done() const;
    /// The first item with that id, or null. Valid until the list changes.
    [[nodiscard]] const TaskItem* find(const UUID& id) const;

    /// The longest title, in user-perceived characters.
    static constexpr std::size_t maxTitleLength = 300;

    /// Adds an open task behind the other open ones. The title loses the white space at its ends and what
    /// exceeds `maxTitleLength`; with nothing left nothing is added. A copy of the new item.
    std::optional<TaskItem> add(std::string_view title, Date now);
    /// Replaces a title, cleaned as by `add`; one that cleans to nothing changes nothing.
    void rename(const UUID& id, std::string_view title);

    /// Ticks a task off at `now`, or opens it again. A done task that is ticked off again moves its date.
    /// Leaves the item in its place: the caller follows with `normalize`.
    void setDone(const UUID& id, bool done, Date now);
    /// Sets how many sessions the task is expected to take; a negative count becomes 0.
    void setEstimate(const UUID& id, std::int64_t count);
    /// Counts one more completed focus session, also for a task that is done. Stops at the largest count.
    void creditPomodoro(const UUID& id);
    /// Moves the items at these offsets, in their order and as one run, to before the item that is now at
    /// `destination`, then restores the order. Offsets outside the list are left out; if none remain, nothing
    /// at all changes. A destination outside the list means its nearer end.
    void move(const std::set<std::ptrdiff_t>& offsets, std::ptrdiff_t destination);
    /// Removes every item with that id.
    void remove(const UUID& id);
    void clearCompleted();
    /// Removes the items that `where` matches; the others keep their order.
    void removeAll(const std::function<bool(const TaskItem&)>& where);

    /// Restores the order: open tasks as they stand, then done tasks by `completedAt`, latest first. A done
    /// task without a date comes last; ties keep their order.
    void normalize();

    friend bool operator==(const TaskList&, const TaskList&) = default;
};

} // namespace selvane
