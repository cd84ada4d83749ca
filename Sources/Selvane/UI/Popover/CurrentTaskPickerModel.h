#pragma once

#include "Selvane/UI/Popover/MenuChoices.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

class AppModel;

/// The menu that shows and chooses the task that sessions are credited to. Main thread.
class CurrentTaskPickerModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    /// The current task's title, or the invitation to choose one.
    Q_PROPERTY(QString title READ title NOTIFY changed FINAL)
    Q_PROPERTY(bool hasTask READ hasTask NOTIFY changed FINAL)
    Q_PROPERTY(QString tooltip READ tooltip CONSTANT FINAL)
    /// The open tasks, in the list's order.
    Q_PROPERTY(selvane::MenuChoices* tasks READ tasks CONSTANT FINAL)
    /// What stands in the place of the tasks if there are none: one line, or none.
    Q_PROPERTY(QStringList hints READ hints NOTIFY changed FINAL)
    /// The entry that makes no task current: one line, or none.
    Q_PROPERTY(QStringList noTaskLabels READ noTaskLabels NOTIFY changed FINAL)

public:
    /// `model` outlives the menu.
    explicit CurrentTaskPickerModel(AppModel& model, QObject* parent = nullptr);

    [[nodiscard]] QString title() const;
    [[nodiscard]] bool hasTask() const { return _hasTask; }
    [[nodiscard]] QString tooltip() const;
    [[nodiscard]] MenuChoices* tasks() { return &_tasks; }
    [[nodiscard]] QStringList hints() const;
    [[nodiscard]] QStringList noTaskLabels() const;

    /// Makes the task of that row of `tasks` the current one.
    Q_INVOKABLE void choose(int row);
    Q_INVOKABLE void chooseNone();

Q_SIGNALS:
    void changed();

private:
    void refresh();

    AppModel& _model;
    MenuChoices _tasks;
    QString _title;
    bool _hasTask = false;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
