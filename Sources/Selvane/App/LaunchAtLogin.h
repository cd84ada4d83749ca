#pragma once

#include "Selvane/Platform/LoginItem.h"

/// The wish to have the program opened at login, as settings show it and change it.
namespace selvane::LaunchAtLogin {

/// How it is now, whoever made it so.
[[nodiscard]] bool isEnabled(const LoginItem& item);

/// Makes it so. The error is what to tell the user; all is as it was then.
[[nodiscard]] LoginItem::Outcome set(LoginItem& item, bool isEnabled);

} // namespace selvane::LaunchAtLogin
