#pragma once

#include "Selvane/Platform/Scheduler.h"

#include <memory>

namespace selvane {

/// The scheduler of a program with a Qt main loop. The clock is CLOCK_BOOTTIME, which counts suspends; all
/// waiting shares one timer of the kernel, set to the latest moment that the tolerances allow and switched
/// off while nothing waits.
///
/// Ends the program with EXIT_FAILURE and a line in the log where the system has no timer for it.
///
/// Main thread, after the QCoreApplication was made. Handles may outlive the scheduler. Must not be destroyed
/// from within work that it runs.
class LinuxScheduler final : public Scheduler {
public:
    LinuxScheduler();
    ~LinuxScheduler() override;

    void post(Work work) override;
    Subscription after(Seconds delay, Work work) override;
    Subscription every(Seconds interval, Seconds tolerance, Work work) override;
    [[nodiscard]] Seconds now() const override;

private:
    class Queue;
    std::shared_ptr<Queue> _queue;
};

} // namespace selvane
