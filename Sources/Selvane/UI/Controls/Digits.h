#pragma once

class QFontMetricsF;

namespace selvane {

/// The width of the widest digit of a font, so that numbers whose digits have cells of it stand still.
[[nodiscard]] double widestDigit(const QFontMetricsF& metrics);

} // namespace selvane
