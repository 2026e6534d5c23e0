#pragma once

#include <atomic>

class ResultStatus;

namespace client::words {

/// False once the configuration has sent the diagnostics to /dev/null: nothing is formatted from then on.
inline std::atomic<bool> traceWanted{true};

/// Writes a diagnostic to stderr as it stands; no line end is added.
void trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Writes operation and error code of each entry of a failure.
void traceFailure(const ResultStatus& failure);

} // namespace client::words
