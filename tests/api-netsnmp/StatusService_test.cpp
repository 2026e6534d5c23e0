#include "api-netsnmp/StatusService.hpp"
#include "client/traps/TrapQueue.hpp"
#include "common/Facts.hpp"
#include "tests/api-netsnmp/FakeClient.hpp"
#include "tests/support/FakeClock.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/un.h>

namespace {

using namespace client::traps;
using namespace std::chrono_literals;

class StatusService : public testing::Test {
protected:
    ~StatusService() override
    {
        emptyTrapQueue();
        common::forgetFacts();
        theClient.trapsEnabled = 0;
    }
    static std::string textOf(const Trap& trap) { return std::get<std::string>(trap.at(1).value); }

    FakeClock clock;
    ScopedSeam<Clock> useClock{clock};
};

TEST_F(StatusService, TellsWhatWasNotedWithItsAgeInLinesThatStayLines)
{
    sessionIs(false);
    common::noteFact("event", "record 0012:\nhot");
    clock.advance(75s);
    EXPECT_EQ(agent::answerStatusRequest("status"), "master = not connected\nhealth = 3\ntraps.enabled = 0\n"
                                                    "traps.waiting = 0\nevent = record 0012: hot\nevent.age = 75\n"
                                                    "rows.temperatureProbe = 2\nsilent.temperatureProbe = Inlet air\n");
    for (const char* unknown : {"", " ", "stat", "status\r", "STATUS", "test-trapX"})
        EXPECT_EQ(agent::answerStatusRequest(unknown), "error = unknown request\n") << unknown;
}

TEST_F(StatusService, TheServiceManagerGetsALineWhereItListens)
{
    EXPECT_EQ(agent::stateInWords().substr(agent::stateInWords().find(',')),
              ", health warning, 2 rows, 1 without a value");
    const common::Descriptor manager(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socklen_t length = sizeof(sa_family_t); // the kernel gives it a name without a file
    ASSERT_EQ(bind(manager.get(), reinterpret_cast<sockaddr*>(&address), length), 0);
    length = sizeof address;
    getsockname(manager.get(), reinterpret_cast<sockaddr*>(&address), &length);
    const std::string name(address.sun_path + 1, length - offsetof(sockaddr_un, sun_path) - 1);

    for (const char* nobody : {"", "@", "/nonexistent/socket"}) {
        setenv("NOTIFY_SOCKET", nobody, 1);
        agent::tellServiceManager("to nobody");
    }
    setenv("NOTIFY_SOCKET", ("@" + name).c_str(), 1);
    agent::tellServiceManager("all is well");
    unsetenv("NOTIFY_SOCKET");
    char text[64] = {};
    EXPECT_EQ(recv(manager.get(), text, sizeof text - 1, 0), 18);
    EXPECT_STREQ(text, "STATUS=all is well");
}

TEST_F(StatusService, ATestTrapLeavesBeforeWaitingOnesAndHoldsUpNoMark)
{
    EXPECT_THAT(agent::answerStatusRequest("test-trap"), testing::StartsWith("error = traps are off"));
    theClient.trapsEnabled = 1;
    sessionIs(false);
    EXPECT_THAT(agent::answerStatusRequest("test-trap"), testing::StartsWith("error = not connected"));
    sessionIs(true);
    EXPECT_THAT(agent::answerStatusRequest("test-trap trapNonsense"), testing::StartsWith("error = no trap"));

    EXPECT_EQ(agent::answerStatusRequest("test-trap trapTUpCri"), "sent = trapTUpCri\n");
    EXPECT_EQ(oldestUntoldRecord(), std::numeric_limits<unsigned long>::max());
    emptyTrapQueue();
    beginRecord(7);
    queuePacedTrap({});
    EXPECT_EQ(agent::answerStatusRequest("test-trap"), "sent = trapSysReconfig\n");
    EXPECT_EQ(oldestUntoldRecord(), 7U) << "of the trap behind it";
    const auto taken = takeTraps();
    ASSERT_EQ(taken.size(), 2U);
    EXPECT_THAT(textOf(taken.front()), testing::StartsWith("TEST"));
    EXPECT_EQ(taken.front().size(), 3U);
}

} // namespace
