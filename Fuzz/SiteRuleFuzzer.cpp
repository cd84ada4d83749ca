#include "Fuzz/Require.h"
#include "SelvaneCore/SiteRule.h"
#include "SelvaneCore/Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace selvane {
namespace {

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> pieces(1);
    for (const char character : text) {
        if (character == separator)
            pieces.emplace_back();
        else
            pieces.back() += character;
    }
    return pieces;
}

void requireShape(const std::string& host) {
    require(!host.empty() && host.size() <= SiteRule::maxLength);
    require(std::ranges::all_of(host, [](char character) {
        return (character >= 'a' && character <= 'z') || isDigit(character) || character == '.' ||
               character == '-';
    }));
    std::vector<std::string> labels = split(host, '.');
    require(labels.size() > 1);
    // Two dots at the end of a text leave one.
    if (labels.back().empty())
        labels.pop_back();
    for (const std::string& label : labels) {
        require(!label.empty() && label.size() <= 63);
        require(label.front() != '-' && label.back() != '-');
    }
    require(
        !std::ranges::all_of(host, [](char character) { return isDigit(character) || character == '.'; }));
}

/// A rule covers itself and, but for what is taken off once at each reading, stays what it is.
void requireRule(const std::string& rule) {
    requireShape(rule);
    require(SiteRule::match(rule, std::vector{rule}) == rule);
    require(SiteRule::match("a." + rule, std::vector{rule}) == rule);
    require(!SiteRule::match('a' + rule, std::vector{rule}));
    if (rule.ends_with('.') || rule.starts_with("www."))
        return;
    require(SiteRule::normalize(rule) == rule);
    require(SiteRule::normalize("https://www." + rule + "./a") == rule);
    require(SiteRule::hostOfPage("https://user@" + rule + ":80/a") == rule);
}

bool covers(const std::string& rule, const std::string& host) {
    return host == rule || host.ends_with('.' + rule);
}

/// The first line is a host, the others are rules.
void requireMatch(std::string_view text) {
    std::vector<std::string> rules = split(text, '\n');
    const std::string host = Text::lowercased(rules.front());
    rules.erase(rules.begin());
    const std::optional<std::string> match = SiteRule::match(host, rules);
    require(!match || (covers(*match, host) && std::ranges::find(rules, *match) != rules.end()));
    for (const std::string& rule : rules)
        require(!covers(rule, host) || (match && match->size() >= rule.size()));
}

} // namespace
} // namespace selvane

/// Any bytes as what a user typed, as a page's address, and as a host with rules.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::optional<std::string> typed = SiteRule::normalize(text);
    if (typed)
        requireRule(*typed);
    if (const std::optional<std::string> host = SiteRule::hostOfPage(text)) {
        requireRule(*host);
        require(typed == host || (!typed && Text::count(text) > 2048));
    }
    requireMatch(text);
    return 0;
}
