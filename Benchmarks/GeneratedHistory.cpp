#include "GeneratedHistory.h"

#include "SelvaneCore/UUID.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <random>
#include <utility>

namespace selvane::benchmarks {

std::vector<FocusSession> generatedHistory(std::size_t count) {
    std::mt19937_64 random(42);
    const auto below = [&random](std::uint64_t end) { return random() % end; };
    const auto uuid = [&random] {
        UUID::Bytes bytes{};
        std::ranges::generate(bytes, [&] { return static_cast<std::uint8_t>(random()); });
        return UUID(bytes);
    };
    const std::vector<AppUsage> apps{
        {"org.gnome.TextEditor", "Text Editor", {}},       {"org.mozilla.firefox", "Firefox", {}},
        {"site:news.example.org", "news.example.org", {}}, {"org.gnome.Nautilus", "Files", {}},
        {"com.example.Größe", "Größe/Länge", {}},          {"away", "Away", {}}};
    const std::vector<UUID> tasks{uuid(), uuid(), uuid(), uuid()};

    std::vector<FocusSession> history;
    history.reserve(count);
    Date start = std::chrono::sys_days{std::chrono::year{2015} / 1 / 5};
    while (history.size() < count) {
        start += std::chrono::seconds{3000 + below(4520)};
        const auto length = std::chrono::microseconds{60'000'000 + below(1'440'000'000)};
        FocusSession session{uuid(),
                             start,
                             start + length,
                             Phase::focus,
                             Seconds{1500},
                             Seconds{length},
                             below(4) != 0,
                             tasks[below(tasks.size())],
                             std::vector<AppUsage>{}};
        for (auto left = below(3); left > 0; --left) {
            AppUsage usage = apps[below(apps.size())];
            usage.seconds = std::chrono::microseconds{below(600'000'000)};
            session.apps->push_back(std::move(usage));
        }
        history.push_back(std::move(session));
    }
    return history;
}

} // namespace selvane::benchmarks
