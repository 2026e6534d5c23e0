/// The C library's doors through which a program reaches files and the IPMI device. A program that is started with this
/// library in LD_PRELOAD finds "/dev/ipmi0" served by the simulator at HWAGENT_PRELOAD_BMC ("127.0.0.1:port") and
/// absolute paths served from below HWAGENT_PRELOAD_ROOT. It runs unchanged otherwise, with its children and threads.

#include "ipmi-preload/Driver.hpp"
#include "ipmi-preload/PathMap.hpp"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#define EXPORT extern "C" __attribute__((visibility("default")))

namespace {

/// The next definition of `name` behind this library, with the type that the headers declare for it.
#define NEXT(name) static const auto real = reinterpret_cast<decltype(&::name)>(dlsym(RTLD_NEXT, #name))

bool isDevice(const char* path)
{
    return path && std::strcmp(path, "/dev/ipmi0") == 0 && std::getenv("HWAGENT_PRELOAD_BMC");
}

mode_t modeArgument(int flags, va_list arguments)
{
    return (flags & (O_CREAT | O_TMPFILE)) ? va_arg(arguments, mode_t) : 0;
}

/// Calls `open` with the path in its place, or opens the device.
template<class Open>
int openPlaced(const char* path, int flags, Open open)
{
    if (isDevice(path))
        return preload::Driver::instance().open(flags);
    std::string room;
    return open(preload::placePath(path, room));
}

} // namespace

/// One of open, open64: the variadic form.
#define DEFINE_OPEN(name)                                                                                              \
    EXPORT int name(const char* path, int flags, ...)                                                                  \
    {                                                                                                                  \
        NEXT(name);                                                                                                    \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const mode_t mode = modeArgument(flags, arguments);                                                            \
        va_end(arguments);                                                                                             \
        return openPlaced(path, flags, [&](const char* placed) { return real(placed, flags, mode); });                 \
    }

#define DEFINE_OPENAT(name)                                                                                            \
    EXPORT int name(int folder, const char* path, int flags, ...)                                                      \
    {                                                                                                                  \
        NEXT(name);                                                                                                    \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const mode_t mode = modeArgument(flags, arguments);                                                            \
        va_end(arguments);                                                                                             \
        return openPlaced(path, flags, [&](const char* placed) { return real(folder, placed, flags, mode); });         \
    }

DEFINE_OPEN(open)
DEFINE_OPEN(open64)
DEFINE_OPENAT(openat)
DEFINE_OPENAT(openat64)

/// What calls of open become in programs built with _FORTIFY_SOURCE.
EXPORT int __open_2(const char* path, int flags)
{
    return open(path, flags);
}
EXPORT int __open64_2(const char* path, int flags)
{
    return open64(path, flags);
}
EXPORT int __openat_2(int folder, const char* path, int flags)
{
    return openat(folder, path, flags);
}
EXPORT int __openat64_2(int folder, const char* path, int flags)
{
    return openat64(folder, path, flags);
}

EXPORT FILE* fopen(const char* path, const char* mode)
{
    NEXT(fopen);
    std::string room;
    return real(preload::placePath(path, room), mode);
}

EXPORT FILE* fopen64(const char* path, const char* mode)
{
    NEXT(fopen64);
    std::string room;
    return real(preload::placePath(path, room), mode);
}

EXPORT FILE* freopen(const char* path, const char* mode, FILE* stream)
{
    NEXT(freopen);
    std::string room;
    return real(preload::placePath(path, room), mode, stream);
}

EXPORT DIR* opendir(const char* path)
{
    NEXT(opendir);
    std::string room;
    return real(preload::placePath(path, room));
}

EXPORT int access(const char* path, int mode)
{
    NEXT(access);
    std::string room;
    return isDevice(path) ? 0 : real(preload::placePath(path, room), mode);
}

EXPORT int stat(const char* path, struct stat* result)
{
    static const auto real = reinterpret_cast<int (*)(const char*, struct stat*)>(dlsym(RTLD_NEXT, "stat"));
    std::string room;
    return real(preload::placePath(path, room), result);
}

EXPORT int stat64(const char* path, struct stat64* result)
{
    static const auto real = reinterpret_cast<int (*)(const char*, struct stat64*)>(dlsym(RTLD_NEXT, "stat64"));
    std::string room;
    return real(preload::placePath(path, room), result);
}

/// The watcher's restart: the executable at its installed path may be one that is placed.
EXPORT int execlp(const char* file, const char* argument, ...)
{
    std::vector<char*> arguments;
    va_list list;
    va_start(list, argument);
    for (const char* next = argument; next; next = va_arg(list, const char*))
        arguments.push_back(const_cast<char*>(next));
    va_end(list);
    arguments.push_back(nullptr);
    std::string room;
    return execvp(preload::placePath(file, room), arguments.data());
}

EXPORT int ioctl(int fd, unsigned long request, ...)
{
    NEXT(ioctl);
    va_list arguments;
    va_start(arguments, request);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (preload::Driver::instance().owns(fd))
        return preload::Driver::instance().ioctl(fd, static_cast<std::uint32_t>(request),
                                                 argument); // as the kernel takes it
    return real(fd, request, argument);
}

EXPORT int close(int fd)
{
    NEXT(close);
    if (preload::Driver::instance().owns(fd))
        preload::Driver::instance().release(fd);
    return real(fd);
}
