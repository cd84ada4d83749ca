#include "GeneratedBackup.h"

#include "GeneratedHistory.h"
#include "SelvaneCore/SelvaneBackup.h"

#include <cstdlib>
#include <optional>
#include <utility>

namespace selvane::benchmarks {

std::string generatedBackup(std::size_t size) {
    const auto textOf = [](std::size_t count) {
        const SelvaneBackup backup("1.0", afterAll, {}, generatedHistory(count), std::nullopt, {});
        auto text = backup.encoded();
        if (!text)
            std::abort();
        return std::move(*text);
    };
    constexpr std::size_t sample = 10'000;
    const double bytesPerSession = static_cast<double>(textOf(sample).size()) / sample;
    const auto count = static_cast<std::size_t>(0.99 * static_cast<double>(size) / bytesPerSession);
    std::string text = textOf(count);
    if (text.size() > size)
        std::abort();
    // White space makes up the rest.
    text.resize(size, ' ');
    return text;
}

} // namespace selvane::benchmarks
