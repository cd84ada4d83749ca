#include <cstdarg>

/// The C library's own, under its other name.
extern "C" int __clone(int (*function)(void*), void* stack, int flags, void* argument, ...);

/// QProcess makes its children by this function so that they share memory with their parent until they run
/// another program. The thread sanitizer of GCC 12 has one of its own in its place, which takes the child for
/// a process apart: it counts in the shared memory what it counts again for the parent, and the thread that
/// started the child is then no longer seen to lock anything. So tests call the C library's directly.
extern "C" int clone(int (*function)(void*), void* stack, int flags, void* argument, ...) {
    va_list more;
    va_start(more, argument);
    auto* const parentID = va_arg(more, void*);
    auto* const storage = va_arg(more, void*);
    auto* const childID = va_arg(more, void*);
    va_end(more);
    return __clone(function, stack, flags, argument, parentID, storage, childID);
}
