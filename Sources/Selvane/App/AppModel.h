#pragma once

#include "Selvane/App/AppEnvironment.h"
#include "Selvane/App/Pane.h"
#include "Selvane/App/TaskChange.h"
#include "SelvaneCore/History.h"
#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/Lifetime.h"
#include "SelvaneCore/Signal.h"
#include "SelvaneCore/TaskList.h"
#include "SelvaneCore/TimerEngine.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// The one central object: owns the timer, the settings, the tasks, the history and every service, turns the
/// timer's events into history, notifications, music and guard actions, and connects the services, which
/// never call one another. Views read it and call its commands.
///
/// Main thread only. Made once, lives as long as the process. A change of tasks or history is on disk when
/// the command returns, or `saveError` says why not; memory keeps the change either way, and the next save of
/// the same file writes it.
class AppModel {
public:
    /// Where the defaults keep the current task.
    static constexpr std::string_view currentTaskKey = "currentTaskID";

    /// Reads the stores, repairs what is damaged, wires everything and starts the ticker.
    explicit AppModel(AppEnvironment environment);
    ~AppModel();
    AppModel(const AppModel&) = delete;
    AppModel& operator=(const AppModel&) = delete;

    // Commands

    /// Removes the done tasks of earlier days, if the user wants that.
    void rollOverDay();
    void backUpDaily();
    void showWhatsNewIfUpdated();
    /// Brings a backup back, after a safety copy of the present state whose name tells the `reason`. Ends a
    /// phase that is under way.
    [[nodiscard]] tl::expected<void, ImportError> importBackup(const SelvaneBackup& backup, ImportMode mode,
                                                               std::string_view reason);
    /// Clears the history, after a safety copy if one can be made. Tasks and settings stay.
    void resetStatistics();
    /// Brings the model up to date for a view that is about to open.
    void refreshForDisplay();

    // The commands for tasks take what TaskList takes. Those that it refuses write the list all the same. Ids
    // are taken by value, since the one that a caller has at hand may live in what the command changes.

    /// Adds a task to the list; a blank title adds none. Doesn't make it the current one.
    void addTask(std::string_view title);
    /// Ticks a task off or opens it again; the list is put in order a moment after the last of such changes.
    /// An unknown id does nothing, not even a write.
    void toggleTask(UUID id);
    /// Moves the tasks at these offsets, as one run, to before the task that is now at `offset`.
    void moveTasks(const std::set<std::ptrdiff_t>& offsets, std::ptrdiff_t offset);
    void renameTask(UUID id, std::string_view title);
    /// Sets how many sessions the task is expected to take; a negative count becomes 0,
    /// one beyond what a record can be the largest that can.
    void setEstimate(UUID id, std::int64_t count);
    /// Deletes a task. The current one stops being current before it goes.
    void deleteTask(UUID id);
    /// Removes every done task. The current task's id stays, also if its task goes.
    void clearCompletedTasks();
    /// The id is kept as it is, also if no task has it.
    void setCurrentTaskID(std::optional<UUID> id);
    void setWindowPane(Pane pane);
    /// Whether recovery gave back all that was damaged.
    enum class Recovery { complete, incomplete };
    /// What recovery at launch has to tell the user.
    void setRecoveryNotice(std::optional<std::string> notice, Recovery recovery);
    /// Tells it, if there is anything to tell.
    void announceRecovery();
    /// Puts another list or history in the place of the present one, as a backup has them.
    void setTasks(TaskList tasks);
    void setSessions(std::vector<FocusSession> sessions);

    // Queries

    /// A document of the present state.
    [[nodiscard]] SelvaneBackup makeBackup() const;

    [[nodiscard]] AppSettings& settings() { return *_settings; }
    [[nodiscard]] const AppSettings& settings() const { return *_settings; }
    [[nodiscard]] TimerEngine& engine() { return *_engine; }
    [[nodiscard]] const TimerEngine& engine() const { return *_engine; }
    [[nodiscard]] MusicController& music() { return *_music; }
    [[nodiscard]] const MusicController& music() const { return *_music; }
    [[nodiscard]] FocusGuard& focusGuard() { return *_focusGuard; }
    [[nodiscard]] const FocusGuard& focusGuard() const { return *_focusGuard; }
    [[nodiscard]] FocusModeController& focusMode() { return *_focusMode; }
    [[nodiscard]] const FocusModeController& focusMode() const { return *_focusMode; }
    [[nodiscard]] CalendarWatcher& calendar() { return *_calendar; }
    [[nodiscard]] const CalendarWatcher& calendar() const { return *_calendar; }
    [[nodiscard]] Updater& updater() { return *_updater; }
    [[nodiscard]] const Updater& updater() const { return *_updater; }
    [[nodiscard]] LoginItem& loginItem() { return *_environment.loginItem; }
    [[nodiscard]] BackupManager& backups() { return *_backups; }

