#include "api-netsnmp/Process.hpp"

#include "api-netsnmp/Signals.hpp"
#include "common/Descriptor.hpp"
#include "common/Paths.hpp"
#include "common/Policy.hpp"
#include "common/Report.hpp"
#include "common/Seams.hpp"
#include "common/Stopwatch.hpp"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <iterator>
#include <semaphore.h>
#include <string>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {
using namespace std::chrono_literals;

constexpr int crashSignals[] = {SIGSEGV, SIGABRT, SIGBUS};
constexpr auto longestCrashPause = 60s;
constexpr auto soundLife = 60s; ///< behind it, a crash is the first again

/// To standard error, and to the system's log where the policy wants messages there.
void complain(const std::string& text)
{
    std::fprintf(stderr, "hwAgent: %s\n", text.c_str());
    common::report(common::Gravity::error, text);
}

pid_t forkOrExit(const char* complaint)
{
    const pid_t child = fork();
    if (child < 0) {
        std::fputs(complaint, stderr);
        std::exit(1);
    }
    return child;
}

int waitForDaemon(pid_t daemon)
{
    std::fprintf(stderr, "Waiting on %d\n", daemon);
    int status = 0;
    pid_t ended;
    do
        ended = waitpid(daemon, &status, 0);
    while (ended < 0 && errno == EINTR);
    return ended == daemon ? status : 0;
}

void executeAgent()
{
    execlp(systemPath(common::agentExecutable).c_str(), "hwAgent", nullptr);
}

void restart(int sig)
{
    std::fprintf(stderr, "Caught SIGSEGV, SIGABRT or SIGBUS = %d, executing %s\n", sig, common::agentExecutable);
    executeAgent();
}

/// The watcher becomes the next agent, so its successor learns of the pause by the environment.
std::chrono::seconds crashPause(std::chrono::nanoseconds life)
{
    const char* const before = std::getenv(agent::crashPauseVariable);
    const long last = before && life < soundLife ? std::strtol(before, nullptr, 10) : 0;
    return std::clamp<std::chrono::seconds>(std::chrono::seconds(std::clamp(last, 0L, 60L)) * 2, 1s, longestCrashPause);
}

void restartAfterPause(int sig, std::chrono::nanoseconds life)
{
    const std::chrono::seconds pause = crashPause(life);
    complain("ended by signal " + std::to_string(sig) + ", starts again in " + std::to_string(pause.count()) + " s");
    for (auto left = std::chrono::nanoseconds(pause); left > 0ns && !agent::stopWasCaught(); left -= 100ms)
        current<Clock>().sleepFor(100ms);
    if (agent::stopWasCaught())
        return;
    setenv(agent::crashPauseVariable, std::to_string(pause.count()).c_str(), 1);
    executeAgent();
}

/// Anybody who may read the file can hold a lock on it, so the wait for it has an end.
void lockForAWhile(int fd)
{
    for (int attempt = 0; attempt < 20 && flock(fd, LOCK_EX | LOCK_NB) != 0; ++attempt)
        current<Clock>().sleepFor(50ms);
}

bool hasDescriptors()
{
    constexpr std::size_t descriptorsNeeded = 16;
    std::vector<common::Descriptor> descriptors(descriptorsNeeded);
    for (common::Descriptor& descriptor : descriptors)
        descriptor = common::Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (!descriptors.back())
        complain(std::string("too few file descriptors: ") + std::strerror(errno));
    return static_cast<bool>(descriptors.back());
}

bool hasSemaphores()
{
    const std::string name = std::to_string(getpid()) + "_START";
    sem_t* const semaphore = sem_open(name.c_str(), O_CREAT, 0600, 1U);
    if (semaphore == SEM_FAILED)
        complain(std::string("no named semaphores, see /dev/shm: ") + std::strerror(errno));
    else
        sem_close(semaphore);
    sem_unlink(name.c_str());
    return semaphore != SEM_FAILED;
}

/// Room for the two threads' stacks and as much again for what they read.
bool hasMemory()
{
    constexpr std::size_t bytesNeeded = 4 * agent::stackBytes;
    void* const room =
        mmap(nullptr, bytesNeeded, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (room == MAP_FAILED)
        complain(std::string("too little memory: ") + std::strerror(errno));
    else
        munmap(room, bytesNeeded);
    return room != MAP_FAILED;
}
} // namespace

namespace agent {

void openStandardDescriptors()
{
    int fd = 0;
    do
        fd = open("/dev/null", O_RDWR);
    while (fd >= STDIN_FILENO && fd <= STDERR_FILENO);
    if (fd > STDERR_FILENO)
        close(fd);
}

bool tellExhaustion()
{
    const bool enough = hasDescriptors();
    return (common::policy().locksWithinProcess || hasSemaphores()) && enough;
}

void checkResources()
{
    const bool enough = tellExhaustion();
    if (common::policy().endsWithoutResources && !(hasMemory() && enough))
        std::exit(1);
}

void refuseArguments(int count)
{
    constexpr int wrongUse = 2;
    if (!common::policy().refusesArguments || count < 2)
        return;
    std::fputs("usage: hwAgent\nIt takes no options and makes a daemon of itself; see hwAgent(8).\n", stderr);
    std::exit(wrongUse);
}

void refuseSecondAgent()
{
    if (!common::policy().refusesSecondAgent)
        return;
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    common::Descriptor lock(open(systemPath(lockFile).c_str(), flags, 0600));
    if (!lock) {
        complain(std::string("no lock file, a second agent would not be seen: ") + std::strerror(errno));
        return;
    }
    if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        complain("another agent runs already");
        std::exit(1);
    }
    lock.release(); // held for the life of the processes to come
}

void raiseStackLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_STACK, &limit) != 0 || limit.rlim_cur >= stackBytes)
        return;
    limit.rlim_cur = stackBytes;
    if (const int result = setrlimit(RLIMIT_STACK, &limit); result != 0)
        std::fprintf(stderr, "Set Stack Size limit result = %d\n", result);
}

void endWatch(int status, std::chrono::nanoseconds life)
{
    if (!WIFSIGNALED(status))
        std::exit(0);
    const int sig = WTERMSIG(status);
    if (!printLocalTime("Signal received at: "))
        return;
    if (common::policy().backsOffCrashes)
        restartAfterPause(sig, life);
    else if (std::ranges::find(crashSignals, sig) != std::end(crashSignals))
        restart(sig);
    else
        std::fprintf(stderr, "Killed by %d\n", sig);
    std::exit(0);
}

void writePidFile()
{
    constexpr int flags = O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW;
    const auto stream = common::streamOver(common::Descriptor(open(systemPath(pidFile).c_str(), flags, 0644)), "r+");
    if (!stream)
        return;
    lockForAWhile(fileno(stream.get()));
    std::fprintf(stream.get(), "%d\n", getpid());
    std::fflush(stream.get());
    flock(fileno(stream.get()), LOCK_UN);
}

} // namespace agent

void daemonize()
{
    if (forkOrExit("can not fork child process. ") > 0)
        std::exit(0);
    setpgrp();
    if (const pid_t daemon = forkOrExit(" can not fork the second child process."); daemon > 0) {
        const common::Stopwatch life;
        const int status = waitForDaemon(daemon);
        agent::serveSignals();
        agent::endWatch(status, life.elapsed());
        return;
    }
    [[maybe_unused]] const int moved = chdir("/");
    umask(0);
    agent::writePidFile();
    common::report(common::Gravity::notice, "started");
}
