#pragma once

#include "SelvaneCore/FileError.h"
#include "SelvaneCore/FileSystem.h"

#include <tl/expected.hpp>

#include <filesystem>
#include <string_view>

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

/// Makes the folder and those above it that don't exist, each with mode 700. A folder that exists keeps its
/// mode.
[[nodiscard]] tl::expected<void, FileError> makeFolders(FileSystem& fileSystem,
                                                        const std::filesystem::path& folder);

} // namespace selvane::AtomicFile
