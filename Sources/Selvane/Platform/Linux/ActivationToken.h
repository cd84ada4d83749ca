#pragma once

#include <string_view>

/// The user's leave to take the focus, as a Wayland desktop gives it with a click or a start. Qt looks for it
/// in the environment, in XDG_ACTIVATION_TOKEN, when a window asks for the focus, and takes it out there.
/// Main thread.
///
/// Other threads may read the environment at any time: libpulse does when it connects, and so does each
/// translated message of the C library. So it is never changed while they exist, but for this variable, and
/// for this one in a way that no reader notices. Nothing else in the program may set or unset a variable once
/// `prepare` was called.
namespace selvane::ActivationToken {

inline constexpr const char* variable = "XDG_ACTIVATION_TOKEN";

/// Makes room for the variable at the end of the environment, where setting it and taking it out are each the
/// change of one pointer. What it holds stays. Before any other thread is begun, and after every other change
/// of the environment.
void prepare();

/// Leaves `token` for the next window that asks for the focus. Nothing happens to one of improbable length.
void leave(std::string_view token);

/// Takes out a token that no window has used. Called when what the user did is dealt with: the next window
/// may come of something else, and has to ask for a token of its own.
void drop();

} // namespace selvane::ActivationToken
