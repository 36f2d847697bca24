#include "tests/VelmoSystem/SystemCalls.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace velmo {

namespace {

std::mutex mutex; ///< guards the others
int wanted = 0;
int count = 0;
bool lasts = false;
std::function<int()> action;

/// Whether this call is to fail; errno says with what.
bool fails()
{
    std::unique_lock lock(mutex);
    if (!action)
        return false;
    ++count;
    if (count < wanted || (count > wanted && !lasts))
        return false;
    const auto body = std::exchange(action, nullptr); // its own calls don't count
    lock.unlock();
    const int code = body();
    lock.lock();
    action = body;
    errno = code;
    return code != 0;
}

} // namespace

void SystemCalls::interrupt(int at, bool isLasting, const std::function<int()> &before)
{
    const std::lock_guard lock(mutex);
    wanted = at;
    count = 0;
    lasts = isLasting;
    action = before;
}

bool SystemCalls::stop()
{
    const std::lock_guard lock(mutex);
    action = nullptr;
    return count >= wanted;
}

} // namespace velmo

// NOLINTBEGIN(bugprone-reserved-identifier): the names that the linker's --wrap gives
#define WRAP(result, name, parameters, arguments)                                                  \
    extern "C" result __real_##name parameters;                                                    \
    extern "C" result __wrap_##name parameters                                                     \
    {                                                                                              \
        return velmo::fails() ? -1 : __real_##name arguments;                                      \
    }

WRAP(int, renameat2, (int a, const char *b, int c, const char *d, unsigned e), (a, b, c, d, e))
WRAP(int, rename, (const char *a, const char *b), (a, b))
WRAP(int, link, (const char *a, const char *b), (a, b))
WRAP(int, unlink, (const char *a), (a))
WRAP(int, mkdir, (const char *a, mode_t b), (a, b))
WRAP(int, symlink, (const char *a, const char *b), (a, b))
WRAP(int, lstat, (const char *a, struct stat *b), (a, b))
WRAP(int, fstat, (int a, struct stat *b), (a, b))
WRAP(int, fsync, (int a), (a))
WRAP(int, fchmod, (int a, mode_t b), (a, b))
WRAP(int, futimens, (int a, const timespec *b), (a, b))
WRAP(ssize_t, read, (int a, void *b, size_t c), (a, b, c))
WRAP(ssize_t, pread, (int a, void *b, size_t c, off_t d), (a, b, c, d))
WRAP(ssize_t, write, (int a, const void *b, size_t c), (a, b, c))
WRAP(ssize_t, copy_file_range, (int a, off_t *b, int c, off_t *d, size_t e, unsigned f),
     (a, b, c, d, e, f))

extern "C" int __real_open(const char *path, int flags, ...);
extern "C" int __wrap_open(const char *path, int flags, ...)
{
    va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return velmo::fails() ? -1 : __real_open(path, flags, mode);
}
// NOLINTEND(bugprone-reserved-identifier)
