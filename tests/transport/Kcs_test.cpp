#include "transport/Kcs.hpp"

#include "common/Policy.hpp"
#include "tests/transport/FakeKcs.hpp"
#include "transport/BmcMessage.hpp"

#include <csignal>
#include <unistd.h>

using namespace transport;

namespace {

using namespace std::chrono_literals;
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

TEST_F(Kcs, StaleByteIsDrainedBeforeTheFrameAndAReadEndsByItsLimit)
{
    bmc.leaveByteBehind = true;
    bmc.latency = 0;
    bmc.answer = [](const Bytes&) { return Bytes{7}; };
    ASSERT_EQ(send({1, 2}), kcsDone);
    ASSERT_EQ(receive(), kcsDone);
    EXPECT_THAT(received, ElementsAre(7));
    bmc.answer = [](const Bytes&) { return Bytes{1, 2, 3}; };
    send({1});
    EXPECT_EQ(receive(0), kcsBufferFull);
    EXPECT_EQ(receive(3), kcsBufferFull) << "a frame of exactly the buffer's size counts as too long";
    EXPECT_THAT(received, ElementsAre(1, 2, 3));
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

class KcsFaults : public testing::Test, protected PortMachine {
protected:
    KcsFaults()
    {
        clock.perReading = 5us;
        bmc.clock = &clock;
    }

    bool ask()
    {
        const auto start = clock.steadyTime;
        const BMC_REQUEST request{0x20, 1, 6, 0, 0, nullptr};
        BMC_RESPONSE response{};
        const bool answered = sendRequest(request, response, 3).has_value();
        took = clock.steadyTime - start;
        return answered && response.data[0] == 0x42;
    }

    std::chrono::nanoseconds took{};
};

TEST_F(KcsFaults, ControllerThatHangsCostsFiveSecondsInsteadOfFourTimesFifteen)
{
    for (bool FakeKcs::*const fault : {&FakeKcs::stuckIbf, &FakeKcs::stuckObf}) {
        bmc.*fault = true;
        alarm.rung = 0;
        EXPECT_FALSE(ask());
        EXPECT_EQ(alarm.rung, 4) << "each of the tries waits for the alarm";
        EXPECT_EQ(alarm.seconds, 15U);
        const common::ScopedPolicy practical(common::practicalPolicy());
        EXPECT_FALSE(ask());
        EXPECT_LE(took, 5020ms);
        bmc.*fault = false;
        EXPECT_TRUE(ask()) << "and the next exchange is right";
        EXPECT_EQ(alarm.rung, 4) << "the alarm is left alone";
    }
}

TEST_F(KcsFaults, ControllerThatTakesARequestOnlyWhenIdleIsFreedFromTheOneThatWasGivenUp)
{
    bmc.startsWhenIdle = true;
    bmc.stuckObf = true;
    EXPECT_FALSE(ask());
    bmc.stuckObf = false;
    EXPECT_FALSE(ask()) << "plainly for good";
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_TRUE(ask());
    EXPECT_LT(took, 10ms);
    bmc.answerTime = 6s;
    EXPECT_FALSE(ask());
    EXPECT_FALSE(ask()) << "still at the old one, for a second";
    bmc.answerTime = 0s;
    EXPECT_TRUE(ask());
}

TEST_F(KcsFaults, WaitForASlowControllerLeavesTheProcessorToOthers)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    bmc.answerTime = 1s;
    EXPECT_TRUE(ask());
    EXPECT_LE(took, 1020ms);
    EXPECT_LT(bmc.looks, 500);
    bmc.answerTime = 50us;
    clock.sleeps.clear();
    EXPECT_TRUE(ask());
    EXPECT_TRUE(clock.sleeps.empty()) << "a quick one is waited for on the spot";
}

TEST_F(KcsFaults, FrameWithoutItsDummyByteIsKept)
{
    bmc.noDummy = true;
    EXPECT_FALSE(ask());
    const common::ScopedPolicy practical(common::practicalPolicy());
    EXPECT_TRUE(ask());
    EXPECT_LT(took, 30ms);
}

TEST_F(KcsFaults, ErrorsInAnExchangeAreRecoveredWithinItsBudget)
{
    const common::ScopedPolicy practical(common::practicalPolicy());
    bmc.errorInRead = true;
    EXPECT_TRUE(ask());
    bmc.errorAtWrite = static_cast<int>(bmc.writes.size()) + 1;
    EXPECT_TRUE(ask());
    bmc.failedRecoveries = 1'000'000;
    bmc.answer = [](const Bytes&) { return Bytes{}; };
    EXPECT_FALSE(ask());
    EXPECT_LT(took, 6s);
}

} // namespace
