#pragma once

#include <filesystem>
#include <utility>

namespace selvane {

/// Keeps the rolling backups of the user's data in one folder.
class BackupManager {
public:
    /// Touches nothing on disk.
    explicit BackupManager(std::filesystem::path directory) : _directory(std::move(directory)) {}
    virtual ~BackupManager() = default;

    [[nodiscard]] const std::filesystem::path& directory() const { return _directory; }

private:
    std::filesystem::path _directory;
};

} // namespace selvane
