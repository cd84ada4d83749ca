#pragma once

#include "Selvane/Platform/AudioOutput.h"
#include "Support/EndWithTest.h"
#include "Support/EventLoop.h"
#include "Support/SoundServer.h"
#include "Support/TemporaryFolder.h"

#include <QtCore/QProcess>
#include <QtCore/QString>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numbers>
#include <span>
#include <string>
#include <system_error>
#include <vector>

namespace selvane::test {

using Clock = std::chrono::steady_clock;

/// Sines that are never quite silent: the left side at 441 Hz, the right one at 882 Hz.
class Sines final : public AudioSource {
public:
    static constexpr std::size_t endless = static_cast<std::size_t>(-1);

    Sines(std::size_t length, float left, float right) : _length(length), _left(left), _right(right) {}
    Sines(const Sines&) = delete;
    Sines& operator=(const Sines&) = delete;
    ~Sines() override {
        if (end != nullptr)
            *end = Clock::now();
    }

    static float swing(std::size_t index, double hertz) {
        // Half a frame late, so that no frame is nought.
        const double seconds = (static_cast<double>(index) + 0.5) / AudioOutput::framesPerSecond;
        return static_cast<float>(std::sin(2 * std::numbers::pi * hertz * seconds));
    }

    [[nodiscard]] AudioFrame frame(std::size_t index) const {
        return {_left * swing(index, 441), _right * swing(index, 882)};
    }

    std::size_t render(std::span<AudioFrame> frames) override {
        const std::size_t count = std::min(frames.size(), _length - _next);
        for (AudioFrame& each : frames.first(count))
            each = frame(_next++);
        asked += count;
        return count;
    }

    std::atomic<std::size_t> asked = 0;
    /// Gets the moment at which the object ends.
    std::shared_ptr<std::atomic<Clock::time_point>> end;

private:
    std::size_t _length;
    float _left;
    float _right;
    std::size_t _next = 0;
};

/// What the server's device plays, from when the object exists, whether or not anybody looks.
class Recording {
public:
    Recording() {
        endWithTest(_parec);
        _parec.setStandardOutputFile(QString::fromStdString(_file.string()));
        _parec.start(QStringLiteral("parec"),
                     {QStringLiteral("--device=hall.monitor"), QStringLiteral("--format=float32le"),
                      QStringLiteral("--rate=48000"), QStringLiteral("--channels=2"), QStringLiteral("--raw"),
                      QStringLiteral("--latency-msec=20")});
        _parec.waitForStarted();
        _bytes.open(_file, std::ios::binary);
    }
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    ~Recording() {
        _parec.kill();
        _parec.waitForFinished();
    }

    /// False if the server records nothing.
    [[nodiscard]] bool hasBegun() {
        return waitUntil([this] { return !frames().empty(); });
    }

    /// Waits until so much more has been recorded. False if it isn't.
    [[nodiscard]] bool goesOnFor(std::size_t more) {
        const std::size_t soFar = frames().size();
        return waitUntil([&] { return frames().size() >= soFar + more; });
    }

    /// Everything so far.
    const std::vector<AudioFrame>& frames() {
        std::error_code ignored;
        const std::size_t count = std::filesystem::file_size(_file, ignored) / sizeof(AudioFrame);
        const std::size_t known = _frames.size();
        if (!ignored && count > known) {
            _frames.resize(count);
            _bytes.clear();
            _bytes.seekg(static_cast<std::streamoff>(known * sizeof(AudioFrame)));
            _bytes.read(reinterpret_cast<char*>(_frames.data() + known),
                        static_cast<std::streamsize>((count - known) * sizeof(AudioFrame)));
        }
        return _frames;
    }

    /// What one side of the recording holds but silence.
    struct Heard {
        std::vector<float> samples;
        /// Where the first and the last of them stand.
        std::size_t first = 0;
        std::size_t last = 0;

        /// Whether there was no silence in between.
        [[nodiscard]] bool isGapless() const { return last - first + 1 == samples.size(); }
    };

    Heard heard(float AudioFrame::*side) {
        Heard result;
        const std::vector<AudioFrame>& all = frames();
        for (std::size_t index = 0; index < all.size(); ++index) {
            const float sample = all[index].*side;
            if (sample == 0)
                continue;
            if (result.samples.empty())
                result.first = index;
            result.last = index;
            result.samples.push_back(sample);
        }
        return result;
    }

private:
    TemporaryFolder _folder;
    std::filesystem::path _file = _folder.path() / "recording";
    QProcess _parec;
    std::ifstream _bytes;
    std::vector<AudioFrame> _frames;
};

/// The names of the process's threads.
inline std::vector<std::string> threadNames() {
    std::vector<std::string> names;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream file(task.path() / "comm");
        std::getline(file, names.emplace_back());
    }
    return names;
}

/// Waits until no thread has that name. The kernel may list one for a moment after it was joined.
inline bool isWithoutThread(const std::string& name) {
    return waitUntil([&name] { return std::ranges::count(threadNames(), name) == 0; });
}

inline constexpr auto nameOfServer = [](const testing::TestParamInfo<SoundSystem>& test) {
    return test.param == SoundSystem::pulseAudio ? "PulseAudio" : "PipeWire";
};
inline constexpr std::array servers{SoundSystem::pulseAudio, SoundSystem::pipeWire};

} // namespace selvane::test
