#pragma once

#include "SelvaneCore/JSONChecker.h"
#include "SelvaneCore/JSONReader.h"
#include "SelvaneCore/JSONWriter.h"
#include "SelvaneCore/SettingValue.h"

#include <string_view>

/// The JSON form of settings: an object of their keys, and under each an object with the "type" of its value
/// ("bool", "int", "double", "string" or "strings") and the "value" itself. Reading is strict: an unknown
/// type, or a value that isn't of its type, fails the setting, and one bad setting fails them all.
namespace selvane {

// `Writer` is a JSONWriter or a JSONChecker.

template <typename Writer>
void encode(Writer& writer, const SettingValue& value);
template <typename Writer>
void encode(Writer& writer, const SettingValues& values);

/// Whether the setting can be written. A float that is not finite can't be, nor bytes that are not UTF-8.
[[nodiscard]] bool hasForm(std::string_view key, const SettingValue& value);

/// A number without a fraction serves as an "int" however it is written, any number as a "double".
[[nodiscard]] JSONOutcome decode(JSONValue value, SettingValue& into);
/// Of repeated keys only the last is looked at.
[[nodiscard]] JSONOutcome decode(JSONValue value, SettingValues& into);

} // namespace selvane
