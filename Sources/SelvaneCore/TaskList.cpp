#include "SelvaneCore/TaskList.h"

#include "SelvaneCore/Text.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <utility>

namespace selvane {

namespace {

bool isOpen(const TaskItem& item) {
    return !item.isDone;
}

bool isDone(const TaskItem& item) {
    return item.isDone;
}

std::optional<std::string> clean(std::string_view title) {
    // What is no text has no place in a file.
    const std::string text = Text::wellFormed(title);
    const std::string_view trimmed = Text::trimmed(text);
    if (trimmed.empty())
        return std::nullopt;
    return std::string(Text::prefix(trimmed, TaskList::maxTitleLength));
}

TaskItem* findIn(std::vector<TaskItem>& items, const UUID& id) {
    const auto found = std::ranges::find(items, id, &TaskItem::id);
    return found == items.end() ? nullptr : &*found;
}

} // namespace

std::vector<TaskItem> TaskList::open() const {
    std::vector<TaskItem> result;
    std::ranges::copy_if(items, std::back_inserter(result), isOpen);
    return result;
}

std::vector<TaskItem> TaskList::done() const {
    std::vector<TaskItem> result;
    std::ranges::copy_if(items, std::back_inserter(result), isDone);
    return result;
}

std::optional<TaskItem> TaskList::add(std::string_view title, Date now) {
    auto cleaned = clean(title);
    if (!cleaned)
        return std::nullopt;
    TaskItem item{.id = UUID::random(),
                  .title = std::move(*cleaned),
                  .isDone = false,
                  .createdAt = now,
                  .completedAt = std::nullopt,
                  .estimatedPomodoros = 0,
                  .completedPomodoros = 0};
    items.insert(std::ranges::find_if(items, isDone), item);
    return item;
}

void TaskList::rename(const UUID& id, std::string_view title) {
    auto cleaned = clean(title);
    TaskItem* const item = findIn(items, id);
    if (item && cleaned)
        item->title = std::move(*cleaned);
}

const TaskItem* TaskList::find(const UUID& id) const {
    const auto found = std::ranges::find(items, id, &TaskItem::id);
    return found == items.end() ? nullptr : &*found;
}

void TaskList::setDone(const UUID& id, bool done, Date now) {
    if (TaskItem* const item = findIn(items, id)) {
        item->isDone = done;
        item->completedAt = done ? std::optional(now) : std::nullopt;
    }
}

void TaskList::setEstimate(const UUID& id, std::int64_t count) {
    if (TaskItem* const item = findIn(items, id))
        item->estimatedPomodoros = std::max<std::int64_t>(count, 0);
}

void TaskList::creditPomodoro(const UUID& id) {
    TaskItem* const item = findIn(items, id);
    if (item && item->completedPomodoros < std::numeric_limits<std::int64_t>::max())
        ++item->completedPomodoros;
}

void TaskList::move(const std::set<std::ptrdiff_t>& offsets, std::ptrdiff_t destination) {
    // 1. The valid offsets, in ascending order.
    std::vector<std::ptrdiff_t> valid;
    std::ranges::copy_if(offsets, std::back_inserter(valid),
                         [this](std::ptrdiff_t offset) { return offset >= 0 && offset < std::ssize(items); });
    // 2. Nothing to move.
    if (valid.empty())
        return;
    // 3. Take the selected items out, and 5. keep the others, in one pass.
    std::vector<TaskItem> selected;
    std::vector<TaskItem> others;
    auto next = valid.begin();
    for (std::ptrdiff_t offset = 0; offset < std::ssize(items); ++offset) {
        const bool isSelected = next != valid.end() && *next == offset;
        next += isSelected ? 1 : 0;
        (isSelected ? selected : others).push_back(std::move(items[static_cast<std::size_t>(offset)]));
    }
    // 4. How many of them stand before the destination.
    const std::ptrdiff_t before =
        std::ranges::count_if(valid, [destination](std::ptrdiff_t offset) { return offset < destination; });
    // 6. The destination among those that are left, which clamped first can't overflow.
    const std::ptrdiff_t size = std::ssize(others);
    const std::ptrdiff_t place = std::clamp<std::ptrdiff_t>(
        std::clamp<std::ptrdiff_t>(destination, 0, size + std::ssize(selected)) - before, 0, size);
    // 7. Insert them as one run.
    others.insert(others.begin() + place, std::move_iterator(selected.begin()),
                  std::move_iterator(selected.end()));
    items = std::move(others);
    // 8. Restore the order.
    normalize();
}

void TaskList::remove(const UUID& id) {
    // A copy, since the caller's id may live in the item that goes.
    std::erase_if(items, [id = UUID(id)](const TaskItem& item) { return item.id == id; });
}

void TaskList::clearCompleted() {
    std::erase_if(items, isDone);
}

void TaskList::removeAll(const std::function<bool(const TaskItem&)>& where) {
    std::erase_if(items, where);
}

void TaskList::normalize() {
    std::vector<TaskItem> sorted = open();
    std::vector<TaskItem> finished = done();
    std::ranges::stable_sort(finished, std::ranges::greater{},
                             [](const TaskItem& item) { return item.completedAt.value_or(distantPast); });
    std::ranges::move(finished, std::back_inserter(sorted));
    items = std::move(sorted);
}

} // namespace selvane
