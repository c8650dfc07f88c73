// A library to be preloaded (LD_PRELOAD): counts the calls that a program makes on files below a
// certain folder, and lets one of them, or all, go wrong.
//
// FAULT_PATH  what the path of a file contains; calls on other files are neither counted nor hurt
// FAULT_AT    the number of the call that goes wrong, from 1; 0: each
// FAULT_HOW   "kill": the process is killed instead of the call; "half": a write writes half of its
//             bytes, another call is carried out, and then the process is killed; a number: the
//             call fails with this errno; absent: nothing goes wrong
// FAULT_LOG   where the calls are logged, one on a line: "rename /a /b"
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

constexpr int MaxDescriptors = 1024;
bool counted[MaxDescriptors]; // descriptors of files that are concerned
int calls = 0;

const char* setting(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

bool isConcerned(const char* path)
{
    const char* part = setting("FAULT_PATH");
    return *part != '\0' && path != nullptr && std::strstr(path, part) != nullptr;
}

bool isConcerned(int fd)
{
    return fd >= 0 && fd < MaxDescriptors && counted[fd];
}

template <class Function>
Function real(Function, const char* name)
{
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void log(const std::string& text)
{
    static const int fd = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, setting("FAULT_LOG"),
        O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    if (fd >= 0) {
        const std::string line = text + '\n';
        ::syscall(SYS_write, fd, line.data(), line.size());
    }
}

void die()
{
    ::kill(::getpid(), SIGKILL);
}

// Carries out a call, or what happens instead.
template <class Call, class HalfCall>
auto carryOut(const std::string& text, Call call, HalfCall half) -> decltype(call())
{
    ++calls;
    log(text);
    const std::string how = setting("FAULT_HOW");
    const int at = std::atoi(setting("FAULT_AT"));
    if (how.empty() || (at != 0 && at != calls)) {
        return call();
    }
    if (how == "half") {
        half();
    }
    if (how == "half" || how == "kill") {
        die();
    }
    errno = std::atoi(how.c_str());
    return -1;
}

template <class Call>
auto carryOut(const std::string& text, Call call) -> decltype(call())
{
    return carryOut(text, call, call);
}

template <class Call>
int opened(const char* path, int flags, Call call)
{
    if (!isConcerned(path)) {
        return call();
    }
    const bool writes = (flags & O_ACCMODE) != O_RDONLY;
    const int fd = carryOut((writes ? "open " : "look ") + std::string(path), call);
    if (fd >= 0 && fd < MaxDescriptors) {
        counted[fd] = true;
    }
    return fd;
}

mode_t modeOf(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

extern "C" {

int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return opened(path, flags, [&] { return real(&open, "open")(path, flags, mode); });
}

int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = modeOf(flags, arguments);
    va_end(arguments);
    return opened(path, flags, [&] { return real(&open64, "open64")(path, flags, mode); });
}

ssize_t read(int fd, void* bytes, size_t count)
{
    const auto call = [&] { return real(&read, "read")(fd, bytes, count); };
    return isConcerned(fd) ? carryOut("read", call) : call();
}

ssize_t write(int fd, const void* bytes, size_t count)
{
    const auto call = [&] { return real(&write, "write")(fd, bytes, count); };
    const auto half = [&] { return real(&write, "write")(fd, bytes, count / 2); };
    return isConcerned(fd) ? carryOut("write", call, half) : call();
}

int fchmod(int fd, mode_t mode)
{
    const auto call = [&] { return real(&fchmod, "fchmod")(fd, mode); };
    return isConcerned(fd) ? carryOut("fchmod", call) : call();
}

int futimens(int fd, const timespec times[2])
{
    const auto call = [&] { return real(&futimens, "futimens")(fd, times); };
    return isConcerned(fd) ? carryOut("futimens", call) : call();
}

int fsync(int fd)
{
    const auto call = [&] { return real(&fsync, "fsync")(fd); };
    return isConcerned(fd) ? carryOut("fsync", call) : call();
}

int close(int fd)
{
    const auto call = [&] { return real(&close, "close")(fd); };
    if (!isConcerned(fd)) {
        return call();
    }
    counted[fd] = false;
    return carryOut("close", call);
}

int rename(const char* from, const char* to)
{
    const auto call = [&] { return real(&rename, "rename")(from, to); };
    return isConcerned(from) ? carryOut(std::string("rename ") + from + ' ' + to, call) : call();
}

int unlink(const char* path)
{
    const auto call = [&] { return real(&unlink, "unlink")(path); };
    return isConcerned(path) ? carryOut(std::string("unlink ") + path, call) : call();
}

int mkdir(const char* path, mode_t mode)
{
    const auto call = [&] { return real(&mkdir, "mkdir")(path, mode); };
    return isConcerned(path) ? carryOut(std::string("mkdir ") + path, call) : call();
}

} // extern "C"
