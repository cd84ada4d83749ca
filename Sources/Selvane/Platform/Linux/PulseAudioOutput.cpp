#include "Selvane/Platform/Linux/PulseAudioOutput.h"

#include "Selvane/Platform/Linux/PulseClient.h"
#include "SelvaneCore/Log.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>
#include <utility>

namespace selvane {

namespace {

void wake(int eventDescriptor) {
    // Refused only when so many wishes are waiting that it is readable anyway.
    (void)eventfd_write(eventDescriptor, 1);
}

/// Signals are the main thread's.
void refuseSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

} // namespace

PulseAudioOutput::~PulseAudioOutput() {
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
        if (_wake != -1)
            wake(_wake);
    }
    if (_thread.joinable())
        _thread.join();
}

void PulseAudioOutput::play(std::shared_ptr<AudioSource> source) {
    {
        const std::lock_guard lock(_mutex);
        _sources.push_back(std::move(source));
        if (_wake != -1) {
            wake(_wake);
            return;
        }
        _wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
        if (_wake == -1) {
            _sources.clear();
            return;
        }
    }
    // One that was there before has nothing left to do but to return.
    if (_thread.joinable())
        _thread.join();
    _thread = std::thread([this] { work(); });
}

bool PulseAudioOutput::isConnected() const {
    const std::lock_guard lock(_mutex);
    return _wake != -1;
}

void PulseAudioOutput::work() {
    refuseSignals();
    pthread_setname_np(pthread_self(), "sounds");
    while (true) {
        int descriptor = -1;
        {
            const std::lock_guard lock(_mutex);
            if (_isEnding || _sources.empty()) {
                close(std::exchange(_wake, -1));
                return;
            }
            descriptor = _wake;
        }
        PulseClient(*this, descriptor).run();
    }
}

std::vector<std::shared_ptr<AudioSource>> PulseAudioOutput::takeSources() {
    const std::lock_guard lock(_mutex);
    return std::exchange(_sources, {});
}

bool PulseAudioOutput::isEnding() const {
    const std::lock_guard lock(_mutex);
    return _isEnding;
}

void PulseAudioOutput::connectionFailed(const std::string& reason) {
    if (!std::exchange(_failureIsKnown, true))
        Log::line("no sounds are heard: " + reason);
}

} // namespace selvane
