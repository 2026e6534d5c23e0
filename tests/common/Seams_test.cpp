#include "common/Seams.hpp"
#include "tests/support/FakeClock.hpp"

#include <cstdio>
#include <cstdlib>
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
    const std::string hostile = "a b; echo $HOME `id` 'x' \"y\" > /nowhere";
    EXPECT_EQ(runAndRead({"printf", "%s|", hostile, "*"}).second, hostile + "|*|") << "without a shell";
}

TEST(RunCommand, FindsTheSystemsProgramsWhateverPathSays)
{
    const std::string before = getenv("PATH");
    setenv("PATH", "/nowhere", 1);
    const auto result = runAndRead({"printenv", "PATH"});
    setenv("PATH", before.c_str(), 1);
    EXPECT_EQ(result, std::pair(0, std::string("/usr/sbin:/usr/bin:/sbin:/bin\n")));
}

TEST(RunCommand, OutputArrivesAlthoughStandardStreamsAreClosed)
{
    int kept[3];
    for (int fd = 0; fd < 3; ++fd) {
        kept[fd] = fcntl(fd, F_DUPFD_CLOEXEC, 100);
        close(fd);
    }
    const auto result = runAndRead({"sh", "-c", "cat; echo text"});
    for (int fd = 0; fd < 3; ++fd)
        dup2(kept[fd], fd);
    EXPECT_EQ(result, std::pair(0, std::string("text\n")));
}

TEST(RunCommand, EndsWhatDoesNotEnd)
{
    const auto before = std::exchange(CommandRunner::real().limit, std::chrono::milliseconds(50));
    EXPECT_EQ(runCommand({"sleep", "1000"}), -1);
    CommandRunner::real().limit = before;
}

TEST(RunCommand, LeavesNoDescriptorOpenAndNothingToRead)
{
    const int secret = open("/dev/null", O_RDONLY); // without the close-on-exec flag
    const std::string path = "/proc/self/fd/" + std::to_string(secret);
    EXPECT_NE(runCommand({"test", "-e", path}), 0);
    EXPECT_EQ(runAndRead({"cat"}), std::pair(0, std::string()));
    close(secret);
}

} // namespace
