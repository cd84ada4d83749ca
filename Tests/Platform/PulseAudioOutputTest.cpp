#include "Selvane/Platform/Linux/PulseAudioOutput.h"

#include "Platform/SoundRecording.h"
#include "Selvane/Platform/Linux/LinuxScheduler.h"
#include "Support/SoundServer.h"
#include "Support/TemporaryFolder.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace selvane::test {
namespace {

class PulseAudioOutputTest : public testing::TestWithParam<SoundSystem> {
protected:
    static constexpr std::size_t half = AudioOutput::framesPerSecond / 2;

    static bool isAtRest(const PulseAudioOutput& output) {
        return waitUntil([&output] { return output.isAtRest(); });
    }

    static bool hasLetGo(const std::shared_ptr<Sines>& source) {
        return waitUntil([&source] { return source.use_count() == 1; });
    }

    SoundServer _server{GetParam()};
    LinuxScheduler _scheduler;
};

/// What the server's device plays is looked at.
class RecordedSoundTest : public PulseAudioOutputTest {
protected:
    /// Waits until the sounds were let go and a second more has been recorded. False if that never comes.
    static bool areOver(Recording& recording, const std::vector<std::weak_ptr<Sines>>& sounds) {
        const auto isGone = [](const auto& sound) { return sound.expired(); };
        if (!waitUntil([&] { return std::ranges::all_of(sounds, isGone); }))
            return false;
        return recording.goesOnFor(2 * half);
    }

    /// How a sound arrived. `disturbed`: with silence in its midst, or beside nothing that it should stand
    /// beside, as on a machine without time to spare; `spoiled`: otherwise than it was made.
    enum class Arrival { whole, disturbed, spoiled };

    /// How that side arrived. It is `whole` if nothing is missing, repeated, louder or softer.
    static Arrival arrival(const Recording::Heard& heard, const Sines& source, std::size_t length,
                           float AudioFrame::*side) {
        const auto areEqual = [&](std::size_t from, std::size_t to, std::size_t missing) {
            for (std::size_t index = from; index < to; ++index) {
                if (std::abs(heard.samples[index] - source.frame(index + missing).*side) > 1e-5F)
                    return false;
            }
            return true;
        };
        // Whatever is in between, it begins as it begins and ends as it ends.
        constexpr std::size_t edge = AudioOutput::framesPerSecond / 100;
        const std::size_t count = heard.samples.size();
        if (count < edge || count > length || !areEqual(0, edge, 0) ||
            !areEqual(count - edge, count, length - count))
            return Arrival::spoiled;
        if (!heard.isGapless())
            return Arrival::disturbed;
        return count == length && areEqual(0, count, 0) ? Arrival::whole : Arrival::spoiled;
    }

    /// Whether a recording that begins before anything is connected has something in it. What a server does
    /// is in time on a machine with time to spare only, so what was disturbed may be tried again. A machine
    /// that is late just when a sound begins or ends spoils it too; three whole ones must speak against that.
    static testing::AssertionResult isRecorded(const PulseAudioOutput& output,
                                               const std::function<Arrival(Recording&)>& something) {
        int needed = 1;
        for (int attempt = 1; attempt <= 8; ++attempt) {
            if (!isAtRest(output))
                return testing::AssertionFailure() << "still connected at attempt " << attempt;
            Recording recording;
            if (!recording.hasBegun())
                return testing::AssertionFailure() << "nothing is recorded at attempt " << attempt;
            switch (something(recording)) {
            case Arrival::whole:
                if (--needed == 0)
                    return testing::AssertionSuccess();
                break;
            case Arrival::disturbed:
                break;
            case Arrival::spoiled:
                needed = 3;
                break;
            }
        }
        return testing::AssertionFailure() << "it was not heard whole often enough";
    }

    static testing::AssertionResult isHeardWhole(PulseAudioOutput& output) {
        return isRecorded(output, [&output](Recording& recording) {
            const Sines same(half, 0.5F, 0.25F);
            auto source = std::make_shared<Sines>(half, 0.5F, 0.25F);
            const std::weak_ptr held = source;
            output.play(std::move(source));
            if (!areOver(recording, {held}))
                return Arrival::spoiled;
            const auto left = recording.heard(&AudioFrame::left);
            const auto right = recording.heard(&AudioFrame::right);
            if (left.first != right.first)
                return Arrival::spoiled;
            return std::max(arrival(left, same, half, &AudioFrame::left),
                            arrival(right, same, half, &AudioFrame::right));
        });
    }
};

TEST_P(RecordedSoundTest, ASoundIsHeardWhole) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    EXPECT_TRUE(isHeardWhole(output));
}

