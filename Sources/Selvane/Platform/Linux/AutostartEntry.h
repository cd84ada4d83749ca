#pragma once

#include "Selvane/Platform/Linux/DesktopEntry.h"
#include "Selvane/Platform/LoginItem.h"
#include "SelvaneCore/FileError.h"
#include "SelvaneCore/FileSystem.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace selvane {

/// The program's entry among those that the desktop starts at login, by the Desktop Application Autostart
/// Specification: the file com.lorbin.selvane.desktop in the folder "autostart" of the user's settings, or
/// else of the system's. The first that exists counts alone, and counts as none if it is hidden, switched off
/// in the way of GNOME's tools, meant for other desktops than this, or names a program that isn't there.
///
/// Only the user's file is ever written, and never through a link. What the user added to it stays, unless it
/// keeps the program from being started; a file that can't be read stays as it is.
class AutostartEntry final : public LoginItem {
public:
    struct Environment {
        /// Outlives this object.
        FileSystem* fileSystem;
        /// The folders of settings, each time they are needed.
        std::function<std::filesystem::path()> userSettings;
        std::function<std::vector<std::filesystem::path>()> systemSettings;
        /// The absolute path of the program that is to be started.
        std::function<std::filesystem::path()> program;
        /// The names of the desktop, by which entries call it, the most exact first.
        std::function<std::vector<std::string>()> desktops;
    };

    explicit AutostartEntry(Environment environment);

    [[nodiscard]] bool isRegistered() const override;
    [[nodiscard]] Outcome registerItem() override;
    [[nodiscard]] Outcome unregister() override;

private:
    using Path = std::filesystem::path;
    /// Absent if there is no file.
    using Reading = tl::expected<std::optional<DesktopEntry>, FileError>;

    [[nodiscard]] Path userFile() const;
    [[nodiscard]] Reading read(const Path& path) const;
    [[nodiscard]] bool starts(const DesktopEntry& entry) const;
    [[nodiscard]] bool isForThisDesktop(const DesktopEntry& entry) const;
    [[nodiscard]] bool isRegisteredBySystem() const;
    [[nodiscard]] Outcome save(const DesktopEntry& entry);

    Environment _environment;
};

} // namespace selvane
