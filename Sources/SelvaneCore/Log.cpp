#include "SelvaneCore/Log.h"

#include <cstdio>
#include <string>

namespace selvane::Log {

void line(std::string_view message) {
    std::string text = "Selvane: ";
    for (const char character : message)
        text += static_cast<unsigned char>(character) < 0x20 || character == 0x7f ? ' ' : character;
    text += '\n';
    // One call, so that lines of several processes don't mix.
    std::fwrite(text.data(), 1, text.size(), stderr);
}

} // namespace selvane::Log
