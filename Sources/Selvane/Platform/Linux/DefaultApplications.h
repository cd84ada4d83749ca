#pragma once

#include "Selvane/Platform/Linux/ApplicationFolders.h"
#include "SelvaneCore/FileSystem.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// The applications that the user, and after them whoever made the system, wants for a kind of files, by the
/// specification of associations between MIME types and applications 1.0.1. Nothing is remembered: each call
/// reads the files mimeapps.list. Any thread, as long as nobody changes the environment.
class DefaultApplications {
public:
    /// `fileSystem` outlives this object. `desktops` are the names of the desktop, the most exact first.
    DefaultApplications(FileSystem& fileSystem, std::function<ApplicationFolders()> folders,
                        std::function<std::vector<std::string>()> desktops);

    /// The names of their desktop entries, the first choice first; not all of them need be installed.
    [[nodiscard]] std::vector<std::string> of(std::string_view mimeType) const;

private:
    FileSystem* _fileSystem;
    std::function<ApplicationFolders()> _folders;
    std::function<std::vector<std::string>()> _desktops;
};

} // namespace selvane
