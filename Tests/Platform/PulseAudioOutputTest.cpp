#include "Selvane/Platform/Linux/PulseAudioOutput.h"

#include "Selvane/Platform/Linux/LazyAudioOutput.h"
#include "Support/SoundServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>
#include <numbers>
#include <string>

namespace selvane::test {
namespace {

/// Sines that are never quite silent: the left side at 441 Hz, the right one at 882 Hz.
class Sines final : public AudioSource {
public:
    static constexpr std::size_t endless = static_cast<std::size_t>(-1);

    Sines(std::size_t length, float left, float right) : _length(length), _left(left), _right(right) {}

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

private:
    std::size_t _length;
    float _left;
    float _right;
    std::size_t _next = 0;
};

/// What the server's device plays, from when the object exists.
class Recording {
public:
    Recording() {
        endWithTest(_parec);
        _parec.start(QStringLiteral("parec"),
                     {QStringLiteral("--device=hall.monitor"), QStringLiteral("--format=float32le"),
                      QStringLiteral("--rate=48000"), QStringLiteral("--channels=2"), QStringLiteral("--raw"),
                      QStringLiteral("--latency-msec=20")});
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

    /// Everything so far.
    const std::vector<AudioFrame>& frames() {
        _bytes += _parec.readAllStandardOutput();
        const auto count = static_cast<std::size_t>(_bytes.size()) / sizeof(AudioFrame);
        const std::size_t known = _frames.size();
        if (count > known) {
            _frames.resize(count);
            std::memcpy(_frames.data() + known, _bytes.constData() + known * sizeof(AudioFrame),
                        (count - known) * sizeof(AudioFrame));
        }
        return _frames;
    }

    /// What was recorded of one side, without the silence before and after.
    std::vector<float> heard(float AudioFrame::*side) {
        std::vector<float> samples;
        for (const AudioFrame& frame : frames())
            samples.push_back(frame.*side);
        const auto isSound = [](float sample) { return sample != 0; };
        const auto begin = std::ranges::find_if(samples, isSound);
        const auto end = std::find_if(samples.rbegin(), std::make_reverse_iterator(begin), isSound).base();
        return {begin, end};
    }

private:
    QProcess _parec;
    QByteArray _bytes;
    std::vector<AudioFrame> _frames;
};

class PulseAudioOutputTest : public testing::TestWithParam<SoundSystem> {
protected:
    static constexpr std::size_t half = AudioOutput::framesPerSecond / 2;

    static bool isAtRest(const PulseAudioOutput& output) {
        return waitUntil([&output] { return !output.isConnected(); });
    }

    static bool hasLetGo(const std::shared_ptr<Sines>& source) {
        return waitUntil([&source] { return source.use_count() == 1; });
    }

    /// Whether the whole of that side arrives as it was made: nothing is missing, repeated, louder or softer.
    static void expectHeard(Recording& recording, const Sines& source, std::size_t length,
                            float AudioFrame::*side) {
        ASSERT_TRUE(waitUntil([&] { return recording.heard(side).size() >= length; }));
        const std::vector<float> heard = recording.heard(side);
        ASSERT_EQ(heard.size(), length);
        for (std::size_t index = 0; index < length; ++index)
            ASSERT_NEAR(heard[index], source.frame(index).*side, 1e-5) << "frame " << index;
    }

    SoundServer _server{GetParam()};
};

TEST_P(PulseAudioOutputTest, ASoundIsHeardWhole) {
    ASSERT_TRUE(_server.start());
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    PulseAudioOutput output;
    const auto source = std::make_shared<Sines>(half, 0.5F, 0.25F);
    output.play(source);
    expectHeard(recording, *source, half, &AudioFrame::left);
    expectHeard(recording, *source, half, &AudioFrame::right);
}

TEST_P(PulseAudioOutputTest, TwoSoundsAreHeardBesideEachOther) {
    ASSERT_TRUE(_server.start());
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    PulseAudioOutput output;
    const auto one = std::make_shared<Sines>(half, 0.5F, 0.0F);
    const auto other = std::make_shared<Sines>(half, 0.0F, 0.5F);
    output.play(one);
    output.play(other);
    expectHeard(recording, *one, half, &AudioFrame::left);
    expectHeard(recording, *other, half, &AudioFrame::right);
    EXPECT_LT(recording.frames().size(), 20 * half);
}

TEST_P(PulseAudioOutputTest, TheConnectionEndsSoonAfterTheSound) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output;
    for (int round = 0; round < 2; ++round) {
        const auto source = std::make_shared<Sines>(half / 4, 0.5F, 0.5F);
        output.play(source);
        EXPECT_TRUE(output.isConnected());
        EXPECT_TRUE(hasLetGo(source));
        EXPECT_EQ(source->asked, half / 4);
        EXPECT_TRUE(output.isConnected()) << "another sound may follow";
        EXPECT_TRUE(isAtRest(output));
    }
}

TEST_P(PulseAudioOutputTest, AServerThatDiesTakesItsSoundsAlong) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output;
    const auto lost = std::make_shared<Sines>(Sines::endless, 0.5F, 0.5F);
    output.play(lost);
    ASSERT_TRUE(waitUntil([&] { return lost->asked > half; }));
    _server.kill();
    EXPECT_TRUE(hasLetGo(lost));
    EXPECT_TRUE(isAtRest(output));

