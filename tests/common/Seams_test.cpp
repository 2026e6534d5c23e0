#include "common/Seams.hpp"
#include "tests/support/FakeClock.hpp"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

/// Runs the words with their output going to a file that is gone afterwards; returns status and output.
std::pair<int, std::string> runAndRead(const std::vector<std::string>& argv)
{
    std::FILE* const file = std::tmpfile();
    const int status = runCommand(argv, fileno(file));
    char text[512] = {};
    const ssize_t size = pread(fileno(file), text, sizeof text, 0);
    std::fclose(file);
    return {status, std::string(text, static_cast<std::size_t>(size))};
}

TEST(RunCommand, ReturnsStatusAndOutput)
{
    EXPECT_EQ(runAndRead({"printf", "%s", "text"}), std::pair(0, std::string("text")));
    EXPECT_EQ(runAndRead({"sh", "-c", "echo out; echo err >&2; exit 3"}), std::pair(3, std::string("out\nerr\n")));
    EXPECT_EQ(runCommand({"sh", "-c", "kill -9 $$"}), -1);
    EXPECT_EQ(runCommand({"no-such-program-of-ours"}), 127);
    EXPECT_EQ(runCommand({}), -1);
}

TEST(RunCommand, PassesWordsOnWithoutAShell)
{
    const std::string hostile = "a b; echo $HOME `id` 'x' \"y\" > /nowhere";
    EXPECT_EQ(runAndRead({"printf", "%s|", hostile, "*"}).second, hostile + "|*|");
}

TEST(RunCommand, LeavesNoDescriptorOpenAndNothingToRead)
{
    const int secret = open("/dev/null", O_RDONLY); // without the close-on-exec flag
    const std::string path = "/proc/self/fd/" + std::to_string(secret);
    EXPECT_NE(runCommand({"test", "-e", path}), 0);
    EXPECT_EQ(runAndRead({"cat"}), std::pair(0, std::string()));
    close(secret);
}

TEST(Seams, FakesAreInForceForTheirScopeAndNest)
{
    struct Root : SystemRoot {
        explicit Root(std::string prefix_) : prefix(std::move(prefix_)) {}
        std::string resolve(const std::string& path) override { return prefix + path; }
        std::string prefix;
    } outer("/outer"), inner("/inner");
    {
        const ScopedSeam<SystemRoot> useOuter(outer);
        {
            const ScopedSeam<SystemRoot> useInner(inner);
            EXPECT_EQ(systemPath("/etc"), "/inner/etc");
        }
        EXPECT_EQ(systemPath("/etc"), "/outer/etc");
    }
    EXPECT_EQ(systemPath("/etc"), "/etc");
}

TEST(Seams, RealClockSleeps)
{
    const auto before = Clock::real().now();
    Clock::real().sleepFor(std::chrono::milliseconds(20));
    EXPECT_GE(Clock::real().now() - before, std::chrono::milliseconds(20));
}

TEST(Seams, SecondsAreCutNotRounded)
{
    FakeClock clock;
    const ScopedSeam<Clock> use(clock);
    clock.time = Clock::TimePoint(std::chrono::milliseconds(1'999));
    EXPECT_EQ(currentSeconds(), 1);
}

} // namespace
