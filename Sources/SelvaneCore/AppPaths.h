#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

/// Where the user's data and settings lie. Computed at each call from the environment; nothing is made on
/// disk. Not to be called while another thread changes the environment.
namespace selvane::AppPaths {

/// The folder "Selvane" in the user's data folder: XDG_DATA_HOME if that is an absolute path, else
/// ".local/share" in the home folder, which is HOME if absolute and otherwise the user's entry in the
/// system's list of accounts. The program ends if there is no home folder at all.
[[nodiscard]] std::filesystem::path dataDirectory();

/// The file of that name in `dataDirectory`.
[[nodiscard]] std::filesystem::path file(std::string_view name);

/// The user's folder for settings, those of all programs: XDG_CONFIG_HOME if that is an absolute path, else
/// ".config" in the home folder.
[[nodiscard]] std::filesystem::path settingsDirectory();

/// The folders that hold the settings of whoever set up the system, the weightiest first: the absolute paths
/// in XDG_CONFIG_DIRS, which are separated by colons, and "/etc/xdg" if it is unset or empty.
[[nodiscard]] std::vector<std::filesystem::path> systemSettingsDirectories();

/// The file in `settingsDirectory` in which the settings of a domain lie, named after it, as in
/// "com.lorbin.selvane.json".
[[nodiscard]] std::filesystem::path defaultsFile(std::string_view domain);

} // namespace selvane::AppPaths
