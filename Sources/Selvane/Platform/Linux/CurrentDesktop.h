#pragma once

#include <string>
#include <vector>

namespace selvane {

/// The names of the desktop that the session belongs to, the most exact first: the variable
/// XDG_CURRENT_DESKTOP, taken apart. Any thread, as long as nobody changes the environment.
[[nodiscard]] std::vector<std::string> currentDesktops();

} // namespace selvane
