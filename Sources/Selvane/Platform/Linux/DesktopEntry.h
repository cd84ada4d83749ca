#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {

/// The text of a desktop entry, by the Desktop Entry Specification 1.5, of which single keys of the group
/// "Desktop Entry" are read and changed. Everything else in it, comments and keys that nobody here knows too,
/// stays byte for byte. Values are of the type string there, and have their plain form here.
class DesktopEntry {
public:
    explicit DesktopEntry(std::string_view text = "");

    /// Whether the group that makes it a desktop entry is there.
    [[nodiscard]] bool isValid() const { return _begin.has_value(); }

    /// The value of a key; of several the last. Absent if the key is.
    [[nodiscard]] std::optional<std::string> value(std::string_view key) const;
    /// The same for a key that says yes or no; absent also if it says neither.
    [[nodiscard]] std::optional<bool> truth(std::string_view key) const;

    /// The words of the key Exec, to be run without files: field codes are left out. Empty if there are none,
    /// and if a quote has no end.
    [[nodiscard]] std::vector<std::string> command() const;

    /// Gives a key the value, in its place if it is there and otherwise as the last of the group.
    void set(std::string_view key, std::string_view value);
    void remove(std::string_view key);

    [[nodiscard]] std::string text() const;

    /// A path as the first word of the key Exec: quoted where its characters ask for it, and safe from being
    /// taken for field codes. For `set`, which gives it the form of a value.
    [[nodiscard]] static std::string executable(std::string_view path);

private:
    [[nodiscard]] std::size_t end() const;

    std::vector<std::string> _lines;
    /// The index of the first line in the group.
    std::optional<std::size_t> _begin;
};

} // namespace selvane
