#pragma once

#include "Selvane/App/TaskChange.h"
#include "SelvaneCore/Subscription.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <memory>
#include <optional>
#include <vector>

namespace selvane {

class AppModel;
namespace ListChanges {
struct Steps;
}

/// The model's tasks as the rows of a list view, one row a task in the list's order.
///
/// Follows the model by comparing: a task that goes is a removed row, one that comes an inserted row, one
/// that changes its place a moved row, and a changed field is told with its role alone. Never resets, so that
/// a view keeps its place, its editor and its animations. Tasks with the same id are rows of their own. Main
/// thread.
class TaskListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one list of its tasks.")

    /// Whether the last rows that came, went or moved did so in a change to be shown with a spring. Set
    /// before the rows change.
    Q_PROPERTY(bool isAnimated READ isAnimated NOTIFY isAnimatedChanged FINAL)

public:
    enum Role {
        /// The task's id as text.
        TaskIDRole = Qt::UserRole,
        TitleRole,
        IsDoneRole,
        /// Whether sessions are credited to it.
        IsCurrentRole,
        /// As stored, from 0 up in lists that aren't damaged.
        EstimatedPomodorosRole,
        CompletedPomodorosRole,
    };
    Q_ENUM(Role)

    /// `model` outlives the list.
    explicit TaskListModel(AppModel& model, QObject* parent = nullptr);
    ~TaskListModel() override;

    [[nodiscard]] bool isAnimated() const { return _isAnimated; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void isAnimatedChanged();

private:
    struct Row;
    /// By pointer, since each step shifts the rows behind it.
    using Rows = std::vector<std::unique_ptr<Row>>;

    [[nodiscard]] static QVariant value(const Row& row, int role);
    [[nodiscard]] Rows present() const;
    void follow(TaskChange change);
    void become(Rows rows, TaskChange change);
    void takeSteps(const ListChanges::Steps& steps, const Rows& rows);
    void takeFields(Rows rows);
    void setAnimated(bool animated);

    AppModel& _model;
    Rows _rows;
    bool _isAnimated = false;
    bool _isFollowing = false;
    /// What a listener of the rows did to the model while they changed.
    std::optional<TaskChange> _next;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