    ASSERT_TRUE(_server.start());
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    const auto later = std::make_shared<Sines>(half, 0.5F, 0.5F);
    output.play(later);
    expectHeard(recording, *later, half, &AudioFrame::left);
}

TEST_P(PulseAudioOutputTest, EndsInMidSound) {
    ASSERT_TRUE(_server.start());
    const auto source = std::make_shared<Sines>(Sines::endless, 0.5F, 0.5F);
    {
        PulseAudioOutput output;
        output.play(source);
        ASSERT_TRUE(waitUntil([&] { return source->asked > half; }));
    }
    EXPECT_EQ(source.use_count(), 1);
}

TEST_P(PulseAudioOutputTest, TheLogTellsOnceThatThereIsNoServer) {
    testing::internal::CaptureStderr();
    PulseAudioOutput output;
    const auto playInVain = [&] {
        const auto source = std::make_shared<Sines>(half, 0.5F, 0.5F);
        output.play(source);
        EXPECT_TRUE(hasLetGo(source));
        EXPECT_TRUE(isAtRest(output));
        EXPECT_EQ(source->asked, 0);
    };
    playInVain();
    playInVain();
    const std::string line = "Selvane: no sounds are heard: Connection refused\n";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line);

    testing::internal::CaptureStderr();
    ASSERT_TRUE(_server.start());
    const auto source = std::make_shared<Sines>(half / 4, 0.5F, 0.5F);
    output.play(source);
    EXPECT_TRUE(hasLetGo(source));
    EXPECT_EQ(source->asked, half / 4);
    _server.kill();
    EXPECT_TRUE(isAtRest(output));
    playInVain();
    playInVain();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), line);
}

TEST_P(PulseAudioOutputTest, ThePluginPlays) {
    ASSERT_TRUE(_server.start());
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    LazyAudioOutput output(AUDIO_PLUGIN);
    const auto source = std::make_shared<Sines>(half, 0.5F, 0.5F);
    output.play(source);
    expectHeard(recording, *source, half, &AudioFrame::left);
}

INSTANTIATE_TEST_SUITE_P(Servers, PulseAudioOutputTest,
                         testing::Values(SoundSystem::pulseAudio, SoundSystem::pipeWire),
                         [](const auto& test) {
                             return test.param == SoundSystem::pulseAudio ? "PulseAudio" : "PipeWire";
                         });

TEST(PulseAudioOutputTest, AServerThatDoesNotAnswerIsGivenUp) {
    const SoundServer place(SoundSystem::pulseAudio);
    std::filesystem::create_directory(place.socket().parent_path());
    const int mute = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    place.socket().string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(mute, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(mute, 1), 0);
    testing::internal::CaptureStderr();
    PulseAudioOutput output;
    const auto source = std::make_shared<Sines>(1, 0.5F, 0.5F);
    output.play(source);
    EXPECT_TRUE(waitUntil([&] { return !output.isConnected(); }));
    EXPECT_EQ(source.use_count(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Selvane: no sounds are heard: the sound server doesn't answer\n");
    close(mute);
}

TEST(LazyAudioOutputTest, WithoutItsPluginNothingIsHeard) {
    testing::internal::CaptureStderr();
    LazyAudioOutput output("/nowhere/libselvane-audio.so");
    const auto source = std::make_shared<Sines>(1, 0.5F, 0.5F);
    output.play(source);
    output.play(source);
    EXPECT_EQ(source.use_count(), 1);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_THAT(log, testing::StartsWith("Selvane: couldn't load what plays sounds: "));
    EXPECT_EQ(std::ranges::count(log, '\n'), 1);
}

} // namespace
} // namespace selvane::test
