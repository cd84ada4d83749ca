#include "Selvane/Platform/Linux/PulseAudioOutput.h"

#include "SelvaneCore/Log.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

#include <dlfcn.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
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

PulseAudioOutput::PulseAudioOutput(std::string plugin) : _plugin(std::move(plugin)) {}

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
    }
    // One that was there before has nothing left to do but to return.
    if (_thread.joinable())
        _thread.join();
    if (const std::error_code error = beginThread()) {
        takeSources().clear();
        connectionFailed(error.message());
    }
}

std::error_code PulseAudioOutput::beginThread() {
    _wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (_wake == -1)
        return {errno, std::generic_category()};
    try {
        _thread = std::thread([this] { work(); });
    } catch (const std::system_error& error) {
        close(std::exchange(_wake, -1));
        return error.code();
    }
    return {};
}

void PulseAudioOutput::threadEnded() {
    {
        const std::lock_guard lock(_mutex);
        // Another one has begun meanwhile, and will tell its own end.
        if (_wake != -1)
            return;
    }
    if (!_thread.joinable())
        return;
    _thread.join();
    if (onRest)
        onRest();
}

bool PulseAudioOutput::MainThread::event(QEvent* event) {
    if (event->type() != QEvent::User)
        return QObject::event(event);
    _output.threadEnded();
    return true;
}

// On the thread

void PulseAudioOutput::work() {
    refuseSignals();
    pthread_setname_np(pthread_self(), "sounds");
    const RunAudioClient runClient = loadedClient();
    while (true) {
        if (runClient == nullptr)
            takeSources().clear();
        int descriptor = -1;
        {
            const std::lock_guard lock(_mutex);
            if (_isEnding || _sources.empty()) {
                close(std::exchange(_wake, -1));
                break;
            }
            descriptor = _wake;
        }
        if (runClient != nullptr)
            runClient(*this, descriptor);
    }
    QCoreApplication::postEvent(&_mainThread, new QEvent(QEvent::User));
}

RunAudioClient PulseAudioOutput::loadedClient() {
    if (_client != nullptr)
        return _client;
    // Stays loaded, since libpulse refuses to be unloaded.
    void* const plugin = dlopen(_plugin.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (plugin != nullptr)
        _client = reinterpret_cast<RunAudioClient>(dlsym(plugin, runAudioClientName));
    if (_client == nullptr)
        fail(std::string("couldn't load what plays sounds: ") + dlerror());
    return _client;
}

void PulseAudioOutput::fail(const std::string& line) {
    if (!std::exchange(_failureIsKnown, true))
        Log::line(line);
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
    fail("no sounds are heard: " + reason);
}

} // namespace selvane
