#include "Selvane/Platform/Linux/LinuxSerialQueue.h"

#include <QCoreApplication>
#include <QEvent>

#include <chrono>
#include <utility>

namespace selvane {

namespace {

/// How long the thread waits for more work before it ends.
constexpr std::chrono::seconds idleTime{2};

} // namespace

LinuxSerialQueue::~LinuxSerialQueue() {
    {
        const std::lock_guard lock(_mutex);
        _isEnding = true;
        _works.clear();
    }
    _changed.notify_one();
    if (_thread.joinable())
        _thread.join();
}

void LinuxSerialQueue::run(Work work) {
    bool hasThread = false;
    {
        const std::lock_guard lock(_mutex);
        _works.push_back(std::move(work));
        hasThread = std::exchange(_isWorking, true);
    }
    if (hasThread) {
        _changed.notify_one();
        return;
    }
    // One that was there before has nothing left to do but to return.
    if (_thread.joinable())
        _thread.join();
    _thread = std::thread([this] { this->work(); });
}

void LinuxSerialQueue::work() {
    std::unique_lock lock(_mutex);
    while (_changed.wait_for(lock, idleTime, [this] { return _isEnding || !_works.empty(); }) && !_isEnding) {
        const Work next = std::move(_works.front());
        _works.pop_front();
        lock.unlock();
        Rest rest = next();
        lock.lock();
        if (!rest || _isEnding)
            continue;
        _rests.push_back(std::move(rest));
        QCoreApplication::postEvent(&_mainThread, new QEvent(QEvent::User));
    }
    _isWorking = false;
}

void LinuxSerialQueue::deliver() {
    Rest rest;
    {
        const std::lock_guard lock(_mutex);
        if (_rests.empty())
            return;
        rest = std::move(_rests.front());
        _rests.pop_front();
    }
    rest();
}

bool LinuxSerialQueue::MainThread::event(QEvent* event) {
    if (event->type() != QEvent::User)
        return QObject::event(event);
    _queue.deliver();
    return true;
}

} // namespace selvane
