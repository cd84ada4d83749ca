#pragma once

#include "Selvane/Platform/Scheduler.h"
#include "SelvaneCore/DefaultsStore.h"
#include "SelvaneCore/FileSystem.h"
#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/Lifetime.h"
#include "SelvaneCore/SettingValueCoding.h"
#include "SelvaneCore/StoreEnvironment.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace selvane {

/// Values in one JSON file, of which this object is the only writer. What others write to it is not noticed.
///
/// The file is read once, at construction. A damaged one is set aside, and the store is empty then; where
/// that can't be done either, the file stays as it is and nothing is ever written. Changes are written
/// together at the next turn of the main loop, and the rest at destruction. A write that fails leaves the old
/// file whole and the values in memory: it is told to the log, and made again with the next change.
///
/// A value that has no JSON form, such as a text that is not UTF-8, is kept in memory only.
///
/// Main thread. Reading and writing block, each for one small file.
class FileDefaultsStore final : public DefaultsStore {
public:
    /// The scheduler outlives the store, as does what the environment points to.
    FileDefaultsStore(std::filesystem::path path, StoreEnvironment environment, Scheduler& scheduler);
    FileDefaultsStore(const FileDefaultsStore&) = delete;
    FileDefaultsStore& operator=(const FileDefaultsStore&) = delete;
    ~FileDefaultsStore() override;

    [[nodiscard]] std::optional<SettingValue> value(std::string_view key) const override;
    void set(std::string_view key, std::optional<SettingValue> value) override;

    /// Whether there was a file that couldn't be read, so that what it held is absent here.
    [[nodiscard]] bool wasDamaged() const { return _wasDamaged; }

    /// The values in a file that belongs to somebody else. Absent if there is no such file or it can't be
    /// read. Changes nothing on disk.
    [[nodiscard]] static std::optional<SettingValues> read(FileSystem& fileSystem,
                                                           const std::filesystem::path& path);

private:
    enum class Writing { allowed, forbidden };

    void load();
    void scheduleWrite();
    void write();
    [[nodiscard]] SettingValues writableValues() const;

    JSONStore<SettingValues> _file;
    Scheduler& _scheduler;
    SettingValues _values;
    Writing _writing = Writing::allowed;
    bool _wasDamaged = false;
    /// Whether the values differ from those of the last write that went well.
    bool _hasChanges = false;
    bool _isScheduled = false;
    /// A disk that is full fails many writes in a row, which are worth one line in the log.
    bool _hasFailed = false;
    Lifetime _lifetime;
};

} // namespace selvane
