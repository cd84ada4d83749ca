#include "Selvane/App/BackupManager.h"

#include "SelvaneCore/AtomicFile.h"
#include "SelvaneCore/BackupRotation.h"
#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/Log.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <system_error>
#include <utility>

namespace selvane {

namespace {

using Path = std::filesystem::path;
using Entry = BackupManager::Entry;

/// The backup in a file, absent if it is none.
std::optional<Entry> readEntry(FileSystem& fileSystem, const Path& url, Date now) {
    const auto contents = FileContents::read(fileSystem, url, SelvaneBackup::maxFileSize);
    if (!contents)
        return std::nullopt;
    auto backup = SelvaneBackup::decode(*contents, now);
    if (!backup)
        return std::nullopt;
    return Entry{url, std::move(*backup)};
}

std::vector<Entry> readEntriesIn(FileSystem& fileSystem, const Path& folder, Date now) {
    // 1. List the names.
    auto names = fileSystem.list(folder);
    if (!names)
        return {};
    // In an order of their own, so that documents of one moment always come in the same order.
    std::ranges::sort(*names);
    // 2. to 4. Read those that may be backups.
    std::vector<Entry> entries;
    for (const std::string& name : *names) {
        if (!name.ends_with(".json"))
            continue;
        if (auto entry = readEntry(fileSystem, folder / name, now))
            entries.push_back(std::move(*entry));
    }
    // 5. Latest first, by what they say themselves.
    std::ranges::stable_sort(entries, std::greater{},
                             [](const Entry& entry) { return entry.backup.exportedAt; });
    return entries;
}

} // namespace

std::string_view Entry::kind() const {
    static constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kinds{{
        {BackupRotation::dailyPrefix, "Daily"},
        {BackupRotation::preUpdatePrefix, "Before update"},
        {"before-reset", "Before reset"},
        {"before-import", "Before import"},
        {"before-restore", "Before restore"},
    }};
    const std::string name = url.filename().string();
    const auto found =
        std::ranges::find_if(kinds, [&name](const auto& kind) { return name.starts_with(kind.first); });
    return found == kinds.end() ? "Backup" : found->second;
}

BackupManager::BackupManager(Path directory, StoreEnvironment environment, SerialQueue& queue)
    : _directory(std::move(directory)), _environment(std::move(environment)), _queue(queue) {}

tl::expected<void, FileError> BackupManager::write(FileSystem& fileSystem, const SelvaneBackup& backup,
                                                   const Path& to) {
    // 1. The folder.
    if (auto made = AtomicFile::makeFolders(fileSystem, to.parent_path()); !made)
        return made;
    // 2. The document.
    const auto text = backup.encoded();
    if (!text)
        return tl::unexpected(FileError{"encode", to, text.error()});
    // Nobody could read it.
    if (text->size() > SelvaneBackup::maxFileSize)
        return tl::unexpected(FileError{"encode", to, std::make_error_code(std::errc::file_too_large)});
    // 3. The bytes, which must come back as they went.
    return AtomicFile::writeChecked(fileSystem, to, *text);
}

bool BackupManager::write(const SelvaneBackup& backup, std::string_view name) {
    // A record that can't be costs the user no backup: all others are in it, and the file can be mended.
    const auto invalid = backup.firstInvalidRecord(_environment.clock());
    if (invalid)
        Log::line("the backup " + std::string(name) + " holds a record that can't be: " + *invalid);
    if (const auto written = write(*_environment.fileSystem, backup, _directory / name); !written) {
        Log::line("couldn't write backup " + std::string(name) + ": " + written.error().description());
        return false;
    }
    // One that must be mended first doesn't push out those that needn't be.
    if (!invalid)
        prune(name);
    return true;
}

bool BackupManager::writePreUpdate(const SelvaneBackup& backup, std::string_view fromBuild) {
    return write(backup,
                 BackupRotation::preUpdateName(fromBuild, _environment.clock(), _environment.calendar()));
}

bool BackupManager::writeSafety(const SelvaneBackup& backup, std::string_view reason) {
    const Calendar calendar = _environment.calendar();
    Date moment = _environment.clock();
    // Two in one second are two ways back, as are those of the hour that comes twice.
    while (has(BackupRotation::safetyName(reason, moment, calendar)) == true)
        moment += std::chrono::seconds{1};
    return write(backup, BackupRotation::safetyName(reason, moment, calendar));
}

void BackupManager::prune(std::string_view written) {
    AtomicFile::removeLeftovers(*_environment.fileSystem, _directory,
                                [](std::string_view target) { return target.ends_with(".json"); });
    auto names = _environment.fileSystem->list(_directory);
    if (!names)
        return;
    // What a clock gave that ran ahead would count as newer than anything of today, and push it out.
    std::erase_if(*names, [this, now = _environment.clock(), calendar = _environment.calendar()](
                              const auto& name) { return BackupRotation::isAhead(name, now, calendar); });
    for (const std::string& name : BackupRotation::namesToDelete(*names)) {
        if (name != written)
            static_cast<void>(_environment.fileSystem->remove(_directory / name));
    }
}

std::optional<bool> BackupManager::has(std::string_view name) const {
    const auto exists = _environment.fileSystem->exists(_directory / name);
    return exists ? std::optional(*exists) : std::nullopt;
}

void BackupManager::loadEntries(std::function<void(std::vector<Entry>)> onLoaded) const {
    _queue.run([fileSystem = _environment.fileSystem, folder = _directory, now = _environment.clock(),
                onLoaded = std::move(onLoaded)]() -> SerialQueue::Rest {
        // A rest is copied on its way, the documents need not be.
        auto entries = std::make_shared<std::vector<Entry>>(readEntriesIn(*fileSystem, folder, now));
        return [entries, onLoaded] { onLoaded(std::move(*entries)); };
    });
}

std::vector<Entry> BackupManager::readEntries() const {
    return readEntriesIn(*_environment.fileSystem, _directory, _environment.clock());
}

} // namespace selvane
