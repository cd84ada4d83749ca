#include "SelvaneCore/SpotifyLink.h"

#include "SelvaneCore/Text.h"
#include "SelvaneCore/URL.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace selvane::SpotifyLink {

namespace {

constexpr std::size_t maxInputLength = 300;
constexpr std::size_t idLength = 22;
constexpr std::string_view scheme = "spotify:";
constexpr std::string_view shareHost = "open.spotify.com";

bool isLetterOrDigit(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9');
}

bool isValidID(std::string_view text) {
    return text.size() == idLength && std::ranges::all_of(text, isLetterOrDigit);
}

bool isKind(std::string_view text) {
    return std::ranges::find(kinds, text) != kinds.end();
}

/// The two pieces of a URI behind its scheme.
std::optional<std::vector<std::string>> piecesOfURI(std::string_view text) {
    text.remove_prefix(scheme.size());
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || text.find(':', colon + 1) != std::string_view::npos)
        return std::nullopt;
    return std::vector{std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

/// The pieces of a share link's path.
std::optional<std::vector<std::string>> piecesOfLink(std::string_view text) {
    std::optional<URL> url = URL::parse(text);
    if (!url || url->scheme != "https" || !url->host || Text::lowercased(*url->host) != shareHost)
        return std::nullopt;
    return std::move(url->path);
}

} // namespace

std::optional<std::string> uri(std::string_view from) {
    // 1.
    const std::string_view text = Text::trimmed(from);
    if (text.empty() || Text::count(text) > maxInputLength)
        return std::nullopt;
    // 2. and 3.
    const auto pieces = text.starts_with(scheme) ? piecesOfURI(text) : piecesOfLink(text);
    if (!pieces)
        return std::nullopt;
    // 4.
    const auto kind = std::ranges::find_if(*pieces, isKind);
    if (kind == pieces->end())
        return std::nullopt;
    // 5.
    const auto id = kind + 1;
    if (id == pieces->end() || !isValidID(*id))
        return std::nullopt;
    // 6.
    return std::string(scheme) + *kind + ':' + *id;
}

} // namespace selvane::SpotifyLink
