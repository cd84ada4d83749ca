#pragma once

#include "Selvane/App/TaskChange.h"
#include "SelvaneCore/Subscription.h"
#include "SelvaneCore/UUID.h"

#include <QAbstractListModel>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace selvane {

class AppModel;
namespace ListChanges {
struct Steps;
}

/// The model's tasks as the rows of a list view, one row a task in the list's order, with the words around
/// them and the commands that rows give.
///
/// Follows the model by comparing: a task that goes is a removed row, one that comes an inserted row, one
/// that changes its place a moved row, and a changed field is told with its role alone. Never resets, so that
/// a view keeps its place, its editor and its animations. Tasks with the same id are rows of their own;
/// commands mean the first of them. A command with an unknown id does nothing. Main thread.
class TaskListModel final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one list of its tasks.")

    /// Whether the last rows that came, went or moved did so in a change to be shown with a spring. Set
    /// before the rows change.
    Q_PROPERTY(bool isAnimated READ isAnimated NOTIFY isAnimatedChanged FINAL)

    Q_PROPERTY(QString heading READ heading CONSTANT FINAL)
    /// The list's name for a screen reader.
    Q_PROPERTY(QString name READ name CONSTANT FINAL)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY countChanged FINAL)
    Q_PROPERTY(QString emptyText READ emptyText CONSTANT FINAL)
    /// Done tasks over all; empty in an empty list.
    Q_PROPERTY(QString count READ count NOTIFY countChanged FINAL)
    /// Whether a task is done.
    Q_PROPERTY(bool canClear READ canClear NOTIFY countChanged FINAL)
    Q_PROPERTY(QString clearLabel READ clearLabel CONSTANT FINAL)
    Q_PROPERTY(QString addPlaceholder READ addPlaceholder CONSTANT FINAL)
    Q_PROPERTY(QString titlePlaceholder READ titlePlaceholder CONSTANT FINAL)
    Q_PROPERTY(QString currentTooltip READ currentTooltip CONSTANT FINAL)
    Q_PROPERTY(QString estimateLabel READ estimateLabel CONSTANT FINAL)
    /// The estimates to choose from, from 1 session up.
    Q_PROPERTY(QStringList estimates READ estimates CONSTANT FINAL)
    Q_PROPERTY(QString noEstimateLabel READ noEstimateLabel CONSTANT FINAL)
    Q_PROPERTY(QString renameLabel READ renameLabel CONSTANT FINAL)
    Q_PROPERTY(QString deleteLabel READ deleteLabel CONSTANT FINAL)

    /// What is being typed as the new title of the row with `IsEditingRole`.
    Q_PROPERTY(QString draft READ draft WRITE setDraft NOTIFY draftChanged FINAL)

