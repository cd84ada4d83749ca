#include "Selvane/Platform/Linux/ApplicationFolders.h"

#include "SelvaneCore/AppPaths.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace selvane {

ApplicationFolders ApplicationFolders::current() {
    ApplicationFolders folders;
    const auto addData = [&data = folders.data](const std::filesystem::path& folder) {
        if (std::ranges::find(data, folder) == data.end())
            data.push_back(folder);
    };
    const std::filesystem::path user = AppPaths::dataDirectory().parent_path();
    addData(user);
    const char* const variable = std::getenv("XDG_DATA_DIRS");
    std::string_view rest = variable && *variable ? variable : "/usr/local/share:/usr/share";
    while (!rest.empty()) {
        std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
        while (folder.size() > 1 && folder.ends_with('/'))
            folder.remove_suffix(1);
        if (folder.starts_with('/'))
            addData(folder);
    }
    addData(user / "flatpak/exports/share");
    addData("/var/lib/flatpak/exports/share");
    addData("/var/lib/snapd/desktop");

    folders.settings = AppPaths::systemSettingsDirectories();
    folders.settings.insert(folders.settings.begin(), AppPaths::settingsDirectory());
    folders.settings.emplace_back("/etc");
    return folders;
}

} // namespace selvane
