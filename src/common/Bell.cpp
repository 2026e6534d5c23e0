#include "common/Bell.hpp"

#include <cerrno>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace common {

namespace {

/// Ready before any code runs: a signal handler may be the first to ring it.
constinit Bell bellOfLoop;

} // namespace

void Bell::open()
{
    fd = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

void Bell::ring()
{
    const int saved = errno;
    const std::uint64_t once = 1;
    // A full counter refuses, and rings already.
    [[maybe_unused]] const ssize_t written = write(fd, &once, sizeof(once));
    errno = saved;
}

void Bell::clear()
{
    std::uint64_t count = 0;
    [[maybe_unused]] const ssize_t got = read(fd, &count, sizeof(count));
}

Bell& loopBell()
{
    return bellOfLoop;
}

void Bell::wait(std::chrono::milliseconds duration)
{
    pollfd bell{fd, POLLIN, 0};
    poll(&bell, 1, static_cast<int>(duration.count()));
}

} // namespace common
