#pragma once

#include <sys/types.h>

namespace agent {

/// Where the watcher finds the executable to start again, and where the daemon leaves its process id.
inline constexpr char agentExecutable[] = "/usr/local/hwagent/bin/hwAgent";
inline constexpr char pidFile[] = "/var/run/hwagentd.pid";

/// Opens /dev/null on each of the descriptors 0 to 2 that the caller left closed, so that no file opened later gets a
/// number that somebody prints to.
void openStandardDescriptors();

/// Says on standard error what the agent will lack: descriptors, or the named semaphores that its locks are. Without
/// them it lives and serves nothing, and once the client is up its messages go to /dev/null.
void tellExhaustion();

/// Raises the soft limit of the stack to 20 MiB if it is below: the query engine's interpreter runs deep.
void raiseStackLimit();

} // namespace agent

/// Forks twice. Returns in the daemon; the process in between stays as its watcher and starts the agent again when the
/// daemon dies by SIGSEGV, SIGABRT or SIGBUS.
void daemonize();

namespace agent {

/// What a watcher does when waitpid gave `status` for its daemon: exits or becomes a fresh agent. Returns only if there
/// is no local time to report.
void endWatch(int status);

/// Writes the process id over the beginning of the pid file. Failures are passed over.
void writePidFile();

} // namespace agent
