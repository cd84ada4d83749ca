#include "Platform/SoundRecording.h"
#include "Selvane/Platform/AudioStream.h"
#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "Selvane/Platform/Linux/PulseAudioOutput.h"
#include "Support/ManualScheduler.h"
#include "Support/SoundServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace selvane::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::size_t second = AudioOutput::framesPerSecond;
constexpr std::size_t half = second / 2;

std::shared_ptr<Sines> endless(float left, float right) {
    return std::make_shared<Sines>(Sines::endless, left, right);
}

/// A stream of an endless source, and what it tells. What is told inside of a call is an error.
struct Played {
    Played(AudioOutput& output, std::shared_ptr<Sines> played, double rate = AudioOutput::framesPerSecond)
        : source(std::move(played)), stream(output.stream(source, rate)) {
        failed = stream->failed.subscribe([this](const std::string& reason) {
            EXPECT_FALSE(isCalling);
            reasons.push_back(reason);
        });
        changed = stream->configurationChanged.subscribe([this] {
            EXPECT_FALSE(isCalling);
            ++changes;
            if (startsAgain) {
                EXPECT_TRUE(start());
            }
        });
    }

    tl::expected<void, std::string> start() {
        isCalling = true;
        auto started = stream->start();
        isCalling = false;
        return started;
    }

    void pause() {
        isCalling = true;
        stream->pause();
        isCalling = false;
    }

    /// Waits until the server has asked for so much more. False if it doesn't.
    [[nodiscard]] bool isAsked(std::size_t more = half) const {
        const std::size_t soFar = source->asked;
        return waitUntil([&] { return source->asked >= soFar + more; });
    }

    [[nodiscard]] bool stops() const {
        return waitUntil([this] { return !stream->isRunning(); });
    }

    std::shared_ptr<Sines> source;
    std::unique_ptr<AudioStream> stream;
    bool startsAgain = false;
    bool isCalling = false;
    std::vector<std::string> reasons;
    int changes = 0;
    Subscription failed;
    Subscription changed;
};

class PulseAudioStreamTest : public testing::TestWithParam<SoundSystem> {
protected:
    static bool isAtRest(const PulseAudioOutput& output) {
        return waitUntil([&output] { return output.isAtRest(); });
    }

    /// Waits until the device plays nothing but silence. False if it goes on.
    static bool fallsSilent(Recording& recording) {
        return waitUntil([&recording] {
            const std::vector<AudioFrame>& frames = recording.frames();
            return frames.size() > half &&
                   std::all_of(frames.end() - half, frames.end(), [](AudioFrame frame) {
                       return frame == AudioFrame{0, 0};
                   });
        });
    }

    /// Waits until the device plays something. False if it doesn't.
    static bool sounds(Recording& recording) {
        const std::size_t soFar = recording.frames().size();
        return waitUntil([&] {
            const std::vector<AudioFrame>& frames = recording.frames();
            return std::any_of(frames.begin() + static_cast<std::ptrdiff_t>(soFar), frames.end(),
                               [](AudioFrame frame) {
                                   return frame != AudioFrame{0, 0};
                               });
        });
    }

    /// Whether what was heard is what the source made from its beginning on.
    static bool isWhole(const Recording::Heard& heard, const Sines& source, float AudioFrame::*side) {
        for (std::size_t index = 0; index < heard.samples.size(); ++index) {
            if (std::abs(heard.samples[index] - source.frame(index).*side) > 1e-5F)
                return false;
        }
        return heard.isGapless();
    }

    SoundServer _server{GetParam()};
    LinuxScheduler _scheduler;
};

std::size_t openFiles() {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}));
}

/// Runs `work` while there is something to do for two cores.
void whileTheMachineIsBusy(const std::function<void()>& work) {
    std::atomic<bool> isOver = false;
    const auto beBusy = [&isOver] {
        while (!isOver) {
        }
    };
    std::thread one(beBusy);
    std::thread other(beBusy);
    work();
    isOver = true;
    one.join();
    other.join();
}

/// What holds only if the server is in time, and so runs alone.
class TimelyStreamTest : public PulseAudioStreamTest {
protected:
    /// How often the thread that plays has waited for something.
    static long wakeUps() {
        long sum = 0;
        for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
            std::ifstream comm(task.path() / "comm");
            std::string name;
            std::getline(comm, name);
            std::ifstream status(task.path() / "status");
            for (std::string word; name == "sounds" && status >> word;) {
                if (word == "voluntary_ctxt_switches:" && status >> sum)
                    return sum;
            }
        }
        return sum;
    }
};

