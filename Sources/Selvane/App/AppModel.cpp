#include "Selvane/App/AppModel.h"

#include "SelvaneCore/Log.h"
#include "SelvaneCore/RecordLimits.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>
#include <variant>

namespace selvane {

namespace {

constexpr Seconds tickInterval{1.0};
constexpr Seconds tickTolerance{0.1};
/// From the last tick of a task to the moment when the list is put in order.
constexpr Seconds reorderDelay{0.55};
/// A focus run that was cut short leaves a trace from here on.
constexpr Seconds shortestInterruptedRun{60.0};
/// How far ahead of an event its heads-up comes.
constexpr Seconds meetingLead{120.0};

template <typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <typename... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

StoreEnvironment storeEnvironment(const AppEnvironment& environment) {
    return {environment.fileSystem, environment.clock, environment.calendar};
}

/// Takes the loaded value out of the result, or gives an empty one where there is none.
template <typename Value>
Value takeLoaded(typename JSONStore<Value>::LoadResult& result) {
    auto* const loaded = std::get_if<typename JSONStore<Value>::Loaded>(&result);
    return loaded ? std::move(loaded->value) : Value{};
}

template <typename Value>
bool standsDamaged(const typename JSONStore<Value>::LoadResult& result) {
    const auto* const unreadable = std::get_if<typename JSONStore<Value>::Unreadable>(&result);
    return unreadable && !unreadable->movedTo;
}

} // namespace

AppModel::AppModel(AppEnvironment environment)
    : _environment(std::move(environment)),
      _taskStore(_environment.file("tasks.json"), storeEnvironment(_environment)),
      _sessionStore(_environment.file("sessions.json"), storeEnvironment(_environment)) {
    const AppServices& services = _environment.services;

    // The order of these steps is part of the contract: each may rely on the side effects of those before it.
    _updater = services.makeUpdater();
    _backups = services.makeBackups(_environment.file("Backups"));
    _notifier = services.makeNotifier();
    _dataLifecycle = services.makeDataLifecycle();
    _dataLifecycle->migrateFromVesk();
    _settings = services.makeSettings(*_environment.defaults);
    _engine = std::make_unique<TimerEngine>([this] { return _settings->timerConfig(); }, _environment.clock);
    _music = services.makeMusic(*_settings);
    _focusGuard = services.makeFocusGuard(*_settings);
    _focusMode = services.makeFocusMode(*_settings);
    _calendar = services.makeCalendar(*_settings);
    loadStores();
    _dataLifecycle->backUpBeforeUpdate(*this);
    _engine->onEvent = _lifetime.guard([this](const TimerEvent& event) { handle(event); });
    wireSettings();
    _engine->adjustDuration = [this, alive = _lifetime.token()](Phase phase, Seconds seconds) {
        return alive.expired() ? seconds : fittedDuration(phase, seconds);
    };
    startTicker();
    observeWake();
    rollOverDay();
    if (_settings->notificationsEnabled() || reactsToDrift(_settings->focusGuardMode()))
        _notifier->requestAuthorization();
    // Later, since there may be no application to dress yet.
    _environment.scheduler->post(_lifetime.guard([this] { applyAppearance(); }));
}

AppModel::~AppModel() = default;

void AppModel::loadStores() {
    auto tasks = _taskStore.read();
    auto sessions = _sessionStore.readLossy();
    _tasks = takeLoaded<TaskList>(tasks);
    _history = History(takeLoaded<std::vector<FocusSession>>(sessions));

    if (const auto id = _environment.defaults->text(currentTaskKey))
        _currentTaskID = UUID::parse(*id);

    if (standsDamaged<TaskList>(tasks))
        _lockedFiles.insert(_taskStore.url());
    if (standsDamaged<std::vector<FocusSession>>(sessions))
        _lockedFiles.insert(_sessionStore.url());

    _dataLifecycle->recoverDamagedFiles(*this, tasks, sessions);
    _hadDataAtLaunch = !_tasks.items.empty() || !this->sessions().empty();
}

// Wiring

void AppModel::wireSettings() {
    _settings->onMusicSettingsChange = _lifetime.guard([this] { _music->syncSettings(); });
    _settings->onAppearanceChange = _lifetime.guard([this] { applyAppearance(); });
    _settings->onNotificationsChange = _lifetime.guard([this] {
        if (_settings->notificationsEnabled())
            _notifier->requestAuthorization();
    });
    _settings->onFocusGuardChange = _lifetime.guard([this] {
        _focusGuard->settingsChanged();
        if (reactsToDrift(_settings->focusGuardMode()))
            _notifier->requestAuthorization();
    });
    _settings->onFocusModeChange = _lifetime.guard([this] { syncFocusMode(); });
    _settings->onCalendarChange = _lifetime.guard([this] {
        if (_settings->calendarEnabled())
            _calendar->refresh();
    });
}

void AppModel::startTicker() {
    _tickerControl = _engine->changed.subscribe([this] { updateTicker(); });
    updateTicker();
}

/// A tick does nothing unless the countdown runs, so the machine isn't woken for it otherwise.
void AppModel::updateTicker() {
    if (!_engine->isRunning()) {
        _ticker.end();
    } else if (!_ticker) {
        _ticker = _environment.scheduler->every(tickInterval, tickTolerance,
                                                _lifetime.guard([this] { _engine->tick(); }));
    }
}

void AppModel::observeWake() {
    _wakeObserver = _environment.awayMonitor->didWake.subscribe(_lifetime.guard([this] { _engine->tick(); }));
}

// The timer's events

void AppModel::handle(const TimerEvent& event) {
    scheduleFocusModeSync();
    std::visit(
        Overloaded{
            [this](const TimerEvents::Started& started) { handleStarted(started.phase, started.end); },
            [this](const TimerEvents::Paused&) { handlePaused(); },
            [this](const TimerEvents::Finished& finished) { handleFinished(finished.session); },
            [this](const TimerEvents::Interrupted& interrupted) { handleInterrupted(interrupted.session); },
            [this](const TimerEvents::PhaseChanged& changed) { handlePhaseChanged(changed.phase); },
        },
        event);
}

void AppModel::handleStarted(Phase phase, Date end) {
    if (_settings->notificationsEnabled())
        _notifier->schedule(phase, end);
    if (!_activity)
        _activity = _environment.processActivity->begin("Selvane timer is running");
    if (phase == Phase::focus) {
        _focusGuard->focusStarted();
        warnAboutMeeting(end);
        if (_settings->autoPlayMusic())
            _music->play();
    }
    if (isBreak(phase) && _settings->pauseMusicOnBreaks())
        _music->pause();
}

void AppModel::handlePaused() {
    removeEndAndMeetingNotices();
    endActivity();
    _focusGuard->focusPaused();
    // The setting that started the music stops it, whichever the phase is.
    if (_settings->autoPlayMusic())
        _music->pause();
}

void AppModel::handleFinished(FocusSession session) {
    endActivity();
    // The notice of the phase's end comes by itself, but by another clock: one that the user or the network
    // doesn't set. It is due when the phase has ended.
    _notifier->deliverPending(Notifier::phaseEndID);
    _notifier->removePending(std::array{Notifier::meetingID});
    if (session.phase == Phase::focus) {
        session.apps = _focusGuard->finish();
        if (const TaskItem* const task = currentTask()) {
            session.taskID = task->id;
            if (task->completedPomodoros < RecordLimits::maxCompletedPomodoros)
                changeTasks([id = task->id](TaskList& tasks) { tasks.creditPomodoro(id); });
        }
    }
    const Phase phase = session.phase;
    append(std::move(session));
    celebrate(phase);
}

void AppModel::handleInterrupted(std::optional<FocusSession> session) {
    removeEndAndMeetingNotices();
    endActivity();
    auto apps = _focusGuard->finish();
    if (!session || session->phase != Phase::focus || session->actualSeconds < shortestInterruptedRun)
        return;
    if (const TaskItem* const task = currentTask())
        session->taskID = task->id;
    session->apps = std::move(apps);
    append(std::move(*session));
}

void AppModel::handlePhaseChanged(Phase phase) {
    if (isBreak(phase) && _settings->pauseMusicOnBreaks())
        _music->pause();
}

void AppModel::celebrate(Phase phase) {
    if (_settings->playEndSound())
        _environment.soundPlayer->play(isBreak(phase) ? "Hero" : "Glass");
    _environment.attentionSignal->perform();
}

void AppModel::endActivity() {
    _activity.end();
}

void AppModel::removeEndAndMeetingNotices() {
    _notifier->removePending(std::array{Notifier::phaseEndID, Notifier::meetingID});
}

// Commands

void AppModel::rollOverDay() {
    if (!_settings->autoClearCompletedTasks())
        return;
    const Calendar calendar = localCalendar();
    const int dayStartHour = _settings->dayStartHour();
    const DayKey currentDay = today();
    const auto isOfEarlierDay = [&](const TaskItem& task) {
        return task.isDone &&
               DayKey(task.completedAt.value_or(distantPast), dayStartHour, calendar) < currentDay;
    };
    if (std::ranges::any_of(_tasks.items, isOfEarlierDay))
        changeTasks([&](TaskList& tasks) { tasks.removeAll(isOfEarlierDay); });
}

void AppModel::backUpDaily() {
    _dataLifecycle->backUpDaily(*this);
}

void AppModel::showWhatsNewIfUpdated() {
    _dataLifecycle->showWhatsNewIfUpdated(*this);
}

tl::expected<void, ImportError> AppModel::importBackup(const SelvaneBackup& backup, ImportMode mode,
                                                       std::string_view reason) {
    return _dataLifecycle->importBackup(*this, backup, mode, reason);
}

void AppModel::resetStatistics() {
    _dataLifecycle->resetStatistics(*this);
}

SelvaneBackup AppModel::makeBackup() const {
    return _dataLifecycle->makeBackup(*this);
}

void AppModel::refreshForDisplay() {
    backUpDaily();
    rollOverDay();
    _engine->tick();
    _calendar->refresh();
}

void AppModel::addTask(std::string_view title) {
    changeTasks([&](TaskList& tasks) { tasks.add(title, _environment.clock()); }, TaskChange::animated);
}

void AppModel::toggleTask(UUID id) {
    // 1. Only a task that is there.
    const TaskItem* const task = _tasks.find(id);
    if (!task)
        return;
    // 2. The row stays where it is for a moment, so that the user sees the tick land.
    changeTasks(
        [&, isDone = !task->isDone](TaskList& tasks) { tasks.setDone(id, isDone, _environment.clock()); });
    // 3. A run of ticks is put in order once.
    _reorderTask.end();
    // 4. The moment counts from the last of them.
    _reorderTask = _environment.scheduler->after(reorderDelay, _lifetime.guard([this] {
        changeTasks([](TaskList& tasks) { tasks.normalize(); }, TaskChange::animated);
    }));
}

void AppModel::moveTasks(const std::set<std::ptrdiff_t>& offsets, std::ptrdiff_t offset) {
    changeTasks([&](TaskList& tasks) { tasks.move(offsets, offset); });
}

void AppModel::renameTask(UUID id, std::string_view title) {
    changeTasks([&](TaskList& tasks) { tasks.rename(id, title); });
}

void AppModel::setEstimate(UUID id, std::int64_t count) {
    changeTasks([&](TaskList& tasks) {
        tasks.setEstimate(id, std::min(count, RecordLimits::maxEstimatedPomodoros));
    });
}

void AppModel::deleteTask(UUID id) {
    // First, so that nothing shows a deleted task as the current one.
    if (_currentTaskID == id)
        setCurrentTaskID(std::nullopt);
    changeTasks([&](TaskList& tasks) { tasks.remove(id); }, TaskChange::animated);
}

void AppModel::clearCompletedTasks() {
    changeTasks([](TaskList& tasks) { tasks.clearCompleted(); }, TaskChange::animated);
}

void AppModel::setCurrentTaskID(std::optional<UUID> id) {
    const bool differs = id != _currentTaskID;
    _currentTaskID = id;
    _environment.defaults->set(currentTaskKey, id ? std::optional(SettingValue{id->text()}) : std::nullopt);
    if (differs)
        currentTaskIDChanged.emit();
}

void AppModel::setWindowPane(Pane pane) {
    if (std::exchange(_windowPane, pane) != pane)
        windowPaneChanged.emit();
}

void AppModel::setRecoveryNotice(std::optional<std::string> notice, Recovery recovery) {
    _unrecoveredData = recovery == Recovery::incomplete;
    if (std::exchange(_recoveryNotice, notice) != notice)
        recoveryNoticeChanged.emit();
}

void AppModel::announceRecovery() {
    if (_recoveryNotice)
        _notifier->notifyDataNotice(_unrecoveredData ? "Selvane couldn't read your data"
                                                     : "Selvane restored your data",
                                    *_recoveryNotice);
}

// Persistence

void AppModel::changeTasks(const std::function<void(TaskList&)>& change, TaskChange kind) {
    change(_tasks);
    persist(_tasks, _taskStore);
    tasksChanged.emit(kind);
}

void AppModel::setTasks(TaskList tasks) {
    changeTasks([&](TaskList& list) { list = std::move(tasks); });
}

void AppModel::append(FocusSession session) {
    _history.append(RecordLimits::fitted(std::move(session), _environment.clock()));
    saveSessions();
}

void AppModel::setSessions(std::vector<FocusSession> sessions) {
    _history = History(std::move(sessions));
    saveSessions();
}

void AppModel::saveSessions() {
    persist(sessions(), _sessionStore);
    sessionsChanged.emit();
}

template <typename Value>
void AppModel::persist(const Value& value, const JSONStore<Value>& store) {
    const std::string name = store.url().filename().string();
    if (_lockedFiles.contains(store.url())) {
        setSaveError("Selvane couldn't read or set aside " + name +
                     ", so it won't save over it. Move the file out of the data folder and relaunch.");
        return;
    }
    if (const auto saved = store.save(value); !saved) {
        Log::line("failed to save " + name + ": " + saved.error().description());
        setSaveError("Selvane couldn't save " + name + ": " + saved.error().localizedDescription());
        return;
    }
    setSaveError(std::nullopt);
}

void AppModel::setSaveError(std::optional<std::string> text) {
    if (text == _saveError)
        return;
    _saveError = std::move(text);
    saveErrorChanged.emit();
}

// Derived values

DayKey AppModel::today() const {
    return {_environment.clock(), _settings->dayStartHour(), localCalendar()};
}

Seconds AppModel::untilNextDay() const {
    const Calendar calendar = localCalendar();
    const Date start = today().adding(1, calendar).start(_settings->dayStartHour(), calendar);
    return std::max(Seconds{1}, elapsed(now(), start));
}

const TaskItem* AppModel::currentTask() const {
    if (!_currentTaskID)
        return nullptr;
    const TaskItem* const task = _tasks.find(*_currentTaskID);
    return task && !task->isDone ? task : nullptr;
}

int AppModel::todayMinutes() const {
    const MinutesByDay& minutes = _history.focusMinutesByDay(_settings->dayStartHour(), localCalendar());
    const auto found = minutes.find(today());
    return found == minutes.end() ? 0 : found->second;
}

StreakResult AppModel::streak() const {
    return _history.streak({.goalMinutes = _settings->dailyGoalMinutes(),
                            .today = today(),
                            .freezesEnabled = _settings->streakFreezesEnabled(),
                            .dayStartHour = _settings->dayStartHour(),
                            .calendar = localCalendar()});
}

std::optional<double> AppModel::todayFocusScore() const {
    const DistractingSet distracting = _settings->distractingSet();
    if (_settings->focusGuardMode() == FocusGuardMode::off || distracting.empty())
        return std::nullopt;
    const Date dayStart = today().start(_settings->dayStartHour(), localCalendar());
    return _history.averageFocusScore(distracting, dayStart);
}

bool AppModel::sessionWasShortened() const {
    if (_engine->isIdle() || _engine->phase() != Phase::focus)
        return false;
    return _engine->currentDuration() < _settings->timerConfig().duration(Phase::focus) - Seconds{1.0};
}

// Services

Seconds AppModel::fittedDuration(Phase, Seconds seconds) {
    return seconds;
}

void AppModel::warnAboutMeeting(Date end) {
    if (!_settings->calendarEnabled() || !_settings->notificationsEnabled())
        return;
    const auto event = _calendar->nextEvent();
    if (event && event->start < end)
        _notifier->scheduleMeetingHeadsUp(event->title, event->start, meetingLead);
}

/// One command emits several events: the sync waits until the timer has settled, so that Do Not Disturb isn't
/// turned off and on again between a phase and the next.
void AppModel::scheduleFocusModeSync() {
    if (_focusModeSyncPending)
        return;
    _focusModeSyncPending = true;
    _environment.scheduler->post(_lifetime.guard([this] {
        _focusModeSyncPending = false;
        syncFocusMode();
    }));
}

void AppModel::syncFocusMode() {
    const bool on =
        _engine->isRunning() && (_engine->phase() == Phase::focus || _settings->keepFocusModeDuringBreaks());
    _focusMode->set(on);
}

void AppModel::applyAppearance() {
    _environment.services.applyAppearance(_settings->appearance());
}

} // namespace selvane