    [[nodiscard]] const TaskList& tasks() const { return _tasks; }
    /// The sessions, oldest first, and the figures that are counted from them.
    [[nodiscard]] const History& history() const { return _history; }
    [[nodiscard]] const std::vector<FocusSession>& sessions() const { return _history.sessions(); }
    [[nodiscard]] const std::optional<UUID>& currentTaskID() const { return _currentTaskID; }
    /// The last failure to save, for the user.
    [[nodiscard]] const std::optional<std::string>& saveError() const { return _saveError; }
    /// What was found damaged at launch, for the user.
    [[nodiscard]] const std::optional<std::string>& recoveryNotice() const { return _recoveryNotice; }
    [[nodiscard]] Pane windowPane() const { return _windowPane; }
    /// True if there were tasks or sessions at launch, after recovery.
    [[nodiscard]] bool hadDataAtLaunch() const { return _hadDataAtLaunch; }
    [[nodiscard]] bool unrecoveredData() const { return _unrecoveredData; }
    /// What the wall clock says.
    [[nodiscard]] Date now() const { return _environment.clock(); }
    /// The calendar in the zone in force now.
    [[nodiscard]] Calendar localCalendar() const { return _environment.calendar(); }

    // Derived from the history, the tasks and the settings at every call.

    /// The user's present day.
    [[nodiscard]] DayKey today() const;
    /// How long to wait for the next one: at least a second, since a clock that is set while someone waits
    /// makes them wait again.
    [[nodiscard]] Seconds untilNextDay() const;
    /// The task that sessions are credited to; absent if there is none, it is gone or it is done.
    [[nodiscard]] const TaskItem* currentTask() const;
    /// Whole minutes of focus on the user's present day.
    [[nodiscard]] int todayMinutes() const;
    [[nodiscard]] StreakResult streak() const;
    /// The share of today's focus outside the user's distractions, 0 to 1; absent if nothing is followed.
    [[nodiscard]] std::optional<double> todayFocusScore() const;
    /// True while a focus phase is under way that is shorter than configured.
    [[nodiscard]] bool sessionWasShortened() const;

    // Callbacks

    /// Brings the release notes before the user.
    std::function<void()> showWhatsNewAfterUpdate;

    /// Emitted for every command that writes the list, after the write, also if nothing in it differs.
    Signal<TaskChange> tasksChanged;
    Signal<> sessionsChanged;
    Signal<> currentTaskIDChanged;
    Signal<> saveErrorChanged;
    Signal<> recoveryNoticeChanged;
    Signal<> windowPaneChanged;

private:
    void loadStores();
    void wireSettings();
    void startTicker();
    void updateTicker();
    void observeWake();

    void handle(const TimerEvent& event);
    void handleStarted(Phase phase, Date end);
    void handlePaused();
    void handleFinished(FocusSession session);
    void handleInterrupted(std::optional<FocusSession> session);
    void handlePhaseChanged(Phase phase);
    void celebrate(Phase phase);
    void endActivity();
    void removeEndAndMeetingNotices();

    void changeTasks(const std::function<void(TaskList&)>& change, TaskChange kind = TaskChange::plain);
    void append(FocusSession session);
    void saveSessions();
    template <typename Value>
    void persist(const Value& value, const JSONStore<Value>& store);
    void setSaveError(std::optional<std::string> text);

    [[nodiscard]] Seconds fittedDuration(Phase phase, Seconds seconds);
    void warnAboutMeeting(Date end);
    void scheduleFocusModeSync();
    void syncFocusMode();
    void applyAppearance();

    AppEnvironment _environment;
    JSONStore<TaskList> _taskStore;
    JSONStore<std::vector<FocusSession>> _sessionStore;

    std::unique_ptr<Updater> _updater;
    std::unique_ptr<BackupManager> _backups;
    std::unique_ptr<Notifier> _notifier;
    std::unique_ptr<DataLifecycle> _dataLifecycle;
    std::unique_ptr<AppSettings> _settings;
    std::unique_ptr<TimerEngine> _engine;
    std::unique_ptr<MusicController> _music;
    std::unique_ptr<FocusGuard> _focusGuard;
    std::unique_ptr<FocusModeController> _focusMode;
    std::unique_ptr<CalendarWatcher> _calendar;

    TaskList _tasks;
    History _history;
    std::optional<UUID> _currentTaskID;
    std::optional<std::string> _saveError;
    std::optional<std::string> _recoveryNotice;
    Pane _windowPane = Pane::statistics;
    bool _unrecoveredData = false;
    bool _hadDataAtLaunch = false;
    /// Files that could be neither read nor set aside, and so must not be overwritten.
    std::set<std::filesystem::path> _lockedFiles;

    bool _focusModeSyncPending = false;
    Subscription _tickerControl;
    Subscription _ticker;
    Subscription _wakeObserver;
    Subscription _activity;
    Subscription _reorderTask;
    Lifetime _lifetime;
};

} // namespace selvane