TEST_P(TimelyStreamTest, HasNoGapsWhileTheMainThreadAndTheMachineAreBusy) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    // A server is in time on a machine with time to spare only.
    bool isWholeOnce = false;
    for (int attempt = 1; attempt <= 5 && !isWholeOnce; ++attempt) {
        Recording recording;
        ASSERT_TRUE(recording.hasBegun());
        Played played(output, endless(0.5F, 0.25F));
        ASSERT_TRUE(played.start());
        ASSERT_TRUE(sounds(recording));
        const std::size_t before = recording.frames().size();
        whileTheMachineIsBusy([] { std::this_thread::sleep_for(2s); });
        const Recording::Heard left = recording.heard(&AudioFrame::left);
        const Recording::Heard right = recording.heard(&AudioFrame::right);
        isWholeOnce = recording.frames().size() > before + second && left.samples.size() > second &&
                      isWhole(left, *played.source, &AudioFrame::left) &&
                      isWhole(right, *played.source, &AudioFrame::right);
        EXPECT_TRUE(played.stream->isRunning());
        EXPECT_THAT(played.reasons, IsEmpty());
        EXPECT_EQ(played.changes, 0);
    }
    EXPECT_TRUE(isWholeOnce);
}

TEST_P(TimelyStreamTest, WakesUpSeldom) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked(second));
    double fewest = std::numeric_limits<double>::infinity();
    // A server that was late asks more often for a while.
    for (int attempt = 1; attempt <= 5 && fewest > 20; ++attempt) {
        const long before = wakeUps();
        ASSERT_GT(before, 0);
        const std::size_t asked = played.source->asked;
        ASSERT_TRUE(played.isAsked(3 * second));
        const double seconds = static_cast<double>(played.source->asked - asked) / double{second};
        fewest = std::min(fewest, static_cast<double>(wakeUps() - before) / seconds);
    }
    std::printf("%.1f wake-ups a second\n", fewest);
    EXPECT_LE(fewest, 20);
}

TEST_P(PulseAudioStreamTest, StartsNothingBeforeItIsStarted) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    EXPECT_EQ(output.sampleRate(), 48'000);
    Played played(output, endless(0.5F, 0.5F));
    played.stream->setVolume(0.5F);
    played.pause();
    EXPECT_FALSE(played.stream->isRunning());
    EXPECT_TRUE(output.isAtRest());
    EXPECT_EQ(played.source->asked, 0);
}

TEST_P(TimelyStreamTest, PauseStopsAtOnce) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    // On a busy machine little may lie ready, or be heard before anybody gets to stop it.
    bool isLeftUnheard = false;
    for (int attempt = 1; attempt <= 5 && !isLeftUnheard; ++attempt) {
        Recording recording;
        ASSERT_TRUE(recording.hasBegun());
        Played played(output, endless(0.5F, 0.5F));
        ASSERT_TRUE(played.start());
        ASSERT_TRUE(sounds(recording));
        ASSERT_TRUE(played.isAsked());
        played.pause();
        EXPECT_FALSE(played.stream->isRunning());
        EXPECT_TRUE(fallsSilent(recording));
        const std::size_t heard = recording.heard(&AudioFrame::left).samples.size();
        isLeftUnheard = heard + second / 20 < played.source->asked;
    }
    EXPECT_TRUE(isLeftUnheard) << "what lay ready was heard too";
}

TEST_P(PulseAudioStreamTest, PauseEndsEverythingSoonAfter) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    std::size_t files = 0;
    for (int round = 1; round <= 2; ++round) {
        Recording recording;
        ASSERT_TRUE(recording.hasBegun());
        ASSERT_TRUE(played.start());
        EXPECT_TRUE(played.stream->isRunning());
        ASSERT_TRUE(sounds(recording));
        ASSERT_TRUE(played.isAsked());
        EXPECT_THAT(threadNames(), testing::Contains("sounds"));
        const auto paused = Clock::now();
        played.pause();
        EXPECT_FALSE(played.stream->isRunning());
        EXPECT_TRUE(fallsSilent(recording));
        const std::size_t asked = played.source->asked;
        EXPECT_TRUE(isAtRest(output));
        EXPECT_GT(Clock::now() - paused, 2900ms);
        // The server may have asked once more while the pause was on its way.
        EXPECT_LE(played.source->asked, asked + second * 3 / 10) << "it goes on";
        EXPECT_TRUE(isWithoutThread("sounds"));
        if (round == 1)
            files = openFiles();
        EXPECT_EQ(openFiles(), files);
    }
    EXPECT_THAT(played.reasons, IsEmpty());
    EXPECT_EQ(played.changes, 0);
}

