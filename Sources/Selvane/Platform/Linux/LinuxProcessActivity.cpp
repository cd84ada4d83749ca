#include "Selvane/Platform/Linux/LinuxProcessActivity.h"

namespace selvane {

Subscription LinuxProcessActivity::begin(std::string_view) {
    return Subscription([] {});
}

} // namespace selvane
