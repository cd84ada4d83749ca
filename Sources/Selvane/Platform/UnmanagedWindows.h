#pragma once

#include <cstdint>
#include <functional>

namespace selvane {

/// Windows of this program that the desktop's window manager has no part in. They are there at once and stay
/// where they were put, and so somebody else has to see to their keyboard and to what is in front of them.
/// Main thread.
class UnmanagedWindows {
public:
    /// What the window system calls a window.
    using Window = std::uintptr_t;

    virtual ~UnmanagedWindows() = default;

    /// Whether the desktop of now gets along with them. Otherwise a window is better managed.
    [[nodiscard]] virtual bool areWelcome() const = 0;

    /// Gives the keyboard to a window that was shown, and remembers who had it. `onGiven` is called when the
    /// window has got it.
    virtual void lendKeyboard(Window window, std::function<void()> onGiven) = 0;
    /// Gives it back to whom it was taken from, unless somebody else has got it since. Before the window that
    /// has it is hidden; without a loan it does nothing.
    virtual void returnKeyboard() = 0;
    /// Puts `window` right behind `other`, which may be a managed window of any program.
    virtual void putBehind(Window window, Window other) = 0;
};

} // namespace selvane
