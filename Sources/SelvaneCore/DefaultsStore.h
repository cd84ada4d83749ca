#pragma once

#include "SelvaneCore/SettingValue.h"

#include <optional>
#include <string_view>

namespace selvane {

/// The user's settings and what the program remembers beside its data, as typed values by key. An absent
/// value is told from false, 0 and an empty text. Main thread; no operation fails or blocks for long.
class DefaultsStore {
public:
    virtual ~DefaultsStore() = default;

    /// The value under `key`; absent if there is none.
    [[nodiscard]] virtual std::optional<SettingValue> value(std::string_view key) const = 0;

    /// Puts `value` under `key`; an absent value removes the entry. What is put is read at once.
    virtual void set(std::string_view key, std::optional<SettingValue> value) = 0;

    /// The text under `key`, absent if there is none or the value is of another kind.
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const {
        const auto found = value(key);
        return found ? found->text() : std::nullopt;
    }
};

} // namespace selvane
