#pragma once

#include "Selvane/Platform/SerialQueue.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace selvane {

/// A queue whose thread exists while there is work and a moment longer. Needs a QCoreApplication's main loop.
class LinuxSerialQueue final : public SerialQueue {
public:
    LinuxSerialQueue() = default;
    LinuxSerialQueue(const LinuxSerialQueue&) = delete;
    LinuxSerialQueue& operator=(const LinuxSerialQueue&) = delete;
    ~LinuxSerialQueue() override;

    void run(Work work) override;

private:
    /// Where the thread's word arrives that there are rests; what is still on its way when this goes is
    /// dropped.
    class MainThread final : public QObject {
    public:
        explicit MainThread(LinuxSerialQueue& queue) : _queue(queue) {}
        bool event(QEvent* event) override;

    private:
        LinuxSerialQueue& _queue;
    };

    void work();
    void deliver();

    MainThread _mainThread{*this};
    std::mutex _mutex;
    std::condition_variable _changed;
    // Under the mutex.
    std::deque<Work> _works;
    std::deque<Rest> _rests;
    bool _isWorking = false;
    bool _isEnding = false;

    std::thread _thread;
};

} // namespace selvane
