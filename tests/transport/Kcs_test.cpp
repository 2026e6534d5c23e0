#include "transport/Kcs.hpp"

#include "tests/transport/FakeKcs.hpp"

#include <csignal>
#include <unistd.h>

using namespace transport;

namespace {

using Bytes = FakeKcs::Bytes;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Pair;

constexpr std::uint16_t data = KCSAddress, command = kcsStatusPort;

class Kcs : public testing::Test, protected PortMachine {
protected:
    ~Kcs() override { EXPECT_EQ(alarm.armed, alarm.disarmed); }

    int send(const Bytes& frame) { return KCSSendMessage(frame.data(), static_cast<unsigned>(frame.size())); }

    int receive(unsigned size = 64)
    {
        received.assign(size, 0);
        unsigned count = 0;
        const int result = KCSReadBMCData(received.data(), size, &count);
        received.resize(count);
        EXPECT_FALSE(result == kcsDone && bmc.hasByte()) << "the byte behind the frame is taken too";
        return result;
    }

    Bytes received;
};

TEST_F(Kcs, FrameGoesOutByWriteStartAndWriteEndBeforeItsLastByte)
{
    bmc.answer = [](const Bytes& frame) { return Bytes{frame.rbegin(), frame.rend()}; };
    ASSERT_EQ(send({0x18, 0x01, 0xA5}), kcsDone);
    EXPECT_THAT(bmc.writes, ElementsAre(Pair(command, 0x61), Pair(data, 0x18), Pair(data, 0x01), Pair(command, 0x62),
                                        Pair(data, 0xA5)));
    ASSERT_EQ(receive(), kcsDone);
    EXPECT_THAT(received, ElementsAre(0xA5, 0x01, 0x18));
    EXPECT_EQ(alarm.seconds, 15u);
    EXPECT_EQ(alarm.rung, 0);
}

TEST_F(Kcs, StaleByteIsDrainedBeforeTheFrame)
{
    bmc.leaveByteBehind = true;
    bmc.latency = 0;
    bmc.answer = [](const Bytes&) { return Bytes{7}; };
    ASSERT_EQ(send({1, 2}), kcsDone);
    ASSERT_EQ(receive(), kcsDone);
    EXPECT_THAT(received, ElementsAre(7));
}

TEST_F(Kcs, WrongStateWhileSendingGivesThreeWithoutRecovery)
{
    for (const int failing : {0, 2, 3}) { // WRITE_START, a middle byte, WRITE_END
        bmc.writes.clear();
        bmc.errorAtWrite = failing;
        EXPECT_EQ(send({1, 2, 3}), kcsWrongState) << failing;
        EXPECT_EQ(bmc.writes.size(), failing + 1u);
    }
}

TEST_F(Kcs, ReadEndsByItsLimit)
{
    bmc.answer = [](const Bytes&) { return Bytes{1, 2, 3}; };
    send({1});
    EXPECT_EQ(receive(0), kcsBufferFull);
    EXPECT_EQ(receive(3), kcsBufferFull) << "a frame of exactly the buffer's size counts as too long";
    EXPECT_THAT(received, ElementsAre(1, 2, 3));
}

TEST_F(Kcs, ErrorInReadIsRecoveredAndTheNextExchangeIsRight)
{
    bmc.answer = [](const Bytes&) { return Bytes{1, 2}; };
    bmc.errorInRead = true;
    bmc.failedRecoveries = 2;
    send({9});
    const std::size_t before = bmc.writes.size();
    ASSERT_EQ(receive(), kcsWrongState);
    const auto abortPair = {std::pair{command, std::uint8_t{0x60}}, std::pair{data, std::uint8_t{0}}};
    std::vector<std::pair<std::uint16_t, std::uint8_t>> expected{{data, 0x68}};
    for (int i = 0; i < 3; ++i)
        expected.insert(expected.end(), abortPair);
    expected.emplace_back(data, 0x68);
    EXPECT_THAT(std::vector(bmc.writes.begin() + before, bmc.writes.end()), ElementsAreArray(expected));
    ASSERT_EQ(send({9}), kcsDone);
    ASSERT_EQ(receive(), kcsDone);
    EXPECT_THAT(received, ElementsAre(1, 2));
}

TEST_F(Kcs, RecoveryGivesUpAfterFiveFailuresOrAtATimeout)
{
    bmc.failedRecoveries = 5;
    EXPECT_EQ(KCSBMCErrorHandler(), kcsWrongState);
    EXPECT_EQ(bmc.writes.size(), 10u);
    bmc.stuckIbf = true;
    EXPECT_EQ(KCSBMCErrorHandler(), kcsTimeout);
}

TEST(SignalAlarm, RingsOnceArmedAndLeavesTheDefaultDisposition)
{
    std::signal(SIGALRM, SIG_IGN);
    Alarm& alarm = Alarm::real();
    alarm.arm(15);
    EXPECT_FALSE(alarm.fired());
    EXPECT_LE(::alarm(15), 15u);
    raise(SIGALRM);
    EXPECT_TRUE(alarm.fired());
    alarm.disarm();
    EXPECT_FALSE(alarm.fired());
    EXPECT_EQ(::alarm(0), 0u);
    EXPECT_EQ(std::signal(SIGALRM, SIG_DFL), SIG_DFL);
}

} // namespace