TEST_P(RecordedSoundTest, TwoSoundsAreHeardBesideEachOther) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    EXPECT_TRUE(isRecorded(output, [&output](Recording& recording) {
        // Long enough for a busy machine, which begins them one after the other.
        constexpr std::size_t length = 6 * half;
        const Sines sameOne(length, 0.5F, 0.0F);
        const Sines sameOther(length, 0.0F, 0.5F);
        auto one = std::make_shared<Sines>(length, 0.5F, 0.0F);
        auto other = std::make_shared<Sines>(length, 0.0F, 0.5F);
        const std::vector<std::weak_ptr<Sines>> held{one, other};
        output.play(std::move(one));
        output.play(std::move(other));
        if (!areOver(recording, held))
            return Arrival::spoiled;
        const auto left = recording.heard(&AudioFrame::left);
        const auto right = recording.heard(&AudioFrame::right);
        const Arrival both = std::max(arrival(left, sameOne, length, &AudioFrame::left),
                                      arrival(right, sameOther, length, &AudioFrame::right));
        if (both == Arrival::spoiled)
            return both;
        // Gaps of a server that was late are another test's, unless they could be the other sound's turn.
        const auto hasFewGaps = [](const Recording::Heard& heard) {
            return heard.last - heard.first + 1 - heard.samples.size() <= length / 10;
        };
        const bool areTogether = left.first < right.last && right.first < left.last;
        return areTogether && hasFewGaps(left) && hasFewGaps(right) ? Arrival::whole : Arrival::disturbed;
    }));
}

TEST_P(PulseAudioOutputTest, TheConnectionEndsSoonAfterTheSound) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    int rests = 0;
    output.onRest = [&] {
        ++rests;
        EXPECT_TRUE(output.isAtRest());
    };
    EXPECT_TRUE(output.isAtRest());
    for (int round = 1; round <= 2; ++round) {
        auto source = std::make_shared<Sines>(half / 4, 0.5F, 0.5F);
        const auto end = std::make_shared<std::atomic<Clock::time_point>>();
        source->end = end;
        output.play(std::move(source));
        EXPECT_FALSE(output.isAtRest());
        EXPECT_TRUE(waitUntil([&] { return !output.mayBeLoading(); }));
        EXPECT_FALSE(output.isAtRest()) << "it has loaded what it needs, and plays";
        EXPECT_TRUE(isAtRest(output));
        EXPECT_EQ(rests, round);
        EXPECT_TRUE(isWithoutThread("sounds"));
        // Another sound might have followed.
        EXPECT_GT(Clock::now() - end->load(), std::chrono::milliseconds(2900));
    }
}

TEST_P(RecordedSoundTest, AServerThatDiesTakesItsSoundsAlong) {
    ASSERT_TRUE(_server.start());
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
    const auto lost = std::make_shared<Sines>(Sines::endless, 0.5F, 0.5F);
    output.play(lost);
    ASSERT_TRUE(waitUntil([&] { return lost->asked > half; }));
    _server.kill();
    EXPECT_TRUE(hasLetGo(lost));
    EXPECT_TRUE(isAtRest(output));

    ASSERT_TRUE(_server.start());
    EXPECT_TRUE(isHeardWhole(output));
}

TEST_P(PulseAudioOutputTest, EndsInMidSound) {
    ASSERT_TRUE(_server.start());
    const auto source = std::make_shared<Sines>(Sines::endless, 0.5F, 0.5F);
    {
        PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
        output.play(source);
        ASSERT_TRUE(waitUntil([&] { return source->asked > half; }));
    }
    EXPECT_EQ(source.use_count(), 1);
}

