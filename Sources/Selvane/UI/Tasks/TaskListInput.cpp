#include "Selvane/UI/Tasks/TaskListInput.h"

#include "Selvane/UI/Tasks/TaskListModel.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPointingDevice>
#include <QQuickWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace selvane {

namespace {

/// Below what makes the list flick, so that a row is taken up before.
constexpr double dragThreshold = 6;
/// Near the edges the list scrolls while a row is dragged, faster the nearer.
constexpr double scrollZone = 26;
constexpr double fastestStep = 6;
constexpr int scrollInterval = 16;

const QMouseEvent* leftMouse(const QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease:
        break;
    default:
        return nullptr;
    }
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    // A finger that moves scrolls the list.
    const auto type = mouse.pointingDevice()->type();
    const bool isMouse =
        type == QInputDevice::DeviceType::Mouse || type == QInputDevice::DeviceType::TouchPad;
    const bool isLeft = mouse.button() == Qt::LeftButton || mouse.buttons() == Qt::LeftButton;
    return isMouse && isLeft ? &mouse : nullptr;
}

} // namespace

TaskListInput::TaskListInput(QQuickItem* parent) : QQuickItem(parent) {
    setFiltersChildMouseEvents(true);
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
}

TaskListInput::~TaskListInput() = default;

void TaskListInput::setTasks(TaskListModel* tasks) {
    if (_tasks == tasks)
        return;
    if (_tasks)
        _tasks->disconnect(this);
    _tasks = tasks;
    if (tasks) {
        connect(tasks, &TaskListModel::added, this, &TaskListInput::rowAdded);
        connect(tasks, &QAbstractItemModel::rowsAboutToBeRemoved, this,
                [this] { _hadKeyboard = rowsHaveKeyboard(); });
        connect(tasks, &QAbstractItemModel::rowsRemoved, this, [this] { followTheModel(); });
        connect(tasks, &QAbstractItemModel::rowsMoved, this, [this] { Q_EMIT restYChanged(); });
    }
    Q_EMIT tasksChanged();
}

void TaskListInput::setContent(QQuickItem* content) {
    if (_content == content)
        return;
    _content = content;
    Q_EMIT contentChanged();
}

void TaskListInput::setRowHeight(double height) {
    if (std::exchange(_rowHeight, height) != height)
        Q_EMIT rowHeightChanged();
}

void TaskListInput::setOriginY(double y) {
    if (std::exchange(_originY, y) == y)
        return;
    Q_EMIT originYChanged();
    Q_EMIT restYChanged();
}

void TaskListInput::setContentY(double y) {
    if (std::exchange(_contentY, y) == y)
        return;
    Q_EMIT contentYChanged();
    // The pointer stays, the list passes below it.
    if (_state == State::dragging)
        carry(_pointer);
}

void TaskListInput::setCurrentRow(int row) {
    if (std::exchange(_currentRow, row) != row)
        Q_EMIT currentRowChanged();
}

void TaskListInput::setLiftedY(double y) {
    if (std::exchange(_liftedY, y) != y)
        Q_EMIT liftedYChanged();
}

double TaskListInput::restY() const {
    return rowY(_tasks ? _tasks->liftedRow() : 0);
}

int TaskListInput::rowCount() const {
    return _tasks ? _tasks->rowCount() : 0;
}

int TaskListInput::rowAt(double y) const {
    const double row = std::floor((y + _contentY - _originY) / _rowHeight);
    return row >= 0 && row < rowCount() ? static_cast<int>(row) : -1;
}

double TaskListInput::rowY(int row) const {
    return _originY + row * _rowHeight;
}

bool TaskListInput::belongsToRows(const QQuickItem* item) const {
    return _content && (item == _content || item == _content->parentItem() || _content->isAncestorOf(item));
}

// Dragging

/// Children see the events too; none of them loses one before the drag has begun.
bool TaskListInput::childMouseEventFilter(QQuickItem* item, QEvent* event) {
    const QMouseEvent* const mouse = leftMouse(*event);
    if (!mouse || !_tasks)
        return false;
    const QPointF place = mapFromScene(mouse->scenePosition());
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        setByKeyboard(false);
        if (belongsToRows(item))
            press(place);
        return false;
    case QEvent::MouseMove:
        if (_state != State::pressed || !isPastThreshold(place))
            return false;
        begin();
        if (_state != State::dragging)
            return false;
        grabMouse();
        setKeepMouseGrab(true);
        carry(place);
        return true;
    case QEvent::MouseButtonRelease:
        if (_state == State::pressed)
            _state = State::still;
        return false;
    default:
        return false;
    }
}

void TaskListInput::mousePressEvent(QMouseEvent* event) {
    setByKeyboard(false);
    const int row = rowAt(event->position().y());
    if (event->button() == Qt::RightButton && row >= 0)
        requestMenuAt(row, event->position());
    else
        event->ignore();
}

