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

constexpr std::string_view setAsideMark = ".corrupt-";
constexpr std::string_view setAsideExtension = ".json";

/// Whether this is what follows the mark in a set-aside name.
bool isStampAndTag(std::string_view text) {
    return text.ends_with(setAsideExtension) &&
           text.find_first_not_of("-0123456789ABCDEF") == text.size() - setAsideExtension.size();
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
    return _url.parent_path() /
           (_url.stem().string() + std::string(setAsideMark) + stamp(_environment.calendar().civil(now)) +
            "-" + tag + std::string(setAsideExtension));
}

StoreFile::Attempt
StoreFile::attempt(const std::function<tl::expected<void, std::error_code>(const Path&)>& make) const {
    // The tag is random, so that more than one name that is taken means that something else is wrong.
    constexpr int mostNames = 8;
    Attempt result;
    for (int count = 0; count < mostNames; ++count) {
        result.name = backupURL(_environment.clock());
        result.outcome = make(result.name);
        if (result.outcome || result.outcome.error() != std::errc::file_exists)
            break;
    }
    return result;
}

StoreFile::Attempt StoreFile::copy(const FileContents& contents) const {
    removeLeftovers();
    return attempt([&](const Path& name) {
        return AtomicFile::create(*_environment.fileSystem, name, contents.bytes())
            .map_error([](const FileError& error) { return error.code; });
    });
}

void StoreFile::removeLeftovers() const {
    const std::string prefix = _url.stem().string() + std::string(setAsideMark);
    AtomicFile::removeLeftovers(*_environment.fileSystem, _url.parent_path(), [&](std::string_view target) {
        return target.starts_with(prefix) && isStampAndTag(target.substr(prefix.size()));
    });
}

std::optional<Path> StoreFile::setAside(std::string_view problem) const {
    // 1. Move it: the road that leaves nothing behind.
    const Attempt move =
        attempt([this](const Path& name) { return _environment.fileSystem->move(_url, name); });
    if (move.outcome) {
        Log::line("couldn't read " + name(_url) + " (" + std::string(problem) + "); moved it to " +
                  name(move.name));
        return move.name;
    }
    const std::string moveProblem = FileError{"move", _url, move.outcome.error()}.description();

    // 2. Copy it, which leaves the original where it is.
    if (const auto contents = read()) {
        if (const Attempt copied = copy(*contents); copied.outcome) {
            Log::line("couldn't read " + name(_url) + " (" + moveProblem + "); copied it to " +
                      name(copied.name));
            return copied.name;
        }
    }

    // 3. Leave it, and say so.
    Log::line("couldn't read or back up " + name(_url) + ": " + moveProblem);
    return std::nullopt;
}

void StoreFile::keepOriginal(const FileContents& original, std::size_t skipped) const {
    // Without the copy the good entries are still good, so its failure changes nothing.
    const Attempt copied = copy(original);
    Log::line("skipped " + std::to_string(skipped) + " unreadable entries in " + name(_url) +
              "; kept the original as " + name(copied.name));
}

tl::expected<void, FileError> StoreFile::save(const std::function<void(JSONWriter&)>& write) const {
    if (auto made = AtomicFile::makeFolders(*_environment.fileSystem, _url.parent_path()); !made)
        return made;
    removeLeftovers();
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
