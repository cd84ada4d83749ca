#include "Selvane/Platform/Linux/ProgramPath.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace selvane {

namespace {

bool isExecutable(const std::filesystem::path& path) {
    std::error_code problem;
    return std::filesystem::is_regular_file(path, problem) && ::access(path.c_str(), X_OK) == 0;
}

} // namespace

bool isProgram(const std::string& name) {
    if (name.starts_with('/'))
        return isExecutable(name);
    const char* const path = std::getenv("PATH");
    std::string_view rest = path ? path : "";
    while (!rest.empty()) {
        const std::string_view folder = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(rest.size(), folder.size() + 1));
        if (isExecutable(std::filesystem::path(folder) / name))
            return true;
    }
    return false;
}

} // namespace selvane
