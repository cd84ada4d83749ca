#include "Selvane/UI/Popover/CurrentTaskPickerModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/QtText.h"

#include <utility>

namespace selvane {

CurrentTaskPickerModel::CurrentTaskPickerModel(AppModel& model, QObject* parent)
    : QObject(parent), _model(model) {
    _subscriptions.push_back(model.tasksChanged.subscribe([this](TaskChange) { refresh(); }));
    _subscriptions.push_back(model.currentTaskIDChanged.subscribe([this] { refresh(); }));
    refresh();
}

void CurrentTaskPickerModel::refresh() {
    const TaskItem* const current = _model.currentTask();
    std::vector<MenuChoices::Choice> choices;
    for (const TaskItem& task : _model.tasks().open())
        choices.push_back({qtText(task.title), current && task.id == current->id});
    const bool hadTasks = !_tasks.choices().empty();
    _tasks.setChoices(std::move(choices));
    const bool hasTask = current != nullptr;
    const QString title = current ? qtText(current->title) : QStringLiteral("Choose a task…");
    const bool hadTask = std::exchange(_hasTask, hasTask);
    if (std::exchange(_title, title) != title || hadTask != hasTask || hadTasks == _tasks.choices().empty())
        Q_EMIT changed();
}

QString CurrentTaskPickerModel::title() const {
    return _title;
}

QString CurrentTaskPickerModel::tooltip() const {
    return QStringLiteral("The task this focus session counts toward");
}

QStringList CurrentTaskPickerModel::hints() const {
    return _tasks.choices().empty() ? QStringList{QStringLiteral("Add tasks below to focus on one")}
                                    : QStringList();
}

QStringList CurrentTaskPickerModel::noTaskLabels() const {
    return _hasTask ? QStringList{QStringLiteral("No task")} : QStringList();
}

void CurrentTaskPickerModel::choose(int row) {
    const std::vector<TaskItem> open = _model.tasks().open();
    if (row >= 0 && static_cast<std::size_t>(row) < open.size())
        _model.setCurrentTaskID(open[static_cast<std::size_t>(row)].id);
}

void CurrentTaskPickerModel::chooseNone() {
    _model.setCurrentTaskID(std::nullopt);
}

} // namespace selvane
