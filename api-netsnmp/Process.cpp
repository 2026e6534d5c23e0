#include "api-netsnmp/Process.hpp"

#include "api-netsnmp/Signals.hpp"
#include "common/Descriptor.hpp"
#include "common/Seams.hpp"

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
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {
constexpr rlim_t stackBytes = 20'971'520;
constexpr int crashSignals[] = {SIGSEGV, SIGABRT, SIGBUS};

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

void restart(int sig)
{
    std::fprintf(stderr, "Caught SIGSEGV, SIGABRT or SIGBUS = %d, executing %s\n", sig, agent::agentExecutable);
    execlp(systemPath(agent::agentExecutable).c_str(), "hwAgent", nullptr);
}

/// Anybody who may read the file can hold a lock on it, so the wait for it has an end.
void lockForAWhile(int fd)
{
    using namespace std::chrono_literals;
    for (int attempt = 0; attempt < 20 && flock(fd, LOCK_EX | LOCK_NB) != 0; ++attempt)
        current<Clock>().sleepFor(50ms);
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

void tellExhaustion()
{
    constexpr std::size_t descriptorsNeeded = 16;
    std::vector<common::Descriptor> descriptors(descriptorsNeeded);
    for (common::Descriptor& descriptor : descriptors)
        descriptor = common::Descriptor(open("/dev/null", O_RDONLY | O_CLOEXEC));
    if (!descriptors.back())
        std::fprintf(stderr, "hwAgent: too few file descriptors: %s\n", std::strerror(errno));
    descriptors.clear();
    const std::string name = std::to_string(getpid()) + "_START";
    sem_t* const semaphore = sem_open(name.c_str(), O_CREAT, 0600, 1U);
    if (semaphore == SEM_FAILED)
        std::fprintf(stderr, "hwAgent: no named semaphores, see /dev/shm: %s\n", std::strerror(errno));
    else
        sem_close(semaphore);
    sem_unlink(name.c_str());
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

void endWatch(int status)
{
    if (!WIFSIGNALED(status))
        std::exit(0);
    const int sig = WTERMSIG(status);
    if (!printLocalTime("Signal received at: "))
        return;
    if (std::ranges::find(crashSignals, sig) != std::end(crashSignals))
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
        const int status = waitForDaemon(daemon);
        agent::serveSignals();
        agent::endWatch(status);
        return;
    }
    [[maybe_unused]] const int moved = chdir("/");
    umask(0);
    agent::writePidFile();
}
