#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace selvane::test {

/// The scalars of an encoded label, by RFC 3492, section 6.2. Its input is good.
[[nodiscard]] inline std::u32string decoded(std::string_view text) {
    std::u32string output;
    if (const std::size_t end = text.rfind('-'); end != std::string_view::npos) {
        output.assign(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end));
        text.remove_prefix(end + 1);
    }
    std::int64_t n = 128;
    std::int64_t i = 0;
    std::int64_t bias = 72;
    while (!text.empty()) {
        const std::int64_t old = i;
        std::int64_t weight = 1;
        for (std::int64_t k = 36;; k += 36) {
            const char character = text.at(0);
            text.remove_prefix(1);
            const std::int64_t value = character >= 'a' ? character - 'a' : character - '0' + 26;
            i += value * weight;
            const std::int64_t t = std::clamp<std::int64_t>(k - bias, 1, 26);
            if (value < t)
                break;
            weight *= 36 - t;
        }
        const auto length = static_cast<std::int64_t>(output.size()) + 1;
        std::int64_t delta = (i - old) / (old == 0 ? 700 : 2);
        delta += delta / length;
        for (bias = 0; delta > 455; delta /= 35)
            bias += 36;
        bias += 36 * delta / (delta + 38);
        n += i / length;
        i %= length;
        output.insert(static_cast<std::size_t>(i), 1, static_cast<char32_t>(n));
        ++i;
    }
    return output;
}

} // namespace selvane::test
