#include "common/Seams.hpp"

#include "common/Descriptor.hpp"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <sys/syscall.h>
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

/// Words as exec takes them: pointers, and a null behind the last.
std::vector<char*> pointersTo(const std::vector<std::string>& words)
{
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (const std::string& word : words)
        pointers.push_back(const_cast<char*>(word.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

/// Our environment, with the folders of the system's own programs.
std::vector<std::string> environmentForPrograms()
{
    constexpr std::string_view path = "PATH=";
    std::vector<std::string> variables{"PATH=/usr/sbin:/usr/bin:/sbin:/bin"};
    for (char** variable = environ; variable && *variable; ++variable)
        if (!std::string_view(*variable).starts_with(path))
            variables.emplace_back(*variable);
    return variables;
}

/// The same file under a number behind those of the standard streams, which may be closed in this process.
int behindStreams(int fd)
{
    return fd < 0 || fd > STDERR_FILENO ? fd : fcntl(fd, F_DUPFD, STDERR_FILENO + 1);
}

/// Between fork and exec of a process with threads only calls that are safe in signal handlers are allowed, so
/// nothing here allocates. The program inherits no descriptor of ours but the output.
[[noreturn]] void execInChild(char* const* words, char** variables, int output)
{
    const int null = behindStreams(open("/dev/null", O_RDWR));
    const int sink = output >= 0 ? behindStreams(output) : null;
    dup2(sink, STDERR_FILENO);
    dup2(sink, STDOUT_FILENO);
    dup2(null, STDIN_FILENO);
    close_range(STDERR_FILENO + 1, ~0U, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    environ = variables;
    execvp(words[0], words);
    _exit(127);
}

/// Ends the child if it does not end by itself: a drive that does not answer, say, must not keep the caller for good.
void limitTime(pid_t child, std::chrono::milliseconds limit)
{
    const common::Descriptor handle(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
    pollfd end{handle.get(), POLLIN, 0};
    int ended = -1;
    while (handle && (ended = poll(&end, 1, static_cast<int>(limit.count()))) < 0 && errno == EINTR) {
    }
    if (ended == 0)
        kill(child, SIGKILL);
}

struct ForkingRunner final : CommandRunner {
    int run(const std::vector<std::string>& argv, int output) override
    {
        if (argv.empty())
            return -1;
        const std::vector<char*> words = pointersTo(argv);
        const std::vector<std::string> environment = environmentForPrograms();
        std::vector<char*> variables = pointersTo(environment);
        const pid_t child = fork();
        if (child == 0)
            execInChild(words.data(), variables.data(), output);
        if (child < 0)
            return -1;
        limitTime(child, limit);
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
    // never destroyed: a detached thread may read it to the process's end
    static Clock& clock = *std::make_unique<SystemClock>().release();
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
