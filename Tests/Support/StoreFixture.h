#pragma once

#include "SelvaneCore/Calendar.h"
#include "SelvaneCore/JSONStore.h"
#include "SelvaneCore/Models.h"
#include "SelvaneCore/TaskList.h"
#include "Support/FaultyFileSystem.h"
#include "Support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

namespace selvane::test {

using History = std::vector<FocusSession>;

/// Records of every shape, the same for the same seed.
class RandomRecords {
public:
    explicit RandomRecords(std::uint64_t seed) : _engine(seed) {}

    std::uint64_t below(std::uint64_t end) {
        return std::uniform_int_distribution<std::uint64_t>(0, end - 1)(_engine);
    }
    bool coin() { return below(2) == 0; }

    UUID uuid() {
        UUID::Bytes bytes{};
        for (auto& byte : bytes)
            byte = static_cast<std::uint8_t>(below(256));
        return UUID(bytes);
    }

    /// A whole second, as files keep it, between the years 0 and 9999.
    Date date() {
        using namespace std::chrono;
        const sys_seconds first = sys_days{year{0} / 1 / 1};
        return first + seconds{below(315'569'520'000U)};
    }

    /// Every finite number, whole ones and awkward ones more often.
    double number() {
        switch (below(4)) {
        case 0:
            return static_cast<double>(below(100'000));
        case 1:
            return static_cast<double>(below(100'000'000'000U)) / 1e6;
        case 2:
            return static_cast<double>(_engine()) * (coin() ? 1.0 : -4096.0);
        default:
            break;
        }
        double any = 0;
        do {
            any = std::bit_cast<double>(_engine());
        } while (!std::isfinite(any));
        return any;
    }

    /// Scalar values of every kind, ASCII and characters that need escapes more often.
    std::string text() {
        std::string result;
        for (auto left = below(24); left > 0; --left) {
            if (coin())
                result += static_cast<char>(below(128));
            else
                append(result,
                       static_cast<char32_t>(coin() ? below(0xd800) : 0xe000 + below(0x110000 - 0xe000)));
        }
        return result;
    }

    FocusSession session() {
        FocusSession result{
            uuid(), date(),       date(),      allPhases[below(3)], Seconds{number()}, Seconds{number()},
            coin(), std::nullopt, std::nullopt};
        if (coin())
            result.taskID = uuid();
        if (coin()) {
            result.apps.emplace();
            for (auto left = below(5); left > 0; --left)
                result.apps->push_back({text(), text(), Seconds{number()}});
        }
        return result;
    }

    TaskItem task() {
        TaskItem result{uuid(), text(), coin(), date(), std::nullopt, static_cast<std::int64_t>(_engine()),
                        0};
        if (coin())
            result.completedAt = date();
        result.completedPomodoros = static_cast<std::int64_t>(below(1000)) - 500;
        return result;
    }

    History history(std::size_t count) {
        History result;
        while (result.size() < count)
            result.push_back(session());
        return result;
    }

    TaskList tasks(std::size_t count) {
        TaskList result;
        while (result.items.size() < count)
            result.items.push_back(task());
        return result;
    }

private:
    static void append(std::string& text, char32_t scalar) {
        const auto byte = [](char32_t value) { return static_cast<char>(value); };
        if (scalar < 0x80) {
            text += byte(scalar);
        } else if (scalar < 0x800) {
            text += {byte(0xc0 | scalar >> 6), byte(0x80 | (scalar & 0x3f))};
        } else if (scalar < 0x10000) {
            text +=
                {byte(0xe0 | scalar >> 12), byte(0x80 | (scalar >> 6 & 0x3f)), byte(0x80 | (scalar & 0x3f))};
        } else {
            text += {byte(0xf0 | scalar >> 18), byte(0x80 | (scalar >> 12 & 0x3f)),
                     byte(0x80 | (scalar >> 6 & 0x3f)), byte(0x80 | (scalar & 0x3f))};
        }
    }

    std::mt19937_64 _engine;
};

/// The two stores of a data folder that doesn't exist yet, on a file system with faults and a clock that
/// stands.
class StoreFixture : public testing::Test {
protected:
    /// 2026-03-05 14:07:09 UTC.
    static constexpr Date now = std::chrono::sys_days{std::chrono::year{2026} / 3 / 5} +
                                std::chrono::hours{14} + std::chrono::minutes{7} + std::chrono::seconds{9};

    StoreEnvironment environment() {
        return {&files, [] { return now; }, [this] { return calendar; }};
    }
    JSONStore<TaskList> taskStore() { return {data / "tasks.json", environment()}; }
    JSONStore<History> historyStore() { return {data / "sessions.json", environment()}; }

    void write(const std::string& name, const std::string& bytes) { folder.write("data/" + name, bytes); }
    [[nodiscard]] std::string read(const std::string& name) const { return folder.read("data/" + name); }

    /// Every name in the data folder, sorted.
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> result;
        if (std::filesystem::exists(data)) {
            for (const auto& entry : std::filesystem::directory_iterator(data))
                result.push_back(entry.path().filename().string());
        }
        std::ranges::sort(result);
        return result;
    }
    /// The set-aside names among them.
    [[nodiscard]] std::vector<std::string> setAside() const {
        std::vector<std::string> result = names();
        std::erase_if(result,
                      [](const std::string& name) { return name.find(".corrupt-") == std::string::npos; });
        return result;
    }

    TemporaryFolder folder;
    std::filesystem::path data = folder.path() / "data";
    FaultyFileSystem files;
    Calendar calendar = Calendar::utc();
};

} // namespace selvane::test
