#include "SelvaneCore/TimerEngine.h"
#include "Support/Dice.h"
#include "Support/LocalTime.h"
#include "Support/Printers.h"
#include "Support/Repeats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace selvane {
namespace {

using test::Dice;

constexpr int sequences = test::repeats(10'000);
constexpr int stepsPerSequence = 40;

enum class RandomCommand { start, pause, resume, toggle, reset, skip, select, tick };

/// One letter an event: Started, Paused, Finished, Interrupted, Changed.
char letter(const TimerEvent& event) {
    constexpr std::string_view letters = "SPFIC";
    return letters[event.index()];
}

/// Which orders of events a command may produce from a status.
std::vector<std::string> legalEvents(const TimerEngine::Status& before, RandomCommand command) {
    const bool idle = std::holds_alternative<TimerEngine::Idle>(before);
    const bool running = std::holds_alternative<TimerEngine::Running>(before);
    switch (command) {
    case RandomCommand::start:
        return {idle ? "S" : ""};
    case RandomCommand::pause:
        return {running ? "P" : ""};
    case RandomCommand::resume:
        return {!idle && !running ? "S" : ""};
    case RandomCommand::toggle:
        return {running ? "P" : "S"};
    case RandomCommand::reset:
        return {idle ? "" : "I"};
    case RandomCommand::skip:
        return idle      ? std::vector<std::string>{"C"}
               : running ? std::vector<std::string>{"IC", "ICS"}
                         : std::vector<std::string>{"IC"};
    case RandomCommand::select:
        return idle ? std::vector<std::string>{"", "C"} : std::vector<std::string>{""};
    case RandomCommand::tick:
        return running ? std::vector<std::string>{"", "FC", "FCS"} : std::vector<std::string>{""};
    }
    return {};
}

/// An engine, a world that changes at random, and what must hold in it.
class RandomWorld {
public:
    explicit RandomWorld(std::uint64_t seed) : _dice(seed) {
        _engine.onEvent = [this](const TimerEvent& event) { hear(event); };
        _engine.adjustDuration = [this](Phase, Seconds length) { return adjusted(length); };
        _observer = _engine.changed.subscribe([this] { ++_changes; });
    }

    /// A listener gives commands of its own now and then.
    bool meddles = false;

    void step() {
        turnTheWorld();
        const RandomCommand command = static_cast<RandomCommand>(_dice.below(8));
        const TimerEngine::Status before = _engine.status();
        const Date nowBefore = _engine.now();
        const Phase phaseBefore = _engine.phase();
        const int countBefore = _engine.completedFocusSessions();
        _letters.clear();
        _changes = 0;
        give(command);

        if (!meddles) {
            const std::vector<std::string> legal = legalEvents(before, command);
            EXPECT_NE(std::ranges::find(legal, _letters), legal.end()) << "events " << _letters;
            const bool counted = _letters.starts_with('F') && phaseBefore == Phase::focus;
            EXPECT_EQ(_engine.completedFocusSessions(), countBefore + (counted ? 1 : 0));
            // A planned duration never changes alone.
            const bool differs = _engine.status() != before || _engine.now() != nowBefore ||
                                 _engine.phase() != phaseBefore ||
                                 _engine.completedFocusSessions() != countBefore;
            EXPECT_EQ(_changes, differs ? 1 : 0);
        }
        EXPECT_GE(_engine.completedFocusSessions(), countBefore);
        checkState();
    }

private:
    void turnTheWorld() {
        switch (_dice.below(6)) {
        case 0:
            _time += std::chrono::microseconds{_dice.below(3'000'000)};
            break;
        case 1:
            _time += std::chrono::seconds{_dice.below(600)};
            break;
        case 2:
            if (const auto* const running = std::get_if<TimerEngine::Running>(&_engine.status()))
                _time = std::max(_time, running->end);
            break;
        case 3:
            if (_dice.below(4) == 0) {
                _time -= std::chrono::seconds{_dice.below(900)};
                _clockWentBack = true;
            }
            break;
        case 4:
            _config = TimerConfig{_dice.below(60) - 5.0, _dice.below(10) / 7.0, _dice.below(20) * 1.0,
                                  _dice.below(6) - 1,    _dice.below(2) == 0,   _dice.below(2) == 0};
            break;
        default:
            break;
        }
    }

    Seconds adjusted(Seconds length) {
        EXPECT_GE(length, Seconds{1});
        switch (_dice.below(4)) {
        case 0:
            length = Seconds{_dice.below(2000) - 100.0};
            break;
        case 1:
            length = length / 3.0;
            break;
        default:
            break;
        }
        _planned = std::max(length, Seconds{1});
        // The rules on time that ran start afresh with each run.
        _clockWentBack = false;
        return length;
    }

    void give(RandomCommand command) {
        switch (command) {
        case RandomCommand::start:
            return _engine.start();
        case RandomCommand::pause:
            return _engine.pause();
        case RandomCommand::resume:
            return _engine.resume();
        case RandomCommand::toggle:
            return _engine.toggle();
        case RandomCommand::reset:
            return _engine.reset();
        case RandomCommand::skip:
            return _engine.skip();
        case RandomCommand::select:
            return _engine.select(allPhases[static_cast<std::size_t>(_dice.below(3))]);
        case RandomCommand::tick:
            return _engine.tick();
        }
    }

    void hear(const TimerEvent& event) {
        _letters += letter(event);
        checkState();
        if (const auto* const finished = std::get_if<TimerEvents::Finished>(&event))
            checkFinished(finished->session);
        if (const auto* const interrupted = std::get_if<TimerEvents::Interrupted>(&event)) {
            if (interrupted->session)
                checkInterrupted(*interrupted->session);
        }
        if (meddles && _meddling < 3 && _dice.below(3) == 0) {
            ++_meddling;
            give(static_cast<RandomCommand>(_dice.below(8)));
            --_meddling;
        }
    }

    void checkState() const {
        EXPECT_EQ(_engine.isIdle() + _engine.isRunning() + _engine.isPaused(), 1);
        EXPECT_EQ(_engine.currentDuration(), _engine.isIdle() ? _config.duration(_engine.phase()) : _planned);
        EXPECT_GE(_engine.remaining(), Seconds{0});
        if (!_clockWentBack) {
            // An end date is a whole microsecond.
            EXPECT_LE(_engine.remaining(), _engine.currentDuration() + Seconds{1e-6});
        }
        EXPECT_GE(_engine.progress(), 0.0);
        EXPECT_LE(_engine.progress(), 1.0);
        EXPECT_GE(_engine.cyclePosition(), 1);
        EXPECT_LE(_engine.cyclePosition(), std::max(_config.sessionsBeforeLongBreak, 1));
    }

    void checkFinished(const FocusSession& session) const {
        EXPECT_TRUE(session.completed);
        EXPECT_EQ(session.plannedSeconds, _planned);
        EXPECT_EQ(session.actualSeconds, _planned);
        EXPECT_LE(session.end, _engine.now());
        if (!_clockWentBack) {
            EXPECT_GE(elapsed(session.start, session.end), _planned - Seconds{1e-5});
        }
    }

    void checkInterrupted(const FocusSession& session) const {
        EXPECT_FALSE(session.completed);
        EXPECT_EQ(session.plannedSeconds, _planned);
        EXPECT_GE(session.actualSeconds, Seconds{1});
        EXPECT_LE(session.actualSeconds, _planned);
        EXPECT_EQ(session.end, _engine.now());
        if (!_clockWentBack) {
            EXPECT_GE(elapsed(session.start, session.end), session.actualSeconds - Seconds{1e-5});
        }
    }

    Dice _dice;
    Date _time = test::utc(2026, 3, 5, 9);
    TimerConfig _config{25.0, 5.0, 15.0, 4, false, false};
    TimerEngine _engine{[this] { return _config; }, [this] { return _time; }};
    Subscription _observer;
    std::string _letters;
    int _changes = 0;
    int _meddling = 0;
    Seconds _planned{0};
    bool _clockWentBack = false;
};

void run(bool meddles) {
    for (int seed = 0; seed < sequences; ++seed) {
        RandomWorld world(static_cast<std::uint64_t>(seed));
        world.meddles = meddles;
        for (int step = 0; step < stepsPerSequence; ++step) {
            world.step();
            ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed << ", step " << step;
        }
    }
}

TEST(TimerEngineRandom, KeepsItsInvariantsWhateverComes) {
    run(false);
}

TEST(TimerEngineRandom, KeepsItsInvariantsWhenTheListenerMeddles) {
    run(true);
}

} // namespace
} // namespace selvane