TEST_P(TimelyStreamTest, GoesOnWhereItWasPaused) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    // What a late server leaves out is missing in what goes on, too.
    bool goesOn = false;
    for (int attempt = 1; attempt <= 8 && !goesOn; ++attempt) {
        Recording recording;
        ASSERT_TRUE(recording.hasBegun());
        Played played(output, endless(0.5F, 0.5F));
        ASSERT_TRUE(played.start());
        ASSERT_TRUE(played.isAsked());
        played.pause();
        const std::size_t askedBefore = played.source->asked;
        ASSERT_TRUE(fallsSilent(recording));
        EXPECT_FALSE(output.isAtRest()) << "what lies ready is kept for that long";
        ASSERT_TRUE(played.start());
        ASSERT_TRUE(sounds(recording));
        ASSERT_TRUE(played.isAsked());
        const std::vector<float> heard = recording.heard(&AudioFrame::left).samples;
        std::size_t index = 0;
        while (index < heard.size() && std::abs(heard[index] - played.source->frame(index).left) <= 1e-5F)
            ++index;
        goesOn = index == heard.size() && index > askedBefore;
    }
    EXPECT_TRUE(goesOn);
}

TEST_P(PulseAudioStreamTest, GoesOnAfterItsConnectionIsGone) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked());
    played.pause();
    ASSERT_TRUE(isAtRest(output));
    ASSERT_TRUE(played.start());
    EXPECT_TRUE(played.isAsked());
}

TEST_P(TimelyStreamTest, VolumeIsThatOfTheStreamAndChangesWithoutAClick) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    // A sine of 441 Hz moves by so much from one frame to the next, and no volume jumps on top of that.
    const double steepest = 0.5 * 2 * std::numbers::pi * 441 / double{second};
    const std::size_t edge = second / 10;
    // A server is in time on a machine with time to spare only, and what it leaves out near the change is
    // heard too.
    double step = 1;
    for (int attempt = 1; attempt <= 5 && step > 1.02 * steepest; ++attempt) {
        Recording recording;
        ASSERT_TRUE(recording.hasBegun());
        Played played(output, endless(0.5F, 0.5F));
        played.stream->setVolume(0.25F);
        ASSERT_TRUE(played.start());
        ASSERT_TRUE(sounds(recording));
        ASSERT_TRUE(played.isAsked());
        played.stream->setVolume(1.0F);
        ASSERT_TRUE(played.isAsked(second));
        ASSERT_TRUE(recording.goesOnFor(half));
        const std::vector<float> left = recording.heard(&AudioFrame::left).samples;
        ASSERT_GT(left.size(), second);
        EXPECT_NEAR(*std::max_element(left.begin(), left.begin() + edge), 0.125, 0.001);
        EXPECT_NEAR(*std::max_element(left.end() - edge, left.end()), 0.5, 0.001);
        const auto louder = std::find_if(left.begin() + edge, left.end() - 2 * edge,
                                         [](float sample) { return std::abs(sample) > 0.126F; });
        step = 0;
        for (auto sample = louder - edge + 1; sample != louder + 2 * edge; ++sample)
            step = std::max(step, std::abs(double{*sample} - double{*std::prev(sample)}));
    }
    EXPECT_LE(step, 1.02 * steepest);
}

TEST_P(TimelyStreamTest, AnotherRateKeepsItsPitch) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    // Made for 48,000 frames a second, so at half the rate it is an octave lower.
    Played played(output, endless(0.5F, 0.5F), 24'000);
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(sounds(recording));
    // What a late server leaves out is silence, which has no turns.
    std::vector<float> heard;
    ASSERT_TRUE(waitUntil([&] {
        heard = recording.heard(&AudioFrame::left).samples;
        return heard.size() > 2 * second;
    }));
    int turns = 0;
    for (auto sample = heard.end() - second; sample != heard.end(); ++sample)
        turns += (*std::prev(sample) < 0) != (*sample < 0) ? 1 : 0;
    EXPECT_NEAR(turns, 441, 10);
}

