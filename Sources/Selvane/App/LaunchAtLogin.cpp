#include "Selvane/App/LaunchAtLogin.h"

namespace selvane::LaunchAtLogin {

bool isEnabled(const LoginItem& item) {
    return item.isRegistered();
}

LoginItem::Outcome set(LoginItem& item, bool isEnabled) {
    return isEnabled ? item.registerItem() : item.unregister();
}

} // namespace selvane::LaunchAtLogin
