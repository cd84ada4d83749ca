#include "Selvane/App/LocalDataLifecycle.h"

#include "Selvane/App/AppModel.h"
#include "SelvaneCore/BackupRotation.h"
#include "SelvaneCore/LegacyMigration.h"
#include "SelvaneCore/MemoryDefaultsStore.h"

#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace selvane {

namespace {

constexpr std::string_view lastRunBuildKey = "lastRunBuild";
constexpr std::string_view lastSeenVersionKey = "lastSeenVersion";

template <typename Value>
bool isUnreadable(const typename JSONStore<Value>::LoadResult& result) {
    return std::holds_alternative<typename JSONStore<Value>::Unreadable>(result);
}

std::string joined(const std::vector<std::string>& words) {
    std::string result;
    for (const std::string& word : words)
        result += (result.empty() ? "" : " and ") + word;
    return result;
}

} // namespace

LocalDataLifecycle::LocalDataLifecycle(Environment environment) : _environment(std::move(environment)) {}

void LocalDataLifecycle::migrateFromVesk() {
    // 1. Only for the user's own defaults.
    if (!_environment.predecessor)
        return;
    // 2. Once.
    DefaultsStore& defaults = *_environment.defaults;
    if (const auto migrated = defaults.value(migratedKey); migrated && migrated->boolean() == true)
        return;
    const Predecessor& predecessor = *_environment.predecessor;
    // 3. The files. The old folder stays where it can't be moved.
    static_cast<void>(LegacyMigration::moveDataDirectory(*_environment.fileSystem, predecessor.dataDirectory,
                                                         predecessor.newDataDirectory));
    // 4. The settings.
    if (auto earlier = predecessor.readDefaults()) {
        const auto settingKeys = AppSettings::keys();
        std::vector<std::string_view> keys(settingKeys.begin(), settingKeys.end());
        keys.push_back(AppModel::currentTaskKey);
        static_cast<void>(
            LegacyMigration::copyDefaults(keys, MemoryDefaultsStore(std::move(*earlier)), defaults));
    }
    // 5. There is no second attempt.
    defaults.set(migratedKey, SettingValue{true});
}

void LocalDataLifecycle::recoverDamagedFiles(AppModel& model, const TaskResult& tasks,
                                             const SessionResult& sessions) {
    // 1. What is damaged.
    const bool tasksDamaged = isUnreadable<TaskList>(tasks);
    const bool sessionsDamaged = isUnreadable<std::vector<FocusSession>>(sessions);
    std::vector<std::string> damage;
    if (tasksDamaged)
        damage.emplace_back("tasks");
    if (sessionsDamaged)
        damage.emplace_back("focus history");
    if (damage.empty())
        return;
    // 2. In words.
    const std::string what = joined(damage);
    // 3. The backups.
    auto entries = model.backups().readEntries();
    // 5. None can stand in.
    if (entries.empty()) {
        model.setRecoveryNotice("Selvane couldn't read your " + what +
                                    ", and there was no backup to restore. The damaged file was kept in the "
                                    "data folder.",
                                AppModel::Recovery::incomplete);
        return;
    }
    // 4. The newest does.
    SelvaneBackup& backup = entries.front().backup;
    if (tasksDamaged) {
        model.setTasks(std::move(backup.tasks));
        putBackIfUnsaved(model, tasks, "tasks.json");
    }
    if (sessionsDamaged) {
        model.setSessions(std::move(backup.sessions));
        putBackIfUnsaved(model, sessions, "sessions.json");
    }
    model.setRecoveryNotice("Selvane couldn't read your " + what +
                                ", so it restored them from the backup of " +
                                _environment.dateAndTime(backup.exportedAt) + ".",
                            AppModel::Recovery::complete);
}

/// What could not be saved in the place of a damaged file would be missing at the next start, and what is
/// missing is no damage: the damaged file takes its place again, so that the next start recovers once more.
template <typename Result>
void LocalDataLifecycle::putBackIfUnsaved(const AppModel& model, const Result& result, const char* name) {
    const auto& movedTo = std::get<1>(result).movedTo;
    if (model.saveError() && movedTo)
        static_cast<void>(_environment.fileSystem->move(*movedTo, movedTo->parent_path() / name));
}

