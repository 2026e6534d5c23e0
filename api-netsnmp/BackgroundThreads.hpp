#pragma once

#include <chrono>

namespace agent {

/// Opens the stream that the refresher flushes in each turn, on /dev/null.
void openLogFile();

} // namespace agent

/// Body of the event thread: polls the event log and drains the event queue every ten seconds. Never returns.
void* CheckTrap(void*);

/// Body of the refresher thread. Never returns.
void* check_sensors_cache(void*);

namespace agent {

/// Starts the threads detached, the event thread first, and by the policy one that answers `hwquery status`. They take
/// none of the signals that serveSignals is for.
void startThreads();

/// Cancels them, the event thread first, and waits for their ends. They can be cancelled in their sleeps only, so an
/// exchange with the controller is finished first. False if one still runs after `patience`.
bool endThreads(std::chrono::milliseconds patience);

} // namespace agent
