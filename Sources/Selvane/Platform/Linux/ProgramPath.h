#pragma once

#include <string>

namespace selvane {

/// Whether there is a program to be run, named by its absolute path or by a name to be looked for in PATH.
/// Any thread, as long as nobody changes the environment.
[[nodiscard]] bool isProgram(const std::string& name);

} // namespace selvane
