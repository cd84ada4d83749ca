#pragma once

#include "Selvane/UI/Panel.h"

#include <memory>

namespace selvane::PanelLoader {

/// Loads the largest of what the views need that costs less than half a megabyte; the rest would be three
/// times that. Takes some milliseconds off the first opening, and as many itself.
void prepare();

/// Loads the views and makes their panel. Null if that fails; the log says why.
[[nodiscard]] std::unique_ptr<Panel> load(const PanelContext& context);

} // namespace selvane::PanelLoader
