#include "SelvaneCore/SiteRule.h"

#include "SelvaneCore/Punycode.h"
#include "SelvaneCore/Text.h"
#include "SelvaneCore/URL.h"

#include <algorithm>
#include <array>
#include <vector>

namespace selvane::SiteRule {

namespace {

constexpr std::size_t maxInputLength = 2048;
constexpr std::size_t maxLabelLength = 63;
constexpr std::string_view www = "www.";

/// User-perceived characters: a slash with an accent on it is no slash.
using Characters = std::span<const std::string_view>;

constexpr auto is(std::string_view wanted) {
    return [wanted](std::string_view character) { return character == wanted; };
}

/// All of the text if there is no scheme, also where what it begins with would melt into the last slash of
/// one that was put in front.
Characters behindFirstScheme(Characters text) {
    constexpr std::array<std::string_view, 3> mark{":", "/", "/"};
    const auto found = std::search(text.begin(), text.end(), mark.begin(), mark.end());
    return found == text.end() ? text : Characters(found + mark.size(), text.end());
}

Characters beforePath(Characters text) {
    const auto end = std::ranges::find_if(text, [](std::string_view character) {
        return character == "/" || character == "?" || character == "#";
    });
    return {text.begin(), end};
}

Characters behindLastAt(Characters text) {
    const auto found = std::find_if(text.rbegin(), text.rend(), is("@"));
    return {found.base(), text.end()};
}

Characters beforeLastColon(Characters text) {
    const auto found = std::find_if(text.rbegin(), text.rend(), is(":"));
    return found == text.rend() ? text : Characters(text.begin(), found.base() - 1);
}

/// Whether so many scalars can't give a host that is short enough: none gives less than one character, and
/// only a leading "www." and a last dot are taken off.
bool isTooLong(Characters host) {
    std::size_t scalars = 0;
    for (const std::string_view character : host) {
        scalars += static_cast<std::size_t>(std::ranges::count_if(
            character, [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0) != 0x80; }));
    }
    return scalars > maxLength + www.size() + 1;
}

/// A character that is more than one scalar has one above 127 in it, but for the pair of carriage return and
/// line feed, so it is enough to look at the bytes.
bool isASCII(std::string_view label) {
    return std::ranges::all_of(label, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

/// The label in ASCII; absent if it has no such form.
std::optional<std::string> inASCII(std::string_view label) {
    if (isASCII(label))
        return std::string(label);
    std::optional<std::string> encoded = Punycode::encode(label);
    if (encoded)
        encoded->insert(0, "xn--");
    return encoded;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isAllowed(char character) {
    return (character >= 'a' && character <= 'z') || isDigit(character) || character == '.' ||
           character == '-';
}

/// Calls `visit` for the labels that are not empty, as long as it gives true; tells whether it always did.
template <typename Visit>
bool allLabels(std::string_view host, Visit visit) {
    while (!host.empty()) {
        const std::string_view label = host.substr(0, host.find('.'));
        if (!label.empty() && !visit(label))
            return false;
        host.remove_prefix(std::min(label.size() + 1, host.size()));
    }
    return true;
}

bool isLabel(std::string_view label) {
    return label.size() <= maxLabelLength && label.front() != '-' && label.back() != '-';
}

bool isNumber(std::string_view label) {
    return std::ranges::all_of(label, isDigit);
}

/// The form that all hosts get in the end; absent for one that can't be a rule.
std::optional<std::string> cleanHost(std::string_view text) {
    // 1.
    const std::string lowered = Text::lowercased(text);
    std::string_view host = lowered;
    // 2.
    if (host.ends_with('.'))
        host.remove_suffix(1);
    // 3.
    if (host.starts_with(www))
        host.remove_prefix(www.size());
    // 4. to 8.
    if (host.empty() || host.size() > maxLength || host.find('.') == std::string_view::npos ||
        host.starts_with('.') || host.find("..") != std::string_view::npos)
        return std::nullopt;
    // 9.
    if (!std::ranges::all_of(host, isAllowed))
        return std::nullopt;
    // 10.
    if (!allLabels(host, isLabel))
        return std::nullopt;
    // 11. A dotted number is an address, not a name.
    if (allLabels(host, isNumber))
        return std::nullopt;
    // 12.
    return std::string(host);
}

bool covers(std::string_view rule, std::string_view host) {
    if (!host.ends_with(rule))
        return false;
    host.remove_suffix(rule.size());
    return host.empty() || host.ends_with('.');
}

} // namespace

std::optional<std::string> normalize(std::string_view text) {
    if (!Text::isValid(text))
        return std::nullopt;
    // 1.
    const std::string lowered = Text::lowercased(Text::trimmed(text));
    // 2.
    if (lowered.empty() || Text::count(lowered) > maxInputLength)
        return std::nullopt;
    const std::vector<std::string_view> characters = Text::characters(lowered);
    // 3. and 4. Text without a scheme is read as what stands behind one.
    Characters rest = behindFirstScheme(characters);
    // 5.
    rest = beforePath(rest);
    // 6.
    rest = behindLastAt(rest);
    // 7.
    rest = beforeLastColon(rest);
    if (isTooLong(rest))
        return std::nullopt;

    // 8. to 10.
    std::string host;
    while (true) {
        const auto end = std::ranges::find_if(rest, is("."));
        std::string label;
        std::for_each(rest.begin(), end, [&label](std::string_view character) { label += character; });
        const std::optional<std::string> encoded = inASCII(label);
        if (!encoded)
            return std::nullopt;
        host += *encoded;
        if (end == rest.end())
            return cleanHost(host);
        host += '.';
        rest = Characters(end + 1, rest.end());
    }
}

std::optional<std::string> hostOfPage(std::string_view address) {
    // 1. and 2.
    const std::optional<URL> url = URL::parse(Text::trimmed(address));
    if (!url || !url->scheme)
        return std::nullopt;
    // 3.
    const std::string scheme = Text::lowercased(*url->scheme);
    if (scheme != "http" && scheme != "https")
        return std::nullopt;
    // 4.
    return url->host ? cleanHost(*url->host) : std::nullopt;
}

std::optional<std::string> match(std::string_view host, std::span<const std::string> in) {
    // 1.
    const std::string lowered = Text::lowercased(host);
    const std::string* longest = nullptr;
    for (const std::string& rule : in) {
        // 2. and 3. Rules that cover one host end alike, so more bytes are more characters.
        if (covers(rule, lowered) && (longest == nullptr || rule.size() > longest->size()))
            longest = &rule;
    }
    return longest == nullptr ? std::nullopt : std::optional(*longest);
}

} // namespace selvane::SiteRule