TEST_P(TimelyStreamTest, TwoStreamsAndASoundAreHeardBesideEachOther) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    // Of other pitches than the sound, so that each tenth of a second has them all at their loudest.
    Played one(output, endless(0.25F, 0), 40'000);
    Played other(output, endless(0, 0.25F), 40'000);
    ASSERT_TRUE(one.start());
    ASSERT_TRUE(other.start());
    const auto areHeard = [&](bool left, bool right, float least) {
        return waitUntil([&] {
            const std::vector<AudioFrame>& frames = recording.frames();
            if (frames.size() < second / 10)
                return false;
            float loudestLeft = 0;
            float loudestRight = 0;
            for (auto frame = frames.end() - second / 10; frame != frames.end(); ++frame) {
                loudestLeft = std::max(loudestLeft, frame->left);
                loudestRight = std::max(loudestRight, frame->right);
            }
            return (loudestLeft > least) == left && (loudestRight > least) == right;
        });
    };
    EXPECT_TRUE(areHeard(true, true, 0.2F));
    // As loud as the three of them together.
    const auto sound = endless(0.5F, 0.5F);
    output.play(sound);
    EXPECT_TRUE(areHeard(true, true, 0.6F));
    one.pause();
    EXPECT_TRUE(areHeard(false, true, 0.6F));
    EXPECT_FALSE(one.stream->isRunning());
    EXPECT_TRUE(other.stream->isRunning());
    other.stream.reset();
    EXPECT_TRUE(waitUntil([&] { return other.source.use_count() == 1; }));
    EXPECT_TRUE(areHeard(false, false, 0.6F));
    EXPECT_TRUE(areHeard(true, true, 0.4F)) << "the sound, which goes on";
}

TEST_P(PulseAudioStreamTest, AStreamThatEndsWhilePlayingIsLetGo) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    std::optional<Played> played(std::in_place, output, endless(0.5F, 0.5F));
    const std::shared_ptr<Sines> source = played->source;
    ASSERT_TRUE(played->start());
    ASSERT_TRUE(sounds(recording));
    played.reset();
    EXPECT_TRUE(waitUntil([&] { return source.use_count() == 1; }));
    EXPECT_TRUE(fallsSilent(recording));
    EXPECT_TRUE(isAtRest(output));

    // In the midst of connecting too.
    played.emplace(output, source);
    ASSERT_TRUE(played->start());
    played.reset();
    EXPECT_TRUE(isAtRest(output));
    EXPECT_EQ(source.use_count(), 1);
}

TEST_P(PulseAudioStreamTest, ManyStartsAndPausesLeaveTheLastOne) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    for (int round = 0; round < 100; ++round) {
        ASSERT_TRUE(played.start());
        played.pause();
    }
    ASSERT_TRUE(played.start());
    EXPECT_TRUE(played.isAsked(second));
    EXPECT_TRUE(played.stream->isRunning());
    for (int round = 0; round < 100; ++round) {
        played.pause();
        ASSERT_TRUE(played.start());
    }
    played.pause();
    EXPECT_TRUE(isAtRest(output));
    EXPECT_THAT(played.reasons, IsEmpty());
}

constexpr const char* refused = "Connection refused";

TEST_P(PulseAudioStreamTest, WaitsForAServerThatIsntThere) {
    // Whose time doesn't get to the next look: nothing but the server's socket has it look again.
    ManualScheduler scheduler;
    const Seconds begin = scheduler.now();
    PulseAudioOutput output(AUDIO_PLUGIN, scheduler);
    Played played(output, endless(0.5F, 0.5F));
    played.startsAgain = true;
    ASSERT_TRUE(played.start());
    EXPECT_TRUE(played.stream->isRunning()) << "nothing else is known yet";
    EXPECT_TRUE(played.stops());
    EXPECT_TRUE(waitUntil([&] { return !played.reasons.empty(); }));
    EXPECT_THAT(played.reasons, ElementsAre(refused));
    EXPECT_TRUE(isAtRest(output)) << "between two looks";
    EXPECT_EQ(played.source->asked, 0);

    ASSERT_TRUE(_server.start());
    EXPECT_TRUE(waitUntil([&] {
        if (scheduler.now() < begin + 0.9 * ServerSearch::shortestWait)
            scheduler.advance(Seconds{0.01});
        return played.changes > 0;
    }));
    EXPECT_TRUE(waitUntil([&] {
        // A server may be there before its device is.
        scheduler.advance(Seconds{0.01});
        return played.source->asked > 2 * second;
    }));
    EXPECT_TRUE(played.stream->isRunning());
    EXPECT_THAT(played.reasons, ElementsAre(refused));
}

