#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace selvane {

/// The user's settings as values by key. Reading an absent key is normal and gives nothing. Main thread; no
/// operation fails or blocks.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    /// The text under `key`, absent if there is none or the value is no text.
    [[nodiscard]] virtual std::optional<std::string> text(std::string_view key) const = 0;

    /// Puts `value` under `key`; an absent value removes the entry.
    virtual void setText(std::string_view key, std::optional<std::string> value) = 0;
};

} // namespace selvane
