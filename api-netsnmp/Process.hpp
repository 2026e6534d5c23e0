#pragma once

#include <chrono>
#include <cstddef>

namespace agent {

/// Where the daemon leaves its process id.
inline constexpr char pidFile[] = "/var/run/hwagentd.pid";
/// The lock of the one agent; on a file of its own, since anybody may lock a file that he may read.
inline constexpr char lockFile[] = "/var/run/hwagentd.lock";
/// Seconds that the watcher before this one waited until it started the agent again.
inline constexpr char crashPauseVariable[] = "HWAGENT_CRASH_PAUSE";

/// Opens /dev/null on each of the descriptors 0 to 2 that the caller left closed, so that no file opened later gets a
/// number that somebody prints to.
void openStandardDescriptors();

/// Says on standard error what the agent will lack: descriptors, or the named semaphores that its locks are if it needs
/// them. Without them it lives and serves nothing, and once the client is up its messages go to /dev/null. False if
/// something lacks.
bool tellExhaustion();

/// tellExhaustion; by the policy also a look for memory, and the end of the process with status 1 if anything lacks.
void checkResources();

/// Where the policy refuses arguments: says how the program is called, and ends the process with status 2, if there is
/// one. `count` is main's, with the program's name.
void refuseArguments(int count);

/// Where the policy refuses a second agent: takes the lock that this process and its children hold for their lives, or
/// says that another has it and ends the process with status 1. An agent that cannot make the file runs without it.
void refuseSecondAgent();

/// Of each thread: the query engine's interpreter runs deep.
inline constexpr std::size_t stackBytes = 20'971'520;
/// Raises the soft limit of the stack to it if it is below. A thread's default follows the limit that the process was
/// started with, not the raised one.
void raiseStackLimit();

} // namespace agent

/// Forks twice. Returns in the daemon; the process in between stays as its watcher and starts the agent again when the
/// daemon dies by SIGSEGV, SIGABRT or SIGBUS; by the policy after any signal, with pauses that grow from 1 s to 60 s
/// from crash to crash and begin anew behind a run of more than a minute.
void daemonize();

namespace agent {

/// What a watcher does when waitpid gave `status` for its daemon, which ran for `life`: exits or becomes a fresh agent.
/// A stop signal ends the pause before that, and the watcher. Returns only if there is no local time to report.
void endWatch(int status, std::chrono::nanoseconds life = {});

/// Writes the process id over the beginning of the pid file. Failures are passed over.
void writePidFile();

} // namespace agent
