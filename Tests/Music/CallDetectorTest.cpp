#include "Support/CallDetector.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <semaphore.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace selvane::test {
namespace {

using namespace std::chrono_literals;

TEST(CallDetectorTest, SeesNothingWhereThereIsNothing) {
    EXPECT_EQ(outcomeOf([] {}), Outcome::harmless);
}

TEST(CallDetectorTest, SeesAllocations) {
    EXPECT_EQ(outcomeOf([] {
                  // Compilers leave out what they see come and go.
                  int* volatile number = new int;
                  delete number;
              }),
              Outcome::allocated);
    EXPECT_EQ(outcomeOf([] {
                  struct alignas(128) Aligned {
                      char bytes[128];
                  };
                  Aligned* volatile aligned = new Aligned;
                  delete aligned;
              }),
              Outcome::allocated);
    void* volatile memory = std::malloc(1);
    EXPECT_EQ(outcomeOf([&] { std::free(memory); }), Outcome::allocated);
    std::free(memory);
    std::vector<int> numbers;
    EXPECT_EQ(outcomeOf([&] { numbers.push_back(1); }), Outcome::allocated);
}

TEST(CallDetectorTest, SeesLocksThatNobodyHolds) {
    std::mutex mutex;
    EXPECT_EQ(outcomeOf([&] { const std::lock_guard lock(mutex); }), Outcome::locked);
    EXPECT_EQ(outcomeOf([&] { const std::unique_lock lock(mutex, std::try_to_lock); }), Outcome::locked);
    std::timed_mutex timed;
    EXPECT_EQ(outcomeOf([&] { const std::unique_lock lock(timed, 1s); }), Outcome::locked);
    std::shared_timed_mutex shared;
    EXPECT_EQ(outcomeOf([&] { const std::shared_lock lock(shared); }), Outcome::locked);
    EXPECT_EQ(outcomeOf([&] { const std::shared_lock lock(shared, std::try_to_lock); }), Outcome::locked);
    EXPECT_EQ(outcomeOf([&] { const std::shared_lock lock(shared, 1s); }), Outcome::locked);
    EXPECT_EQ(outcomeOf([&] { const std::lock_guard lock(shared); }), Outcome::locked);
    EXPECT_EQ(outcomeOf([&] { const std::unique_lock lock(shared, std::try_to_lock); }), Outcome::locked);
    sem_t semaphore;
    ASSERT_EQ(sem_init(&semaphore, 0, 1), 0);
    EXPECT_EQ(outcomeOf([&] { static_cast<void>(sem_wait(&semaphore)); }), Outcome::locked);
    EXPECT_EQ(outcomeOf([&] { static_cast<void>(sem_trywait(&semaphore)); }), Outcome::locked);
    pthread_spinlock_t spin;
    ASSERT_EQ(pthread_spin_init(&spin, PTHREAD_PROCESS_PRIVATE), 0);
    EXPECT_EQ(outcomeOf([&] { static_cast<void>(pthread_spin_lock(&spin)); }), Outcome::locked);
}

TEST(CallDetectorTest, SeesSystemCalls) {
    EXPECT_EQ(outcomeOf([] { static_cast<void>(getppid()); }), Outcome::madeSystemCall);
    EXPECT_EQ(outcomeOf([] { static_cast<void>(!write(STDERR_FILENO, "", 0)); }), Outcome::madeSystemCall);
}

} // namespace
} // namespace selvane::test
