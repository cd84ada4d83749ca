#pragma once

#include "Selvane/Platform/TitleDrawing.h"

namespace selvane {

/// A rectangle of `width` and `height` with round corners, filled with `ink`, out of whose middle `drawing`
/// is cut: what lies below shines through where that has its ink. `drawing` fits into the rectangle.
[[nodiscard]] Picture badge(const Picture& drawing, int width, int height, Ink ink);

} // namespace selvane
