#include "SelvaneCore/StoreFile.h"

#include "SelvaneCore/AtomicFile.h"
#include "SelvaneCore/Log.h"
#include "SelvaneCore/UUID.h"

#include <array>
#include <cstdio>
#include <string>
#include <utility>

namespace selvane {

namespace {

using Path = std::filesystem::path;

/// The local time as in 20260305-140709.
std::string stamp(const absl::CivilSecond& time) {
    std::array<char, 64> text{};
    const int length = std::snprintf(text.data(), text.size(), "%04lld%02d%02d-%02d%02d%02d",
                                     static_cast<long long>(time.year()), time.month(), time.day(),
                                     time.hour(), time.minute(), time.second());
    return {text.data(), static_cast<std::size_t>(length)};
}

std::string name(const Path& path) {
    return path.filename().string();
}

} // namespace

StoreFile::StoreFile(Path url, StoreEnvironment environment)
    : _url(std::move(url)), _environment(std::move(environment)) {}

bool StoreFile::mayExist() const {
    return _environment.fileSystem->exists(_url).value_or(true);
}

tl::expected<FileContents, FileError> StoreFile::read() const {
    return FileContents::read(*_environment.fileSystem, _url);
}

Path StoreFile::backupURL(Date now) const {
    constexpr std::size_t tagLength = 6;
    const std::string tag = UUID::random().text().substr(0, tagLength);
    return _url.parent_path() / (_url.stem().string() + ".corrupt-" +
                                 stamp(_environment.calendar().civil(now)) + "-" + tag + ".json");
}

tl::expected<void, FileError> StoreFile::copyTo(const Path& copy) const {
    const auto contents = read();
    if (!contents)
        return tl::unexpected(contents.error());
    return AtomicFile::write(*_environment.fileSystem, copy, contents->bytes());
}

std::optional<Path> StoreFile::setAside(std::string_view problem) const {
    // 1. Move it: the road that leaves nothing behind.
    const Path copy = backupURL(_environment.clock());
    const auto moved = _environment.fileSystem->move(_url, copy);
    if (moved) {
        Log::line("couldn't read " + name(_url) + " (" + std::string(problem) + "); moved it to " +
                  name(copy));
        return copy;
    }
    const std::string moveProblem = FileError{"move", _url, moved.error()}.description();

    // 2. Copy it, which leaves the original where it is.
    if (copyTo(copy)) {
        Log::line("couldn't read " + name(_url) + " (" + moveProblem + "); copied it to " + name(copy));
        return copy;
    }

    // 3. Leave it, and say so.
    Log::line("couldn't read or back up " + name(_url) + ": " + moveProblem);
    return std::nullopt;
}

void StoreFile::keepOriginal(const FileContents& original, std::size_t skipped) const {
    const Path copy = backupURL(_environment.clock());
    // Without the copy the good entries are still good, so its failure changes nothing.
    static_cast<void>(AtomicFile::write(*_environment.fileSystem, copy, original.bytes()));
    Log::line("skipped " + std::to_string(skipped) + " unreadable entries in " + name(_url) +
              "; kept the original as " + name(copy));
}

tl::expected<void, FileError> StoreFile::save(const std::function<void(JSONWriter&)>& write) const {
    if (auto made = AtomicFile::makeFolders(*_environment.fileSystem, _url.parent_path()); !made)
        return made;
    AtomicFile::Replacement replacement(*_environment.fileSystem, _url);
    JSONWriter writer([&replacement](std::string_view bytes) { replacement.append(bytes); });
    write(writer);
    const auto rest = writer.finish();
    if (!rest)
        return tl::unexpected(FileError{"encode", _url, rest.error()});
    replacement.append(*rest);
    return replacement.commit();
}

} // namespace selvane
