#pragma once

#include "Selvane/Platform/SerialQueue.h"

#include <QObject>
#include <QThreadPool>

namespace selvane {

/// A queue whose thread exists while there is work and a moment longer. Needs a QCoreApplication's main loop.
class LinuxSerialQueue final : public SerialQueue {
public:
    LinuxSerialQueue();
    ~LinuxSerialQueue() override;

    void run(Work work) override;

private:
    QThreadPool _thread;
    /// Where the rests are delivered: what is still on its way when this goes is dropped.
    QObject _mainThread;
};

} // namespace selvane
