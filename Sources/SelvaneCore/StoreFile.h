#pragma once

#include "SelvaneCore/FileContents.h"
#include "SelvaneCore/FileError.h"
#include "SelvaneCore/JSONWriter.h"
#include "SelvaneCore/StoreEnvironment.h"

#include <tl/expected.hpp>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

namespace selvane {

/// The file of a `JSONStore`, whatever it holds: reading, replacing, and setting aside. Keeps nothing in
/// memory and nothing open.
class StoreFile {
public:
    StoreFile(std::filesystem::path url, StoreEnvironment environment);

    [[nodiscard]] const std::filesystem::path& url() const { return _url; }

    /// False only if it is known that there is no file.
    [[nodiscard]] bool mayExist() const;
    [[nodiscard]] tl::expected<FileContents, FileError> read() const;

    /// Gets a file that can't be read out of the way of the next save: moves it to its set-aside name, or
    /// copies it there if it can't be moved. Gives the name, or absence if both failed. Logs what happened.
    [[nodiscard]] std::optional<std::filesystem::path> setAside(std::string_view problem) const;

    /// Keeps a copy of the file as it was read, of which `skipped` entries could not be used, and logs it.
    void keepOriginal(const FileContents& original, std::size_t skipped) const;

    /// Replaces the file with the text that `write` writes, and makes its folder if there is none. The text
    /// goes to the disk while it is written: check first that all of it has a form.
    [[nodiscard]] tl::expected<void, FileError> save(const std::function<void(JSONWriter&)>& write) const;

private:
    /// An attempt to make a file of a set-aside name.
    struct Attempt {
        std::filesystem::path name;
        tl::expected<void, std::error_code> outcome;
    };

    [[nodiscard]] std::filesystem::path backupURL(Date now) const;
    /// Lets `make` make a file of a set-aside name that isn't taken.
    [[nodiscard]] Attempt attempt(
        const std::function<tl::expected<void, std::error_code>(const std::filesystem::path&)>& make) const;
    [[nodiscard]] Attempt copy(const FileContents& contents) const;
    /// Removes what processes that were killed while they made a set-aside copy left behind.
    void removeLeftovers() const;

    std::filesystem::path _url;
    StoreEnvironment _environment;
};

} // namespace selvane
