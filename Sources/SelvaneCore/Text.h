#pragma once

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Text as its readers see it, by the rules of Unicode and of no language in particular. All text is UTF-8;
/// where it isn't, each wrong byte sequence counts as U+FFFD. Any thread; never fails.
namespace selvane::Text {

/// Whether all of the text is well-formed UTF-8.
[[nodiscard]] bool isValid(std::string_view text);

/// The text with U+FFFD in the place of each wrong byte sequence.
[[nodiscard]] std::string wellFormed(std::string_view text);

/// The length in user-perceived characters (extended grapheme clusters).
[[nodiscard]] std::size_t count(std::string_view text);

/// The first `length` user-perceived characters, or all of them. A view into `text`.
[[nodiscard]] std::string_view prefix(std::string_view text, std::size_t length);

/// The user-perceived characters of the text in their order. Views into `text`.
[[nodiscard]] std::vector<std::string_view> characters(std::string_view text);

/// The Unicode scalar values of the text in their order.
[[nodiscard]] std::u32string scalars(std::string_view text);

/// Whether a user-perceived character is a letter or a number, which its first scalar value tells: by the
/// property Alphabetic, or by having a numeric value.
[[nodiscard]] bool isLetterOrNumber(std::string_view character);

/// Whether a user-perceived character is a number, which its first scalar value tells by having a numeric
/// value: a digit of any script, a fraction, a numeral that is a letter.
[[nodiscard]] bool isNumber(std::string_view character);

/// The text without white space and line breaks (the property White_Space) at its ends. A view into `text`.
[[nodiscard]] std::string_view trimmed(std::string_view text);

/// The text in lower case, with the full mappings of Unicode: one character may become several, and a sigma
/// at the end of a word its final form.
[[nodiscard]] std::string lowercased(std::string_view text);

/// The order of the scalar values of both texts' composed forms (NFC), so that an e with an acute accent is
/// one however it is encoded. A text of more than 2,048 bytes counts as it is encoded.
[[nodiscard]] std::strong_ordering compare(std::string_view left, std::string_view right);

} // namespace selvane::Text
