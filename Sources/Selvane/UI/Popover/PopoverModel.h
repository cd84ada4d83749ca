#pragma once

#include "Selvane/UI/Controls/Look.h"
#include "Selvane/UI/Popover/ControlsModel.h"
#include "Selvane/UI/Popover/CurrentTaskPickerModel.h"
#include "Selvane/UI/Popover/HeaderModel.h"
#include "Selvane/UI/Popover/MusicRowModel.h"
#include "Selvane/UI/Popover/PhaseMenuModel.h"
#include "Selvane/UI/Popover/SessionNoteModel.h"
#include "Selvane/UI/Progress/ProgressModel.h"
#include "Selvane/UI/Tasks/TaskListModel.h"
#include "Selvane/UI/Timer/TimerFaceModel.h"
#include "SelvaneCore/Subscription.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace selvane {

class AppModel;
class Appearance;
class Scheduler;
class WindowCoordinator;

/// What the popover shows of the model, part by part, and what concerns it as a whole. Main thread.
class PopoverModel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one model of its popover.")

    Q_PROPERTY(QString name READ name CONSTANT FINAL)
    Q_PROPERTY(selvane::Look* look READ look CONSTANT FINAL)
    /// The room around the card for its shadow, in pixels of the window; 0 where a window can't be clear.
    Q_PROPERTY(int shadowMargin READ shadowMargin NOTIFY shadowMarginChanged FINAL)

    Q_PROPERTY(int cornerRadius READ cornerRadius CONSTANT FINAL)

    /// Whether the page below the tabs is there; see `begin`.
    Q_PROPERTY(bool isWhole READ isWhole NOTIFY isWholeChanged FINAL)

    Q_PROPERTY(selvane::HeaderModel* header READ header CONSTANT FINAL)
    Q_PROPERTY(selvane::PhaseMenuModel* phaseMenu READ phaseMenu CONSTANT FINAL)
    Q_PROPERTY(QString sessionStatus READ sessionStatus NOTIFY sessionStatusChanged FINAL)
    Q_PROPERTY(selvane::TimerFaceModel* face READ face CONSTANT FINAL)
    Q_PROPERTY(selvane::CurrentTaskPickerModel* taskPicker READ taskPicker CONSTANT FINAL)
    Q_PROPERTY(selvane::SessionNoteModel* note READ note CONSTANT FINAL)
    Q_PROPERTY(selvane::ControlsModel* controls READ controls CONSTANT FINAL)
    Q_PROPERTY(selvane::MusicRowModel* music READ music CONSTANT FINAL)

    Q_PROPERTY(selvane::TaskListModel* tasks READ tasks CONSTANT FINAL)
    Q_PROPERTY(selvane::ProgressModel* progress READ progress CONSTANT FINAL)

    Q_PROPERTY(QString tasksTitle READ tasksTitle CONSTANT FINAL)
    Q_PROPERTY(QString progressTitle READ progressTitle CONSTANT FINAL)
    Q_PROPERTY(QString tabTooltip READ tabTooltip CONSTANT FINAL)
    Q_PROPERTY(QString tasksShortcut READ tasksShortcut CONSTANT FINAL)
    Q_PROPERTY(QString progressShortcut READ progressShortcut CONSTANT FINAL)

public:
    /// What the lower part of the popover shows.
    enum Tab { Tasks, Progress };
    Q_ENUM(Tab)

    /// What is given outlives the popover's model; `windows` may be null.
    PopoverModel(AppModel& model, Appearance& appearance, Scheduler& scheduler, WindowCoordinator* windows,
                 QObject* parent = nullptr);

    /// The popover is made for the first time: its page can wait until the rest is on the screen.
    void begin() { setWhole(false); }
    /// What was asked for first is on the screen.
    void complete() { setWhole(true); }
    [[nodiscard]] bool isWhole() const { return _isWhole; }

    /// Takes over what may have changed unheard since the popover was last seen: the day, the zone, the
    /// desktop.
    void prepareToShow();
    /// The user doesn't see the popover any more. What was being typed counts as it is.
    void didHide();
    /// No control has the keyboard, since the one that had it is gone.
    void keyboardIsIdle();

    [[nodiscard]] QString name() const;
    [[nodiscard]] Look* look() { return &_look; }
    [[nodiscard]] int shadowMargin() const { return _shadowMargin; }
    [[nodiscard]] int cornerRadius() const { return 14; }
    [[nodiscard]] HeaderModel* header() { return &_header; }
    [[nodiscard]] PhaseMenuModel* phaseMenu() { return &_phaseMenu; }
    [[nodiscard]] QString sessionStatus() const { return _sessionStatus; }
    [[nodiscard]] TimerFaceModel* face() { return &_face; }
    [[nodiscard]] CurrentTaskPickerModel* taskPicker() { return &_taskPicker; }
    [[nodiscard]] SessionNoteModel* note() { return &_note; }
    [[nodiscard]] ControlsModel* controls() { return &_controls; }
    [[nodiscard]] MusicRowModel* music() { return &_music; }
    [[nodiscard]] TaskListModel* tasks() { return &_tasks; }
    [[nodiscard]] ProgressModel* progress() { return &_progress; }
    [[nodiscard]] QString tasksTitle() const;
    [[nodiscard]] QString progressTitle() const;
    [[nodiscard]] QString tabTooltip() const;
    [[nodiscard]] QString tasksShortcut() const;
    [[nodiscard]] QString progressShortcut() const;

    /// The user wants the popover gone.
    Q_INVOKABLE void cancel();
    /// The user pressed a button of the mouse beside the card, where the window is clear.
    Q_INVOKABLE void turnAway();

Q_SIGNALS:
    void shadowMarginChanged();
    void sessionStatusChanged();
    void isWholeChanged();
    /// The keyboard belongs to the main button now.
    void mainButtonWanted();
    void cancelled();
    void turnedAway();
    void quitRequested();

private:
    void refreshSessionStatus();
    void setWhole(bool isWhole);

    AppModel& _model;
    Appearance& _appearance;
    Look _look;
    HeaderModel _header;
    PhaseMenuModel _phaseMenu;
    TimerFaceModel _face;
    CurrentTaskPickerModel _taskPicker;
    SessionNoteModel _note;
    ControlsModel _controls;
    MusicRowModel _music;
    TaskListModel _tasks;
    ProgressModel _progress;
    QString _sessionStatus;
    int _shadowMargin = 0;
    bool _isWhole = true;
    std::vector<Subscription> _subscriptions;
};

} // namespace selvane
