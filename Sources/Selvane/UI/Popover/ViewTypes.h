#pragma once

namespace selvane {

/// Makes the types of all views known to QML. Once a process, before the first engine.
void registerViewTypes();

} // namespace selvane
