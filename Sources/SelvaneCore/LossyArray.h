#pragma once

#include "SelvaneCore/JSONReader.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace selvane {

/// An array that is read element by element: one that can't be read costs itself and nothing else.
template <typename Element>
struct LossyArray {
    /// The good elements, in the order of the text.
    std::vector<Element> elements;
    /// How many were left out.
    std::size_t skipped = 0;

    friend bool operator==(const LossyArray&, const LossyArray&) = default;
};

/// Fails only if the value is no array.
template <typename Element>
[[nodiscard]] JSONOutcome decode(JSONValue value, LossyArray<Element>& into) {
    auto elements = value.elements();
    if (!elements)
        return tl::unexpected(JSONError{"not an array"});
    into.elements.clear();
    into.elements.reserve(std::min(elements->size(), mostElementsReserved));
    into.skipped = 0;
    while (const auto element = elements->next()) {
        if (!decode(*element, into.elements.emplace_back())) {
            into.elements.pop_back();
            ++into.skipped;
        }
    }
    return {};
}

} // namespace selvane
