#pragma once

#include "Selvane/App/AppEnvironment.h"
#include "Selvane/App/AppModel.h"
#include "Selvane/App/EmptyServices.h"
#include "SelvaneCore/MemoryDefaultsStore.h"
#include "Support/Journal.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace selvane::test {

/// What the stand-in services answer, set by a test.
struct ServiceAnswers {
    std::optional<std::vector<AppUsage>> usage;
    std::optional<std::string> driftAppName;
    std::optional<CalendarEvent> nextEvent;
    /// Where the time of the last finished session went.
    std::optional<std::vector<AppUsage>> lastUsage;
    /// What Do Not Disturb has to complain of.
    std::optional<std::string> focusModeProblem;
    std::optional<std::string> focusModeError;
    bool isMusicPlaying = false;
    bool updateAvailable = false;
    bool canCheckForUpdates = false;
    /// What recovery has to tell.
    std::optional<std::string> recoveryNotice;
    AppModel::Recovery recovery = AppModel::Recovery::complete;
    /// Done to the settings before the model sees them, as if they had been stored so.
    std::function<void(AppSettings&)> storedSettings;
    /// What was in the history's file when the end sound played.
    std::function<void()> onSound;
};

class RecordingUpdater final : public Updater {
public:
    RecordingUpdater(Journal& journal, const ServiceAnswers& answers)
        : _journal(journal), _answers(answers) {}
    [[nodiscard]] bool updateAvailable() const override { return _answers.updateAvailable; }
    [[nodiscard]] bool canCheckForUpdates() const override { return _answers.canCheckForUpdates; }
    void checkForUpdates() override { _journal.note("updater.check"); }

private:
    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingNotificationCenter final : public NotificationCenter {
public:
    explicit RecordingNotificationCenter(Journal& journal) : _journal(journal) {}
    void setCategories(std::vector<NotificationCategory>) override {}
    void requestAuthorization() override { _journal.note("notifications.authorize"); }
    void post(NotificationRequest request) override {
        _journal.note("notifications.post " + request.title + ": " + request.body);
    }
    void postLater(NotificationRequest request, Seconds delay) override {
        _journal.note("notifications.postLater " + request.title + " in " +
                      std::to_string(std::lround(delay.count())) + " s");
    }
    void removePending(std::span<const std::string_view> ids) override {
        for (const auto id : ids)
            _journal.note("notifications.remove " + std::string(id));
    }
    void deliverPending(std::string_view id) override {
        _journal.note("notifications.deliver " + std::string(id));
    }
    void removeDelivered(std::span<const std::string_view> ids) override {
        for (const auto id : ids)
            _journal.note("notifications.takeDown " + std::string(id));
    }

private:
    Journal& _journal;
};

class RecordingMusic final : public MusicController {
public:
    RecordingMusic(Journal& journal, const ServiceAnswers& answers) : _journal(journal), _answers(answers) {}
    void play() override { _journal.note("music.play"); }
    void pause() override { _journal.note("music.pause"); }
    void syncSettings() override { _journal.note("music.sync"); }
    void openPlayer() override { _journal.note("music.open"); }
    [[nodiscard]] bool isPlaying() const override { return _answers.isMusicPlaying; }

private:
    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingGuard final : public FocusGuard {
public:
    RecordingGuard(Journal& journal, const ServiceAnswers& answers) : _journal(journal), _answers(answers) {}
    void focusStarted() override { _journal.note("guard.started"); }
    void focusPaused() override { _journal.note("guard.paused"); }
    std::optional<std::vector<AppUsage>> finish() override {
        _journal.note("guard.finish");
        return _answers.usage;
    }
    void settingsChanged() override { _journal.note("guard.settings"); }
    [[nodiscard]] std::optional<std::string> driftAppName() const override { return _answers.driftAppName; }
    [[nodiscard]] const std::optional<std::vector<AppUsage>>& lastUsage() const override {
        return _answers.lastUsage;
    }

private:
    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingFocusMode final : public FocusModeController {
public:
    RecordingFocusMode(Journal& journal, const ServiceAnswers& answers)
        : _journal(journal), _answers(answers) {}
    void set(bool on) override { _journal.note(on ? "focusMode.on" : "focusMode.off"); }
    [[nodiscard]] std::optional<std::string> problem() const override { return _answers.focusModeProblem; }
    [[nodiscard]] const std::optional<std::string>& lastError() const override {
        return _answers.focusModeError;
    }

private:
    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingCalendar final : public CalendarWatcher {
public:
    RecordingCalendar(Journal& journal, const ServiceAnswers& answers)
        : _journal(journal), _answers(answers) {}
    void refresh() override { _journal.note("calendar.refresh"); }
    [[nodiscard]] std::optional<CalendarEvent> nextEvent() const override { return _answers.nextEvent; }

private:
    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingLifecycle : public DataLifecycle {
public:
    RecordingLifecycle(Journal& journal, const ServiceAnswers& answers)
        : _journal(journal), _answers(answers) {}
    void migrateFromVesk() override { _journal.note("lifecycle.migrate"); }
    void recoverDamagedFiles(AppModel& model, const TaskResult& tasks,
                             const SessionResult& sessions) override {
        _journal.note("lifecycle.recover " + kind(tasks) + " " + kind(sessions) +
                      (model.currentTaskID() ? " with current task" : ""));
        if (_answers.recoveryNotice)
            model.setRecoveryNotice(_answers.recoveryNotice, _answers.recovery);
    }
    void backUpBeforeUpdate(AppModel&) override { _journal.note("lifecycle.backUpBeforeUpdate"); }
    void backUpDaily(AppModel&) override { _journal.note("lifecycle.backUpDaily"); }
    void showWhatsNewIfUpdated(AppModel&) override { _journal.note("lifecycle.whatsNew"); }
    [[nodiscard]] SelvaneBackup makeBackup(const AppModel&) override {
        _journal.note("lifecycle.makeBackup");
        return {"", Date{}, {}, {}, std::nullopt, {}};
    }
    [[nodiscard]] tl::expected<void, ImportError>
    importBackup(AppModel&, const SelvaneBackup&, ImportMode mode, std::string_view reason) override {
        _journal.note(std::string("lifecycle.import ") + (mode == ImportMode::merge ? "merge " : "replace ") +
                      std::string(reason));
        return {};
    }
    void resetStatistics(AppModel&) override { _journal.note("lifecycle.reset"); }

private:
    template <typename Result>
    static std::string kind(const Result& result) {
        constexpr std::array names{"loaded", "unreadable", "missing"};
        return names.at(result.index());
    }

    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingSound final : public SoundPlayer {
public:
    RecordingSound(Journal& journal, const ServiceAnswers& answers) : _journal(journal), _answers(answers) {}
    void play(std::string_view name) override {
        _journal.note("sound " + std::string(name));
        if (_answers.onSound)
            _answers.onSound();
    }

private:
    Journal& _journal;
    const ServiceAnswers& _answers;
};

class RecordingSignal final : public AttentionSignal {
public:
    explicit RecordingSignal(Journal& journal) : _journal(journal) {}
    void perform() override { _journal.note("signal"); }

private:
    Journal& _journal;
};

class RecordingActivity final : public ProcessActivity {
public:
    explicit RecordingActivity(Journal& journal) : _journal(journal) {}
    Subscription begin(std::string_view reason) override {
        _journal.note("activity.begin " + std::string(reason));
        return Subscription([this] { _journal.note("activity.end"); });
    }

private:
    Journal& _journal;
};

/// Notes what concerns the model's own keys. The settings' many would drown everything else.
class RecordingDefaults final : public DefaultsStore {
public:
    explicit RecordingDefaults(Journal& journal) : _journal(journal) {}
    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override {
        note("defaults.read ", key);
        return _values.value(key);
    }
    void set(std::string_view key, std::optional<SettingValue> value) override {
        note("defaults.write ", key);
        _values.set(key, std::move(value));
    }

    /// What is stored, without a note of it.
    [[nodiscard]] const SettingValues& values() const { return _values.values(); }
    void store(std::string_view key, SettingValue value) { _values.set(key, std::move(value)); }

private:
    void note(const char* operation, std::string_view key) const {
        if (std::ranges::find(AppSettings::keys(), key) == AppSettings::keys().end())
            _journal.note(operation + std::string(key));
    }

    Journal& _journal;
    MemoryDefaultsStore _values;
};

/// Services that note what the model asks of them.
inline AppServices recordingServices(Journal& journal, const ServiceAnswers& answers,
                                     const StoreEnvironment& files, SerialQueue& queue) {
    const auto noting = [&journal](const char* name, auto make) {
        return [&journal, name, make](auto&&...) {
            journal.note(std::string("make ") + name);
            return make();
        };
    };
    AppServices services;
    services.makeUpdater =
        noting("updater", [&] { return std::make_unique<RecordingUpdater>(journal, answers); });
    services.makeBackups = [&journal, files, &queue](std::filesystem::path directory) {
        journal.note("make backups on " + directory.filename().string());
        return std::make_unique<BackupManager>(std::move(directory), files, queue);
    };
    services.makeNotifier =
        noting("notifier", [center = std::make_shared<RecordingNotificationCenter>(journal),
                            clock = files.clock] { return std::make_unique<Notifier>(center.get(), clock); });
    services.makeDataLifecycle =
        noting("lifecycle", [&] { return std::make_unique<RecordingLifecycle>(journal, answers); });
    services.makeSettings = [&journal, &answers](DefaultsStore& defaults) {
        journal.note("make settings");
        auto settings = std::make_unique<AppSettings>(defaults);
        if (answers.storedSettings)
            answers.storedSettings(*settings);
        return settings;
    };
    services.makeMusic = noting("music", [&] { return std::make_unique<RecordingMusic>(journal, answers); });
    services.makeFocusGuard =
        noting("guard", [&] { return std::make_unique<RecordingGuard>(journal, answers); });
    services.makeFocusMode =
        noting("focusMode", [&] { return std::make_unique<RecordingFocusMode>(journal, answers); });
    services.makeCalendar =
        noting("calendar", [&] { return std::make_unique<RecordingCalendar>(journal, answers); });
    services.applyAppearance = [&journal](AppearanceMode) { journal.note("appearance"); };
    return services;
}

} // namespace selvane::test