TEST_P(PulseAudioOutputTest, TheLogTellsOnceThatThereIsNoServer) {
    testing::internal::CaptureStderr();
    PulseAudioOutput output(AUDIO_PLUGIN, _scheduler);
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

INSTANTIATE_TEST_SUITE_P(Servers, PulseAudioOutputTest, testing::ValuesIn(servers), nameOfServer);
// By this name they are run while nothing else is.
INSTANTIATE_TEST_SUITE_P(Sound, RecordedSoundTest, testing::ValuesIn(servers), nameOfServer);

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
    LinuxScheduler scheduler;
    PulseAudioOutput output(AUDIO_PLUGIN, scheduler);
    const auto source = std::make_shared<Sines>(1, 0.5F, 0.5F);
    output.play(source);
    EXPECT_TRUE(waitUntil([&] { return output.isAtRest(); }));
    EXPECT_EQ(source.use_count(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Selvane: no sounds are heard: the sound server doesn't answer\n");
    close(mute);
}

TEST(PulseAudioOutputTest, ThePluginIsLoadedByTheThreadThatPlays) {
    // A file of its own, which nothing in this process has loaded yet.
    const TemporaryFolder folder;
    const std::string file = folder.path() / "plugin.so";
    std::filesystem::copy_file(PROBE_AUDIO_PLUGIN, file);
    LinuxScheduler scheduler;
    PulseAudioOutput output(file, scheduler);
    EXPECT_EQ(dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr) << "before the first sound";
    const auto source = std::make_shared<Sines>(1, 0.5F, 0.5F);
    output.play(source);
    ASSERT_TRUE(waitUntil([&] { return output.isAtRest(); }));
    EXPECT_EQ(source->asked, 1);
    void* const plugin = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(plugin, nullptr);
    const auto loader = reinterpret_cast<const char* (*)()>(dlsym(plugin, "selvaneProbeLoader"));
    ASSERT_NE(loader, nullptr);
    EXPECT_STREQ(loader(), "sounds");
}

TEST(PulseAudioOutputTest, WithoutItsPluginNothingIsHeard) {
    testing::internal::CaptureStderr();
    LinuxScheduler scheduler;
    PulseAudioOutput output("/nowhere/libselvane-audio.so", scheduler);
    const auto source = std::make_shared<Sines>(1, 0.5F, 0.5F);
    for (int round = 0; round < 2; ++round) {
        output.play(source);
        EXPECT_TRUE(waitUntil([&] { return output.isAtRest(); }));
    }
    EXPECT_EQ(source.use_count(), 1);
    EXPECT_EQ(source->asked, 0);
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_THAT(log, testing::StartsWith("Selvane: couldn't load what plays sounds: "));
    EXPECT_EQ(std::ranges::count(log, '\n'), 1);
}

using Work = std::function<void()>;

/// Lets no thread begin: none gets a stack of that size.
void withoutThreads(const Work& work) {
    pthread_attr_t before{};
    pthread_getattr_default_np(&before);
    pthread_attr_t large = before;
    pthread_attr_setstacksize(&large, std::size_t{1} << 48);
    pthread_setattr_default_np(&large);
    work();
    pthread_setattr_default_np(&before);
}

/// Has the kernel refuse files to wake a thread by. A limit for all files would refuse the sanitizers theirs.
void withoutFilesToWakeBy(const Work& work) {
    // What is refused to a thread stays so, but other threads are as they were.
    std::thread([&] {
        std::array rules{
            sock_filter{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)},
            sock_filter{BPF_JMP | BPF_JEQ | BPF_K, 0, 1, SYS_eventfd2},
            sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ERRNO | EMFILE},
            sock_filter{BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW},
        };
        const sock_fprog filter{rules.size(), rules.data()};
        ASSERT_EQ(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
        ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter), 0);
        work();
    }).join();
}

/// What the log says of two sounds in vain, played in such a want. One that comes later is heard.
std::string logOf(void (*want)(const Work&)) {
    testing::internal::CaptureStderr();
    LinuxScheduler scheduler;
    PulseAudioOutput output(PROBE_AUDIO_PLUGIN, scheduler);
    const auto source = std::make_shared<Sines>(1, 0.5F, 0.5F);
    want([&] {
        for (int round = 0; round < 2; ++round) {
            output.play(source);
            EXPECT_TRUE(output.isAtRest());
        }
    });
    EXPECT_EQ(source.use_count(), 1);
    EXPECT_EQ(source->asked, 0);
    output.play(source);
    EXPECT_TRUE(waitUntil([&] { return output.isAtRest(); }));
    EXPECT_EQ(source->asked, 1);
    return testing::internal::GetCapturedStderr();
}

TEST(PulseAudioOutputTest, WithoutAThreadNothingIsHeardAndTheLogSaysSo) {
    EXPECT_EQ(logOf(withoutThreads), "Selvane: no sounds are heard: Resource temporarily unavailable\n");
}

TEST(PulseAudioOutputTest, WithoutAFileToWakeItsThreadNothingIsHeardAndTheLogSaysSo) {
    EXPECT_EQ(logOf(withoutFilesToWakeBy), "Selvane: no sounds are heard: Too many open files\n");
}

} // namespace
} // namespace selvane::test