void TaskListInput::mouseMoveEvent(QMouseEvent* event) {
    if (_state == State::dragging)
        carry(event->position());
}

void TaskListInput::mouseReleaseEvent(QMouseEvent* event) {
    if (_state != State::dragging || event->button() != Qt::LeftButton)
        return;
    carry(event->position());
    release();
}

void TaskListInput::mouseUngrabEvent() {
    if (_state == State::dragging)
        cancel();
}

bool TaskListInput::isPastThreshold(const QPointF& place) const {
    return QLineF(_pressedAt, place).length() >= dragThreshold;
}

void TaskListInput::press(const QPointF& place) {
    settle();
    const int row = rowAt(place.y());
    // In an editor the mouse selects text; elsewhere it ends the editor.
    if (row >= 0 && _tasks->index(row).data(TaskListModel::IsEditingRole).toBool())
        return;
    _tasks->commitRename();
    if (row < 0)
        return;
    _pressedAt = place;
    _state = State::pressed;
}

void TaskListInput::begin() {
    const int row = rowAt(_pressedAt.y());
    if (row < 0 || !_tasks->lift(row)) {
        _state = State::still;
        return;
    }
    _grip = _pressedAt.y() + _contentY - rowY(row);
    setLiftedY(rowY(row));
    rememberKeyboard();
    forceActiveFocus(Qt::MouseFocusReason);
    _state = State::dragging;
}

void TaskListInput::carry(const QPointF& place) {
    _pointer = place;
    setLiftedY(std::clamp(place.y() + _contentY - _grip, rowY(0), rowY(std::max(rowCount() - 1, 0))));
    _tasks->carryTo(static_cast<int>(std::lround((_liftedY - _originY) / _rowHeight)));
    if (scrollStep(place.y()) == 0)
        _scrolling.stop();
    else if (!_scrolling.isActive())
        _scrolling.start(scrollInterval, Qt::PreciseTimer, this);
}

double TaskListInput::scrollStep(double y) const {
    const double above = scrollZone - y;
    const double below = y - (height() - scrollZone);
    const double lowest = _originY + std::max(rowCount() * _rowHeight - height(), 0.0);
    const auto step = [](double depth) { return std::min(depth / scrollZone, 1.0) * fastestStep; };
    if (above > 0 && _contentY > _originY)
        return std::max(-step(above), _originY - _contentY);
    if (below > 0 && _contentY < lowest)
        return std::min(step(below), lowest - _contentY);
    return 0;
}

void TaskListInput::timerEvent(QTimerEvent* event) {
    if (event->timerId() != _scrolling.timerId())
        return QQuickItem::timerEvent(event);
    const double step = scrollStep(_pointer.y());
    if (step == 0)
        _scrolling.stop();
    else
        Q_EMIT scrollRequested(_contentY + step);
}

void TaskListInput::release() {
    _tasks->drop();
    end();
}

void TaskListInput::cancel() {
    _tasks->putBack();
    end();
}

/// The row goes to its place, the keyboard to where it was.
void TaskListInput::end() {
    _scrolling.stop();
    _state = State::settling;
    setKeepMouseGrab(false);
    ungrabMouse();
    setFocus(false);
    giveKeyboardBack();
    Q_EMIT letGo();
}

void TaskListInput::abandon() {
    if (_state == State::pressed)
        _state = State::still;
    if (_state == State::dragging)
        cancel();
    settle();
}

void TaskListInput::settle() {
    if (_state != State::settling)
        return;
    _state = State::still;
    if (_tasks)
        _tasks->settle();
    Q_EMIT settled();
}

/// The dragged task can go for other reasons than the user's hand.
void TaskListInput::followTheModel() {
    if ((_state == State::dragging || _state == State::settling) && _tasks->liftedRow() < 0) {
        if (_state == State::dragging)
            end();
        settle();
    }
    Q_EMIT restYChanged();
    if (rowCount() == 0 && _hadKeyboard)
        Q_EMIT emptied();
}

void TaskListInput::setByKeyboard(bool byKeyboard) {
    if (std::exchange(_isByKeyboard, byKeyboard) != byKeyboard)
        Q_EMIT isByKeyboardChanged();
}

// Seen or not

void TaskListInput::itemChange(ItemChange change, const ItemChangeData& value) {
    if (change == ItemSceneChange)
        watch(value.window);
    else if (change == ItemVisibleHasChanged && !value.boolValue)
        abandon();
    QQuickItem::itemChange(change, value);
}

void TaskListInput::watch(QQuickWindow* window) {
    abandon();
    if (_watched)
        _watched->removeEventFilter(this);
    _watched = window;
    if (_watched)
        _watched->installEventFilter(this);
}

/// No item hears that its window goes, and keys that bring the keyboard to a row are pressed elsewhere.
bool TaskListInput::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide)
        abandon();
    else if (event->type() == QEvent::KeyPress)
        setByKeyboard(true);
    return QQuickItem::eventFilter(watched, event);
}

