#include "SelvaneCore/AtomicFile.h"

#include "SelvaneCore/OpenFile.h"
#include "SelvaneCore/UUID.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

namespace selvane::AtomicFile {

namespace {

using Path = std::filesystem::path;
using Outcome = tl::expected<void, FileError>;

constexpr std::size_t tagLength = 6;
/// As many as the kernel follows in one path.
constexpr int mostLinks = 40;

tl::unexpected<FileError> failure(const char* operation, const Path& path, std::error_code code) {
    return tl::unexpected(FileError{operation, path, code});
}

std::string temporaryPrefix(const Path& target) {
    return "." + target.filename().string() + ".saving-";
}

bool isTag(std::string_view text) {
    return text.size() == tagLength && text.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

/// The folder in which the file at `path` lies, in a form that can be opened.
Path folderOf(const Path& path) {
    const Path folder = path.parent_path();
    return folder.empty() ? Path(".") : folder;
}

/// The file that a write to `path` is meant for: the end of a chain of symbolic links.
tl::expected<Path, FileError> followLinks(FileSystem& fileSystem, Path path) {
    for (int count = 0; count < mostLinks; ++count) {
        const auto link = fileSystem.readLink(path);
        if (!link && (link.error() == std::errc::invalid_argument ||
                      link.error() == std::errc::no_such_file_or_directory))
            return path;
        if (!link)
            return failure("follow", path, link.error());
        path = path.parent_path() / *link;
    }
    return failure("follow", path, std::make_error_code(std::errc::too_many_symbolic_link_levels));
}

/// Removes what writers that were killed left behind, first of all because it may fill the disk. That it
/// can't be removed is no reason not to save.
void removeLeftovers(FileSystem& fileSystem, const Path& target) {
    const Path folder = folderOf(target);
    const std::string prefix = temporaryPrefix(target);
    const auto names = fileSystem.list(folder);
    if (!names)
        return;
    for (const std::string& name : *names) {
        if (name.starts_with(prefix) && isTag(std::string_view(name).substr(prefix.size())))
            static_cast<void>(fileSystem.remove(folder / name));
    }
}

/// Writes a new file and makes its bytes durable. It may be there in part after a failure.
Outcome writeNewFile(FileSystem& fileSystem, const Path& path, std::string_view bytes) {
    const auto created = fileSystem.createForWriting(path);
    if (!created)
        return failure("create", path, created.error());
    OpenFile file(fileSystem, *created);

    while (!bytes.empty()) {
        const auto count = fileSystem.write(file.descriptor(), bytes);
        if (!count)
            return failure("write", path, count.error());
        // A disk that takes nothing and gives no reason would keep us here for ever.
        if (*count == 0)
            return failure("write", path, std::make_error_code(std::errc::io_error));
        bytes.remove_prefix(*count);
    }
    if (const auto synced = fileSystem.sync(file.descriptor()); !synced)
        return failure("sync", path, synced.error());
    if (const auto closed = file.close(); !closed)
        return failure("close", path, closed.error());
    return {};
}

Outcome syncFolder(FileSystem& fileSystem, const Path& path) {
    const auto opened = fileSystem.openFolder(path);
    if (!opened)
        return failure("open", path, opened.error());
    OpenFile folder(fileSystem, *opened);
    if (const auto synced = fileSystem.sync(folder.descriptor()); !synced)
        return failure("sync", path, synced.error());
    if (const auto closed = folder.close(); !closed)
        return failure("close", path, closed.error());
    return {};
}

} // namespace

Outcome write(FileSystem& fileSystem, const Path& path, std::string_view bytes) {
    const auto target = followLinks(fileSystem, path);
    if (!target)
        return tl::unexpected(target.error());
    removeLeftovers(fileSystem, *target);

    const Path folder = folderOf(*target);
    const Path temporary = folder / (temporaryPrefix(*target) + UUID::random().text().substr(0, tagLength));
    Outcome outcome = writeNewFile(fileSystem, temporary, bytes);
    if (outcome) {
        if (const auto renamed = fileSystem.rename(temporary, *target); !renamed)
            outcome = failure("rename", temporary, renamed.error());
    }
    if (!outcome) {
        static_cast<void>(fileSystem.remove(temporary));
        return outcome;
    }
    return syncFolder(fileSystem, folder);
}

Outcome makeFolders(FileSystem& fileSystem, const Path& folder) {
    if (folder.empty())
        return {};
    auto made = fileSystem.makeFolder(folder);
    if (!made && made.error() == std::errc::no_such_file_or_directory && folder.has_relative_path()) {
        if (Outcome above = makeFolders(fileSystem, folder.parent_path()); !above)
            return above;
        made = fileSystem.makeFolder(folder);
    }
    if (!made && made.error() == std::errc::file_exists)
        return {};
    if (!made)
        return failure("make folder", folder, made.error());
    return syncFolder(fileSystem, folderOf(folder));
}

} // namespace selvane::AtomicFile
