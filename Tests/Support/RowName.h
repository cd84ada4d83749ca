#pragma once

#include <string>

namespace selvane::test {

/// Names the tests of a table after the rows' member `name`.
inline constexpr auto rowName = [](const auto& test) { return std::string(test.param.name); };

} // namespace selvane::test
