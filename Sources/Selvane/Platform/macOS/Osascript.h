#pragma once

#include "Selvane/Platform/macOS/PlayerScripts.h"

#include <filesystem>
#include <string>
#include <vector>

namespace selvane {

/// Runs scripts in processes of their own, which nobody waits for. Each has what it says go to the null
/// device. A script that fails, and one that can't be started, are told in the log; the former from another
/// thread, also when this object is gone. Main thread.
class Osascript {
public:
    explicit Osascript(std::filesystem::path executable = "/usr/bin/osascript");

    void run(const PlayerScript& script) const;

    /// The words behind the name of the executable.
    [[nodiscard]] static std::vector<std::string> arguments(const PlayerScript& script);

private:
    std::filesystem::path _executable;
};

} // namespace selvane
