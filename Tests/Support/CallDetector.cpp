#include "Support/CallDetector.h"

#include <dlfcn.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <malloc.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <ctime>
#include <ostream>

// What the C library has under other names for those who replace its allocator.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);
}

namespace {

thread_local bool isCounting = false;
thread_local std::size_t allocatorCalls = 0;
thread_local std::size_t lockCalls = 0;

void countAllocatorCall() {
    allocatorCalls += isCounting ? 1 : 0;
}

void countLockCall() {
    lockCalls += isCounting ? 1 : 0;
}

template <typename Function>
Function* original(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

// These take the places of the C library's for the whole program, since it is asked first for each name.

#define REPLACES extern "C" [[gnu::visibility("default")]]

REPLACES void* malloc(std::size_t size) noexcept {
    countAllocatorCall();
    return __libc_malloc(size);
}

REPLACES void* calloc(std::size_t count, std::size_t size) noexcept {
    countAllocatorCall();
    return __libc_calloc(count, size);
}

REPLACES void* realloc(void* memory, std::size_t size) noexcept {
    countAllocatorCall();
    return __libc_realloc(memory, size);
}

REPLACES void* memalign(std::size_t alignment, std::size_t size) noexcept {
    countAllocatorCall();
    return __libc_memalign(alignment, size);
}

REPLACES void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    countAllocatorCall();
    return __libc_memalign(alignment, size);
}

REPLACES int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    countAllocatorCall();
    *memory = __libc_memalign(alignment, size);
    return *memory == nullptr ? ENOMEM : 0;
}

REPLACES void free(void* memory) noexcept {
    countAllocatorCall();
    __libc_free(memory);
}

#define REPLACES_LOCK(name, type, isNoexcept)                                                                \
    REPLACES int name(type* lockable) noexcept(isNoexcept) {                                                 \
        static auto* const lock = original<int(type*)>(#name);                                               \
        countLockCall();                                                                                     \
        return lock(lockable);                                                                               \
    }

#define REPLACES_TIMED_LOCK(name, type, isNoexcept)                                                          \
    REPLACES int name(type* lockable, const timespec* end) noexcept(isNoexcept) {                            \
        static auto* const lock = original<int(type*, const timespec*)>(#name);                              \
        countLockCall();                                                                                     \
        return lock(lockable, end);                                                                          \
    }

#define REPLACES_CLOCK_LOCK(name, type, isNoexcept)                                                          \
    REPLACES int name(type* lockable, clockid_t clock, const timespec* end) noexcept(isNoexcept) {           \
        static auto* const lock = original<int(type*, clockid_t, const timespec*)>(#name);                   \
        countLockCall();                                                                                     \
        return lock(lockable, clock, end);                                                                   \
    }

REPLACES_LOCK(pthread_mutex_lock, pthread_mutex_t, true)
REPLACES_LOCK(pthread_mutex_trylock, pthread_mutex_t, true)
REPLACES_TIMED_LOCK(pthread_mutex_timedlock, pthread_mutex_t, true)
REPLACES_CLOCK_LOCK(pthread_mutex_clocklock, pthread_mutex_t, true)
REPLACES_LOCK(pthread_rwlock_rdlock, pthread_rwlock_t, true)
REPLACES_LOCK(pthread_rwlock_tryrdlock, pthread_rwlock_t, true)
REPLACES_TIMED_LOCK(pthread_rwlock_timedrdlock, pthread_rwlock_t, true)
REPLACES_CLOCK_LOCK(pthread_rwlock_clockrdlock, pthread_rwlock_t, true)
REPLACES_LOCK(pthread_rwlock_wrlock, pthread_rwlock_t, true)
REPLACES_LOCK(pthread_rwlock_trywrlock, pthread_rwlock_t, true)
REPLACES_TIMED_LOCK(pthread_rwlock_timedwrlock, pthread_rwlock_t, true)
REPLACES_CLOCK_LOCK(pthread_rwlock_clockwrlock, pthread_rwlock_t, true)
REPLACES_LOCK(pthread_spin_lock, pthread_spinlock_t, true)
REPLACES_LOCK(pthread_spin_trylock, pthread_spinlock_t, true)
REPLACES_LOCK(sem_wait, sem_t, false)
REPLACES_LOCK(sem_trywait, sem_t, true)
REPLACES_TIMED_LOCK(sem_timedwait, sem_t, false)
REPLACES_CLOCK_LOCK(sem_clockwait, sem_t, false)

namespace selvane::test {

namespace {

/// From now on the kernel ends this process at its first system call other than to end itself, with SIGSYS.
bool forbidSystemCalls() {
    std::array program{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_exit_group, 0, 1),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
    };
    const sock_fprog filter{program.size(), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter, 0, 0) == 0;
}

/// Ends the process without anything else that an end does.
[[noreturn]] void endWith(Outcome outcome) {
    while (true)
        syscall(SYS_exit_group, static_cast<int>(outcome));
}

[[noreturn]] void tellOutcomeOf(const std::function<void()>& action) {
    if (!forbidSystemCalls())
        endWith(Outcome::refused);
    isCounting = true;
    action();
    isCounting = false;
    if (allocatorCalls > 0)
        endWith(Outcome::allocated);
    endWith(lockCalls > 0 ? Outcome::locked : Outcome::harmless);
}

} // namespace

void PrintTo(Outcome outcome, std::ostream* stream) {
    constexpr std::array names{"harmless", "refused", "allocated", "locked", "made a system call", "died"};
    *stream << names.at(static_cast<std::size_t>(outcome));
}

Outcome outcomeOf(const std::function<void()>& action) {
    const pid_t child = fork();
    if (child == 0)
        tellOutcomeOf(action);
    int status = 0;
    if (child == -1 || waitpid(child, &status, 0) != child)
        return Outcome::died;
    if (WIFSIGNALED(status))
        return WTERMSIG(status) == SIGSYS ? Outcome::madeSystemCall : Outcome::died;
    return static_cast<Outcome>(WEXITSTATUS(status));
}

} // namespace selvane::test
