#include "api-netsnmp/Process.hpp"
#include "api-netsnmp/Signals.hpp"
#include "tests/support/TempRoot.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sstream>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
namespace fs = std::filesystem;

std::string contents(const fs::path& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Runs `body` in a process of its own and gives its exit status, or -1 if a signal ended it.
template<class Body>
int exitStatusOf(Body body)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(body());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

int softStackLimitAfterRaising(rlim_t soft)
{
    return exitStatusOf([soft] {
        rlimit limit{soft, RLIM_INFINITY};
        getrlimit(RLIMIT_STACK, &limit);
        limit.rlim_cur = soft;
        setrlimit(RLIMIT_STACK, &limit);
        agent::raiseStackLimit();
        getrlimit(RLIMIT_STACK, &limit);
        return limit.rlim_cur == soft ? 1 : limit.rlim_cur == 20'971'520 ? 2 : 3;
    });
}

} // namespace

TEST(Process, StackLimitIsRaisedOnlyIfItIsBelow)
{
    EXPECT_EQ(softStackLimitAfterRaising(8'388'608), 2);
    EXPECT_EQ(softStackLimitAfterRaising(20'971'519), 2);
    EXPECT_EQ(softStackLimitAfterRaising(20'975'616), 1);
}

/// What is said in a process whose resource has the limit. Through a pipe, which no limit on files concerns.
std::string exhaustionUnder(__rlimit_resource resource, rlim_t soft)
{
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    exitStatusOf([&] {
        dup2(ends[1], STDERR_FILENO);
        rlimit limit{};
        getrlimit(resource, &limit);
        limit.rlim_cur = soft;
        setrlimit(resource, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        agent::tellExhaustion();
        return 0;
    });
    close(ends[1]);
    char text[256] = {};
    const ssize_t size = read(ends[0], text, sizeof text);
    close(ends[0]);
    return {text, static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

TEST(Process, WhatTheAgentWillLackIsSaid)
{
    EXPECT_EQ(exhaustionUnder(RLIMIT_NOFILE, 1024), "");
    EXPECT_THAT(exhaustionUnder(RLIMIT_NOFILE, 10), testing::HasSubstr("hwAgent: too few file descriptors: "));
    // A file that may not grow stands for a full /dev/shm.
    EXPECT_THAT(exhaustionUnder(RLIMIT_FSIZE, 0), testing::StartsWith("hwAgent: no named semaphores"));
}

TEST(Process, PidFileIsMadeReadableForAll)
{
    TempRoot root;
    fs::create_directories(fs::path(root.resolve(agent::pidFile)).parent_path());
    const mode_t before = umask(0);
    agent::writePidFile();
    umask(before);
    EXPECT_EQ(fs::status(root.resolve(agent::pidFile)).permissions(), fs::perms(0644));
}

TEST(Process, PidFileIsOverwrittenInPlace)
{
    TempRoot root;
    const fs::path path = root.write(agent::pidFile, "12345678901234\n");
    agent::writePidFile();
    const std::string pid = std::to_string(getpid()) + "\n";
    EXPECT_EQ(contents(path), pid + std::string("12345678901234\n").substr(pid.size()));
}

TEST(Process, PidFileIsNoWayToAnotherFile)
{
    TempRoot root;
    const fs::path victim = root.write("/etc/passwd", "root\n");
    fs::create_directories(fs::path(root.resolve(agent::pidFile)).parent_path());
    fs::create_symlink(victim, root.resolve(agent::pidFile));
    agent::writePidFile();
    EXPECT_EQ(contents(victim), "root\n");
}

TEST(Process, PidFileIsWrittenAlthoughSomebodyHoldsItsLock)
{
    TempRoot root;
    const fs::path path = root.write(agent::pidFile, "");
    const int holder = open(path.c_str(), O_RDONLY);
    flock(holder, LOCK_EX);
    agent::writePidFile();
    close(holder);
    EXPECT_EQ(contents(path), std::to_string(getpid()) + "\n");
}

TEST(ProcessDeathTest, WatcherStartsTheAgentAgainAfterACrash)
{
    TempRoot root;
    for (const int sig : {SIGSEGV, SIGABRT, SIGBUS}) {
        std::ostringstream message;
        message << "Signal received at: .*\nCaught SIGSEGV, SIGABRT or SIGBUS = " << sig
                << ", executing /usr/local/hwagent/bin/hwAgent\n";
        EXPECT_EXIT(agent::endWatch(W_EXITCODE(0, sig)), testing::ExitedWithCode(0), message.str());
    }
    const fs::path stranger = root.write(agent::agentExecutable, "#!/bin/sh\nexit 42\n");
    fs::permissions(stranger, fs::perms(0755));
    EXPECT_EXIT(agent::endWatch(W_EXITCODE(0, SIGSEGV)), testing::ExitedWithCode(42), "");
}

TEST(Signals, StopCountsOnlyOnceTheLoopMayRun)
{
    testing::internal::CaptureStderr();
    stop_server(SIGTERM);
    agent::startRunning();
    EXPECT_TRUE(agent::isRunning());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::StartsWith("Caught signal 15\nSignal received at: "));
    testing::internal::CaptureStderr();
    stop_server(SIGHUP);
    stop_server(SIGINT);
    agent::serveSignals();
    EXPECT_FALSE(agent::isRunning());
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_THAT(printed, testing::HasSubstr("Caught signal 1\n"));
    EXPECT_THAT(printed, testing::HasSubstr("Caught signal 2\n"));
}

TEST(Signals, BrokenPipeIsSaidOnceAndIgnoredFromThenOn)
{
    const auto before = std::signal(SIGPIPE, reconnect_agentx);
    testing::internal::CaptureStderr();
    raise(SIGPIPE);
    raise(SIGPIPE);
    agent::serveSignals();
    agent::serveSignals();
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                testing::AllOf(testing::StartsWith("SIGPIPE signal received at: "),
                               testing::Not(testing::HasSubstr("\nSIGPIPE"))));
    EXPECT_EQ(std::signal(SIGPIPE, before), SIG_IGN);
}