TEST_P(PulseAudioStreamTest, IsSilentAboutLooksInVain) {
    ManualScheduler scheduler;
    PulseAudioOutput output(AUDIO_PLUGIN, scheduler);
    Played played(output, endless(0.5F, 0.5F));
    int rests = 0;
    output.onRest = [&rests] { ++rests; };
    ASSERT_TRUE(played.start());
    EXPECT_TRUE(waitUntil([&] { return rests == 1; }));
    for (int look = 2; look <= 6; ++look) {
        ASSERT_TRUE(waitUntil([&] { return scheduler.waiting() == 1; }));
        scheduler.advance(Seconds{30});
        EXPECT_TRUE(waitUntil([&] { return rests == look; }));
    }
    EXPECT_THAT(played.reasons, ElementsAre(refused));
    // Nor about a start that isn't the first.
    ASSERT_TRUE(played.start());
    EXPECT_TRUE(played.stops());
    EXPECT_THAT(played.reasons, ElementsAre(refused));

    // A pause ends all of that.
    played.pause();
    EXPECT_EQ(scheduler.waiting(), 0);
    ASSERT_TRUE(played.start());
    EXPECT_TRUE(waitUntil([&] { return played.reasons.size() == 2; }));
    EXPECT_THAT(played.reasons, ElementsAre(refused, refused));
    played.stream.reset();
    EXPECT_EQ(scheduler.waiting(), 0);
}

TEST_P(TimelyStreamTest, IsHeardAgainWithinTwoSecondsOfItsServersReturn) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    played.startsAgain = true;
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked(2 * second));
    // A machine may be away for longer than that.
    int timesInTime = 0;
    for (std::size_t round = 1; round <= 5 && timesInTime < 2; ++round) {
        _server.kill();
        EXPECT_TRUE(played.stops());
        EXPECT_TRUE(waitUntil([&] { return played.reasons.size() == round; }));
        EXPECT_EQ(played.reasons.back(), refused);
        const int changes = played.changes;
        ASSERT_TRUE(_server.start());
        const auto returned = Clock::now();
        EXPECT_TRUE(played.isAsked(half / 5));
        timesInTime += Clock::now() - returned < 2s;
        EXPECT_TRUE(played.stream->isRunning());
        EXPECT_GT(played.changes, changes);
        EXPECT_TRUE(played.isAsked(2 * second));
    }
    EXPECT_EQ(timesInTime, 2);
}

TEST_P(PulseAudioStreamTest, AFailedStreamIsNotStartedAgainByItself) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked());
    _server.kill();
    EXPECT_TRUE(played.stops());
    ASSERT_TRUE(_server.start());
    EXPECT_TRUE(waitUntil([&] { return played.changes == 1; }));
    EXPECT_FALSE(played.stream->isRunning());
    const std::size_t asked = played.source->asked;
    EXPECT_TRUE(isAtRest(output));
    EXPECT_EQ(played.source->asked, asked);
    EXPECT_EQ(played.changes, 1);
}

TEST_P(PulseAudioStreamTest, PausedItDoesntLookForTheServerThatIsGone) {
    ManualScheduler scheduler;
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, scheduler);
    Played played(output, endless(0.5F, 0.5F));
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked());
    played.pause();
    _server.kill();
    EXPECT_TRUE(isAtRest(output));
    EXPECT_EQ(scheduler.waiting(), 0);
    EXPECT_THAT(played.reasons, IsEmpty());
    EXPECT_EQ(played.changes, 0);
}

