#pragma once

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace selvane {

/// The calls to the file system that storage is made of, each by itself, so that a test can fail any one of
/// them. Every call blocks. Implementations keep no state that calls share, so any thread may call.
class FileSystem {
public:
    template <typename T>
    using Result = tl::expected<T, std::error_code>;
    using Path = std::filesystem::path;

    /// An open file or folder, from the call that opened it until `close`.
    enum class Descriptor : int {};

    virtual ~FileSystem() = default;

    /// Whether something is at the path, links followed. An error if that can't be known.
    [[nodiscard]] virtual Result<bool> exists(const Path& path) = 0;
    /// Where a symbolic link points to, as it is written in the link; `invalid_argument` for anything else.
    [[nodiscard]] virtual Result<Path> readLink(const Path& path) = 0;
    /// The names in a folder, without the two dots, in no order.
    [[nodiscard]] virtual Result<std::vector<std::string>> list(const Path& folder) = 0;

    /// Opens a regular file; anything else is refused.
    [[nodiscard]] virtual Result<Descriptor> openForReading(const Path& path) = 0;
    /// Makes a new file that only its user may read and write. `file_exists` if the name is taken.
    [[nodiscard]] virtual Result<Descriptor> createForWriting(const Path& path) = 0;
    /// Opens a folder in order to `sync` it.
    [[nodiscard]] virtual Result<Descriptor> openFolder(const Path& path) = 0;

    [[nodiscard]] virtual Result<std::size_t> size(Descriptor file) = 0;
    /// Reads on from where the last read ended; the count may be short, and 0 means the end.
    [[nodiscard]] virtual Result<std::size_t> read(Descriptor file, std::span<char> into) = 0;
    /// Writes on from where the last write ended; the count may be short.
    [[nodiscard]] virtual Result<std::size_t> write(Descriptor file, std::string_view bytes) = 0;
    /// Returns when what was written is on the disk.
    [[nodiscard]] virtual Result<void> sync(Descriptor file) = 0;
    /// Closes in any case. A failure means that what was written may be lost.
    [[nodiscard]] virtual Result<void> close(Descriptor file) = 0;

    /// Gives a file a name in the same folder, in place of whatever had it.
    [[nodiscard]] virtual Result<void> rename(const Path& from, const Path& to) = 0;
    /// Gives a file another name; `file_exists` if that is taken.
    [[nodiscard]] virtual Result<void> move(const Path& from, const Path& to) = 0;
    [[nodiscard]] virtual Result<void> remove(const Path& path) = 0;
    /// Makes one folder with mode 700. `file_exists` if the name is taken.
    [[nodiscard]] virtual Result<void> makeFolder(const Path& path) = 0;
};

} // namespace selvane
