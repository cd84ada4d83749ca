#pragma once

#include "Selvane/Platform/ScreenSpace.h"

namespace selvane {

/// Reads what the windows of an X11 screen reserve along its edges, and where its docks lie. Window managers
/// tell only what is left of all monitors together. Waits for the server to answer, a few times whatever the
/// number of windows. Without an X11 session it tells nothing.
class X11ScreenSpace final : public ScreenSpace {
public:
    [[nodiscard]] std::optional<ScreenRect> available(const ScreenRect& monitor) const override;
};

} // namespace selvane
