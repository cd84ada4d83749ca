#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace selvane {

/// One setting as it is stored: a value of one of five kinds.
struct SettingValue {
    using Texts = std::vector<std::string>;

    std::variant<bool, std::int64_t, double, std::string, Texts> payload;

    // Each reading is absent if the value is of another kind.

    [[nodiscard]] std::optional<bool> boolean() const;
    /// An integer, or a float without a fraction that fits.
    [[nodiscard]] std::optional<std::int64_t> integer() const;
    /// A float, or an integer as the nearest float.
    [[nodiscard]] std::optional<double> number() const;
    [[nodiscard]] std::optional<std::string> text() const;
    [[nodiscard]] std::optional<Texts> texts() const;

    friend bool operator==(const SettingValue&, const SettingValue&) = default;
};

/// Settings by their keys, in the order of the keys' bytes.
using SettingValues = std::map<std::string, SettingValue, std::less<>>;

} // namespace selvane
