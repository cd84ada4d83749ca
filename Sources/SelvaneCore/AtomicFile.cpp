#include "SelvaneCore/AtomicFile.h"

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/OpenFile.h"
#include "SelvaneCore/UUID.h"

#include <optional>
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

constexpr std::string_view temporaryMark = ".saving-";

std::string temporaryName(const Path& target) {
    return "." + target.filename().string() + std::string(temporaryMark) +
           UUID::random().text().substr(0, tagLength);
}

bool isTag(std::string_view text) {
    return text.size() == tagLength && text.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

/// The name of the target for which a temporary of this name was made; absent for any other name.
std::optional<std::string_view> targetOf(std::string_view name) {
    const std::size_t mark = name.rfind(temporaryMark);
    if (mark == std::string_view::npos || !name.starts_with('.') ||
        !isTag(name.substr(mark + temporaryMark.size())))
        return std::nullopt;
    return name.substr(1, mark - 1);
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

} // namespace

Replacement::Replacement(FileSystem& fileSystem, const Path& path, Taken taken)
    : _fileSystem(fileSystem), _taken(taken) {
    // A link is a name that is taken like any other, unless it is to be written through.
    auto target = taken == Taken::isReplaced ? followLinks(fileSystem, path) : path;
    if (!target) {
        _outcome = tl::unexpected(target.error());
        return;
    }
    _target = std::move(*target);
    // First of all, because they may fill the disk.
    if (taken == Taken::isReplaced)
        removeLeftovers(fileSystem, folderOf(_target),
                        [name = _target.filename().string()](auto other) { return other == name; });

    const Path temporary = folderOf(_target) / temporaryName(_target);
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
    makeDurable();
    return takePlace();
}

Outcome Replacement::commitIfReadBack(std::string_view expected) {
    makeDurable();
    if (_outcome) {
        const auto contents = FileContents::read(_fileSystem, _temporary);
        if (!contents)
            _outcome = tl::unexpected(contents.error());
        else if (contents->bytes() != expected)
            fail("read back", _temporary, std::make_error_code(std::errc::io_error));
    }
    return takePlace();
}

void Replacement::makeDurable() {
    if (_outcome) {
        if (const auto synced = _fileSystem.sync(_file->descriptor()); !synced)
            fail("sync", _temporary, synced.error());
    }
    if (_outcome) {
        if (const auto closed = _file->close(); !closed)
            fail("close", _temporary, closed.error());
    }
}

Outcome Replacement::takePlace() {
    if (_outcome) {
        if (const auto named = giveName(); !named)
            fail("rename", _temporary, named.error());
    }
    if (!_outcome) {
        discard();
        return _outcome;
    }
    _temporary.clear();
    return syncFolder(_fileSystem, folderOf(_target));
}

FileSystem::Result<void> Replacement::giveName() {
    switch (_taken) {
    case Taken::isReplaced:
        return _fileSystem.rename(_temporary, _target);
    case Taken::isFailure:
        return _fileSystem.move(_temporary, _target);
    }
    __builtin_unreachable();
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

Outcome writeChecked(FileSystem& fileSystem, const Path& path, std::string_view bytes) {
    Replacement replacement(fileSystem, path);
    replacement.append(bytes);
    return replacement.commitIfReadBack(bytes);
}

Outcome create(FileSystem& fileSystem, const Path& path, std::string_view bytes) {
    Replacement replacement(fileSystem, path, Taken::isFailure);
    replacement.append(bytes);
    return replacement.commit();
}

void removeLeftovers(FileSystem& fileSystem, const Path& folder,
                     const std::function<bool(std::string_view)>& isTarget) {
    const auto names = fileSystem.list(folder);
    if (!names)
        return;
    for (const std::string& name : *names) {
        if (const auto target = targetOf(name); target && isTarget(*target))
            static_cast<void>(fileSystem.remove(folder / name));
    }
}

Outcome syncFolder(FileSystem& fileSystem, const Path& folder) {
    const auto opened = fileSystem.openFolder(folder);
    if (!opened)
        return failure("open", folder, opened.error());
    OpenFile file(fileSystem, *opened);
    if (const auto synced = fileSystem.sync(file.descriptor()); !synced)
        return failure("sync", folder, synced.error());
    if (const auto closed = file.close(); !closed)
        return failure("close", folder, closed.error());
    return {};
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
