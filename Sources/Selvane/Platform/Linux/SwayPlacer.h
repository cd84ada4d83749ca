#pragma once

#include "Selvane/Platform/WindowPlacer.h"

#include <cstdint>
#include <memory>
#include <string>

namespace selvane {

/// Asks sway, over the socket by which programs command it, to move windows. The user's rules stay as they
/// are: what is asked is about one window, after it has appeared.
class SwayPlacer final : public WindowPlacer {
public:
    /// `socket` as in the variable SWAYSOCK. `process` is whose windows are moved.
    SwayPlacer(std::string socket, std::int64_t process);

    /// Each placement has a connection of its own until the window was moved, so that nothing is kept while
    /// no window is waited for.
    std::unique_ptr<Placement> placeNext(const std::string& title, Choose choose) override;

private:
    std::string _socket;
    std::int64_t _process;
};

} // namespace selvane
