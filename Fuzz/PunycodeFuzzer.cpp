#include "Fuzz/Require.h"
#include "SelvaneCore/Punycode.h"
#include "SelvaneCore/Text.h"
#include "Support/PunycodeDecoder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Any bytes as a label: what has a form decodes from it, and nothing is in the form but ASCII of the label
/// and digits.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace selvane;
    const std::string_view label(reinterpret_cast<const char*>(data), size);
    const std::optional<std::string> encoded = Punycode::encode(label);
    require(encoded.has_value() == Text::isValid(label));
    if (!encoded)
        return 0;

    const std::u32string scalars = Text::scalars(label);
    require(test::decoded(*encoded) == scalars);
    require(encoded->size() >= scalars.size());
    const auto basic = static_cast<std::size_t>(
        std::ranges::count_if(scalars, [](char32_t scalar) { return scalar < 128; }));
    const std::string_view digits = std::string_view(*encoded).substr(basic == 0 ? 0 : basic + 1);
    require(std::ranges::all_of(
        digits, [](char digit) { return (digit >= 'a' && digit <= 'z') || (digit >= '0' && digit <= '9'); }));
    return 0;
}
