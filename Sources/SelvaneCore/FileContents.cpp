#include "SelvaneCore/FileContents.h"

#include "SelvaneCore/HugePages.h"
#include "SelvaneCore/OpenFile.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <utility>

namespace selvane {

FileContents::FileContents(std::size_t capacity)
    : _bytes(std::make_unique_for_overwrite<char[]>(capacity + padding)), _capacity(capacity) {
    preferHugePages(_bytes.get(), capacity);
    std::memset(_bytes.get() + capacity, 0, padding);
}

void FileContents::grow() {
    FileContents larger(_capacity * 2);
    std::memcpy(larger._bytes.get(), _bytes.get(), _size);
    larger._size = _size;
    *this = std::move(larger);
}

FileContents FileContents::copy(std::string_view bytes) {
    FileContents contents(bytes.size());
    std::ranges::copy(bytes, contents._bytes.get());
    contents._size = bytes.size();
    return contents;
}

tl::expected<FileContents, FileError>
FileContents::read(FileSystem& fileSystem, const std::filesystem::path& path, std::size_t limit) {
    const auto failure = [&path](const char* operation, std::error_code code) {
        return tl::unexpected(FileError{operation, path, code});
    };

    const auto opened = fileSystem.openForReading(path);
    if (!opened)
        return failure("open", opened.error());
    OpenFile file(fileSystem, *opened);

    const auto size = fileSystem.size(file.descriptor());
    if (!size)
        return failure("measure", size.error());
    // Asked before any memory is: a sparse file may say that it is larger than all of it.
    if (*size > limit)
        return failure("read", std::make_error_code(std::errc::file_too_large));

    // One byte more than the file has, so that the read that finds the end needs no more room.
    FileContents contents(*size + 1);
    while (true) {
        const std::span<char> room(contents._bytes.get() + contents._size,
                                   contents._capacity - contents._size);
        const auto count = fileSystem.read(file.descriptor(), room);
        if (!count)
            return failure("read", count.error());
        if (*count == 0)
            break;
        contents._size += *count;
        if (contents._size > limit)
            return failure("read", std::make_error_code(std::errc::file_too_large));
        if (contents._size == contents._capacity)
            contents.grow();
    }
    std::memset(contents._bytes.get() + contents._size, 0, padding);

    if (const auto closed = file.close(); !closed)
        return failure("close", closed.error());
    return contents;
}

} // namespace selvane
