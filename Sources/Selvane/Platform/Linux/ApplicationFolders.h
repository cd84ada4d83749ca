#pragma once

#include <filesystem>
#include <vector>

namespace selvane {

/// Where the desktop looks for applications, the weightiest folder first. Any thread, as long as nobody
/// changes the environment.
struct ApplicationFolders {
    /// Those that hold a folder "applications" with desktop entries: the user's data, the system's, and what
    /// flatpak and snap export, also where the session doesn't name these.
    std::vector<std::filesystem::path> data;
    /// Those that hold settings: the user's, the system's, and /etc, where some programs have theirs.
    std::vector<std::filesystem::path> settings;

    /// As the environment has them now.
    [[nodiscard]] static ApplicationFolders current();
};

} // namespace selvane
