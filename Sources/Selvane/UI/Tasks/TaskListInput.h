#pragma once

#include <QBasicTimer>
#include <QPointF>
#include <QPointer>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace selvane {

class TaskListModel;

/// The ground under the list of tasks: lets its rows be dragged with the mouse, and turns keys into commands.
///
/// The list is its child and as large as it. Rows are equally high and stand one below another from `originY`
/// of the list's content on. A drag begins as the mouse moves with its button down on a row; the row then
/// follows the pointer, the list scrolls while it is near an edge. Escape puts the row back, and so does the
/// end of being seen. While a row is dragged the keyboard is here, afterwards where it was; if that was a
/// row, with the current one. Main thread.
class TaskListInput : public QQuickItem {
    Q_OBJECT
    Q_MOC_INCLUDE("Selvane/UI/Tasks/TaskListModel.h")
    QML_ELEMENT

    Q_PROPERTY(selvane::TaskListModel* tasks READ tasks WRITE setTasks NOTIFY tasksChanged FINAL)
    /// What holds the rows; presses elsewhere are not for them.
    Q_PROPERTY(QQuickItem* content READ content WRITE setContent NOTIFY contentChanged FINAL)
    Q_PROPERTY(double rowHeight READ rowHeight WRITE setRowHeight NOTIFY rowHeightChanged FINAL)
    // As the list has them.
    Q_PROPERTY(double originY READ originY WRITE setOriginY NOTIFY originYChanged FINAL)
    Q_PROPERTY(double contentY READ contentY WRITE setContentY NOTIFY contentYChanged FINAL)
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged FINAL)

    /// The top of the lifted row in the list's content.
    Q_PROPERTY(double liftedY READ liftedY WRITE setLiftedY NOTIFY liftedYChanged FINAL)
    /// Where it belongs.
    Q_PROPERTY(double restY READ restY NOTIFY restYChanged FINAL)
    /// Whether the keyboard was used last, so that a row shows that it has it.
    Q_PROPERTY(bool isByKeyboard READ isByKeyboard NOTIFY isByKeyboardChanged FINAL)

    /// The menu that the user wants, for which task and where.
    Q_PROPERTY(Menu menu READ menu NOTIFY menuChanged FINAL)
    Q_PROPERTY(QString menuTask READ menuTask NOTIFY menuChanged FINAL)
    Q_PROPERTY(double menuX READ menuX NOTIFY menuChanged FINAL)
    Q_PROPERTY(double menuY READ menuY NOTIFY menuChanged FINAL)

public:
    enum Menu { NoMenu, OpenTaskMenu, DoneTaskMenu };
    Q_ENUM(Menu)

    explicit TaskListInput(QQuickItem* parent = nullptr);
    ~TaskListInput() override;

    [[nodiscard]] TaskListModel* tasks() const { return _tasks; }
    void setTasks(TaskListModel* tasks);
    [[nodiscard]] QQuickItem* content() const { return _content; }
    void setContent(QQuickItem* content);
    [[nodiscard]] double rowHeight() const { return _rowHeight; }
    void setRowHeight(double height);
    [[nodiscard]] double originY() const { return _originY; }
    void setOriginY(double y);
    [[nodiscard]] double contentY() const { return _contentY; }
    void setContentY(double y);
    [[nodiscard]] int currentRow() const { return _currentRow; }
    void setCurrentRow(int row);

    [[nodiscard]] double liftedY() const { return _liftedY; }
    void setLiftedY(double y);
    [[nodiscard]] double restY() const;
    [[nodiscard]] bool isByKeyboard() const { return _isByKeyboard; }

    /// The keyboard has come to that row.
    Q_INVOKABLE void enterRow(int row);

    /// The row that was let go has come to its place.
    Q_INVOKABLE void settle();

    [[nodiscard]] Menu menu() const { return _menu; }
    [[nodiscard]] const QString& menuTask() const { return _menuTask; }
    [[nodiscard]] double menuX() const { return _menuPlace.x(); }
    [[nodiscard]] double menuY() const { return _menuPlace.y(); }
    /// Asks for the menu of a row, below it.
    Q_INVOKABLE void requestMenu(int row);
    Q_INVOKABLE void closeMenu();

Q_SIGNALS:
    void tasksChanged();
    void contentChanged();
    void rowHeightChanged();
    void originYChanged();
    void contentYChanged();
    void currentRowChanged();
    void liftedYChanged();
    void restYChanged();
    void isByKeyboardChanged();

    /// The dragged row is to go from `liftedY` to `restY`, and then `settle` to be called.
    void letGo();
    /// No row is lifted any more.
    void settled();
    /// A task that the user added stands in that row now.
    void rowAdded(int row);
    /// The keyboard would be a row's, but there is none any more.
    void emptied();
    /// That row is to be the current one.
    void rowRequested(int row);
    /// The list is to scroll so that this is its `contentY`.
    void scrollRequested(double contentY);
    void menuChanged();

protected:
    bool childMouseEventFilter(QQuickItem* item, QEvent* event) override;
    bool event(QEvent* event) override;
    /// Of the window.
    bool eventFilter(QObject* watched, QEvent* event) override;
    void itemChange(ItemChange change, const ItemChangeData& value) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void timerEvent(QTimerEvent* event) override;

private:
    enum class State { still, pressed, dragging, settling };

    [[nodiscard]] int rowAt(double y) const;
    [[nodiscard]] int rowCount() const;
    [[nodiscard]] double rowY(int row) const;
    [[nodiscard]] bool belongsToRows(const QQuickItem* item) const;
    [[nodiscard]] bool isPastThreshold(const QPointF& place) const;
    void press(const QPointF& place);
    void begin();
    void carry(const QPointF& place);
    void release();
    void cancel();
    void end();
    /// Puts the row back at once.
    void abandon();
    void followTheModel();
    void setByKeyboard(bool byKeyboard);
    void watch(QQuickWindow* window);
    /// Whether a row has the keyboard, or will have it after the drag or the menu.
    [[nodiscard]] bool rowsHaveKeyboard() const;
    void rememberKeyboard();
    void giveKeyboardBack();
    /// How fast the list scrolls for a pointer at that height, in pixels a step; negative is up.
    [[nodiscard]] double scrollStep(double y) const;
    [[nodiscard]] bool perform(const QKeyEvent& event);
    void goTo(int row);
    void requestMenuAt(int row, QPointF place);

    QPointer<TaskListModel> _tasks;
    QPointer<QQuickItem> _content;
    QPointer<QQuickWindow> _watched;
    double _rowHeight = 1;
    double _originY = 0;
    double _contentY = 0;
    int _currentRow = -1;

    State _state = State::still;
    QPointF _pressedAt;
    QPointF _pointer;
    /// From the top of the lifted row to the pointer.
    double _grip = 0;
    double _liftedY = 0;
    bool _isByKeyboard = false;
    /// Whether the rows had the keyboard before those went that go now.
    bool _hadKeyboard = false;
    Menu _menu = NoMenu;
    QString _menuTask;
    QPointF _menuPlace;
    QBasicTimer _scrolling;
    /// What had the keyboard before the drag or the menu; for a row and all in it, the list.
    QPointer<QQuickItem> _keyboardBefore;
};

} // namespace selvane
