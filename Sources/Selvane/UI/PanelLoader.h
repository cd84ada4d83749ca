#pragma once

#include "Selvane/UI/Panel.h"

#include <memory>

namespace selvane::PanelLoader {

/// Loads the views and makes their panel. Null if that fails; the log says why.
[[nodiscard]] std::unique_ptr<Panel> load(const PanelContext& context);

} // namespace selvane::PanelLoader
