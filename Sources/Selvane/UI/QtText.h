#pragma once

#include <QString>

#include <string_view>

namespace selvane {

/// The core's text as Qt's.
[[nodiscard]] inline QString qtText(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace selvane
