#include "common/Policy.hpp"
#include "common/ResultStatus.hpp"
#include "platform/IpmiExchange.hpp"
#include "tests/support/ModelBmc.hpp"
#include "tests/support/TempRoot.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/TransportState.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr const char* lockFile = "/run/hwagent-ipmi.lock";

/// Another process that is in the middle of an exchange, and ends it after some of our pauses.
class Holder : public FakeClock {
public:
    explicit Holder(const std::string& path) : fd(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        flock(fd, LOCK_EX);
    }
    ~Holder() override { close(fd); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

    void sleepFor(std::chrono::nanoseconds duration) override
    {
        FakeClock::sleepFor(duration);
        if (sleeps.size() == pausesUntilEnd)
            flock(fd, LOCK_UN);
    }

    std::size_t pausesUntilEnd = 0;

private:
    int fd;
};

class PortLockTest : public testing::Test {
protected:
    PortLockTest()
    {
        transport::resetTransportForTests();
        root.write("/run/keep", "");
    }
    ~PortLockTest() override { transport::resetTransportForTests(); }

    bool ask()
    {
        std::vector<std::string> reply;
        Platform::exchangeIpmi({"20", "6", "0", "1"}, {.retries = 0, .initialise = false}, reply);
        return reply == std::vector<std::string>{"0", "42"};
    }

    TempRoot root;
    FakeKcs port;
    ScopedSeam<transport::PortIo> usePort{port};
};

TEST_F(PortLockTest, AnExchangeWaitsForTheOneOfAnotherProcess)
{
    Holder other(root.resolve(lockFile));
    ScopedSeam<Clock> use(other);
    other.pausesUntilEnd = 5;
    EXPECT_TRUE(ask());
    EXPECT_EQ(other.sleeps.size(), 5U);
    EXPECT_TRUE(ask()) << "ours is over too";
    EXPECT_EQ(other.sleeps.size(), 5U);
}

TEST_F(PortLockTest, AProcessThatHangsInItsExchangeIsNotWaitedForForEver)
{
    Holder other(root.resolve(lockFile));
    ScopedSeam<Clock> use(other);
    EXPECT_TRUE(ask());
    EXPECT_EQ(other.time - FakeClock().time, std::chrono::seconds(10));
}

TEST_F(PortLockTest, WithinABudgetThePortOfAProcessThatHangsIsLeftAlone)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    Holder other(root.resolve(lockFile));
    ScopedSeam<Clock> use(other);
    other.perReading = std::chrono::microseconds(1);
    EXPECT_THROW(ask(), ResultStatus);
    EXPECT_TRUE(port.writes.empty());
    EXPECT_LT(other.time - FakeClock().time, std::chrono::milliseconds(5100));
    other.pausesUntilEnd = other.sleeps.size() + 5;
    EXPECT_TRUE(ask());
}

TEST_F(PortLockTest, TheFileIsForRootAloneAndNoLinkIsFollowed)
{
    ask();
    struct stat made {};
    ASSERT_EQ(stat(root.resolve(lockFile).c_str(), &made), 0);
    EXPECT_EQ(made.st_mode & 0777, 0600U);
    std::filesystem::remove(root.resolve(lockFile));
    std::filesystem::create_symlink(root.resolve("/run/elsewhere"), root.resolve(lockFile));
    Holder target(root.resolve("/run/elsewhere"));
    ScopedSeam<Clock> use(target);
    EXPECT_TRUE(ask());
    EXPECT_TRUE(target.sleeps.empty()) << "a lock of the file behind the link is none of ours";
}

TEST_F(PortLockTest, ADriverKeepsItsOwnOrder)
{
    ModelBmc bmc;
    ScopedSeam<transport::DeviceFile> useBmc(bmc);
    bmc.on(0x06, 0x01, {0, 0x20, 0, 0, 0, 2, 0, 0, 0, 0, 0x3E, 0, 0, 0, 0, 0});
    transport::transportState().OpenIPMIPresence = 1;
    transport::transportState().openIPMIfd = bmc.open("/dev/ipmi0", 0);
    ask();
    EXPECT_FALSE(std::filesystem::exists(root.resolve(lockFile)));
}

} // namespace
