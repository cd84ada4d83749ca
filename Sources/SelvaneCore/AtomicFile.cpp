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

Replacement::Replacement(FileSystem& fileSystem, const Path& path) : _fileSystem(fileSystem) {
    auto target = followLinks(fileSystem, path);
    if (!target) {
        _outcome = tl::unexpected(target.error());
        return;
    }
    _target = std::move(*target);
    removeLeftovers(fileSystem, _target);

    const Path temporary =
        folderOf(_target) / (temporaryPrefix(_target) + UUID::random().text().substr(0, tagLength));
    const auto created = fileSystem.createForWriting(temporary);
    if (!created) {
        fail("create", temporary, created.error());
        return;
    }
    _temporary = temporary;
    _file.emplace(fileSystem, *created);
}

Replacement::~Replacement() {
    discard();
}

void Replacement::append(std::string_view bytes) {
    while (_outcome && !bytes.empty()) {
        const auto count = _fileSystem.write(_file->descriptor(), bytes);
        if (!count) {
            fail("write", _temporary, count.error());
        } else if (*count == 0) {
            // A disk that takes nothing and gives no reason would keep us here for ever.
            fail("write", _temporary, std::make_error_code(std::errc::io_error));
        } else {
            bytes.remove_prefix(*count);
        }
    }
}

Outcome Replacement::commit() {
    if (_outcome) {
        if (const auto synced = _fileSystem.sync(_file->descriptor()); !synced)
            fail("sync", _temporary, synced.error());
    }
    if (_outcome) {
        if (const auto closed = _file->close(); !closed)
            fail("close", _temporary, closed.error());
    }
    if (_outcome) {
        if (const auto renamed = _fileSystem.rename(_temporary, _target); !renamed)
            fail("rename", _temporary, renamed.error());
    }
    if (!_outcome) {
        discard();
        return _outcome;
    }
    _temporary.clear();
    return syncFolder(_fileSystem, folderOf(_target));
}

void Replacement::fail(const char* operation, const Path& path, std::error_code code) {
    _outcome = failure(operation, path, code);
}

void Replacement::discard() {
    _file.reset();
    if (!_temporary.empty())
        static_cast<void>(_fileSystem.remove(std::exchange(_temporary, {})));
}

Outcome write(FileSystem& fileSystem, const Path& path, std::string_view bytes) {
    Replacement replacement(fileSystem, path);
    replacement.append(bytes);
    return replacement.commit();
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
