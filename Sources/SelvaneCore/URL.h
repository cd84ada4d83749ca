#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// The parts of an address that rules look at. Any thread.
struct URL {
    /// As it is written, upper case included; absent in a relative reference.
    std::optional<std::string> scheme;
    /// As it is written, without user information and port; an IP literal with its brackets. Absent where the
    /// address has no authority, empty where that names none.
    std::optional<std::string> host;
    /// What stands between the slashes of the path, with percent signs decoded to bytes of any kind. Empty
    /// pieces are left out, "." and ".." are kept.
    std::vector<std::string> path;

    /// Reads an address by the letter of RFC 3986; absent if it isn't one, and so for any character outside
    /// of ASCII. Beyond the standard a port above 65535 and a percent sign in the host are refused. The time
    /// grows with the length.
    [[nodiscard]] static std::optional<URL> parse(std::string_view text);
};

} // namespace selvane