SelvaneBackup LocalDataLifecycle::makeBackup(const AppModel& model) {
    return SelvaneBackup(_environment.releaseNotes->currentVersion().value_or("unknown"),
                         _environment.clock(), model.tasks(), model.sessions(), model.currentTaskID(),
                         model.settings().exportValues());
}

void LocalDataLifecycle::backUpDaily(AppModel& model) {
    // 1. An empty start must not push good backups out.
    if (model.unrecoveredData())
        return;
    // 2. Nor is there a backup of nothing.
    if (!model.hadDataAtLaunch() && model.tasks().items.empty() && model.sessions().empty())
        return;
    // 3. The name of the user's present day.
    const DayKey today(_environment.clock(), model.settings().dayStartHour(), _environment.calendar());
    const std::string name = BackupRotation::dailyName(today);
    // 4. The first state of the day is kept, so nothing is written where that can't be told either.
    if (model.backups().has(name).value_or(true))
        return;
    // 5. What fails is tried again at the next opportunity.
    model.backups().write(makeBackup(model), name);
}

void LocalDataLifecycle::backUpBeforeUpdate(AppModel& model) {
    // 1. and 2. The build now and the build before.
    const auto& build = _environment.releaseNotes->currentBuild();
    if (!build)
        return;
    const auto previous = _environment.defaults->text(lastRunBuildKey);
    // 3. The same one.
    if (previous == build)
        return;
    // 4. As the build before left it.
    if (model.hadDataAtLaunch() && !model.unrecoveredData())
        model.backups().writePreUpdate(makeBackup(model), previous.value_or("earlier"));
    // 5. In any case.
    _environment.defaults->set(lastRunBuildKey, SettingValue{*build});
}

void LocalDataLifecycle::showWhatsNewIfUpdated(AppModel& model) {
    // 1. and 2. The version now and the one whose notes the user has had.
    const auto& version = _environment.releaseNotes->currentVersion();
    if (!version)
        return;
    const auto lastSeen = _environment.defaults->text(lastSeenVersionKey);
    _environment.defaults->set(lastSeenVersionKey, SettingValue{*version});
    // 3. and 4. Only a newer version has news, and none for a new user.
    const bool hasNews = lastSeen ? Changelog::compare(*version, *lastSeen) > 0 : model.hadDataAtLaunch();
    if (!hasNews)
        return;
    // 5. and 6. If there is something to show, and someone to show it.
    if (!_environment.releaseNotes->all().empty() && model.showWhatsNewAfterUpdate)
        model.showWhatsNewAfterUpdate();
}

tl::expected<void, ImportError> LocalDataLifecycle::importBackup(AppModel& model, const SelvaneBackup& backup,
                                                                 ImportMode mode, std::string_view reason) {
    // 1. Nothing changes before there is a way back.
    if (!model.backups().writeSafety(makeBackup(model), reason))
        return tl::unexpected(
            ImportError{"Selvane couldn't save a copy of your current data first, so nothing was changed."});
    // 2. A session under way belongs to the old history.
    if (!model.engine().isIdle())
        model.engine().reset();
    switch (mode) {
    case ImportMode::replace: {
        // 3. The document's state.
        model.setTasks(backup.tasks);
        model.setSessions(backup.sessions);
        const bool hasTask = backup.currentTaskID && backup.tasks.find(*backup.currentTaskID);
        model.setCurrentTaskID(hasTask ? backup.currentTaskID : std::nullopt);
        model.settings().importValues(backup.settings);
        break;
    }
    case ImportMode::merge: {
        // 4. Both.
        auto merged = backup.merged(model.tasks(), model.sessions());
        model.setTasks(std::move(merged.tasks));
        model.setSessions(std::move(merged.sessions));
        break;
    }
    }
    // 5. Data is back, and automatic backups with it.
    model.setRecoveryNotice(std::nullopt, AppModel::Recovery::complete);
    return {};
}

void LocalDataLifecycle::resetStatistics(AppModel& model) {
    // The user wants it gone: a copy that can't be made doesn't stop that, but what failed for a moment gets
    // a second chance.
    const SelvaneBackup backup = makeBackup(model);
    if (!model.backups().writeSafety(backup, "reset"))
        model.backups().writeSafety(backup, "reset");
    model.setSessions({});
}

} // namespace selvane
