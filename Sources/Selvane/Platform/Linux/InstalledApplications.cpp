#include "Selvane/Platform/Linux/InstalledApplications.h"

#include "Selvane/Platform/Linux/ProgramPath.h"
#include "SelvaneCore/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace selvane {

namespace {

/// Of what is larger nobody could say what it is.
constexpr std::size_t largestEntry = std::size_t{1} << 20;

bool canBeStarted(const DesktopEntry& entry) {
    if (entry.value("Type") != "Application" || entry.truth("Hidden").value_or(false))
        return false;
    const auto needed = entry.value("TryExec");
    if (needed && !needed->empty() && !isProgram(*needed))
        return false;
    if (entry.truth("DBusActivatable").value_or(false))
        return true;
    const std::vector<std::string> command = entry.command();
    return !command.empty() && isProgram(command.front());
}

} // namespace

InstalledApplications::InstalledApplications(FileSystem& fileSystem,
                                             std::function<ApplicationFolders()> folders)
    : _fileSystem(&fileSystem), _folders(std::move(folders)) {}

std::optional<DesktopEntry> InstalledApplications::find(std::string_view name) const {
    // A name is no path.
    if (name.find('/') != std::string_view::npos)
        return std::nullopt;
    for (const auto& folder : _folders().data) {
        const auto contents = FileContents::read(*_fileSystem, folder / "applications" / name, largestEntry);
        if (!contents)
            continue;
        DesktopEntry entry(contents->bytes());
        if (!canBeStarted(entry))
            return std::nullopt;
        return entry;
    }
    return std::nullopt;
}

bool InstalledApplications::hasFile(const std::filesystem::path& place) const {
    const auto has = [this, &place](const std::filesystem::path& folder) {
        return _fileSystem->exists(folder / place).value_or(false);
    };
    const ApplicationFolders folders = _folders();
    return std::ranges::any_of(folders.settings, has) || std::ranges::any_of(folders.data, has);
}

} // namespace selvane
