#pragma once

#include "Selvane/Platform/SerialQueue.h"
#include "SelvaneCore/FileError.h"
#include "SelvaneCore/SelvaneBackup.h"
#include "SelvaneCore/StoreEnvironment.h"

#include <tl/expected.hpp>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// Keeps the rolling backups of the user's data in one folder: writes them, prunes them and lists them.
///
/// Main thread, except for what `loadEntries` reads. A backup that fails never stops the program: the writers
/// answer with a flag and leave a line in the log. A backup counts as written only once it has been read back
/// byte for byte, and until then nothing is pruned.
class BackupManager {
public:
    struct Entry {
        std::filesystem::path url;
        /// Decoded and validated.
        SelvaneBackup backup;

        /// What the user is told that it is, after its name: "Daily", "Before update", "Before import"...
        [[nodiscard]] std::string_view kind() const;

        friend bool operator==(const Entry& left, const Entry& right) { return left.url == right.url; }
    };

    /// Touches nothing on disk. The queue outlives the manager.
    BackupManager(std::filesystem::path directory, StoreEnvironment environment, SerialQueue& queue);

    [[nodiscard]] const std::filesystem::path& directory() const { return _directory; }

    /// Writes a backup to any place, as for an export. Makes the folder with mode 700 if there is none.
    [[nodiscard]] static tl::expected<void, FileError>
    write(FileSystem& fileSystem, const SelvaneBackup& backup, const std::filesystem::path& to);

    /// Writes a backup of that name into the folder, and prunes those that are old enough to go. True if it
    /// is on the disk.
    bool write(const SelvaneBackup& backup, std::string_view name);
    bool writePreUpdate(const SelvaneBackup& backup, std::string_view fromBuild);
    /// `reason` is what comes next: "reset", "import" or "restore".
    bool writeSafety(const SelvaneBackup& backup, std::string_view reason);

    /// Whether the folder has a file of that name; absent where that can't be known.
    [[nodiscard]] std::optional<bool> has(std::string_view name) const;

    /// The backups in the folder, newest document first, read away from the main thread. Files that are no
    /// backups don't appear. `onLoaded` runs on the main thread, as long as the queue lives: guard what may
    /// be gone by then.
    void loadEntries(std::function<void(std::vector<Entry>)> onLoaded) const;
    /// The same, while the caller waits.
    [[nodiscard]] std::vector<Entry> readEntries() const;

private:
    /// Removes what is old enough to go, but never what has just been written.
    void prune(std::string_view written);

    std::filesystem::path _directory;
    StoreEnvironment _environment;
    SerialQueue& _queue;
};

} // namespace selvane
