#include "client/query/HWAGENTLock.hpp"

#include "client/words/Trace.hpp"
#include "common/NamedMutex.hpp"
#include "common/Policy.hpp"
#include "common/Seams.hpp"

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace client::words;

namespace {

constexpr int flag = O_CREAT | O_EXCL;
constexpr mode_t mode = 0600;
constexpr unsigned uInitialCount = 1;
constexpr auto delay = std::chrono::seconds(2) + std::chrono::nanoseconds(1'000'000);
constexpr int mostAttempts = 600'000;
/// Which call this is differs between processors; only its result is shown, beside the name.
constexpr long tracedSystemCall = 224;
constexpr std::size_t nameBytes = 128;

} // namespace

HWAGENTLock::HWAGENTLock(const char* name)
{
    std::snprintf(szMutexName, nameBytes, "%s_%d", name, getpid());
}

HWAGENTLock::~HWAGENTLock()
{
    _Unlock();
}

int HWAGENTLock::Lock()
{
    if (common::policy().locksWithinProcess) {
        withinProcess = std::unique_lock(common::namedMutex(szMutexName));
        return 1;
    }
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        sem_t* const opened = sem_open(szMutexName, flag, mode, uInitialCount);
        if (opened != SEM_FAILED) {
            pMSRObject = opened;
            return 1;
        }
        trace("%ld: Retrying to get lock with %s", syscall(tracedSystemCall, 0L, 0L), szMutexName);
        current<Clock>().sleepFor(delay);
    }
    return 0;
}

void HWAGENTLock::_Unlock()
{
    if (withinProcess)
        withinProcess.unlock();
    if (!pMSRObject)
        return;
    sem_close(pMSRObject);
    sem_unlink(szMutexName);
    pMSRObject = nullptr;
}

void HWAGENTLock::removeLeftover(const char* name)
{
    const HWAGENTLock lock(name);
    sem_unlink(lock.szMutexName);
}
