#include "common/Seams.hpp"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct SystemClock final : Clock {
    TimePoint now() override { return std::chrono::system_clock::now(); }

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

[[noreturn]] void execInChild(const std::vector<std::string>& argv, int output)
{
    std::vector<char*> words;
    words.reserve(argv.size() + 1);
    for (const std::string& word : argv)
        words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);

    const int sink = output >= 0 ? output : open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(sink, STDOUT_FILENO);
    dup2(sink, STDERR_FILENO);
    execvp(words[0], words.data());
    _exit(127);
}

struct ForkingRunner final : CommandRunner {
    int run(const std::vector<std::string>& argv, int output) override
    {
        if (argv.empty())
            return -1;
        const pid_t child = fork();
        if (child == 0)
            execInChild(argv, output);
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
