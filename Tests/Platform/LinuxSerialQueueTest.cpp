#include "Selvane/Platform/Linux/LinuxSerialQueue.h"

#include "Support/EventLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace selvane {
namespace {

TEST(LinuxSerialQueue, WorkRunsElsewhereAndTheRestOnTheMainThread) {
    LinuxSerialQueue queue;
    std::thread::id workThread;
    std::thread::id restThread;
    bool isDone = false;
    queue.run([&] {
        workThread = std::this_thread::get_id();
        return [&] {
            restThread = std::this_thread::get_id();
            isDone = true;
        };
    });
    ASSERT_TRUE(test::waitUntil([&] { return isDone; }));
    EXPECT_NE(workThread, std::this_thread::get_id());
    EXPECT_EQ(restThread, std::this_thread::get_id());
}

TEST(LinuxSerialQueue, PiecesRunOneAfterAnotherInTheirOrder) {
    LinuxSerialQueue queue;
    std::atomic<int> running = 0;
    std::vector<int> order;
    std::atomic<bool> overlapped = false;
    for (int number = 0; number < 50; ++number) {
        queue.run([&, number] {
            if (++running > 1)
                overlapped = true;
            std::this_thread::yield();
            --running;
            return [&order, number] { order.push_back(number); };
        });
    }
    ASSERT_TRUE(test::waitUntil([&] { return order.size() == 50; }));
    EXPECT_FALSE(overlapped);
    EXPECT_TRUE(std::ranges::is_sorted(order));
}

TEST(LinuxSerialQueue, WorkWithoutARestIsDoneAllTheSame) {
    LinuxSerialQueue queue;
    std::atomic<bool> isDone = false;
    queue.run([&]() -> SerialQueue::Rest {
        isDone = true;
        return nullptr;
    });
    ASSERT_TRUE(test::waitUntil([&] { return isDone.load(); }));
}

TEST(LinuxSerialQueue, ItsEndWaitsForWorkThatHasBegunAndHandsNothingBack) {
    std::optional<LinuxSerialQueue> queue;
    queue.emplace();
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> isDone = false;
    bool handedBack = false;
    std::atomic<bool> hasLaterBegun = false;
    auto later = std::make_shared<int>();
    const std::weak_ptr laterWork = later;
    queue->run([&, laterWork] {
        hasBegun = true;
        // Until the queue, at its end, lets go of what is still to begin.
        const auto latest = std::chrono::steady_clock::now() + std::chrono::seconds{20};
        while (!laterWork.expired() && std::chrono::steady_clock::now() < latest)
            std::this_thread::yield();
        EXPECT_TRUE(laterWork.expired());
        std::this_thread::sleep_for(std::chrono::milliseconds{50});
        isDone = true;
        return [&] { handedBack = true; };
    });
    queue->run([&, held = std::move(later)]() -> SerialQueue::Rest {
        hasLaterBegun = true;
        return nullptr;
    });
    while (!hasBegun)
        std::this_thread::yield();
    queue.reset();
    EXPECT_TRUE(isDone);
    EXPECT_FALSE(hasLaterBegun);
    QCoreApplication::processEvents();
    EXPECT_FALSE(handedBack);
}

} // namespace
} // namespace selvane
