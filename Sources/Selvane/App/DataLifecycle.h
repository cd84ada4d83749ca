#pragma once

#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/SelvaneBackup.h"
#include "SelvaneCore/TaskList.h"

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace selvane {

class AppModel;

/// How an import treats what is there.
enum class ImportMode {
    /// The document takes the place of tasks, history and settings.
    replace,
    /// The document's tasks and history join what is there, which wins where both have a record.
    merge,
};

/// Why an import was not carried out; nothing has changed then.
struct ImportError {
    /// For the user.
    std::string localizedDescription;
};

/// The steps by which the model looks after its data: taking over an earlier product's, recovery at launch,
/// backups, bringing them back, and noticing an update. Main thread. The model calls each at the moment that
/// its name tells.
class DataLifecycle {
public:
    using TaskResult = JSONStore<TaskList>::LoadResult;
    using SessionResult = JSONStore<std::vector<FocusSession>>::LoadResult;

    virtual ~DataLifecycle() = default;

    /// The one-off move from the earlier product. Called before anything reads a file or a setting.
    virtual void migrateFromVesk() = 0;
    /// What was damaged comes back from a backup if it can. The model has taken what was loaded out of the
    /// results.
    virtual void recoverDamagedFiles(AppModel& model, const TaskResult& tasks,
                                     const SessionResult& sessions) = 0;
    virtual void backUpBeforeUpdate(AppModel& model) = 0;
    virtual void backUpDaily(AppModel& model) = 0;
    virtual void showWhatsNewIfUpdated(AppModel& model) = 0;

    /// A document of the present state.
    [[nodiscard]] virtual SelvaneBackup makeBackup(const AppModel& model) = 0;
    /// Brings a document back, after a safety copy whose name tells the `reason`.
    [[nodiscard]] virtual tl::expected<void, ImportError>
    importBackup(AppModel& model, const SelvaneBackup& backup, ImportMode mode, std::string_view reason) = 0;
    /// Clears the history, after a safety copy if one can be made.
    virtual void resetStatistics(AppModel& model) = 0;
};

} // namespace selvane
