#include "Selvane/Platform/Linux/LinuxSerialQueue.h"

#include <QMetaObject>

#include <utility>

namespace selvane {

LinuxSerialQueue::LinuxSerialQueue() {
    constexpr int idleMilliseconds = 2000;
    _thread.setMaxThreadCount(1);
    _thread.setExpiryTimeout(idleMilliseconds);
}

LinuxSerialQueue::~LinuxSerialQueue() {
    _thread.clear();
    _thread.waitForDone();
}

void LinuxSerialQueue::run(Work work) {
    _thread.start([this, work = std::move(work)] {
        Rest rest = work();
        if (rest)
            QMetaObject::invokeMethod(&_mainThread, std::move(rest), Qt::QueuedConnection);
    });
}

} // namespace selvane
