#pragma once

#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/TaskList.h"

#include <vector>

namespace selvane {

class AppModel;

/// The steps by which the model looks after its data: taking over an earlier product's, recovery at launch,
/// backups, and noticing an update. Main thread. The model calls each at the moment that its name tells.
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
};

} // namespace selvane
