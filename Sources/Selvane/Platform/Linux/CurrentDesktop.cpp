#include "Selvane/Platform/Linux/CurrentDesktop.h"

#include <cstdlib>
#include <sstream>

namespace selvane {

std::vector<std::string> currentDesktops() {
    const char* const names = std::getenv("XDG_CURRENT_DESKTOP");
    std::istringstream stream(names ? names : "");
    std::vector<std::string> desktops;
    for (std::string name; std::getline(stream, name, ':');)
        desktops.push_back(name);
    return desktops;
}

} // namespace selvane
