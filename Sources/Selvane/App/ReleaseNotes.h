#pragma once

#include "SelvaneCore/Changelog.h"
#include "SelvaneCore/FileSystem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace selvane {

/// Which release is running, and the notes of this and all earlier ones, which ship with the program as a
/// file. Main thread.
class ReleaseNotes {
public:
    /// The running release as it calls itself; each absent where nobody told.
    struct Release {
        /// Dotted, as the user knows it.
        std::optional<std::string> version;
        /// Another one for each build that users get.
        std::optional<std::string> build;
    };

    /// Reads nothing as yet.
    ReleaseNotes(Release current, FileSystem& fileSystem, std::filesystem::path file)
        : _current(std::move(current)), _fileSystem(fileSystem), _file(std::move(file)) {}

    [[nodiscard]] const std::optional<std::string>& currentVersion() const { return _current.version; }
    [[nodiscard]] const std::optional<std::string>& currentBuild() const { return _current.build; }

    /// Newest first. Read at the first call; empty if the file is missing or can't be read, which is no
    /// error.
    [[nodiscard]] const std::vector<ChangelogEntry>& all();

private:
    Release _current;
    FileSystem& _fileSystem;
    std::filesystem::path _file;
    std::optional<std::vector<ChangelogEntry>> _all;
};

} // namespace selvane
