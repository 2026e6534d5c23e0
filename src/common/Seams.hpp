#pragma once

#include <atomic>
#include <chrono>
#include <string>
#include <utility>
#include <vector>

/// The places where the system touches the machine. Each seam is a small abstract struct with one real implementation;
/// tests put a fake in front of it for the life of a scope. Code asks `current<Clock>().now()` and knows nothing of
/// either.

namespace seams {
template<class Seam>
inline std::atomic<Seam*> replacement{nullptr};
}

/// The implementation in force: the innermost ScopedSeam, or the real one.
template<class Seam>
Seam& current()
{
    Seam* fake = seams::replacement<Seam>.load(std::memory_order_acquire);
    return fake ? *fake : Seam::real();
}

/// Puts `fake` in place of the seam's implementation, in every thread of the process, until the end of the scope.
template<class Seam>
class ScopedSeam {
public:
    explicit ScopedSeam(Seam& fake) : previous(seams::replacement<Seam>.exchange(&fake)) {}
    ~ScopedSeam() { seams::replacement<Seam>.store(previous); }
    ScopedSeam(const ScopedSeam&) = delete;
    ScopedSeam& operator=(const ScopedSeam&) = delete;

private:
    Seam* previous;
};

/// The time of day, the time that only goes forward, and sleeping.
struct Clock {
    using TimePoint = std::chrono::system_clock::time_point;
    using SteadyPoint = std::chrono::steady_clock::time_point;

    virtual ~Clock() = default;
    virtual TimePoint now() = 0;
    /// For waits and ages: no administrator sets this one back.
    virtual SteadyPoint steady() = 0;
    virtual void sleepFor(std::chrono::nanoseconds duration) = 0;
    static Clock& real();
};

/// Seconds since 1970 of the current clock, cut to whole seconds as time(2) gives them.
std::time_t currentSeconds();

/// Where files of the system are found: the path itself, or below a temporary root in tests.
struct SystemRoot {
    virtual ~SystemRoot() = default;
    virtual std::string resolve(const std::string& absolutePath) = 0;
    static SystemRoot& real();
};

/// `absolutePath` as the current SystemRoot places it.
std::string systemPath(const std::string& absolutePath);

/// Runs other programs, never through a shell.
struct CommandRunner {
    virtual ~CommandRunner() = default;
    /// Runs argv[0], looked up in the system's own folders whatever our PATH says, with standard output and error going
    /// to the open descriptor `output`, or to /dev/null when that is negative; standard input is /dev/null and no other
    /// descriptor is inherited. Waits for the end. Returns the exit status, 127 if there is no such program (what a
    /// shell would say), or -1 if no process could be made or a signal ended it; after `limit` that is ours.
    virtual int run(const std::vector<std::string>& argv, int output) = 0;
    static CommandRunner& real();

    std::chrono::milliseconds limit{60'000};
};

/// CommandRunner::run of the current runner.
int runCommand(const std::vector<std::string>& argv, int output = -1);
