#include "api-netsnmp/Process.hpp"
#include "api-netsnmp/Signals.hpp"
#include "common/Paths.hpp"
#include "common/Policy.hpp"
#include "tests/support/FakeClock.hpp"
#include "tests/support/TempRoot.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
namespace fs = std::filesystem;
using namespace std::chrono_literals;

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

/// `body` in a process of its own that has the soft limit.
template<class Body>
int exitStatusUnder(__rlimit_resource resource, rlim_t soft, Body body)
{
    return exitStatusOf([&] {
        rlimit limit{};
        getrlimit(resource, &limit);
        limit.rlim_cur = soft;
        setrlimit(resource, &limit);
        return body();
    });
}

} // namespace

TEST(Process, StackLimitIsRaisedOnlyIfItIsBelow)
{
    for (const auto& [before, after] : {std::pair{20'971'519, 20'971'520}, {20'975'616, 20'975'616}})
        EXPECT_EQ(exitStatusUnder(RLIMIT_STACK, static_cast<rlim_t>(before),
                                  [&] {
                                      agent::raiseStackLimit();
                                      rlimit limit{};
                                      getrlimit(RLIMIT_STACK, &limit);
                                      return limit.rlim_cur == static_cast<rlim_t>(after);
                                  }),
                  1);
}

/// What checkResources says in a process whose resource has the limit, through a pipe, which no limit on files
/// concerns; "ended" behind it for the end of the process.
std::string checkUnder(__rlimit_resource resource, rlim_t soft)
{
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const int status = exitStatusUnder(resource, soft, [&] {
        dup2(ends[1], STDERR_FILENO);
        std::signal(SIGXFSZ, SIG_IGN);
        agent::checkResources();
        return 7;
    });
    close(ends[1]);
    char text[256] = {};
    EXPECT_GE(read(ends[0], text, sizeof text - 1), 0);
    close(ends[0]);
    return text + std::string(status == 7 ? "" : status == 1 ? "ended" : "died");
}

TEST(Process, WhatTheAgentWillLackIsSaidAndEndsItByThePolicyAlone)
{
    using testing::AllOf, testing::EndsWith, testing::StartsWith;
    for (const bool ends : {false, true}) {
        const common::ScopedPolicy policy({.endsWithoutResources = ends});
        EXPECT_EQ(checkUnder(RLIMIT_NOFILE, 1024), "");
        EXPECT_THAT(checkUnder(RLIMIT_NOFILE, 10),
                    AllOf(StartsWith("hwAgent: too few file descriptors: "), EndsWith(ends ? "ended" : "\n")));
        // A file that may not grow stands for a full /dev/shm.
        EXPECT_THAT(checkUnder(RLIMIT_FSIZE, 0),
                    AllOf(StartsWith("hwAgent: no named semaphores"), EndsWith(ends ? "ended" : "\n")));
    }
}

TEST(Process, ASecondAgentIsRefusedByALockThatNobodyElseCanTake)
{
    TempRoot root;
    const fs::path path = root.write(agent::lockFile, "");
    fs::remove(path);
    const auto statusOfAgent = [] {
        return exitStatusOf([] {
            close(STDERR_FILENO);
            agent::refuseSecondAgent();
            return 7;
        });
    };
    const auto lock = [&] {
        const int holder = open(path.c_str(), O_RDWR | O_CREAT, 0600);
        flock(holder, LOCK_EX);
        return holder;
    };
    int holder = lock();
    EXPECT_EQ(statusOfAgent(), 7);
    close(holder);
    fs::remove(path);
    const common::ScopedPolicy policy({.refusesSecondAgent = true});
    EXPECT_EQ(statusOfAgent(), 7);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0600));
    holder = lock();
    EXPECT_EQ(statusOfAgent(), 1);
    close(holder);
    EXPECT_EQ(statusOfAgent(), 7);
    fs::remove_all(path.parent_path());
    EXPECT_EQ(statusOfAgent(), 7);
}

TEST(Process, PidFileIsReadableForAllAndOverwrittenInPlaceWhoeverLocksItButNoWayToAnotherFile)
{
    TempRoot root;
    const fs::path path = root.resolve(agent::pidFile), victim = root.write("/etc/passwd", "root\n");
    fs::create_directories(path.parent_path());
    const mode_t before = umask(0);
    agent::writePidFile();
    umask(before);
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0644));
    root.write(agent::pidFile, "12345678901234\n");
    const int holder = open(path.c_str(), O_RDONLY);
    flock(holder, LOCK_EX);
    agent::writePidFile();
    close(holder);
    const std::string pid = std::to_string(getpid()) + "\n";
    EXPECT_EQ(contents(path), pid + std::string("12345678901234\n").substr(pid.size()));
    fs::remove(path);
    fs::create_symlink(victim, path);
    agent::writePidFile();
    EXPECT_EQ(contents(victim), "root\n");
}

/// What the watcher before said, how long the daemon ran, and the pause until the agent starts again.
struct Crash {
    const char* pauseBefore;
    std::chrono::seconds life;
    int pause;
};

TEST(ProcessDeathTest, ByThePolicyPausesGrowFromCrashToCrash)
{
    TempRoot root;
    FakeClock clock;
    const ScopedSeam<Clock> useClock(clock);
    const common::ScopedPolicy policy({.backsOffCrashes = true});
    const fs::path stranger = root.write(common::agentExecutable, "#!/bin/sh\nexit $HWAGENT_CRASH_PAUSE\n");
    fs::permissions(stranger, fs::perms(0755));
    constexpr Crash crashes[] = {{nullptr, 5s, 1}, {"1", 5s, 2},   {"2", 5s, 4},  {"32", 59s, 60},
                                 {"60", 0s, 60},   {"60", 61s, 1}, {"-7", 1s, 1}, {"99999999999999", 1s, 60}};
    for (const Crash& crash : crashes) {
        if (crash.pauseBefore)
            setenv(agent::crashPauseVariable, crash.pauseBefore, 1);
        for (const int sig : {SIGSEGV, SIGKILL, SIGFPE})
            EXPECT_EXIT(agent::endWatch(W_EXITCODE(0, sig), crash.life), testing::ExitedWithCode(crash.pause),
                        "ended by signal " + std::to_string(sig) + ", starts again in " + std::to_string(crash.pause) +
                            " s");
    }
    unsetenv(agent::crashPauseVariable);
    EXPECT_EXIT(agent::endWatch(W_EXITCODE(3, 0)), testing::ExitedWithCode(0), "");
    EXPECT_EXIT((stop_server(SIGTERM), agent::endWatch(W_EXITCODE(0, SIGSEGV))), testing::ExitedWithCode(0), "");
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
