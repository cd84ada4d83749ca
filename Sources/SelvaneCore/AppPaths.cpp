#include "SelvaneCore/AppPaths.h"

#include "SelvaneCore/Log.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <string>

namespace selvane::AppPaths {

namespace {

using Path = std::filesystem::path;

/// The absolute path in the environment variable of that name.
std::optional<Path> absolutePath(const char* variable) {
    const char* const text = std::getenv(variable);
    if (!text || text[0] != '/')
        return std::nullopt;
    return Path(text);
}

std::optional<Path> homeOfAccount() {
    std::array<char, 16384> texts{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found) != 0 || !found)
        return std::nullopt;
    const Path home(found->pw_dir);
    return home.is_absolute() ? std::optional(home) : std::nullopt;
}

Path homeDirectory() {
    if (const auto home = absolutePath("HOME"))
        return *home;
    if (const auto home = homeOfAccount())
        return *home;
    Log::line("there is no home folder to keep data in");
    std::exit(EXIT_FAILURE);
}

} // namespace

Path dataDirectory() {
    const auto data = absolutePath("XDG_DATA_HOME");
    return (data ? *data : homeDirectory() / ".local" / "share") / "Selvane";
}

Path file(std::string_view name) {
    return dataDirectory() / name;
}

Path settingsDirectory() {
    const auto config = absolutePath("XDG_CONFIG_HOME");
    return config ? *config : homeDirectory() / ".config";
}

std::vector<Path> systemSettingsDirectories() {
    const char* const variable = std::getenv("XDG_CONFIG_DIRS");
    std::string_view rest = variable && *variable ? variable : "/etc/xdg";
    std::vector<Path> result;
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
        if (folder.starts_with('/'))
            result.emplace_back(folder);
    }
    return result;
}

Path defaultsFile(std::string_view domain) {
    return settingsDirectory() / (std::string(domain) + ".json");
}

} // namespace selvane::AppPaths
