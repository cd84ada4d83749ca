#include "SelvaneCore/LegacyMigration.h"

#include "SelvaneCore/AtomicFile.h"
#include "SelvaneCore/Log.h"

#include <string>
#include <utility>

namespace selvane::LegacyMigration {

namespace {

using Path = std::filesystem::path;

/// Gives false, so that the caller can return it.
bool logFailure(const Path& from, const Path& to, const std::string& problem) {
    Log::line("couldn't move " + from.string() + " to " + to.string() + ": " + problem);
    return false;
}

} // namespace

bool moveDataDirectory(FileSystem& fileSystem, const Path& from, const Path& to) {
    // 1. and 2. What can't be known is left to the move, which tells why it fails and replaces nothing.
    if (!fileSystem.exists(from).value_or(true))
        return false;
    if (fileSystem.exists(to).value_or(false))
        return false;

    // 3. Where it goes.
    if (const auto made = AtomicFile::makeFolders(fileSystem, to.parent_path()); !made)
        return logFailure(from, to, made.error().description());

    // 4. All of it at once.
    if (const auto moved = fileSystem.move(from, to); !moved)
        return logFailure(from, to, moved.error().message());

    // The caller remembers that this is done, so the move should outlive a loss of power as that does. If it
    // can't be made to, it has still happened.
    for (const Path& folder : {to.parent_path(), from.parent_path()})
        static_cast<void>(AtomicFile::syncFolder(fileSystem, folder));
    return true;
}

std::size_t copyDefaults(std::span<const std::string_view> keys, const DefaultsStore& from,
                         DefaultsStore& to) {
    std::size_t count = 0;
    for (const std::string_view key : keys) {
        if (to.value(key))
            continue;
        auto value = from.value(key);
        if (!value)
            continue;
        to.set(key, std::move(value));
        ++count;
    }
    return count;
}

} // namespace selvane::LegacyMigration
