#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The ASCII form of international labels in host names, RFC 3492. Any thread.
namespace selvane::Punycode {

/// The Punycode form of one label, without the prefix "xn--". The label is encoded as it stands: nothing is
/// mapped, composed or lower-cased, and its ASCII characters come first. A label of ASCII alone gives itself
/// and a "-". Absent if the label is not UTF-8, or too long to be counted.
///
/// The time grows with the square of the length: whoever takes labels from outside bounds them first.
[[nodiscard]] std::optional<std::string> encode(std::string_view label);

} // namespace selvane::Punycode
