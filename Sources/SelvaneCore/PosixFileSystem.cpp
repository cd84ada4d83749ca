#include "SelvaneCore/PosixFileSystem.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <memory>

namespace selvane {

namespace {

tl::unexpected<std::error_code> failure(int number) {
    return tl::unexpected(std::error_code(number, std::generic_category()));
}

tl::unexpected<std::error_code> lastFailure() {
    return failure(errno);
}

int number(FileSystem::Descriptor file) {
    return static_cast<int>(file);
}

/// The result of `call`, made again as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call&& call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

FileSystem::Result<void> outcome(int result) {
    if (result == -1)
        return lastFailure();
    return {};
}

FileSystem::Result<FileSystem::Descriptor> open(const FileSystem::Path& path, int flags, mode_t mode = 0) {
    const int file = uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); });
    if (file == -1)
        return lastFailure();
    return FileSystem::Descriptor{file};
}

} // namespace

FileSystem::Result<bool> PosixFileSystem::exists(const Path& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) == 0)
        return true;
    if (errno == ENOENT || errno == ENOTDIR)
        return false;
    return lastFailure();
}

FileSystem::Result<FileSystem::Path> PosixFileSystem::readLink(const Path& path) {
    std::array<char, PATH_MAX> target{};
    const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
    if (length == -1)
        return lastFailure();
    return Path(std::string(target.data(), static_cast<std::size_t>(length)));
}

FileSystem::Result<std::vector<std::string>> PosixFileSystem::list(const Path& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder.c_str()), ::closedir);
    if (!stream)
        return lastFailure();
    std::vector<std::string> names;
    errno = 0;
    while (const dirent* const entry = ::readdir(stream.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    if (errno != 0)
        return lastFailure();
    return names;
}

FileSystem::Result<FileSystem::Descriptor> PosixFileSystem::openForReading(const Path& path) {
    // Without O_NONBLOCK a pipe of that name would hold us until somebody writes to it.
    const auto file = open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file)
        return file;
    struct stat status {};
    int problem = ::fstat(number(*file), &status) == 0 ? 0 : errno;
    if (problem == 0 && !S_ISREG(status.st_mode))
        problem = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    if (problem == 0)
        return file;
    ::close(number(*file));
    return failure(problem);
}

FileSystem::Result<FileSystem::Descriptor> PosixFileSystem::createForWriting(const Path& path) {
    return open(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, S_IRUSR | S_IWUSR);
}

FileSystem::Result<FileSystem::Descriptor> PosixFileSystem::openFolder(const Path& path) {
    return open(path, O_RDONLY | O_DIRECTORY);
}

FileSystem::Result<std::size_t> PosixFileSystem::size(Descriptor file) {
    struct stat status {};
    if (::fstat(number(file), &status) == -1)
        return lastFailure();
    return static_cast<std::size_t>(status.st_size);
}

FileSystem::Result<std::size_t> PosixFileSystem::read(Descriptor file, std::span<char> into) {
    const ssize_t count = uninterrupted([&] { return ::read(number(file), into.data(), into.size()); });
    if (count == -1)
        return lastFailure();
    return static_cast<std::size_t>(count);
}

FileSystem::Result<std::size_t> PosixFileSystem::write(Descriptor file, std::string_view bytes) {
    const ssize_t count = uninterrupted([&] { return ::write(number(file), bytes.data(), bytes.size()); });
    if (count == -1)
        return lastFailure();
    // Large pieces are on their way to the disk while the next is made. Only a hint: `sync` tells how it
    // went.
    constexpr ssize_t large = ssize_t{1} << 19;
    if (count >= large)
        static_cast<void>(::sync_file_range(number(file), 0, 0, SYNC_FILE_RANGE_WRITE));
    return static_cast<std::size_t>(count);
}

FileSystem::Result<void> PosixFileSystem::sync(Descriptor file) {
    if (uninterrupted([&] { return ::fsync(number(file)); }) == 0)
        return {};
    // Some network file systems know no sync of folders; there is nothing to wait for then.
    struct stat status {};
    const int problem = errno;
    if (problem == EINVAL && ::fstat(number(file), &status) == 0 && S_ISDIR(status.st_mode))
        return {};
    return failure(problem);
}

FileSystem::Result<void> PosixFileSystem::close(Descriptor file) {
    // The descriptor is gone even when a signal interrupts the call, so it is never made again.
    if (::close(number(file)) == 0 || errno == EINTR)
        return {};
    return lastFailure();
}

FileSystem::Result<void> PosixFileSystem::rename(const Path& from, const Path& to) {
    return outcome(::rename(from.c_str(), to.c_str()));
}

FileSystem::Result<void> PosixFileSystem::move(const Path& from, const Path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return {};
    if (errno != EINVAL && errno != ENOSYS)
        return lastFailure();
    // A file system that can't refuse by itself: look first.
    struct stat status {};
    if (::lstat(to.c_str(), &status) == 0)
        return failure(EEXIST);
    return rename(from, to);
}

FileSystem::Result<void> PosixFileSystem::remove(const Path& path) {
    return outcome(::unlink(path.c_str()));
}

FileSystem::Result<void> PosixFileSystem::makeFolder(const Path& path) {
    return outcome(::mkdir(path.c_str(), S_IRWXU));
}

} // namespace selvane
