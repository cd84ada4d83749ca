#include "Selvane/UI/Tasks/TaskListModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/Tasks/ListChanges.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <iterator>
#include <utility>

namespace selvane {

namespace {

constexpr std::array roles{TaskListModel::TaskIDRole,
                           TaskListModel::TitleRole,
                           TaskListModel::IsDoneRole,
                           TaskListModel::IsCurrentRole,
                           TaskListModel::EstimatedPomodorosRole,
                           TaskListModel::CompletedPomodorosRole};

template <typename Rows>
std::vector<UUID> ids(const Rows& rows) {
    std::vector<UUID> ids;
    ids.reserve(rows.size());
    for (const auto& row : rows)
        ids.push_back(row->task.id);
    return ids;
}

/// The place of the item at `index`, in a list that isn't longer than Qt's numbers reach.
template <typename Rows>
auto at(Rows& rows, std::size_t index) {
    return rows.begin() + static_cast<std::ptrdiff_t>(index);
}

} // namespace

struct TaskListModel::Row {
    TaskItem task;
    bool isCurrent;

    friend bool operator==(const Row&, const Row&) = default;
};

TaskListModel::TaskListModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent), _model(model), _rows(present()) {
    _subscriptions.push_back(model.tasksChanged.subscribe([this](TaskChange change) { follow(change); }));
    _subscriptions.push_back(model.currentTaskIDChanged.subscribe([this] { follow(TaskChange::plain); }));
}

TaskListModel::~TaskListModel() = default;

int TaskListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QVariant TaskListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    return value(*_rows[static_cast<std::size_t>(index.row())], role);
}

QVariant TaskListModel::value(const Row& row, int role) {
    switch (role) {
    case TaskIDRole:
        return QString::fromStdString(row.task.id.text());
    case TitleRole:
        return QString::fromStdString(row.task.title);
    case IsDoneRole:
        return row.task.isDone;
    case IsCurrentRole:
        return row.isCurrent;
    case EstimatedPomodorosRole:
        return static_cast<qlonglong>(row.task.estimatedPomodoros);
    case CompletedPomodorosRole:
        return static_cast<qlonglong>(row.task.completedPomodoros);
    default:
        return {};
    }
}

QHash<int, QByteArray> TaskListModel::roleNames() const {
    return {{TaskIDRole, "taskID"},
            {TitleRole, "title"},
            {IsDoneRole, "isDone"},
            {IsCurrentRole, "isCurrent"},
            {EstimatedPomodorosRole, "estimatedPomodoros"},
            {CompletedPomodorosRole, "completedPomodoros"}};
}

TaskListModel::Rows TaskListModel::present() const {
    const TaskItem* const current = _model.currentTask();
    Rows rows;
    rows.reserve(_model.tasks().items.size());
    for (const TaskItem& task : _model.tasks().items)
        rows.push_back(std::make_unique<Row>(Row{task, current && task == *current}));
    return rows;
}

/// A listener of the rows may give the model a command. The rows then come to the end of their steps first,
/// since views count on each step being whole.
void TaskListModel::follow(TaskChange change) {
    // Of several changes that are shown together one that is animated decides.
    if (_next != TaskChange::animated)
        _next = change;
    if (std::exchange(_isFollowing, true))
        return;
    while (const auto next = std::exchange(_next, std::nullopt))
        become(present(), *next);
    _isFollowing = false;
}

void TaskListModel::become(Rows rows, TaskChange change) {
    const ListChanges::Steps steps = ListChanges::between(ids(_rows), ids(rows));
    if (steps != ListChanges::Steps{})
        setAnimated(change == TaskChange::animated);
    takeSteps(steps, rows);
    takeFields(std::move(rows));
}

/// The same tasks in the same order.
void TaskListModel::takeSteps(const ListChanges::Steps& steps, const Rows& rows) {
    for (const auto [first, count] : steps.removals) {
        beginRemoveRows({}, static_cast<int>(first), static_cast<int>(first + count - 1));
        _rows.erase(at(_rows, first), at(_rows, first + count));
        endRemoveRows();
    }
    for (const auto [first, count, destination] : steps.moves) {
        // Qt names the row before which the moved ones are put, counted while they still stand in their old
        // place.
        const std::size_t before = destination > first ? destination + count : destination;
        [[maybe_unused]] const bool isMove = beginMoveRows(
            {}, static_cast<int>(first), static_cast<int>(first + count - 1), {}, static_cast<int>(before));
        assert(isMove);
        if (destination > first)
            std::rotate(at(_rows, first), at(_rows, first + count), at(_rows, before));
        else
            std::rotate(at(_rows, before), at(_rows, first), at(_rows, first + count));
        endMoveRows();
    }
    for (const auto [first, count] : steps.insertions) {
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(first + count - 1));
        Rows inserted;
        std::transform(at(rows, first), at(rows, first + count), std::back_inserter(inserted),
                       [](const auto& row) { return std::make_unique<Row>(*row); });
        _rows.insert(at(_rows, first), std::move_iterator(inserted.begin()),
                     std::move_iterator(inserted.end()));
        endInsertRows();
    }
}

/// The same fields, where the tasks are the same already.
void TaskListModel::takeFields(Rows rows) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
        if (*rows[row] == *_rows[row])
            continue;
        const auto old = std::exchange(_rows[row], std::move(rows[row]));
        QList<int> changed;
        std::ranges::copy_if(roles, std::back_inserter(changed),
                             [&](int role) { return value(*old, role) != value(*_rows[row], role); });
        if (!changed.isEmpty())
            Q_EMIT dataChanged(index(static_cast<int>(row)), index(static_cast<int>(row)), changed);
    }
}

void TaskListModel::setAnimated(bool animated) {
    if (std::exchange(_isAnimated, animated) != animated)
        Q_EMIT isAnimatedChanged();
}

} // namespace selvane