TEST_P(PulseAudioStreamTest, ListenersMayDoAnything) {
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    {
        Played played(output, endless(0.5F, 0.5F));
        ASSERT_TRUE(played.start());
        int calls = 0;
        const Subscription restarts = played.stream->failed.subscribe([&](const std::string&) {
            ++calls;
            EXPECT_FALSE(played.stream->isRunning());
            EXPECT_TRUE(played.start());
            EXPECT_TRUE(played.stream->isRunning());
            played.pause();
            if (calls < 3) {
                EXPECT_TRUE(played.start());
            }
        });
        EXPECT_TRUE(waitUntil([&] { return calls == 3; }));
        EXPECT_FALSE(played.stream->isRunning());
    }
    std::unique_ptr<AudioStream> stream = output.stream(endless(0.5F, 0.5F), second);
    const Subscription ends = stream->failed.subscribe([&](const std::string&) { stream.reset(); });
    ASSERT_TRUE(stream->start());
    EXPECT_TRUE(waitUntil([&] { return stream == nullptr; }));
    EXPECT_TRUE(isAtRest(output));
}

TEST_P(PulseAudioStreamTest, IsHeardAgainWhenItsDeviceWasTakenAwayAndComesBack) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    played.startsAgain = true;
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked(2 * second));
    ASSERT_TRUE(_server.removeDevice());
    ASSERT_TRUE(_server.addDevice());
    Recording recording;
    ASSERT_TRUE(recording.hasBegun());
    EXPECT_TRUE(sounds(recording));
    EXPECT_TRUE(played.isAsked(second));
    EXPECT_TRUE(played.stream->isRunning());
}

/// What only PulseAudio can be brought to do, or what is the client's own alone and takes long.
class QuietServerTest : public PulseAudioStreamTest {};

TEST_P(QuietServerTest, HasItsStreamsWaitWhileTheirDeviceIsSuspended) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked(second));
    ASSERT_TRUE(SoundServer::control({"suspend-sink", "hall", "1"}));
    const std::size_t asked = played.source->asked;
    // Longer than a server may take to ask for something, and then to answer.
    const auto suspended = Clock::now();
    EXPECT_TRUE(waitUntil([&] { return Clock::now() - suspended > 11s; }));
    EXPECT_LT(played.source->asked, asked + second) << "it isn't suspended";
    EXPECT_TRUE(played.stream->isRunning());
    ASSERT_TRUE(SoundServer::control({"suspend-sink", "hall", "0"}));
    EXPECT_TRUE(played.isAsked(second));
    EXPECT_THAT(played.reasons, IsEmpty());
    EXPECT_EQ(played.changes, 0);
}

TEST_P(QuietServerTest, IsLostWhenItAnswersNoMore) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    Played played(output, endless(0.5F, 0.5F));
    played.startsAgain = true;
    ASSERT_TRUE(played.start());
    ASSERT_TRUE(played.isAsked(2 * second));
    _server.freeze();
    EXPECT_TRUE(played.stops());
    _server.goOn();
    EXPECT_TRUE(played.isAsked(second));
    EXPECT_GT(played.changes, 0);
}

INSTANTIATE_TEST_SUITE_P(Servers, PulseAudioStreamTest, testing::ValuesIn(servers), nameOfServer);

INSTANTIATE_TEST_SUITE_P(Sound, TimelyStreamTest, testing::ValuesIn(servers), nameOfServer);

INSTANTIATE_TEST_SUITE_P(Servers, QuietServerTest, testing::Values(SoundSystem::pulseAudio), nameOfServer);

TEST(PulseAudioStreamTest, WithoutThePluginNothingIsWaitedFor) {
    ManualScheduler scheduler;
    testing::internal::CaptureStderr();
    PulseAudioOutput output("/nowhere/libselvane-audio.so", scheduler);
    Played played(output, endless(0.5F, 0.5F));
    for (std::size_t round = 1; round <= 2; ++round) {
        ASSERT_TRUE(played.start());
        EXPECT_TRUE(waitUntil([&] { return played.reasons.size() == round; }));
        EXPECT_THAT(played.reasons.back(), StartsWith("couldn't load what plays sounds: "));
        EXPECT_FALSE(played.stream->isRunning());
        EXPECT_EQ(scheduler.waiting(), 0);
        played.pause();
    }
    EXPECT_TRUE(waitUntil([&] { return output.isAtRest(); }));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "who plays says so";
}

} // namespace
} // namespace selvane::test
