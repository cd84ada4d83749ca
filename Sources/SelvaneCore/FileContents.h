#pragma once

#include "SelvaneCore/FileError.h"
#include "SelvaneCore/FileSystem.h"

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>

namespace selvane {

/// The bytes of a file, in memory that goes on for `padding` readable bytes after the last one, as a parser
/// that reads in wide steps needs it.
class FileContents {
public:
    static constexpr std::size_t padding = 64;
    /// Files of this size and above are not read. No data file gets there, and the parser's offsets end
    /// there.
    static constexpr std::size_t tooLarge = std::size_t{4} << 30;

    /// Reads the whole file, also what is added to it meanwhile. The error is that of the first call that
    /// failed, or `file_too_large` for a file of more than `limit` bytes, of which none is read if it says so
    /// beforehand.
    [[nodiscard]] static tl::expected<FileContents, FileError>
    read(FileSystem& fileSystem, const std::filesystem::path& path, std::size_t limit = tooLarge - 1);

    /// A padded copy of `bytes`.
    [[nodiscard]] static FileContents copy(std::string_view bytes);

    /// Valid as long as this object.
    [[nodiscard]] std::string_view bytes() const { return {_bytes.get(), _size}; }

private:
    explicit FileContents(std::size_t capacity);
    void grow();

    /// Not filled: the reader writes every byte that is looked at.
    std::unique_ptr<char[]> _bytes;
    std::size_t _size = 0;
    /// Without the padding.
    std::size_t _capacity;
};

} // namespace selvane
