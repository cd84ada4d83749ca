#pragma once

#include <cstdint>
#include <string_view>

/// The words that name a platform, one row a name and a column a platform. All other words are the same
/// everywhere.
namespace selvane::PlatformText {

enum class Platform : std::uint8_t { macOS, freedesktop };

#ifdef __APPLE__
inline constexpr Platform present = Platform::macOS;
#else
inline constexpr Platform present = Platform::freedesktop;
#endif

struct Words {
    std::string_view macOS;
    std::string_view freedesktop;

    [[nodiscard]] constexpr std::string_view on(Platform platform) const {
        switch (platform) {
        case Platform::macOS:
            return macOS;
        case Platform::freedesktop:
            return freedesktop;
        }
        return {};
    }
    [[nodiscard]] constexpr std::string_view here() const { return on(present); }
};

/// The desktop's own player of music.
inline constexpr Words musicPlayer{"Apple Music", "Music player"};

} // namespace selvane::PlatformText
