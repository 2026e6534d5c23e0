#include "common/Seams.hpp"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct SystemClock final : Clock {
    TimePoint now() override { return std::chrono::system_clock::now(); }
    SteadyPoint steady() override { return std::chrono::steady_clock::now(); }

    void sleepFor(std::chrono::nanoseconds duration) override
    {
        timespec left{};
        left.tv_sec = static_cast<time_t>(duration.count() / 1'000'000'000);
        left.tv_nsec = static_cast<long>(duration.count() % 1'000'000'000);
        while (nanosleep(&left, &left) == -1 && errno == EINTR) {
        }
    }
};

struct RealRoot final : SystemRoot {
    std::string resolve(const std::string& absolutePath) override { return absolutePath; }
};

std::vector<char*> pointersTo(const std::vector<std::string>& argv)
{
    std::vector<char*> words;
    words.reserve(argv.size() + 1);
    for (const std::string& word : argv)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    return words;
}

/// Between fork and exec of a process with threads only calls that are safe in signal handlers are allowed, so
/// nothing here allocates. The program inherits no descriptor of ours but the output.
[[noreturn]] void execInChild(char* const* words, int output)
{
    const int null = open("/dev/null", O_RDWR);
    const int sink = output >= 0 ? output : null;
    dup2(sink, STDERR_FILENO);
    dup2(sink, STDOUT_FILENO);
    dup2(null, STDIN_FILENO);
    close_range(STDERR_FILENO + 1, ~0U, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execvp(words[0], words);
    _exit(127);
}

struct ForkingRunner final : CommandRunner {
    int run(const std::vector<std::string>& argv, int output) override
    {
        if (argv.empty())
            return -1;
        const std::vector<char*> words = pointersTo(argv);
        const pid_t child = fork();
        if (child == 0)
            execInChild(words.data(), output);
        if (child < 0)
            return -1;
        int status = 0;
        while (waitpid(child, &status, 0) == -1)
            if (errno != EINTR)
                return -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
};

} // namespace

Clock& Clock::real()
{
    static SystemClock clock;
    return clock;
}

SystemRoot& SystemRoot::real()
{
    static RealRoot root;
    return root;
}

CommandRunner& CommandRunner::real()
{
    static ForkingRunner runner;
    return runner;
}

std::time_t currentSeconds()
{
    return std::chrono::system_clock::to_time_t(std::chrono::floor<std::chrono::seconds>(current<Clock>().now()));
}

std::string systemPath(const std::string& absolutePath)
{
    return current<SystemRoot>().resolve(absolutePath);
}

int runCommand(const std::vector<std::string>& argv, int output)
{
    return current<CommandRunner>().run(argv, output);
}
