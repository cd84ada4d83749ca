#pragma once

#include "Selvane/UI/PanelLevel.h"
#include "SelvaneCore/Signal.h"

#include <optional>

namespace selvane {

/// The windows of this program: which has the keyboard, and which is about to close. Main thread.
class ProgramWindows {
public:
    virtual ~ProgramWindows() = default;

    /// The window that has the keyboard; none while another program has it.
    [[nodiscard]] virtual std::optional<ProgramWindow> key() const = 0;

    Signal<> keyChanged;
    /// The window goes for certain, be it closed or hidden; it is still there, and may still have the
    /// keyboard.
    Signal<ProgramWindow> willClose;
};

} // namespace selvane
