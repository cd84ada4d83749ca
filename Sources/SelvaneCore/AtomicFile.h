#pragma once

#include "SelvaneCore/FileError.h"
#include "SelvaneCore/FileSystem.h"
#include "SelvaneCore/OpenFile.h"

#include <tl/expected.hpp>

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

/// Files that are replaced as a whole: whoever reads the file, also after a crash or a loss of power in the
/// midst of writing, finds all of the old bytes or all of the new ones.
namespace selvane::AtomicFile {

/// Puts `bytes` in place of the file at `path`, and returns when they are safely on the disk. The file has
/// mode 600 afterwards. If `path` is a symbolic link, it stays, and the file that it points to is replaced.
///
/// The bytes go to a file beside the target first, named ".", the target's name, ".saving-" and six
/// hexadecimal digits. It is removed on failure; one that a killed process left behind is removed by the
/// next write to the same target. Two processes that write to one target at a time cannot mix their bytes,
/// but either may fail.
///
/// On failure the old file is whole. Only when the very last step failed, that of making the new name
/// durable, does the new file stand in its place, just as whole.
[[nodiscard]] tl::expected<void, FileError> write(FileSystem& fileSystem, const std::filesystem::path& path,
                                                  std::string_view bytes);

/// The same, but the bytes are read back before they take the place of the old file: a disk that doesn't give
/// back what it was given fails the write.
[[nodiscard]] tl::expected<void, FileError>
writeChecked(FileSystem& fileSystem, const std::filesystem::path& path, std::string_view bytes);

/// Puts `bytes` in a new file at `path` with the same care. Fails with `file_exists` if anything has that
/// name, which stays as it is.
[[nodiscard]] tl::expected<void, FileError> create(FileSystem& fileSystem, const std::filesystem::path& path,
                                                   std::string_view bytes);

/// Removes from a folder what writers that were killed left behind, of those whose target had a name that
/// `isTarget` accepts. That it can't be removed is no failure.
void removeLeftovers(FileSystem& fileSystem, const std::filesystem::path& folder,
                     const std::function<bool(std::string_view)>& isTarget);

/// What becomes of a file that has the target's name already.
enum class Taken { isReplaced, isFailure };

/// The same as `write` or `create` for bytes that come piece by piece. A replacement that isn't committed
/// leaves nothing behind.
class Replacement {
public:
    /// Makes the new file beside the target.
    Replacement(FileSystem& fileSystem, const std::filesystem::path& path, Taken taken = Taken::isReplaced);
    Replacement(const Replacement&) = delete;
    Replacement& operator=(const Replacement&) = delete;
    ~Replacement();

    /// After a failure, which `commit` tells, nothing more is written.
    void append(std::string_view bytes);

    /// Makes the bytes durable and puts them in place of the target. To be called once, last.
    [[nodiscard]] tl::expected<void, FileError> commit();
    /// The same, if what was written reads back as `expected`.
    [[nodiscard]] tl::expected<void, FileError> commitIfReadBack(std::string_view expected);

private:
    void fail(const char* operation, const std::filesystem::path& path, std::error_code code);
    void discard();

    void makeDurable();
    [[nodiscard]] tl::expected<void, FileError> takePlace();
    [[nodiscard]] FileSystem::Result<void> giveName();

    FileSystem& _fileSystem;
    Taken _taken;
    std::filesystem::path _target;
    /// Empty while there is no file of this name to clean up.
    std::filesystem::path _temporary;
    std::optional<OpenFile> _file;
    tl::expected<void, FileError> _outcome;
};

/// Makes the folder and those above it that don't exist, each with mode 700. A folder that exists keeps its
/// mode.
[[nodiscard]] tl::expected<void, FileError> makeFolders(FileSystem& fileSystem,
                                                        const std::filesystem::path& folder);

/// Returns when the names in a folder, as they were changed before, are safely on the disk.
[[nodiscard]] tl::expected<void, FileError> syncFolder(FileSystem& fileSystem,
                                                       const std::filesystem::path& folder);

} // namespace selvane::AtomicFile
