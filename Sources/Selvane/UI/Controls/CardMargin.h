#pragma once

class QWindow;

/// How far a window reaches beyond the card that is drawn in it, on each side, in pixels of the window: the
/// clear room for the card's shadow. What opens above the window keeps within the card. Main thread.
namespace selvane::CardMargin {

void set(QWindow& window, int margin);
/// 0 for a window that is all card.
[[nodiscard]] int of(const QWindow& window);

} // namespace selvane::CardMargin
