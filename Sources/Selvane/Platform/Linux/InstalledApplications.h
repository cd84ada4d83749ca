#pragma once

#include "Selvane/Platform/Linux/ApplicationFolders.h"
#include "Selvane/Platform/Linux/DesktopEntry.h"
#include "SelvaneCore/FileSystem.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>

namespace selvane {

/// The applications that the desktop can start, by the names of their desktop entries, as in
/// "org.gnome.Rhythmbox3.desktop". Nothing is remembered: each call looks at files, of which it reads the few
/// that it asks for. Any thread, as long as nobody changes the environment.
class InstalledApplications {
public:
    /// `fileSystem` outlives this object.
    explicit InstalledApplications(FileSystem& fileSystem,
                                   std::function<ApplicationFolders()> folders = ApplicationFolders::current);

    /// The entry of that name in the weightiest folder that has one. Absent if there is none, and also if
    /// that one is hidden or its program isn't there.
    [[nodiscard]] std::optional<DesktopEntry> find(std::string_view name) const;

    /// Whether one of the folders of settings or data has that file.
    [[nodiscard]] bool hasFile(const std::filesystem::path& place) const;

private:
    FileSystem* _fileSystem;
    std::function<ApplicationFolders()> _folders;
};

} // namespace selvane
