#include "Selvane/UI/Tasks/TaskListModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/QtText.h"
#include "Selvane/UI/Tasks/ListChanges.h"
#include "Selvane/UI/Tasks/TaskText.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <iterator>
#include <limits>
#include <utility>

namespace selvane {

namespace {

constexpr std::array roles{TaskListModel::TaskIDRole,
                           TaskListModel::TitleRole,
                           TaskListModel::IsDoneRole,
                           TaskListModel::IsCurrentRole,
                           TaskListModel::EstimatedPomodorosRole,
                           TaskListModel::CompletedPomodorosRole,
                           TaskListModel::SessionsRole,
                           TaskListModel::DescriptionRole,
                           TaskListModel::IsEditingRole,
                           TaskListModel::IsLiftedRole};

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

std::optional<UUID> parse(const QString& taskID) {
    return UUID::parse(taskID.toStdString());
}

int saturated(std::int64_t number) {
    return static_cast<int>(
        std::clamp<std::int64_t>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

} // namespace

struct TaskListModel::Row {
    TaskItem task;
    bool isCurrent = false;
    bool isEditing = false;
    bool isLifted = false;
    /// Where a key moved it to, for those who don't see it.
    QString place = {};

    friend bool operator==(const Row&, const Row&) = default;
};

TaskListModel::TaskListModel(AppModel& model, QObject* parent)
    : QAbstractListModel(parent), _model(model), _rows(present()) {
    takeCount();
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
        return qtText(row.task.id.text());
    case TitleRole:
        return qtText(row.task.title);
    case IsDoneRole:
        return row.task.isDone;
    case IsCurrentRole:
        return row.isCurrent;
    case EstimatedPomodorosRole:
        return saturated(row.task.estimatedPomodoros);
    case CompletedPomodorosRole:
        return saturated(row.task.completedPomodoros);
    case SessionsRole:
        return TaskText::progress(row.task.completedPomodoros, row.task.estimatedPomodoros);
    case DescriptionRole: {
        QStringList parts;
        if (row.task.isDone)
            parts << QStringLiteral("done");
        if (row.isCurrent)
            parts << QStringLiteral("current focus task");
        parts << TaskText::progress(row.task.completedPomodoros, row.task.estimatedPomodoros) << row.place;
        parts.removeAll(QString());
        return parts.join(QStringLiteral(", "));
    }
    case IsEditingRole:
        return row.isEditing;
    case IsLiftedRole:
        return row.isLifted;
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
            {CompletedPomodorosRole, "completedPomodoros"},
            {SessionsRole, "sessions"},
            {DescriptionRole, "description"},
            {IsEditingRole, "isEditing"},
            {IsLiftedRole, "isLifted"}};
}

// Words

QString TaskListModel::heading() {
    return QStringLiteral("TODAY");
}

QString TaskListModel::name() {
    return QStringLiteral("Tasks");
}

QString TaskListModel::emptyText() {
    return QStringLiteral("What's on today?");
}

QString TaskListModel::clearLabel() {
    return QStringLiteral("Clear done");
}

QString TaskListModel::addPlaceholder() {
    return QStringLiteral("Add a task…");
}

QString TaskListModel::titlePlaceholder() {
    return QStringLiteral("Task");
}

QString TaskListModel::currentTooltip() {
    return QStringLiteral("Current focus task");
}

QString TaskListModel::estimateLabel() {
    return QStringLiteral("Estimate");
}

QStringList TaskListModel::estimates() {
    QStringList labels;
    for (std::int64_t sessions = 1; sessions <= TaskText::largestChoice; ++sessions)
        labels << TaskText::estimateLabel(sessions);
    return labels;
}

QString TaskListModel::noEstimateLabel() {
    return QStringLiteral("None");
}

QString TaskListModel::renameLabel() {
    return QStringLiteral("Rename");
}

QString TaskListModel::deleteLabel() {
    return QStringLiteral("Delete");
}

QString TaskListModel::checkLabel(bool isDone) {
    return TaskText::checkLabel(isDone);
}

QString TaskListModel::focusLabel(const QString& taskID) const {
    const auto id = parse(taskID);
    return TaskText::focusLabel(id && _model.currentTask() && _model.currentTask()->id == *id);
}

QString TaskListModel::taskID(int row) const {
    return data(index(row), TaskIDRole).toString();
}

bool TaskListModel::isDone(int row) const {
    return index(row).data(IsDoneRole).toBool();
}

// Commands

void TaskListModel::add(const QString& title) {
    if (title.isEmpty())
        return;
    const std::size_t before = _model.tasks().items.size();
    _model.addTask(title.toStdString());
    if (_model.tasks().items.size() == before)
        return;
    // It is the last of the open ones.
    const auto isOpen = [](const auto& row) { return !row->task.isDone; };
    const auto last = std::find_if(_rows.rbegin(), _rows.rend(), isOpen);
    if (last != _rows.rend())
        Q_EMIT added(static_cast<int>(_rows.rend() - last) - 1);
}

void TaskListModel::clearDone() {
    _model.clearCompletedTasks();
}

void TaskListModel::toggle(const QString& taskID) {
    if (const auto id = parse(taskID))
        _model.toggleTask(*id);
}

void TaskListModel::toggleFocus(const QString& taskID) {
    const auto id = parse(taskID);
    if (!id || !_model.tasks().find(*id))
        return;
    const bool isCurrent = _model.currentTask() && _model.currentTask()->id == *id;
    _model.setCurrentTaskID(isCurrent ? std::nullopt : id);
}

void TaskListModel::setEstimate(const QString& taskID, int sessions) {
    if (const auto id = parse(taskID))
        _model.setEstimate(*id, sessions);
}

void TaskListModel::remove(const QString& taskID) {
    if (const auto id = parse(taskID))
        _model.deleteTask(*id);
}

void TaskListModel::shift(const QString& taskID, int rows) {
    const auto id = parse(taskID);
    const auto found = id ? rowOf(*id) : std::nullopt;
    if (!found || _lift)
        return;
    const auto row = static_cast<std::ptrdiff_t>(*found);
    const auto to = std::clamp<std::ptrdiff_t>(row + rows, 0, static_cast<std::ptrdiff_t>(_rows.size()) - 1);
    if (to == row)
        return;
    // The user sees the rows change places.
    _next = TaskChange::animated;
    _shifting = id;
    _model.moveTasks({row}, to > row ? to + 1 : to);
    _shifting.reset();
}

// Renaming

void TaskListModel::setDraft(const QString& draft) {
    if (std::exchange(_draft, draft) != draft)
        Q_EMIT draftChanged();
}

void TaskListModel::beginRename(const QString& taskID) {
    const auto id = parse(taskID);
    const TaskItem* const task = id ? _model.tasks().find(*id) : nullptr;
    if (!task || _edited == id)
        return;
    const QString title = qtText(task->title);
    commitRename();
    setDraft(title);
    _edited = id;
    follow(TaskChange::plain);
}

void TaskListModel::commitRename() {
    if (!_edited)
        return;
    const UUID id = *_edited;
    cancelRename();
    _model.renameTask(id, _draft.toStdString());
}

void TaskListModel::cancelRename() {
    if (std::exchange(_edited, std::nullopt))
        follow(TaskChange::plain);
}

// Moving by hand

bool TaskListModel::lift(int row) {
    if (_rows.size() < 2 || row < 0 || row >= rowCount())
        return false;
    settle();
    const UUID id = _rows[static_cast<std::size_t>(row)]->task.id;
    _lift = Lift{id, rowOf(id)};
    follow(TaskChange::plain);
    return true;
}

int TaskListModel::liftedRow() const {
    const auto row = _lift ? rowOf(_lift->id) : std::nullopt;
    return row ? static_cast<int>(*row) : -1;
}

void TaskListModel::carryTo(int row) {
    if (!_lift || !_lift->place)
        return;
    const auto place = static_cast<std::size_t>(std::clamp(row, 0, std::max(rowCount() - 1, 0)));
    if (std::exchange(_lift->place, place) != place)
        follow(TaskChange::animated);
}

void TaskListModel::drop() {
    if (!_lift || !_lift->place)
        return;
    const auto to = static_cast<std::ptrdiff_t>(*std::exchange(_lift->place, std::nullopt));
    const auto& items = _model.tasks().items;
    const auto from = std::ranges::find(items, _lift->id, &TaskItem::id) - items.begin();
    if (to == from)
        return follow(TaskChange::animated);
    _next = TaskChange::animated;
    _model.moveTasks({from}, to > from ? to + 1 : to);
}

void TaskListModel::putBack() {
    if (_lift && std::exchange(_lift->place, std::nullopt))
        follow(TaskChange::animated);
}

void TaskListModel::settle() {
    putBack();
    if (std::exchange(_lift, std::nullopt))
        follow(TaskChange::plain);
}

// Following

std::optional<std::size_t> TaskListModel::rowOf(const UUID& id) const {
    const auto found = std::ranges::find_if(_rows, [&](const auto& row) { return row->task.id == id; });
    if (found == _rows.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - _rows.begin());
}

TaskListModel::Rows TaskListModel::present() const {
    const TaskItem* const current = _model.currentTask();
    Rows rows;
    rows.reserve(_model.tasks().items.size());
    for (const TaskItem& task : _model.tasks().items)
        rows.push_back(std::make_unique<Row>(Row{task, current && task == *current}));

    const auto find = [&](const std::optional<UUID>& id) {
        return std::ranges::find_if(rows, [&](const auto& row) { return id && row->task.id == *id; });
    };
    if (const auto edited = find(_edited); edited != rows.end())
        (*edited)->isEditing = true;
    if (const auto shifted = find(_shifted); shifted != rows.end())
        (*shifted)->place =
            TaskText::moved(static_cast<std::size_t>(shifted - rows.begin()) + 1, rows.size());
    if (const auto lifted = find(_lift ? std::optional(_lift->id) : std::nullopt); lifted != rows.end()) {
        (*lifted)->isLifted = true;
        if (_lift->place) {
            auto row = std::move(*lifted);
            rows.erase(lifted);
            rows.insert(at(rows, std::min(*_lift->place, rows.size())), std::move(row));
        }
    }
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
    while (const auto next = std::exchange(_next, std::nullopt)) {
        _shifted = _shifting;
        forgetWhatIsGone();
        become(present(), *next);
    }
    _isFollowing = false;
}

void TaskListModel::become(Rows rows, TaskChange change) {
    const ListChanges::Steps steps = ListChanges::between(ids(_rows), ids(rows));
    if (steps != ListChanges::Steps{})
        setAnimated(change == TaskChange::animated);
    takeSteps(steps, rows);
    takeFields(std::move(rows));
    takeCount();
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

/// An editor ends with its task, and so does a hold.
void TaskListModel::forgetWhatIsGone() {
    const auto isGone = [&](const std::optional<UUID>& id) { return id && !_model.tasks().find(*id); };
    if (isGone(_edited))
        _edited.reset();
    if (isGone(_shifted))
        _shifted.reset();
    if (_lift && isGone(_lift->id))
        _lift.reset();
}

void TaskListModel::takeCount() {
    const QString before = _count;
    _doneCount = static_cast<std::size_t>(
        std::ranges::count_if(_rows, [](const auto& row) { return row->task.isDone; }));
    _count = isEmpty() ? QString() : TaskText::count(_doneCount, _rows.size());
    if (_count != before)
        Q_EMIT countChanged();
}

void TaskListModel::setAnimated(bool animated) {
    if (std::exchange(_isAnimated, animated) != animated)
        Q_EMIT isAnimatedChanged();
}

} // namespace selvane