public:
    enum Role {
        /// The task's id as text.
        TaskIDRole = Qt::UserRole,
        TitleRole,
        IsDoneRole,
        /// Whether sessions are credited to it.
        IsCurrentRole,
        /// From 0 up in lists that aren't damaged; numbers beyond an int are its end.
        EstimatedPomodorosRole,
        CompletedPomodorosRole,
        /// "2 of 4 sessions" with the numbers as stored; empty without an estimate.
        SessionsRole,
        /// What a screen reader says of the task beside its title.
        DescriptionRole,
        /// Whether its title is being edited; at most one row's is.
        IsEditingRole,
        /// Whether it is held above the others, to be put elsewhere; at most one row is.
        IsLiftedRole,
    };
    Q_ENUM(Role)

    /// `model` outlives the list.
    explicit TaskListModel(AppModel& model, QObject* parent = nullptr);
    ~TaskListModel() override;

    [[nodiscard]] bool isAnimated() const { return _isAnimated; }
    [[nodiscard]] static QString heading();
    [[nodiscard]] static QString name();
    [[nodiscard]] bool isEmpty() const { return _rows.empty(); }
    [[nodiscard]] static QString emptyText();
    [[nodiscard]] const QString& count() const { return _count; }
    [[nodiscard]] bool canClear() const { return _doneCount > 0; }
    [[nodiscard]] static QString clearLabel();
    [[nodiscard]] static QString addPlaceholder();
    [[nodiscard]] static QString titlePlaceholder();
    [[nodiscard]] static QString currentTooltip();
    [[nodiscard]] static QString estimateLabel();
    [[nodiscard]] static QStringList estimates();
    [[nodiscard]] static QString noEstimateLabel();
    [[nodiscard]] static QString renameLabel();
    [[nodiscard]] static QString deleteLabel();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The id of the task in that row; empty outside the list.
    [[nodiscard]] Q_INVOKABLE QString taskID(int row) const;
    [[nodiscard]] Q_INVOKABLE bool isDone(int row) const;
    /// What a press of a circle does.
    [[nodiscard]] Q_INVOKABLE static QString checkLabel(bool isDone);
    /// What the first entry of a row's menu does.
    [[nodiscard]] Q_INVOKABLE QString focusLabel(const QString& taskID) const;

    // Commands of the list

    /// Adds a task, unless nothing is typed.
    Q_INVOKABLE void add(const QString& title);
    Q_INVOKABLE void clearDone();

    // Commands of a row

    Q_INVOKABLE void toggle(const QString& taskID);
    /// Makes a task the current one, or no task if it was.
    Q_INVOKABLE void toggleFocus(const QString& taskID);
    /// 0 takes the estimate away.
    Q_INVOKABLE void setEstimate(const QString& taskID, int sessions);
    Q_INVOKABLE void remove(const QString& taskID);
    /// Moves a row that many rows down, up if negative, as far as the list reaches.
    Q_INVOKABLE void shift(const QString& taskID, int rows);

    // Renaming

    [[nodiscard]] const QString& draft() const { return _draft; }
    void setDraft(const QString& draft);
    [[nodiscard]] bool isEditing() const { return _edited.has_value(); }
    /// The draft takes the title. What another row's editor holds is taken over first.
    Q_INVOKABLE void beginRename(const QString& taskID);
    /// Takes the draft over as the title. Does nothing while no title is edited, so that the end of an editor
    /// may be told more than once.
    Q_INVOKABLE void commitRename();
    Q_INVOKABLE void cancelRename();

    // Moving a row by hand. Until it is put down, the other rows make room for it wherever it is held; the
    // model hears only where it ends.

    /// Takes a row up. False if there is nothing to be had from it.
    bool lift(int row);
    /// The row that is held or on its way to its place; -1 if none is.
    [[nodiscard]] int liftedRow() const;
    void carryTo(int row);
    /// Lets go of the row where it is held. The list may put it elsewhere, since done tasks stand last.
    void drop();
    /// Lets go of the row where it was taken up.
    void putBack();
    /// The row has come to its place.
    void settle();

Q_SIGNALS:
    void isAnimatedChanged();
    void countChanged();
    void draftChanged();
    /// A task that the user added stands in that row now.
    void added(int row);

private:
    struct Row;
    /// By pointer, since each step shifts the rows behind it.
    using Rows = std::vector<std::unique_ptr<Row>>;

    struct Lift {
        UUID id;
        /// Where it is held, as long as it is.
        std::optional<std::size_t> place;
    };

    [[nodiscard]] static QVariant value(const Row& row, int role);
    [[nodiscard]] Rows present() const;
    [[nodiscard]] std::optional<std::size_t> rowOf(const UUID& id) const;
    void follow(TaskChange change);
    void become(Rows rows, TaskChange change);
    void takeSteps(const ListChanges::Steps& steps, const Rows& rows);
    void takeFields(Rows rows);
    void forgetWhatIsGone();
    void takeCount();
    void setAnimated(bool animated);

    AppModel& _model;
    std::optional<UUID> _edited;
    QString _draft;
    std::optional<Lift> _lift;
    /// The task that a key moves now.
    std::optional<UUID> _shifting;
    /// The task whose new place is told, until the next change.
    std::optional<UUID> _shifted;
    Rows _rows;
    std::size_t _doneCount = 0;
    QString _count;
    bool _isAnimated = false;
    bool _isFollowing = false;
    /// What a listener of the rows did to the model while they changed.
    std::optional<TaskChange> _next;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
