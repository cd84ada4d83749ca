#pragma once

namespace selvane::test {

/// How long something may take, in milliseconds, with sanitizers and on a machine that has much else to do.
/// Only there to end a test that fails.
inline constexpr int patience = 60'000;

} // namespace selvane::test