// Keys

bool TaskListInput::event(QEvent* event) {
    // Escape is this drag's before it is the window's.
    if (event->type() == QEvent::ShortcutOverride && _state == State::dragging &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QQuickItem::event(event);
}

void TaskListInput::keyPressEvent(QKeyEvent* event) {
    if (_state == State::dragging) {
        if (event->key() == Qt::Key_Escape)
            cancel();
        return;
    }
    event->setAccepted(perform(*event));
}

/// The keys of an editor are its own, also those that it has no use for.
bool TaskListInput::perform(const QKeyEvent& event) {
    if (!_tasks || _tasks->isEditing() || _currentRow < 0 || _currentRow >= rowCount())
        return false;
    const QString task = _tasks->taskID(_currentRow);
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool isPlain = modifiers == Qt::NoModifier;
    const bool isWithShift = modifiers == Qt::ShiftModifier;
    const bool isWithControl = modifiers == Qt::ControlModifier;
    const bool moves = isWithControl || modifiers == Qt::AltModifier;
    const auto goBy = [&](int rows) {
        if (isPlain)
            goTo(_currentRow + rows);
        return isPlain;
    };
    const int page = std::max(static_cast<int>(height() / _rowHeight) - 1, 1);

    switch (event.key()) {
    case Qt::Key_Up:
        if (!moves)
            return goBy(-1);
        _tasks->shift(task, -1);
        return true;
    case Qt::Key_Down:
        if (!moves)
            return goBy(1);
        _tasks->shift(task, 1);
        return true;
    case Qt::Key_PageUp:
        return goBy(-page);
    case Qt::Key_PageDown:
        return goBy(page);
    case Qt::Key_Home:
        return goBy(-_currentRow);
    case Qt::Key_End:
        return goBy(rowCount() - 1 - _currentRow);
    case Qt::Key_Space:
        if (isPlain && !event.isAutoRepeat())
            _tasks->toggle(task);
        return isPlain;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_F2:
        if (isPlain)
            _tasks->beginRename(task);
        return isPlain;
    case Qt::Key_Delete:
        // There is no way back, so one key alone doesn't do it.
        if (isWithControl && !event.isAutoRepeat())
            _tasks->remove(task);
        return isWithControl;
    case Qt::Key_Menu:
        if (isPlain)
            requestMenu(_currentRow);
        return isPlain;
    case Qt::Key_F10:
        if (isWithShift)
            requestMenu(_currentRow);
        return isWithShift;
    default:
        return false;
    }
}

void TaskListInput::enterRow(int row) {
    // A row that goes has no number any more, and the list is about to choose another.
    if (row >= 0 && row != _currentRow)
        Q_EMIT rowRequested(row);
}

void TaskListInput::goTo(int row) {
    Q_EMIT rowRequested(std::clamp(row, 0, rowCount() - 1));
}

void TaskListInput::requestMenu(int row) {
    // Below the title.
    constexpr double titleX = 44;
    requestMenuAt(row, {titleX, rowY(row) - _contentY + _rowHeight});
}

void TaskListInput::requestMenuAt(int row, QPointF place) {
    if (row < 0 || row >= rowCount())
        return;
    settle();
    closeMenu();
    rememberKeyboard();
    _menu = _tasks->isDone(row) ? DoneTaskMenu : OpenTaskMenu;
    _menuTask = _tasks->taskID(row);
    _menuPlace = place;
    Q_EMIT menuChanged();
}

void TaskListInput::closeMenu() {
    if (std::exchange(_menu, NoMenu) == NoMenu)
        return;
    // An entry may have given it to an editor.
    const QQuickItem* const now = window() ? window()->activeFocusItem() : nullptr;
    if (!now || now == window()->contentItem())
        giveKeyboardBack();
    _keyboardBefore.clear();
    Q_EMIT menuChanged();
}

bool TaskListInput::rowsHaveKeyboard() const {
    const QQuickItem* const now = window() ? window()->activeFocusItem() : nullptr;
    return (now && belongsToRows(now)) || (_keyboardBefore && belongsToRows(_keyboardBefore));
}

/// Rows and editors come and go meanwhile; the list stays and knows its current row.
void TaskListInput::rememberKeyboard() {
    QQuickItem* const now = window() ? window()->activeFocusItem() : nullptr;
    _keyboardBefore = now && belongsToRows(now) ? _content->parentItem() : now;
}

void TaskListInput::giveKeyboardBack() {
    if (rowCount() == 0 && _keyboardBefore && belongsToRows(_keyboardBefore))
        Q_EMIT emptied();
    else if (_keyboardBefore && _keyboardBefore->isVisible())
        _keyboardBefore->forceActiveFocus(Qt::OtherFocusReason);
    _keyboardBefore.clear();
}

} // namespace selvane
