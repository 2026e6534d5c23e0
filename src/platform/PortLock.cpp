#include "platform/PortLock.hpp"

#include "common/Seams.hpp"
#include "transport/Deadline.hpp"
#include "transport/TransportState.hpp"

#include <fcntl.h>
#include <sys/file.h>

namespace Platform {

namespace {

using namespace std::chrono_literals;

constexpr const char* lockFile = "/run/hwagent-ipmi.lock";
constexpr auto pauseBetweenTries = 1ms;
constexpr int mostTries = 10'000;

common::Descriptor openLockFile()
{
    if (transport::transportState().OpenIPMIPresence == 1)
        return common::Descriptor();
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    return common::Descriptor(open(systemPath(lockFile).c_str(), flags, 0600));
}

} // namespace

PortLock::PortLock() : file(openLockFile())
{
    for (int tries = 0;
         file && tries < mostTries && !transport::Deadline::passed() && flock(file.get(), LOCK_EX | LOCK_NB) != 0;
         ++tries)
        current<Clock>().sleepFor(pauseBetweenTries);
}

} // namespace Platform
