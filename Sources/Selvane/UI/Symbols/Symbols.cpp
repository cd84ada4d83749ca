#include "Selvane/UI/Symbols/Symbols.h"

#include <algorithm>

namespace selvane {

static_assert(std::ranges::is_sorted(Symbols::names));

bool Symbols::contains(std::string_view name) {
    return std::ranges::binary_search(names, name);
}

} // namespace selvane
