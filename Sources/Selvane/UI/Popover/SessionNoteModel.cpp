#include "Selvane/UI/Popover/SessionNoteModel.h"

#include "Selvane/App/AppModel.h"
#include "Selvane/UI/Commands.h"
#include "Selvane/UI/Popover/SessionNote.h"

#include <QLocale>

namespace selvane {

SessionNoteModel::SessionNoteModel(AppModel& model, Scheduler& scheduler, WindowCoordinator* windows,
                                   QObject* parent)
    : QObject(parent),
      _model(model),
      _scheduler(scheduler),
      _windows(windows),
      _note(std::make_unique<SessionNote::Note>()) {
    for (Signal<>* const signal :
         {&model.engine().changed, &model.settings().changed, &model.focusGuard().changed,
          &model.focusMode().changed, &model.calendar().changed, &model.saveErrorChanged})
        _subscriptions.push_back(signal->subscribe([this] { refresh(); }));
    _subscriptions.push_back(model.recoveryNoticeChanged.subscribe([this] {
        _isRecoveryNoticeDismissed = false;
        refresh();
    }));
    refresh();
}

SessionNoteModel::~SessionNoteModel() = default;

QString SessionNoteModel::text() const {
    return _note->text;
}

QString SessionNoteModel::symbol() const {
    return _note->symbol;
}

bool SessionNoteModel::isEmphasized() const {
    return _note->emphasized;
}

bool SessionNoteModel::hasAction() const {
    return _note->action.has_value();
}

bool SessionNoteModel::isAlert() const {
    return _note->urgency == SessionNote::Urgency::alert;
}

void SessionNoteModel::act() {
    if (!_note->action)
        return;
    switch (*_note->action) {
    case SessionNote::Action::openFocusPane:
        Commands::openPane(_model, _windows, Pane::focus);
        return;
    case SessionNote::Action::dismissRecoveryNotice:
        _isRecoveryNoticeDismissed = true;
        refresh();
        return;
    }
}

void SessionNoteModel::refresh() {
    SessionNote::State state = SessionNote::state(_model);
    if (_isRecoveryNoticeDismissed)
        state.recoveryNotice.reset();
    auto note = SessionNote::note(state, _model.localCalendar(), QLocale()).value_or(SessionNote::Note{});
    if (note != *_note) {
        *_note = std::move(note);
        Q_EMIT changed();
    }
    // Only a running timer ticks.
    _minute.end();
    const auto delay = SessionNote::timeToChange(state);
    if (_isShown && delay)
        _minute = _scheduler.after(*delay, [this] { refresh(); });
}

void SessionNoteModel::willShow() {
    _isShown = true;
    refresh();
}

void SessionNoteModel::didHide() {
    _isShown = false;
    _minute.end();
}

} // namespace selvane
