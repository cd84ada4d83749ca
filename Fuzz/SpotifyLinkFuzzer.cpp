#include "Fuzz/Require.h"
#include "SelvaneCore/SpotifyLink.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Any bytes as a pasted link: a URI has one exact form, and gives itself.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::optional<std::string> uri =
        SpotifyLink::uri(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!uri)
        return 0;

    constexpr std::string_view scheme = "spotify:";
    require(uri->starts_with(scheme));
    const std::size_t colon = uri->find(':', scheme.size());
    require(colon != std::string::npos);
    const std::string kind = uri->substr(scheme.size(), colon - scheme.size());
    const std::string id = uri->substr(colon + 1);
    require(std::ranges::find(SpotifyLink::kinds, kind) != SpotifyLink::kinds.end());
    require(id.size() == 22 && std::ranges::all_of(id, [](char character) {
                return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
                       (character >= '0' && character <= '9');
            }));
    require(SpotifyLink::uri(*uri) == uri);
    require(SpotifyLink::uri("https://open.spotify.com/" + kind + '/' + id) == uri);
    return 0;
}
