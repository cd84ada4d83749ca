#pragma once

#include <string>
#include <string_view>

namespace selvane::StartupNotice {

/// Tells an X11 desktop that a start is over, by the Startup Notification Protocol 0.1. A desktop that starts
/// a program for the user shows a busy pointer until it hears so, for half a minute if nobody tells it.
///
/// `id` is the name that the desktop gave to the start: DESKTOP_STARTUP_ID in the environment of the new
/// process, or "desktop-startup-id" in the platform data of a call to a process that runs already. Nothing
/// happens if it is empty or there is no X server. Connects to the server for a moment and waits for it; any
/// thread.
void complete(std::string_view id, const std::string& display = {});

} // namespace selvane::StartupNotice
