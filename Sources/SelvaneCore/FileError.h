#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace selvane {

/// Why a file operation failed.
struct FileError {
    /// What was attempted, as in "rename".
    std::string operation;
    std::filesystem::path path;
    std::error_code code;

    /// A short sentence for a person, without the path: "No space left on device".
    [[nodiscard]] std::string localizedDescription() const;
    /// All of it, for the log.
    [[nodiscard]] std::string description() const;
};

} // namespace selvane
