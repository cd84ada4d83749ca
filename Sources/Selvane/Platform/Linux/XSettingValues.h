#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace selvane {

/// The desktop's settings by their names, such as "Net/ThemeName". Colours are left out.
using XSettingValues = std::map<std::string, std::variant<std::int32_t, std::string>, std::less<>>;

/// Reads the property _XSETTINGS_SETTINGS, as the XSETTINGS protocol 0.5 lays it out; texts are taken as they
/// are. Absent if the bytes end too early or hold a type that the protocol doesn't know; bytes behind the
/// last setting are nobody's.
[[nodiscard]] std::optional<XSettingValues> parseXSettings(std::span<const std::uint8_t> bytes);

} // namespace selvane
