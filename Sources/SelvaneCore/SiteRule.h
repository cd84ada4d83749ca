#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

/// Website rules: lower-case hosts in ASCII, without scheme, port, path and a leading "www.", with a dot in
/// them and no dotted numbers. A rule covers its host and all subdomains. Any thread; refusals are absence.
namespace selvane::SiteRule {

/// The longest host in characters.
inline constexpr std::size_t maxLength = 253;

/// The rule for what a user typed or pasted, be it a host or a whole address of any scheme; international
/// labels become their Punycode form. Absent where no host is left that can be a rule, for text of more than
/// 2,048 characters, and for text that is not UTF-8. Takes hosts as they come otherwise: of "a.b.." the last
/// dot goes alone, of "www.www." the first "www.", so that either may lose one more when it is normalised
/// again.
[[nodiscard]] std::optional<std::string> normalize(std::string_view text);

/// The host of a page's address in the form of a rule. The address is one of RFC 3986 to the letter, so that
/// its host is in ASCII already, with the scheme http or https; absent otherwise.
[[nodiscard]] std::optional<std::string> hostOfPage(std::string_view address);

/// The longest of the rules `in` the list that cover the host, and the earliest of equally long ones. The
/// host's case does not matter; rules are compared as they stand.
[[nodiscard]] std::optional<std::string> match(std::string_view host, std::span<const std::string> in);

} // namespace selvane::SiteRule
