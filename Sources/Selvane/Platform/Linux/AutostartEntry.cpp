#include "Selvane/Platform/Linux/AutostartEntry.h"

#include "Selvane/Platform/Linux/ProgramPath.h"
#include "SelvaneCore/AtomicFile.h"
#include "SelvaneCore/FileContents.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace selvane {

namespace {

using Path = std::filesystem::path;

constexpr auto fileName = "com.lorbin.selvane.desktop";
/// Of what is larger nobody could say what it is.
constexpr std::size_t largestEntry = std::size_t{1} << 20;

constexpr std::string_view hidden = "Hidden";
constexpr std::string_view switchedOn = "X-GNOME-Autostart-enabled";
constexpr std::string_view onlyShowIn = "OnlyShowIn";
constexpr std::string_view notShowIn = "NotShowIn";

Path entryIn(const Path& settings) {
    return settings / "autostart" / fileName;
}

/// Whether a list, whose names end with semicolons, has that name.
bool lists(const std::optional<std::string>& list, std::string_view name) {
    std::string_view rest = list ? std::string_view(*list) : "";
    while (!rest.empty()) {
        const std::string_view entry = rest.substr(0, rest.find(';'));
        if (entry == name)
            return true;
        rest.remove_prefix(std::min(rest.size(), entry.size() + 1));
    }
    return false;
}

tl::unexpected<std::string> failure(const FileError& error) {
    return tl::unexpected("The file " + error.path.string() +
                          " can't be changed: " + error.localizedDescription() + ".");
}

} // namespace

AutostartEntry::AutostartEntry(Environment environment) : _environment(std::move(environment)) {}

Path AutostartEntry::userFile() const {
    return entryIn(_environment.userSettings());
}

AutostartEntry::Reading AutostartEntry::read(const Path& path) const {
    const auto contents = FileContents::read(*_environment.fileSystem, path, largestEntry);
    if (contents)
        return DesktopEntry(contents->bytes());
    const std::error_code code = contents.error().code;
    if (code == std::errc::no_such_file_or_directory || code == std::errc::not_a_directory)
        return std::nullopt;
    return tl::unexpected(contents.error());
}

bool AutostartEntry::starts(const DesktopEntry& entry) const {
    if (entry.truth(hidden).value_or(false) || !entry.truth(switchedOn).value_or(true))
        return false;
    const auto needed = entry.value("TryExec");
    return entry.value("Exec").has_value() && (!needed || needed->empty() || isProgram(*needed)) &&
           isForThisDesktop(entry);
}

bool AutostartEntry::isForThisDesktop(const DesktopEntry& entry) const {
    const auto only = entry.value(onlyShowIn);
    const auto except = entry.value(notShowIn);
    // Of the desktop's names the first that either list has decides.
    for (const std::string& desktop : _environment.desktops()) {
        if (lists(only, desktop))
            return true;
        if (lists(except, desktop))
            return false;
    }
    return !only;
}

bool AutostartEntry::isRegisteredBySystem() const {
    for (const Path& settings : _environment.systemSettings()) {
        const Reading reading = read(entryIn(settings));
        if (!reading || *reading)
            return reading && starts(**reading);
    }
    return false;
}

bool AutostartEntry::isRegistered() const {
    const Reading reading = read(userFile());
    if (!reading)
        return false;
    return *reading ? starts(**reading) : isRegisteredBySystem();
}

LoginItem::Outcome AutostartEntry::registerItem() {
    Reading reading = read(userFile());
    if (!reading)
        return failure(reading.error());
    if (!*reading && isRegisteredBySystem())
        return {};

    DesktopEntry entry = (*reading).value_or(DesktopEntry());
    const std::string before = entry.text();
    const std::string program = _environment.program().string();
    const auto setUnlessThere = [&entry](std::string_view key, std::string_view value) {
        if (!entry.value(key))
            entry.set(key, value);
    };
    setUnlessThere("Type", "Application");
    setUnlessThere("Name", "Selvane");
    setUnlessThere("Icon", "com.lorbin.selvane");
    entry.set("Exec", DesktopEntry::executable(program));
    entry.set("TryExec", program);
    entry.remove(hidden);
    if (entry.value(switchedOn))
        entry.set(switchedOn, "true");
    if (!isForThisDesktop(entry)) {
        entry.remove(onlyShowIn);
        entry.remove(notShowIn);
    }
    return entry.text() == before ? Outcome() : save(entry);
}

LoginItem::Outcome AutostartEntry::unregister() {
    Reading reading = read(userFile());
    if (!reading)
        return failure(reading.error());
    if (!*reading && !isRegisteredBySystem())
        return {};

    // A hidden entry also hides that of the system.
    DesktopEntry entry = (*reading).value_or(DesktopEntry());
    const std::string before = entry.text();
    if (!*reading) {
        entry.set("Type", "Application");
        entry.set("Name", "Selvane");
    }
    entry.set(hidden, "true");
    return entry.text() == before ? Outcome() : save(entry);
}

LoginItem::Outcome AutostartEntry::save(const DesktopEntry& entry) {
    FileSystem& files = *_environment.fileSystem;
    const Path file = userFile();
    const Path folder = file.parent_path();
    // A name that no desktop reads, and from which the file takes its own place: to write to the place itself
    // would write to where a link there points.
    Path draft = file;
    draft += ".new";
    auto saved = AtomicFile::makeFolders(files, folder);
    if (saved)
        saved = AtomicFile::write(files, draft, entry.text());
    if (saved) {
        if (const auto renamed = files.rename(draft, file); !renamed)
            saved = tl::unexpected(FileError{"rename", file, renamed.error()});
    }
    if (!saved) {
        static_cast<void>(files.remove(draft));
        return failure(saved.error());
    }
    // The entry counts already. That it could be lost with the power now is nothing to turn a switch back
    // for.
    static_cast<void>(AtomicFile::syncFolder(files, folder));
    return {};
}

} // namespace selvane
