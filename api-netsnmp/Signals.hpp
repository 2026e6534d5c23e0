#pragma once

#include <chrono>
#include <csignal>

// Handlers note what came and ring a bell; what the signal asks for is done by serveSignals on the main thread and by
// serveDoorbell on the event thread. Neither stdio nor the SNMP library is safe to call from a handler: entering the
// agent's loop from the one for SIGPIPE was seen to use freed memory.

namespace agent {

/// Installs the handlers: the doorbell first, then the stop signals and SIGPIPE.
void installSignalHandlers();

} // namespace agent

/// Handler of SIGTERM, SIGINT and SIGHUP: the loop is to end.
void stop_server(int sig);
/// Handler of SIGPIPE: the way to the master agent is broken. The library finds its way back by itself.
void reconnect_agentx(int sig);
/// Handler of SIGRTMIN+1, an outside doorbell: the event queue is to be drained.
void catchNotificationEvent(int sig, siginfo_t* info, void* context);

namespace agent {

/// Opens what the handlers ring. Called in the daemon, so that the watcher does not share it.
void openBells();

/// Does what the stop signals and SIGPIPE ask for, with their messages to stderr. Main thread.
void serveSignals();

/// Where the policy lets a stop signal end a start: from now on it does so, with status 0, until the loop runs; as one
/// does that has come already. Called in the daemon.
void beginStart();

/// How long a stop waits for threads that may be in an exchange with the controller. Short where a stop may come while
/// the hardware is read for the first time.
std::chrono::milliseconds stopPatience();

/// Whether a stop signal ever came to this process.
bool stopWasCaught();

/// Lets the loop run. What was caught before is served and then forgotten: only a stop signal that comes later counts.
void startRunning();
bool isRunning();

/// Waits for `duration` or until wakeEventThread, draining the event queue whenever the doorbell rings in it. The wait,
/// and nothing else, can be cancelled by pthread_cancel. Event thread.
void pauseServingDoorbell(std::chrono::milliseconds duration);
/// Ends that wait, or the next one if there is none. Any thread.
void wakeEventThread();

/// Prints `prefix` and the local time in asctime's form to stderr. False, and nothing printed, without a local time.
bool printLocalTime(const char* prefix);

} // namespace agent
