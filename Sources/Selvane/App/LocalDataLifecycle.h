#pragma once

#include "Selvane/App/DataLifecycle.h"
#include "Selvane/App/ReleaseNotes.h"
#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/Date.h"
#include "SelvaneCore/DefaultsStore.h"
#include "SelvaneCore/FileSystem.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace selvane {

/// Looks after data that lies in files of this machine.
class LocalDataLifecycle final : public DataLifecycle {
public:
    /// Where the defaults keep that the move from the earlier product is over.
    static constexpr std::string_view migratedKey = "migratedFromVesk";

    /// Where an earlier product's data and settings lie.
    struct Predecessor {
        /// Its data folder, and the one that this program uses.
        std::filesystem::path dataDirectory;
        std::filesystem::path newDataDirectory;
        /// Reads its settings, which stay as they are; absent if there are none.
        std::function<std::optional<SettingValues>()> readDefaults;
    };

    /// What is pointed to outlives the lifecycle.
    struct Environment {
        DefaultsStore* defaults;
        FileSystem* fileSystem;
        ReleaseNotes* releaseNotes;
        std::function<Date()> clock;
        std::function<Calendar()> calendar;
        /// A date and time for the user.
        std::function<std::string(Date)> dateAndTime;
        /// Absent where the defaults are not the user's own, so that nothing of theirs is taken over.
        std::optional<Predecessor> predecessor;
    };

    explicit LocalDataLifecycle(Environment environment);

    void migrateFromVesk() override;
    void recoverDamagedFiles(AppModel& model, const TaskResult& tasks,
                             const SessionResult& sessions) override;
    void backUpBeforeUpdate(AppModel& model) override;
    void backUpDaily(AppModel& model) override;
    void showWhatsNewIfUpdated(AppModel& model) override;

    [[nodiscard]] SelvaneBackup makeBackup(const AppModel& model) override;
    [[nodiscard]] tl::expected<void, ImportError> importBackup(AppModel& model, const SelvaneBackup& backup,
                                                               ImportMode mode,
                                                               std::string_view reason) override;
    void resetStatistics(AppModel& model) override;

private:
    template <typename Result>
    void putBackIfUnsaved(const AppModel& model, const Result& result, const char* name);

    Environment _environment;
};

} // namespace selvane
